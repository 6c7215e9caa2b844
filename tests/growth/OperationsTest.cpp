// SPDX-License-Identifier: MIT
//
// Operations on texts, trees, tables and stores: so many of them, or one on so much, take work in
// proportion.
#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "YGConfigManager/host/JsonValue.h"
#include "YGConfigManager/layout/YGStyleConfigLoad.h"
#include "YGConfigManager/records/RecordMap.h"
#include "YGConfigManager/servers/YGServerAddrListTag.h"
#include "YGConfigManager/settings/YGAppConfigManager.h"
#include "YGConfigManager/settings/YGHttpReqUrlMgr.h"
#include "YGConfigManager/settings/YGWebPageUrlConfig.h"
#include "YGConfigManager/text/Numbers.h"
#include "YGConfigManager/text/Paths.h"
#include "YGConfigManager/text/Replace.h"
#include "YGConfigManager/text/Split.h"
#include "YGConfigManager/text/Utf8.h"
#include "YGConfigManager/xml/Document.h"

#include "growth/Constructs.h"
#include "growth/Counting.h"
#include "growth/Loaders.h"

namespace yg::testing {

namespace {

struct Operation {
    std::string_view name;
    std::size_t small;  ///< how many, or how many bytes
    /// Makes ready; what it answers is counted.
    std::function<std::function<void()>(std::size_t count)> make;

