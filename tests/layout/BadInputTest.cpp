// SPDX-License-Identifier: MIT
//
// Files and names that nobody means well with: each of the six files in turn is missing, broken,
// hostile or huge, while the others stay as they are.
#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/layout/YGStyleConfigLoad.h"

#include "diagnostics/RecordingSink.h"
#include "layout/LayoutTest.h"

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define YG_TEST_IS_SLOW 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define YG_TEST_IS_SLOW 1
#endif
#endif

namespace {

using namespace std::string_literals;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::StartsWith;
using yg::YGStyleConfigLoad;
using yg::testing::allLayoutFiles;
using yg::testing::find;
using yg::testing::keys;
using yg::testing::LayoutFile;
using yg::testing::LayoutTest;
using yg::testing::names;
using yg::testing::RecordingSink;
using yg::testing::Reported;

#ifdef YG_TEST_IS_SLOW
constexpr std::size_t largeFile = 12'000'000;
#else
constexpr std::size_t largeFile = 50'000'000;
#endif

std::string repeated(std::string_view text, std::size_t count) {
    std::string all;
    all.reserve(text.size() * count);
    for (std::size_t i = 0; i < count; ++i)
        all += text;
    return all;
}

/// Good files, each with something of its own.
std::string goodText(LayoutFile file) {
    switch (file) {
        case LayoutFile::styles:
            return "<s><style name='main'><panel><magic_panels name='first'/><reuse_panel "
                   "name='bar'/>"
                   "</panel></style></s>";
        case LayoutFile::tabs:
            return "<s><style name='tab'/></s>";
        case LayoutFile::magicPanels:
            return "<m><magic_panels name='first'><magic_panel name='x'><panel name='p'/>"
                   "</magic_panel></magic_panels></m>";
        case LayoutFile::softStyles:
            return "<s><style name='soft'/></s>";
        case LayoutFile::softMagicPanels:
            return "<m><magic_panels name='second'><magic_panel name='x'><panel/></magic_panel>"
                   "</magic_panels></m>";
        case LayoutFile::reusePanels:
            return "<r><reuse_panel name='bar'/></r>";
    }
    return "";
}

/// How many steps of a load read the file.
std::size_t readsOf(LayoutFile file) {
    return file == LayoutFile::tabs || file == LayoutFile::softMagicPanels ? 1 : 2;
}

class BadFile : public LayoutTest, public ::testing::WithParamInterface<LayoutFile> {
protected:
    BadFile() {
        for (const LayoutFile file : allLayoutFiles)
            write(file, goodText(file));
    }

    /// Whether the file contributes to what the loader answers.
    static bool contributes(const YGStyleConfigLoad& loader, LayoutFile file) {
        const auto main = find(loader.styleInfos(), "main");
        switch (file) {
            case LayoutFile::styles:
                return loader.styleInfos() != nullptr;
            case LayoutFile::tabs:
                return loader.tabStyleInfos() != nullptr;
            case LayoutFile::magicPanels:
                return loader.magicPanelInfos()->contains("first");
            case LayoutFile::softStyles:
                return static_cast<bool>(loader.createXMLElementWithStyleName("soft"));
            case LayoutFile::softMagicPanels:
                return loader.magicPanelInfos()->contains("second");
            case LayoutFile::reusePanels:
                return !main || names(main->stylePanes()->front()->panePanes()).back() == "bar";
        }
        return false;
    }

    /// Loads with the bad file in its place; the answer is the documented empty one, the others
    /// count, and the failure is logged once for each step that reads the file. Answers what is
    /// logged.
    std::string failingLoad(yg::DiagnosticsSink* sink = nullptr) {
        host->clear();
        YGStyleConfigLoad fresh(sink);
        load(fresh);
        for (const LayoutFile file : allLayoutFiles)
            EXPECT_EQ(contributes(fresh, file), file != GetParam()) << file;
        EXPECT_EQ(fresh.styleInfos() == nullptr, GetParam() == LayoutFile::styles);

        std::vector<std::string> log = host->runtimeLog();
        EXPECT_EQ(log.size(), 1 + readsOf(GetParam()));
        if (log.size() < 2)
            return "";
        EXPECT_EQ(log.front(), "initWithStyleConfigPath");
        for (std::size_t i = 1; i < log.size(); ++i)
            EXPECT_EQ(log[i], log[1]);
        constexpr std::string_view label = "load style config fail:";
        EXPECT_THAT(log[1], StartsWith(std::string(label)));
        EXPECT_EQ(log[1].find('\n'), std::string::npos);
        EXPECT_LT(log[1].size(), 5000U);
        return log[1].substr(std::min(label.size(), log[1].size()));
    }

