// SPDX-License-Identifier: MIT
//
// The style loader when memory runs out: nothing of a load counts, a page is there or not.
#include "YGConfigManager/layout/YGStyleConfigLoad.h"

#include "memory/MemoryTest.h"

#if YG_OWN_ALLOCATION

namespace yg {
namespace {

class LayoutMemory : public testing::MemoryTest {
protected:
    LayoutMemory() {
        const std::string& name = testing::longText;
        put("styles.xml",
            "<styles default_style='" + name + "'><style name='page' focus='" + name +
                "'><panel name='" + name + "' foldPosition='left'><element name='e' param='" +
                name +
                "' event_dispatch_dest='a;b'/><panel name='inner'/><reuse_panel name='reused'/>"
                "</panel><magic_panels name='group'/></style>"
                "<style name='template'><panel name='left'><magic_panels name='group'/></panel>"
                "</style></styles>");
        put("tabs.xml", "<tabs><style name='tab'><panel name='" + name + "'/></style></tabs>");
        put("magic.xml",
            "<root><magic_panels name='group'><magic_panel name='member'><panel name='" + name +
                "' is_editable='true'><element name='m'/><reuse_panel name='reused'/></panel>"
                "</magic_panel><magic_panel name='*code'><panel name='p'><element name='e' "
                "param='*code'/></panel></magic_panel></magic_panels></root>");
        put("soft/styles.xml", "<styles><style name='soft'><panel name='" + name +
                                   "'/></style><style name='template'><panel name='soft'>"
                                   "<magic_panels name='group'/></panel></style></styles>");
        put("soft/magic.xml",
            "<root><magic_panels name='other'><magic_panel name='member'><panel "
            "name='other'/></magic_panel></magic_panels></root>");
        put("base/reuse_panels.xml",
            "<root><reuse_panel name='reused'><element name='" + name + "'/></reuse_panel></root>");
        auto mapping = std::make_shared<MappingDic>();
        (*mapping)["*code"] = {"600000"};
        host->mapping = mapping;
    }

    void load(YGStyleConfigLoad& into) const { into.initWithStyleConfigPath(styles, tabs, magic); }

    /// All that a loader answers.
    static std::string textOf(const YGStyleConfigLoad& of) {
        return testing::wholeText(of.defaultStyleName()) + testing::wholeText(of.styleInfos()) +
               testing::wholeText(of.tabStyleInfos()) + testing::wholeText(of.magicPanelInfos()) +
               testing::wholeText(of.loadStyleConfigInfoWithName("template-member")) +
               testing::wholeText(of.loadStyleConfigInfoWithName("template-600000"));
    }

    /// That of a load of which nothing counts.
    static std::string nothing() {
        YGStyleConfigLoad empty;
        empty.initWithStyleConfigPath(std::nullopt, std::nullopt, std::nullopt);
        EXPECT_EQ(testing::wholeText(empty.magicPanelInfos()), "()");
        return textOf(empty);
    }