    friend std::ostream& operator<<(std::ostream& out, const Operation& one) {
        return out << one.name;
    }
};

void consume(std::size_t value) {
    static volatile std::size_t sum = 0;
    sum = sum + value;
}

xml::Document documentWith(std::size_t count) {
    std::string text = "<r>";
    for (std::size_t i = 0; i < count; ++i)
        text += joined("<e k='", number(i), "'><x>t</x></e>");
    return xml::Document::parseText(joined(text, "</r>")).document;
}

std::vector<xml::Node> childrenOf(const xml::Element& element) {
    std::vector<xml::Node> nodes;
    for (const xml::Node& child : element.children())
        nodes.push_back(child);
    return nodes;
}

// ---- trees ----

std::function<void()> appending(std::size_t count) {
    return [count] {
        xml::Element root = xml::Element::create("r");
        const xml::Element child = xml::Element::create("e");
        for (std::size_t i = 0; i < count; ++i)
            root.appendChild(child);
    };
}

std::function<void()> appendingNested(std::size_t count) {
    return [count] {
        xml::Element root = xml::Element::create("r");
        const xml::Element child = xml::Element::create("e");
        for (std::size_t i = 0; i < count; ++i) {
            xml::Element at(root.appendChild(child));
            for (int level = 0; level < 10; ++level)
                at = xml::Element(at.appendChild(child));
        }
    };
}

std::function<void()> insertingFirst(std::size_t count) {
    return [count] {
        xml::Element root = xml::Element::create("r");
        const xml::Element child = xml::Element::create("e");
        for (std::size_t i = 0; i < count; ++i)
            root.insertChild(child, 0);
    };
}

std::function<void()> removing(std::size_t count) {
    return [document = documentWith(count)] {
        for (xml::Node& child : childrenOf(document.root()))
            child.remove();
    };
}

std::function<void()> removingAndAsking(std::size_t count) {
    return [document = documentWith(count)] {
        std::vector<xml::Node> children = childrenOf(document.root());
        const xml::Element last(children.back());
        children.pop_back();
        for (xml::Node& child : children) {
            child.remove();
            consume(last.query("x").size());
        }
    };
}

std::function<void()> askingAfterARemoval(std::size_t count) {
    return [document = documentWith(count)] {
        document.root().firstChild().remove();
        for (const xml::Node& child : document.root().children())
            consume(xml::Element(child).query("x").size());
    };
}

std::function<void()> askingWhatWasRemoved(std::size_t count) {
    return [document = documentWith(count), count] {
        xml::Element gone(document.root().firstChild());
        gone.remove();
        for (std::size_t i = 0; i < count; ++i)
            consume(gone.query("x").size());
    };
}

std::function<void()> replacing(std::size_t count) {
    return [document = documentWith(count)] {
        const xml::Element other = xml::Element::create("o");
        for (xml::Node& child : childrenOf(document.root()))
            child.replaceWith(other);
    };
}

std::function<void()> renamingAndSetting(std::size_t count) {
    return [document = documentWith(count)] {
        for (const xml::Node& child : childrenOf(document.root())) {
            xml::Element element(child);
            element.rename("other");
            element.setAttribute("k", "v");
            element.setContent("new");
        }
    };
}

std::function<void()> settingContent(std::size_t count) {
    return [document = documentWith(count)] { document.root().setContent("t"); };
}

std::function<void()> settingLongContent(std::size_t count) {
    return [text = std::string(count, '&')] {
        xml::Element element = xml::Element::create("e");
        element.setContent(text);
        consume(element.serialise().size());
    };
}

std::function<void()> copying(std::size_t count) {
    return [document = documentWith(count)] { consume(document.copy().root().childCount()); };
}

std::function<void()> releasing(std::size_t count) {
    return [document = documentWith(count)]() mutable {
        for (xml::Node& child : childrenOf(document.root()))
            child.remove();
        document.releaseRemoved();
    };
}

std::function<void()> serialising(std::size_t count) {
    return [document = documentWith(count)] {
        consume(document.serialise(xml::Form::plain).size());
        consume(document.serialise(xml::Form::pretty).size());
        consume(document.root().stringValue().size());
    };
}

std::function<void()> askingForPlaces(std::size_t count) {
    const std::string text = documentWith(count).serialise(xml::Form::plain);
    return [document = xml::Document::parseText(text, {.positions = true}).document] {
        for (const xml::Node& child : document.root().children()) {
            consume(child.place()->begin.column);
            consume(xml::Element(child).attributePlace("k")->begin.column);
        }
    };
}

std::function<void()> askingForPlacesInOneValue(std::size_t count) {
    std::string value;
    for (std::size_t i = 0; i < count; ++i)
        value += "&amp;;";
    const std::string text = "<r v='" + value + "'/>";
    return [count, document = xml::Document::parseText(text, {.positions = true}).document] {
        for (std::size_t i = 0; i < count; ++i)
            consume(document.root().valuePlace("v", 2 * i, 1)->begin.column);
    };
}

/// Queries by names and attributes, as the loaders ask them.
std::function<std::function<void()>(std::size_t)> asking(std::string_view query) {
    return [query](std::size_t count) {
        return [query, document = documentWith(count)] { consume(document.query(query).size()); };
    };
}

// ---- tables ----

std::function<void()> storingNames(std::size_t count) {
    return [count] {
        RecordMap<std::size_t> map;
        for (std::size_t i = 0; i < count; ++i)
            map.set(joined("name", number(i)), i);
        for (std::size_t i = 0; i < count; ++i)
            consume(*map.find(joined("name", number(i))));
    };
}

std::function<void()> storingOneName(std::size_t count) {
    return [count] {
        RecordMap<std::size_t> map;
        for (std::size_t i = 0; i < count; ++i)
            map.set("name", i);
    };
}

std::function<void()> choosingAddresses(std::size_t count) {
    std::vector<std::string> items;
    for (std::size_t i = 0; i < count; ++i)
        items.push_back(joined("1:h", number(i), ":80"));
    return [items] {
        consume(YGServerAddrListTag::changeIpByPercent(&items).size());
        consume(YGServerAddrListTag::changeIpByPercentNew(&items).size());
    };
}

// ---- texts ----

std::function<void()> replacingAll(std::size_t bytes) {
    return [text = repeated(bytes, "abcabd")] {
        consume(text::replaceAll(text, "abd", "x").size());
        consume(text::replaceAllIgnoringCase(text, "ABD", "x").size());
    };
}

/// All but the last byte of the target is found at every place.
std::function<void()> replacingWhatNearlyOccurs(std::size_t bytes) {
    return [text = std::string(bytes, 'a'), target = joined(std::string(bytes / 4, 'a'), "b")] {
        consume(text::replaceAll(text, target, "x").size());
    };
}

std::function<void()> replacingWhatNearlyOccursIgnoringCase(std::size_t bytes) {
    return [text = std::string(bytes, 'a'), target = joined(std::string(bytes / 4, 'A'), "b")] {
        consume(text::replaceAllIgnoringCase(text, target, "x").size());
        consume(text::replaceAllIgnoringCase(text, joined(std::string(target.size(), '1'), "2"), "")
                    .size());
    };
}

std::function<void()> replacingSubstrings(std::size_t bytes) {
    return [text = std::string(bytes, 'a'), target = joined(std::string(bytes / 4, 'a'), "b")] {
        consume(YGWebPageUrlConfig::replaceSubstring(text, target, "x")->size());
    };
}

std::function<void()> splitting(std::size_t bytes) {
    return [text = repeated(bytes, "a;;")] { consume(text::split(text, ';').size()); };
}

std::function<void()> readingNumbers(std::size_t bytes) {
    return [digits = std::string(bytes, '9'), blanks = std::string(bytes, ' ')] {
        consume(static_cast<std::size_t>(text::leadingInt64(digits)));
        consume(static_cast<std::size_t>(text::readLeadingDouble(joined("0.", digits)).oddity));
        consume(static_cast<std::size_t>(text::leadingInt32(joined(blanks, "1"))));
    };
}

std::function<void()> checkingUtf8(std::size_t bytes) {
    return [text = repeated(bytes, "a\xE4\xB8\xAD")] {
        consume(text::validUtf8Prefix(text));
        consume(text::countCodePoints(text));
    };
}

std::function<void()> takingPathsApart(std::size_t bytes) {
    return [text = joined(repeated(bytes, "a/"), std::string(bytes, '/'))] {
        consume(text::lastPathComponent(text)->size());
        consume(text::joinPath(text, text).size());
    };
}

std::function<void()> writingJson(std::size_t bytes) {
    return [text = repeated(bytes, "t\"\\\n\xE4\xB8\xAD\xFF")] {
        std::string out;
        appendJsonText(out, text);
        consume(out.size());
    };
}

// ---- stores ----

std::shared_ptr<YGAppConfigManager> storeWith(std::size_t count) {
    std::string file = "<config><s0>";
    for (std::size_t i = 0; i < count; ++i) {
        if (i > 0 && i % 10 == 0)
            file += joined("</s", number(i / 10 - 1), "><s", number(i / 10), ">");
        file += joined("<i", number(i), ">t</i", number(i), ">");
    }
    file += joined("</s", number((count - 1) / 10), "></config>");
    newHost().storagePath = writeFile("settings.xml", file);
    return YGAppConfigManager::initWithFileName("file");
}

std::function<void()> readingSettings(std::size_t count) {
    return [store = storeWith(count), count] {
        for (std::size_t i = 0; i < count; ++i)
            consume(
                store->getItemText(joined("s", number(i / 10)), joined("i", number(i)))->size());
        for (std::size_t i = 0; i < count; ++i)
            consume(store->getItemText("s0", joined("none", number(i))).has_value());
    };
}

/// Each change writes the file, so there are a few of them only.
std::function<void()> changingSettings(std::size_t count) {
    return [store = storeWith(count), count] {
        for (const std::size_t i : {std::size_t{0}, count / 2, count - 1}) {
            const std::string section = joined("s", number(i / 10));
            consume(store->setConfigItem(section, joined("i", number(i)), std::nullopt, "new"));
            consume(store->setConfigItem(section, "another", "what for", "new"));
            consume(store->getItemText(section, "another")->size());
        }
    };
}

std::function<void()> readingWebPages(std::size_t count) {
    const auto entry = [](std::size_t i) { return joined("<url key='k", number(i), "'>a</url>"); };
    std::string file = "<urls>";
    for (std::size_t i = 0; i < count; ++i)
        file += entry(i);
    newHost().storagePath = writeFile("pages.xml", joined(file, "</urls>"));
    return [table = YGWebPageUrlConfig::initWithFileName("file"), count] {
        for (std::size_t i = 0; i < count; ++i) {
            consume(table->getWebPageUrlByKey(joined("k", number(i))).size());
            consume(table->getWebPageUrlByKey(joined("none", number(i))).size());
        }
    };
}

/// A lookup goes through the list, so there are a few of them only.
std::function<void()> readingRequestUrls(std::size_t count) {
    std::string file = "{\"urlConfigList\":[";
    for (std::size_t i = 0; i < count; ++i)
        file += joined("{\"urlKey\":\"k", number(i), "\",\"urlValue\":\"v\"},");
    newHost().storagePath = writeFile("urls.json", joined(file, "{}]}"));
    const auto manager = YGHttpReqUrlMgr::make();
    manager->readUrlModelFromFile();
    return [manager, count] {
        for (const std::size_t i : {std::size_t{0}, count / 2, count - 1})
            consume(manager->httpReqUrlStringWithUrlKey(joined("k", number(i)))->size());
    };
}

// ---- the layout ----

/// So many styles and soft-optimize styles of other names.
std::function<void()> mergingStyles(std::size_t count) {
    const auto file = [count](std::string_view name, std::string_view style) {
        std::string text = "<styles>";
        for (std::size_t i = 0; i < count; ++i)
            text += joined("<style name='", style, number(i), "'/>");
        return writeFile(name, joined(text, "</styles>"));
    };
    return [base = file("base.xml", "a"), other = file("other.xml", "b")] {
        const YGStyleConfigLoad loader;
        consume(loader.loadStyleConfigWithBasePath(base, other).childCount());
    };
}

std::shared_ptr<YGStyleConfigLoad> loaderWith(const std::string& styles,
                                              const std::string& magicPanels) {
    GrowthHost& host = newHost();
    host.softPath = writeFile("styles.xml", styles);
    auto loader = std::make_shared<YGStyleConfigLoad>();
    loader->initWithStyleConfigPath(host.softPath, std::nullopt,
                                    writeFile("magic.xml", magicPanels));
    return loader;
}

/// One page with so many slots, and an argument for each.
std::function<void()> buildingAPage(std::size_t count) {
    const auto loader =
        loaderWith(joined("<styles><style name='p'>", copies(count, "<magic_panels name='g'/>"),
                          "</style></styles>"),
                   "<r><magic_panels name='g'><magic_panel name='m'><panel name='x'/></magic_panel>"
                   "</magic_panels></r>");
    return [loader, name = joined("p", copies(count, "-m"))] {
        const auto page = loader->loadStyleConfigInfoWithName(name);
        consume(page->stylePanes()->size());
    };
}

/// A page whose one argument is so long, written into a pattern by a mapping.
std::function<void()> buildingAPageOfAPattern(std::size_t count) {
    const auto loader = loaderWith(
        "<styles><style name='p'><magic_panels name='g'/></style></styles>",
        joined("<r><magic_panels name='g'><magic_panel name='KEY'><panel name='KEY'>",
               copies(count, "<element name='e'/>"), "</panel></magic_panel></magic_panels></r>"));
    const auto host = std::make_shared<GrowthHost>();
    const std::string argument(count, 'v');
    const auto mapping = std::make_shared<MappingDic>();
    for (std::size_t i = 0; i < count; ++i)
        (*mapping)["KEY"].push_back(number(i));
    (*mapping)["KEY"].push_back(argument);
    host->mapping = mapping;
    return [loader, host, name = joined("p-", argument)] {
        setHost(host);
        const auto page = loader->loadStyleConfigInfoWithName(name);
        consume(page->stylePanes()->size());
    };
}

std::function<void()> copyingAPage(std::size_t count) {
    const auto loader =
        loaderWith(joined("<styles><style name='p'>",
                          copies(count, "<panel name='x'><panel/></panel>"), "</style></styles>"),
                   "<r/>");
    return [loader] {
        const auto copy = loader->loadStyleConfigInfoWithName("p")->copyWithZone();
        bool isFound = false;
        YGStyleConfigLoad::replaceMagicPanel(copy->stylePanes(),
                                             std::make_shared<PanelConfigInfo>(), isFound);
        consume(copy->stylePanes()->size());
    };
}

const Operation operations[] = {
    {"treeAppending", 100, appending},
    {"treeAppendingNested", 20, appendingNested},
    {"treeInsertingFirst", 100, insertingFirst},
    {"treeRemoving", 500, removing},
    {"treeRemovingAndAsking", 25, removingAndAsking},
    {"treeAskingAfterARemoval", 25, askingAfterARemoval},
    {"treeAskingWhatWasRemoved", 25, askingWhatWasRemoved},
    {"treeReplacing", 500, replacing},
    {"treeRenamingAndSetting", 500, renamingAndSetting},
    {"treeSettingContent", 500, settingContent},
    {"treeSettingLongContent", 5'000, settingLongContent},
    {"treeCopying", 500, copying},
    {"treeReleasing", 500, releasing},
    {"treeSerialising", 500, serialising},
    {"treePlaces", 500, askingForPlaces},
    {"treePlacesInOneValue", 500, askingForPlacesInOneValue},
    {"queryChildren", 500, asking("r/e")},
    {"queryByAttribute", 500, asking("r/e[@k='7']")},
    {"queryDescendants", 500, asking("//x")},
    {"queryParents", 500, asking("//x/..")},
    {"queryTexts", 500, asking("//text()")},
    {"recordNames", 1'000, storingNames},
    {"recordOneName", 1'000, storingOneName},
    {"serverChoice", 500, choosingAddresses},
    {"textReplacing", 10'000, replacingAll},
    {"textReplacingWhatNearlyOccurs", 5'000, replacingWhatNearlyOccurs},
    {"textReplacingWhatNearlyOccursIgnoringCase", 5'000, replacingWhatNearlyOccursIgnoringCase},
    {"textReplacingSubstrings", 5'000, replacingSubstrings},
    {"textSplitting", 5'000, splitting},
    {"textNumbers", 5'000, readingNumbers},
    {"textUtf8", 5'000, checkingUtf8},
    {"textPaths", 5'000, takingPathsApart},
    {"textAsJson", 5'000, writingJson},
    {"settingsReading", 500, readingSettings},
    {"settingsChanging", 500, changingSettings},
    {"webPagesReading", 500, readingWebPages},
    {"requestUrlsReading", 500, readingRequestUrls},
    {"layoutMerging", 50, mergingStyles},
    {"layoutPage", 100, buildingAPage},
    {"layoutPageOfAPattern", 200, buildingAPageOfAPattern},
    {"layoutCopying", 500, copyingAPage},
};

class OperationGrowth : public ::testing::TestWithParam<Operation> {};

TEST_P(OperationGrowth, IsLinear) {
    const Operation& one = GetParam();
    const MakeWork make = [&one](std::size_t count) {
        return Work{count, [work = one.make(count)]() -> std::string {
                        work();
                        return "";
                    }};
    };
    // Queries and tables are made at their first use.
    make(10).run();
    const Measured small = measure(make, one.small);
    const Measured large = measure(make, 8 * one.small);
    expectLinear(small, large);
}

INSTANTIATE_TEST_SUITE_P(operations, OperationGrowth, ::testing::ValuesIn(operations),
                         [](const auto& which) { return std::string(which.param.name); });

}  // namespace

}  // namespace yg::testing