    /// The same for a file of these bytes, with a diagnostics sink as well.
    std::string failingLoadOf(std::string_view bytes) {
        write(GetParam(), bytes);
        RecordingSink sink(root.path());
        const std::string logged = failingLoad();
        EXPECT_EQ(failingLoad(&sink), logged);
        EXPECT_THAT(sink.found, Contains(Field(&Reported::rule, "unreadable-file")));
        return logged;
    }
};

std::string nameOf(const ::testing::TestParamInfo<LayoutFile>& info) {
    switch (info.param) {
        case LayoutFile::styles:
            return "MainStyles";
        case LayoutFile::tabs:
            return "TabStyles";
        case LayoutFile::magicPanels:
            return "MagicPanels";
        case LayoutFile::softStyles:
            return "SoftStyles";
        case LayoutFile::softMagicPanels:
            return "SoftMagicPanels";
        case LayoutFile::reusePanels:
            return "ReusePanels";
    }
    return "";
}

INSTANTIATE_TEST_SUITE_P(Each, BadFile, ::testing::ValuesIn(allLayoutFiles), nameOf);

TEST_P(BadFile, IsNoneOfTheGoodOnes) {
    load();
    for (const LayoutFile file : allLayoutFiles)
        EXPECT_TRUE(contributes(loader, file)) << file;
    EXPECT_THAT(host->runtimeLog(), ElementsAre("initWithStyleConfigPath"));
}

TEST_P(BadFile, ThatIsMissing) {
    std::filesystem::remove(path(GetParam()));
    EXPECT_EQ(failingLoad(), path(GetParam()) + ": No such file or directory");
}

TEST_P(BadFile, ThatIsAFolder) {
    std::filesystem::remove(path(GetParam()));
    std::filesystem::create_directory(path(GetParam()));
    EXPECT_EQ(failingLoad(), path(GetParam()) + ": Is a directory");
}

TEST_P(BadFile, ThatIsADanglingLink) {
    std::filesystem::remove(path(GetParam()));
    std::filesystem::create_symlink("nowhere.xml", path(GetParam()));
    EXPECT_EQ(failingLoad(), path(GetParam()) + ": No such file or directory");
}

TEST_P(BadFile, ThatHoldsNoElement) {
    for (const std::string_view text :
         {"", " ", "\n\n", "\xEF\xBB\xBF", "<?xml version='1.0'?>", "<!-- only this -->", "text"}) {
        SCOPED_TRACE(text);
        EXPECT_THAT(failingLoadOf(text), StartsWith("Line "));
    }
}

TEST_P(BadFile, ThatIsBinary) {
    std::string bytes;
    for (int i = 0; i < 4096; ++i)
        bytes += static_cast<char>(i * 7);
    EXPECT_THAT(failingLoadOf(bytes), StartsWith("Line 1: "));
    EXPECT_THAT(failingLoadOf(std::string(4096, '\0')), StartsWith("Line 1: "));
    EXPECT_THAT(failingLoadOf("<r>\0</r>"s), StartsWith("Line 1: "));
    EXPECT_THAT(failingLoadOf("<r>\x01</r>"), StartsWith("Line 1: "));
    EXPECT_THAT(failingLoadOf("\x7f"
                              "ELF\x02\x01\x01\0\0\0"s),
                StartsWith("Line 1: "));
}

TEST_P(BadFile, ThatIsCutOffAnywhere) {
    const std::string good = goodText(GetParam());
    for (std::size_t size = 0; size < good.size(); ++size) {
        SCOPED_TRACE(size);
        EXPECT_THAT(failingLoadOf(std::string_view(good).substr(0, size)), StartsWith("Line 1: "));
    }
}

TEST_P(BadFile, ThatIsNotWellFormed) {
    for (const std::string_view text :
         {"<r><a></r>", "<r/><r/>", "<r/>text", "text<r/>", "<r a='1' a='2'/>", "<r a=1/>",
          "<r a/>", "<r>&unknown;</r>", "<r>a & b</r>", "<r a='<'/>", "<r>]]></r>",
          "<r><!-- -- --></r>", "<r><![CDATA[</r>", "<1/>", "<r></r",
          "<r><?xml version='1.0'?></r>", "< r/>"}) {
        SCOPED_TRACE(text);
        EXPECT_THAT(failingLoadOf(text), StartsWith("Line 1: "));
    }
}

TEST_P(BadFile, ThatIsInAnotherEncodingThanItSays) {
    for (const std::string_view bytes :
         {// GBK without a declaration.
          "<r a='\xD0\xD0\xC7\xE9'/>",
          // UTF-8 cut in the middle of a character, and characters that do not exist.
          "<r a='\xE8\xA1'/>", "<r a='\xC0\xAF'/>", "<r a='\xED\xA0\x80'/>", "<r a='\xFF'/>",
          // Declared.
          "<?xml version='1.0' encoding='UTF-8'?><r a='\xD0\xD0'/>",
          "<?xml version='1.0' encoding='gb2312'?><r a='\xFF\xFF'/>",
          "<?xml version='1.0' encoding='GBK'?><r a='\xD0'/>",
          "<?xml version='1.0' encoding='Big5'?><r a='\xFF\xFF'/>",
          "<?xml version='1.0' encoding='no-such-encoding'?><r/>",
          "<?xml version='1.0' encoding='UTF-16'?><r/>", "<?xml version='1.0' encoding=''?><r/>"}) {
        SCOPED_TRACE(bytes);
        EXPECT_THAT(failingLoadOf(bytes), StartsWith("Line 1: "));
    }
    EXPECT_THAT(failingLoadOf("\xFF\xFE<\0r\0/\0"s), StartsWith("Line 1: "));
    EXPECT_THAT(failingLoadOf("\xFF\xFE<\0r\0/\0>"s), StartsWith("Line 1: "));
    EXPECT_THAT(failingLoadOf("\xFE\xFF<\0r\0/\0>\0"s), StartsWith("Line 1: "));
}

TEST_P(BadFile, ThatDefinesEntitiesOfEntities) {
    std::string laughs = "<!DOCTYPE r [<!ENTITY e0 'ha'>";
    for (int i = 1; i < 10; ++i) {
        const std::string below = "&e" + std::to_string(i - 1) + ";";
        laughs += "<!ENTITY e" + std::to_string(i) + " '" + repeated(below, 10) + "'>";
    }
    EXPECT_THAT(failingLoadOf(laughs + "]><r>&e9;</r>"), StartsWith("Line 1: "));
    EXPECT_THAT(failingLoadOf(laughs + "]><r a='&e9;'/>"), StartsWith("Line 1: "));
    EXPECT_THAT(failingLoadOf("<!DOCTYPE r [<!ENTITY a '&b;'><!ENTITY b '&a;'>]><r>&a;</r>"),
                StartsWith("Line 1: "));
    // One long text, again and again.
    EXPECT_THAT(failingLoadOf("<!DOCTYPE r [<!ENTITY a '" + std::string(100'000, 'a') + "'>]><r>" +
                              repeated("&a;", 10'000) + "</r>"),
                StartsWith("Line 1: "));
}

TEST_P(BadFile, ThatRefersToOtherFiles) {
    root.write("secret", "<panel name='secret'/>");
    const std::string system = "SYSTEM 'file://" + root.at("secret") + "'";
    EXPECT_THAT(failingLoadOf("<!DOCTYPE r [<!ENTITY a " + system + ">]><r>&a;</r>"),
                StartsWith("Line 1: "));
    EXPECT_THAT(failingLoadOf("<!DOCTYPE r [<!ENTITY a " + system + ">]><r a='&a;'/>"),
                StartsWith("Line 1: "));
}

TEST_P(BadFile, ThatIs100000ElementsDeep) {
    constexpr std::size_t depth = 100'000;
    const std::string deep = repeated("<panel>", depth);
    EXPECT_THAT(failingLoadOf("<s><style name='main'>" + deep + repeated("</panel>", depth) +
                              "</style></s>"),
                StartsWith("Line 1: Excessive depth"));
    EXPECT_THAT(failingLoadOf(deep), StartsWith("Line 1: "));
    EXPECT_THAT(failingLoadOf(repeated("<a b='", depth)), StartsWith("Line 1: "));
    EXPECT_THAT(failingLoadOf(repeated("<!--", depth)), StartsWith("Line 1: "));
}

TEST_P(BadFile, ThatHoldsAValueOfMoreThan10MegabytesOrManyErrors) {
    EXPECT_THAT(failingLoadOf("<r a='" + std::string(10'100'000, 'v') + "'/>"),
                StartsWith("Line 1: "));
    EXPECT_THAT(failingLoadOf("<r>" + repeated("&a;", 100'000) + "</r>"), StartsWith("Line 1: "));
}

/// The good text with comments behind its last element, up to the size of a large file.
std::string largeText(LayoutFile file) {
    const std::string good = goodText(file);
    const std::size_t end = good.rfind("</");
    const std::string comment = "<!--" + std::string(1'000'000 - 7, 'c') + "-->";
    return good.substr(0, end) + repeated(comment, largeFile / comment.size()) + good.substr(end);
}

TEST_P(BadFile, IsNotOneThatIsMerelyLarge) {
    write(GetParam(), largeText(GetParam()));
    load();
    for (const LayoutFile file : allLayoutFiles)
        EXPECT_TRUE(contributes(loader, file)) << file;
    EXPECT_THAT(host->runtimeLog(), ElementsAre("initWithStyleConfigPath"));
}

TEST_P(BadFile, ThatIsLargeAndLacksItsEnd) {
    std::string text = largeText(GetParam());
    text.pop_back();
    write(GetParam(), text);
    EXPECT_THAT(failingLoad(), StartsWith("Line 1: "));
}

// ---- Large files --------------------------------------------------------------------------------

class LargeFile : public LayoutTest {
protected:
    /// Styles of one kilobyte each up to a size, and what comes after them.
    void writeStyles(std::size_t size, const std::string& end) const {
        const std::string padding(900, 'v');
        std::string text = "<s>";
        for (std::size_t i = 0; text.size() < size; ++i)
            text += "<style name='" + std::to_string(i) + "'><panel name='p' display_border='" +
                    padding + "'/></style>\n";
        write(LayoutFile::styles, text + end);
    }
};

TEST_F(LargeFile, OfManyStylesIsReadWhole) {
    writeStyles(largeFile, "<style name='last'/>\n<!-- the end -->\n</s>\n");
    const auto styles = loader.loadConfig(path(LayoutFile::styles), true);
    ASSERT_NE(styles, nullptr) << host->runtimeLog().back();
    EXPECT_GT(styles->size(), largeFile / 1000);
    EXPECT_TRUE(styles->contains("last"));
}

TEST_F(LargeFile, MayEndWithALongValue) {
    writeStyles(11'000'000, "<style name='last' focus='" + std::string(900, 'v') + "'/></s>");
    const auto styles = loader.loadConfig(path(LayoutFile::styles), true);
    ASSERT_NE(styles, nullptr) << host->runtimeLog().back();
    EXPECT_TRUE(styles->contains("last"));
}

TEST_F(LargeFile, MayEndWithBlankLines) {
    writeStyles(11'000'000, "<style name='last'/></s>" + std::string(1000, '\n'));
    const auto styles = loader.loadConfig(path(LayoutFile::styles), true);
    ASSERT_NE(styles, nullptr) << host->runtimeLog().back();
    EXPECT_TRUE(styles->contains("last"));
}

TEST_F(LargeFile, MayHoldAHundredThousandStylesThatAllBecomeTemplates) {
    std::string text = "<s>";
    for (int i = 0; i < 100'000; ++i)
        text += "<style name='" + std::to_string(i) + "'/>";
    write(LayoutFile::styles, text + "</s>");
    write(LayoutFile::softStyles, "<s/>");
    load();
    EXPECT_EQ(loader.styleInfos()->size(), 100'000U);
    EXPECT_TRUE(loader.createXMLElementWithStyleName("99999"));
}

TEST_F(LargeFile, OfOneLineKeepsThePlaceOfEachElement) {
    write(LayoutFile::styles,
          "<s>" + repeated("<style name='a'/>", 50'000) + "<style name='b' odd='1'/></s>");
    RecordingSink sink(root.path());
    YGStyleConfigLoad(&sink).loadConfig(path(LayoutFile::styles), true);
    EXPECT_EQ(sink.found.size(), 50'000U);  // all but one of the same name
    EXPECT_EQ(sink.found.front().at, "config/styles.xml:1:28");
    EXPECT_EQ(sink.found.back(),
              (Reported{"unknown-attribute", "style", "odd", "1", "config/styles.xml:1:850020"}));
}

// ---- Deep files ---------------------------------------------------------------------------------

class DeepFiles : public LayoutTest {
protected:
    static constexpr int depth = 245;

    static std::string nested(const std::string& inner) {
        return repeated("<panel>", depth) + inner + repeated("</panel>", depth);
    }

    /// How many panels stand below one another.
    static int depthOf(std::shared_ptr<yg::PanelConfigInfo> panel) {
        int found = 0;
        for (; panel; ++found)
            panel = panel->panePanes()->empty() ? nullptr : panel->panePanes()->front();
        return found;
    }

    DeepFiles() {
        write(LayoutFile::reusePanels, "<r><reuse_panel name='deep'>" +
                                           nested("<element name='leaf'/>") + "</reuse_panel></r>");
        write(LayoutFile::magicPanels,
              "<m><magic_panels name='deep'><magic_panel name='x'><panel>" +
                  nested("<reuse_panel name='deep'/>") +
                  "</panel></magic_panel></magic_panels></m>");
        write(LayoutFile::softMagicPanels,
              "<m><magic_panels name='deeper'><magic_panel name='x'><panel>" +
                  nested("<magic_panels name='deep'/>") +
                  "</panel></magic_panel></magic_panels></m>");
        const std::string slots =
            "<s><style name='t'>" + nested("<magic_panels name='deep'/>") + "</style></s>";
        write(LayoutFile::styles, slots);
        write(LayoutFile::softStyles, slots);
        write(LayoutFile::tabs,
              "<s><style name='t'>" + nested("<magic_panels name='deeper'/>") + "</style></s>");
        load();
    }
};

TEST_F(DeepFiles, AddUp) {
    EXPECT_THAT(host->runtimeLog(), ElementsAre("initWithStyleConfigPath"));
    EXPECT_EQ(depthOf(style("t")->stylePanes()->front()), 3 * depth + 2);
    EXPECT_EQ(depthOf(tabStyle("t")->stylePanes()->front()), 4 * depth + 3);
}

TEST_F(DeepFiles, AreCopiedDescribedAndSwapped) {
    const auto copy = tabStyle("t")->copyWithZone();
    EXPECT_EQ(depthOf(copy->stylePanes()->front()), 4 * depth + 3);
    bool flag = false;
    YGStyleConfigLoad::replaceMagicPanel(copy->stylePanes(), magicPanel("deep", "x"), flag);
    EXPECT_TRUE(flag);
    EXPECT_EQ(depthOf(copy->stylePanes()->front()), 3 * depth + 2);
}

TEST_F(DeepFiles, GiveCustomPages) {
    const auto page = loader.loadStyleConfigInfoWithName("t-x");
    ASSERT_NE(page, nullptr);
    EXPECT_EQ(depthOf(page->stylePanes()->front()), 3 * depth + 2);
    EXPECT_FALSE(loader.createXMLElementWithStyleName("t-x").serialise().empty());
}

TEST_F(DeepFiles, AreReleasedInAnyOrder) {
    auto page = loader.loadStyleConfigInfoWithName("t-x");
    auto element = loader.createXMLElementWithStyleName("t-x");
    auto kept = style("t");
    const YGStyleConfigLoad* before = &loader;
    EXPECT_EQ(loader.initWithStyleConfigPath(std::nullopt, std::nullopt, std::nullopt), before);
    EXPECT_EQ(depthOf(kept->stylePanes()->front()), 3 * depth + 2);
    kept.reset();
    element = {};
    EXPECT_EQ(depthOf(page->stylePanes()->front()), 3 * depth + 2);
    page.reset();
}

TEST_F(DeepFiles, LeaveASlotWhosePatternIsDeeperThanAFileMayBe) {
    host->mappings["模版通配"] = {{"x", {"SH01"}}};
    ::testing::internal::CaptureStderr();
    const auto page = loader.loadStyleConfigInfoWithName("t-SH01");
    EXPECT_THAT(::testing::internal::GetCapturedStderr(), StartsWith("Line 1: Excessive depth"));
    ASSERT_NE(page, nullptr);
    EXPECT_EQ(depthOf(page->stylePanes()->front()), 3 * depth + 2);
}

// ---- Names and paths ----------------------------------------------------------------------------

class OddNames : public LayoutTest {
protected:
    OddNames() {
        write(LayoutFile::styles,
              "<s><style name='quote'><magic_panels name='g'/></style><style name='a'/></s>");
        write(LayoutFile::softStyles, "<s/>");
        write(LayoutFile::magicPanels,
              "<m><magic_panels name='g'><magic_panel name='x'><panel/></magic_panel>"
              "</magic_panels></m>");
        load();
    }
};

TEST_F(OddNames, OfTenMegabytesFindNothing) {
    const std::string longName(10'000'000, 'x');
    EXPECT_EQ(loader.loadStyleConfigInfoWithName(longName), nullptr);
    EXPECT_EQ(loader.loadStyleConfigInfoWithName(longName + "-x"), nullptr);
    EXPECT_FALSE(loader.createXMLElementWithStyleName(longName));
    EXPECT_EQ(YGStyleConfigLoad::getWildCardKeyWithValue(longName), std::nullopt);
    EXPECT_FALSE(loader.getRootElementForFile(longName));
    EXPECT_THAT(host->runtimeLog().back(), StartsWith("load style config fail:"));
}

TEST_F(OddNames, OfTenMegabytesAsAnArgumentLeaveTheSlot) {
    const std::string longName = "quote-" + std::string(10'000'000, 'x');
    const auto page = loader.loadStyleConfigInfoWithName(longName);
    ASSERT_NE(page, nullptr);
    EXPECT_TRUE(page->styleName() == longName);
    EXPECT_EQ(page->stylePanes()->front(), magicPanel("g", "x"));
}

TEST_F(OddNames, OfAMillionArgumentsFindNothing) {
    EXPECT_EQ(loader.loadStyleConfigInfoWithName("quote" + std::string(1'000'000, '-')), nullptr);
    EXPECT_EQ(loader.loadStyleConfigInfoWithName(std::string(1'000'000, '-')), nullptr);
}

TEST_F(OddNames, WithNulBytesFindNothing) {
    EXPECT_NE(loader.loadStyleConfigInfoWithName("a"), nullptr);
    EXPECT_EQ(loader.loadStyleConfigInfoWithName("a\0"s), nullptr);
    EXPECT_EQ(loader.loadStyleConfigInfoWithName("a\0b"s), nullptr);
    EXPECT_EQ(loader.loadStyleConfigInfoWithName("\0"s), nullptr);
    EXPECT_EQ(loader.loadStyleConfigInfoWithName("quote\0-x"s), nullptr);
    EXPECT_FALSE(loader.createXMLElementWithStyleName("a\0"s));
    EXPECT_EQ(YGStyleConfigLoad::getWildCardKeyWithValue("a\0"s), std::nullopt);
    EXPECT_FALSE(YGStyleConfigLoad::searchNodeWithNodeName(
        "magic_panels\0"s, "g", loader.getRootElementForFile(path(LayoutFile::magicPanels))));
    EXPECT_FALSE(YGStyleConfigLoad::searchNodeWithNodeName(
        "magic_panels", "g\0"s, loader.getRootElementForFile(path(LayoutFile::magicPanels))));
}

TEST_F(OddNames, WithNulBytesAsAnArgumentLeaveTheSlot) {
    const auto page = loader.loadStyleConfigInfoWithName("quote-x\0"s);
    ASSERT_NE(page, nullptr);
    EXPECT_EQ(page->stylePanes()->front(), magicPanel("g", "x"));
}

TEST_F(OddNames, WithNulBytesInAPathNameNoFile) {
    host->clear();
    EXPECT_FALSE(loader.getRootElementForFile(path(LayoutFile::styles) + "\0"s));
    EXPECT_FALSE(loader.getRootElementForFile("\0"s));
    EXPECT_THAT(host->runtimeLog(), ::testing::SizeIs(2));
}

TEST_F(OddNames, ThatAreNoUtf8FindNothing) {
    EXPECT_EQ(loader.loadStyleConfigInfoWithName("\xFF\xFE"), nullptr);
    const auto page = loader.loadStyleConfigInfoWithName("quote-\xD0\xD0");
    ASSERT_NE(page, nullptr);
    EXPECT_EQ(page->stylePanes()->front(), magicPanel("g", "x"));
}

TEST_F(OddNames, NeverReachAnXPathQuery) {
    for (const char* name : {"'", "\"", "a' or '1'='1", "quote']", "*", "//style", "quote-'"})
        EXPECT_EQ(loader.loadStyleConfigInfoWithName(name) != nullptr,
                  std::string_view(name).starts_with("quote-"))
            << name;
}

TEST_F(OddNames, InAPatternMayBeAsLongAsTheyLike) {
    write(LayoutFile::magicPanels,
          "<m><magic_panels name='g'><magic_panel name='K'><panel name='K_view' uuid='K'/>"
          "</magic_panel></magic_panels></m>");
    load();
    const std::string longValue(3'000'000, 'v');
    host->mappings["模版通配"] = {{"K", {longValue}}};
    const auto page = loader.loadStyleConfigInfoWithName("quote-" + longValue);
    ASSERT_NE(page, nullptr);
    EXPECT_TRUE(page->stylePanes()->front()->panelName() == longValue + "_view");
}

}  // namespace