    const std::string styles = root.at("styles.xml");
    const std::string tabs = root.at("tabs.xml");
    const std::string magic = root.at("magic.xml");
    const std::string reuse = root.at("base/reuse_panels.xml");
    YGStyleConfigLoad loader;
};

TEST_F(LayoutMemory, ALoadCountsAsAWholeOrNotAtAll) {
    for (DiagnosticsSink* const sink : testing::bothSinks) {
        const auto loadNew = [this, sink] {
            auto made = [sink] {
                const testing::PausedFailures paused;
                return std::make_unique<YGStyleConfigLoad>(sink);
            }();
            load(*made);
            return made;
        };
        const auto text = [](const auto& made) { return textOf(*made); };
        everyAllocationFails(Operation{loadNew, text, nothing()});
    }
}

TEST_F(LayoutMemory, AFirstLoadThatFailsLeavesNothingBroken) {
    const Operation operation{[this] { load(loader); }, [this] { return textOf(loader); },
                              nothing()};
    everyAllocationOfTheFirstCallFails(operation);
}

TEST_F(LayoutMemory, ALoaderThatCannotLoadAgainKeepsWhatItHas) {
    load(loader);
    const std::string before = textOf(loader);
    put("styles.xml",
        "<styles><style name='new'><panel name='" + testing::longText + "'/></style></styles>");
    const Operation operation{[this] { load(loader); }, [this] { return textOf(loader); }, before};
    everyAllocationOfTheFirstCallFails(operation);
}

TEST_F(LayoutMemory, APageIsBuiltAsAWholeOrNotAtAll) {
    YGStyleConfigLoad reporting(&testing::silentSink);
    load(reporting);
    for (const std::string_view name : {"template-member", "template-600000"}) {
        const Operation operation{[&] { return reporting.loadStyleConfigInfoWithName(name); },
                                  [](const auto& page) { return testing::wholeText(page); },
                                  "null"};
        everyAllocationFails(operation);
    }
}

TEST_F(LayoutMemory, APageThatWasLoadedTakesNoMemory) {
    load(loader);
    const testing::FailingAllocations failing(1, testing::Failures::allFrom,
                                              testing::Allocators::all);
    loader.loadStyleConfigInfoWithName("page");
    EXPECT_FALSE(failing.hasFailed());
}

TEST_F(LayoutMemory, EachStepAnswersAsForAFileThatCannotBeRead) {
    const auto text = [](const auto& answer) { return testing::wholeText(answer); };
    const auto xmlText = [](const xml::Element& element) { return element.serialise(); };
    load(loader);
    everyAllocationFails(Operation{[&] { return loader.loadConfig(styles, true); }, text, "null"});
    everyAllocationFails(Operation{[&] { return loader.loadReusePanel(reuse); }, text, "null"});
    everyAllocationFails(Operation{[&] { return loader.loadMagicPanel(magic); }, text, "null"});
    everyAllocationFails(
        Operation{[&] { return loader.getRootElementForFile(styles); }, xmlText, ""});
    everyAllocationFails(
        Operation{[&] { return loader.loadStyleConfigWithBasePath(styles, magic); }, xmlText, ""});
    everyAllocationFails(Operation{
        [&] { return loader.loadMagicPanelsConfigWithMagicPath(magic, reuse); }, xmlText, ""});
    everyAllocationFails(Operation{
        [&] { return loader.createXMLElementWithStyleName("template-member"); }, xmlText, ""});
    host->mapping = std::make_shared<MappingDic>(MappingDic{{testing::longText, {"value"}}});
    everyAllocationFails(
        Operation{[&] { return loader.getWildCardKeyWithValue("value"); }, text, "-"});

    const xml::Element style = loader.getRootElementForFile(styles).firstElementChild();
    const xml::Element panel = style.firstElementChild();
    everyAllocationFails(Operation{[&] { return loader.parseStyleConfig(style); }, text, "null"});
    everyAllocationFails(
        Operation{[&] { return loader.parsePaneInfo(panel, "member", "group"); }, text, "null"});
    everyAllocationFails(Operation{
        [&] { return loader.parseElementInfo(panel.firstElementChild()); }, text, "null"});
    everyAllocationFails(Operation{[&] {
                                       std::vector<xml::Element> found;
                                       YGStyleConfigLoad::recursiveSearchNodeWithNodeName(
                                           "panel", style, found);
                                       return found.size();
                                   },
                                   text, "0"});
}

TEST_F(LayoutMemory, APanelIsPlacedAsAWholeOrNotAtAll) {
    load(loader);
    const xml::Element style =
        loader.getRootElementForFile(root.at("styles.xml")).firstElementChild();
    const auto record = std::make_shared<StyleConfigInfo>();
    record->stylePanes()->push_back(std::make_shared<PanelConfigInfo>());
    bool hasMagicPanels = false;
    const auto textOfRecord = [&] {
        return testing::wholeText(record) + (hasMagicPanels ? "!" : "");
    };
    const std::string before = textOfRecord();
    for (const xml::Node& child : style.children()) {
        Operation operation{
            [&] { loader.parsePaneOrElement(child, record, nullptr, &hasMagicPanels, {}, {}); },
            [&] {
                const std::string text = textOfRecord();
                record->stylePanes()->resize(1);
                record->stylePanes()->shrink_to_fit();
                hasMagicPanels = false;
                return text;
            },
            before};
        everyAllocationFails(operation);
    }
}

TEST_F(LayoutMemory, AMagicPanelReplacesAllSlotsOrNone) {
    const auto slots = std::make_shared<PanelList>();
    const auto panel = std::make_shared<PanelConfigInfo>();
    panel->setPanelName("new");
    bool isFind = false;
    const auto build = [&] {
        slots->clear();
        slots->shrink_to_fit();
        isFind = false;
        for (int i = 0; i < 3; ++i) {
            const auto holder = std::make_shared<PanelConfigInfo>();
            const auto slot = std::make_shared<PanelConfigInfo>();
            slot->setIsMagicPanels(true);
            holder->panePanes()->push_back(slot);
            slots->push_back(holder);
        }
    };
    const auto text = [&] { return testing::wholeText(slots) + (isFind ? "!" : ""); };
    build();
    const Operation operation{[&] { YGStyleConfigLoad::replaceMagicPanel(slots, panel, isFind); },
                              text, text(), build};
    everyAllocationFails(operation);
}

TEST_F(LayoutMemory, RecordsAreCopiedAndDescribedAsAWholeOrNotAtAll) {
    load(loader);
    const auto text = [](const auto& answer) { return testing::wholeText(answer); };
    const auto style = loader.loadStyleConfigInfoWithName("page");
    const auto panel = style->stylePanes()->front();
    const auto element = panel->paneElements()->front();
    everyAllocationFails(Operation{[&] { return style->copyWithZone(); }, text, "null"});
    everyAllocationFails(Operation{[&] { return panel->copyWithZone(); }, text, "null"});
    everyAllocationFails(Operation{[&] { return panel->description(); }, text, ""});
    everyAllocationFails(Operation{[&] { return element->description(); }, text, ""});
}

TEST_F(LayoutMemory, ASetterSaysWhetherItHadTheMemory) {
    PanelConfigInfo panel;
    const testing::FailingAllocations failing(1, testing::Failures::allFrom,
                                              testing::Allocators::all);
    EXPECT_FALSE(panel.setFoldPosition("left"));
    EXPECT_EQ(panel.foldPosition(), std::nullopt);
    EXPECT_TRUE(panel.setFoldPosition(std::nullopt));
}

}  // namespace
}  // namespace yg

#endif
