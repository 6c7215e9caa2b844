// SPDX-License-Identifier: MIT
//
// The walk through the content of a style: what each node becomes, where it is attached, and what
// is dropped.
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/layout/YGStyleConfigLoad.h"
#include "YGConfigManager/xml/Element.h"

#include "layout/LayoutTest.h"
#include "layout/RecordText.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using yg::PanelConfigInfo;
using yg::StyleConfigInfo;
using yg::testing::LayoutFile;
using yg::testing::LayoutTest;
using yg::testing::names;
using yg::testing::parsed;

/// The group "chart" with the members "kline" and "trend", and the reuse panel "bar".
class PaneParsing : public LayoutTest {
protected:
    PaneParsing() {
        write(LayoutFile::magicPanels, R"(<m><magic_panels name="chart">
            <magic_panel name="kline"><panel name="kline_view"/></magic_panel>
            <magic_panel name="trend"><panel name="trend_view"/></magic_panel></magic_panels>
            <magic_panels name="empty"/></m>)");
        write(LayoutFile::reusePanels,
              R"(<r><reuse_panel name="bar"><element name="Bar"/></reuse_panel></r>)");
    }

    /// The style of a style file that holds one.
    std::shared_ptr<StyleConfigInfo> loadStyle(const std::string& text) {
        write(LayoutFile::styles, "<styles>" + text + "</styles>");
        load();
        return loader.styleInfos()->begin()->value;
    }

    /// The one panel of a style that holds this content.
    std::shared_ptr<PanelConfigInfo> loadPanel(const std::string& content) {
        const auto style = loadStyle("<style name='s'><panel>" + content + "</panel></style>");
        EXPECT_THAT(*style->stylePanes(), SizeIs(1));
        return style->stylePanes()->front();
    }
};

TEST_F(PaneParsing, AttachesAPanelRightBelowAStyleToTheStyle) {
    const auto style = loadStyle("<style name='s'><panel name='a'/><panel name='b'/></style>");
    EXPECT_THAT(names(style->stylePanes()), ElementsAre("a", "b"));
}

TEST_F(PaneParsing, DropsAnElementAndAReusePanelRightBelowAStyle) {
    const auto style =
        loadStyle("<style name='s'><element name='e'/><reuse_panel name='bar'/></style>");
    EXPECT_THAT(*style->stylePanes(), IsEmpty());
}

TEST_F(PaneParsing, DropsAPanelBelowAnElementOfAnotherNameWithAllInIt) {
    const auto panel =
        loadPanel("<group><panel name='p'><element name='e'/></panel><element name='e'/></group>");
    EXPECT_THAT(*panel->panePanes(), IsEmpty());
    EXPECT_THAT(*panel->paneElements(), IsEmpty());
    const auto style = loadStyle("<style name='s'><group><panel name='p'/></group></style>");
    EXPECT_THAT(*style->stylePanes(), IsEmpty());
}

TEST_F(PaneParsing, AttachesPanelsBelowPanelsAtEveryDepth) {
    const auto panel = loadPanel(R"(<panel name="a"><panel name="b"><panel name="c">
        <element name="leaf"/></panel></panel><element name="e"/></panel>)");
    const auto a = panel->panePanes()->front();
    const auto c = a->panePanes()->front()->panePanes()->front();
    EXPECT_EQ(c->panelName(), "c");
    EXPECT_THAT(names(c->paneElements()), ElementsAre("leaf"));
    EXPECT_THAT(names(a->paneElements()), ElementsAre("e"));
}

TEST_F(PaneParsing, KeepsPanelsAndElementsInDocumentOrderInTwoLists) {
    const auto panel = loadPanel(R"(<element name="1"/><panel name="first"/>
        <magic_panels name="chart"/><element name="2"/><reuse_panel name="bar"/>
        <panel name="last"/><element name="1"/>)");
    EXPECT_THAT(names(panel->panePanes()), ElementsAre("first", "kline_view", "bar", "last"));
    EXPECT_THAT(names(panel->paneElements()), ElementsAre("1", "2", "1"));
}

TEST_F(PaneParsing, PassesOverTextCommentsInstructionsAndOtherElements) {
    const auto panel = loadPanel(R"(text<!-- <panel/> --><?panel name="p"?><![CDATA[<panel/>]]>
        <Panel name="p"/><panels name="p"/><p:panel name="p"/><style name="p"/>)");
    EXPECT_THAT(*panel->panePanes(), IsEmpty());
    EXPECT_THAT(*panel->paneElements(), IsEmpty());
}

TEST_F(PaneParsing, ReadsNothingInsideASlotAReferenceOrAnElement) {
    const auto panel = loadPanel(R"(
        <magic_panels name="chart"><panel name="in"/><element name="in"/></magic_panels>
        <reuse_panel name="bar"><panel name="in"/><element name="in"/></reuse_panel>
        <element name="e"><panel name="in"/><element name="in"/></element>)");
    EXPECT_THAT(names(panel->panePanes()), ElementsAre("kline_view", "bar"));
    EXPECT_THAT(*panel->panePanes()->front()->panePanes(), IsEmpty());
    EXPECT_THAT(names(panel->panePanes()->back()->paneElements()), ElementsAre("Bar"));
    EXPECT_THAT(names(panel->paneElements()), ElementsAre("e"));
}

TEST_F(PaneParsing, LeavesTheRealTimeLineViewOutOfAnotherPanelOfAStockDetailPage) {
    const auto style = loadStyle(R"(<style name="个股详细视图-1"><panel name="outer">
        <panel name="before"/><panel name="rtline_view"><panel name="in"/></panel>
        <panel name="rtline_view2"/></panel></style>)");
    EXPECT_THAT(names(style->stylePanes()->front()->panePanes()),
                ElementsAre("before", "rtline_view2"));
}

TEST_F(PaneParsing, KeepsTheRealTimeLineViewAtTheTopOfAStockDetailPage) {
    const auto style =
        loadStyle("<style name='个股详细视图-1'><panel name='rtline_view'/></style>");
    EXPECT_THAT(names(style->stylePanes()), ElementsAre("rtline_view"));
}

TEST_F(PaneParsing, KeepsTheRealTimeLineViewInAStyleWhoseNameLacksTheFinalDash) {
    for (const std::string name : {"个股详细视图", "个股详细视图1", "x个股详细视图-1", "其他"}) {
        const auto style = loadStyle("<style name='" + name +
                                     "'><panel><panel name='rtline_view'/></panel></style>");
        EXPECT_THAT(names(style->stylePanes()->front()->panePanes()), ElementsAre("rtline_view"))
            << name;
    }
}

TEST_F(PaneParsing, LeavesTheRealTimeLineViewOutWhenTheNameIsThePrefixAlone) {
    const auto style =
        loadStyle("<style name='个股详细视图-'><panel><panel name='rtline_view'/></panel></style>");
    EXPECT_THAT(*style->stylePanes()->front()->panePanes(), IsEmpty());
}

TEST_F(PaneParsing, KeepsTheRealTimeLineViewOfAStyleWithoutAName) {
    const auto style = loader.parseStyleConfig(
        parsed("<style><panel><panel name='rtline_view'/></panel></style>"));
    EXPECT_THAT(names(style->stylePanes()->front()->panePanes()), ElementsAre("rtline_view"));
}

TEST_F(PaneParsing, MarksTheMagicPanelThatItMeetsInALeftOutPanel) {
    loadStyle(R"(<style name="个股详细视图-1"><panel><panel name="rtline_view">
        <magic_panels name="chart"/></panel></panel></style>)");
    EXPECT_EQ(magicPanel("chart", "kline")->magicPanelsName(), "chart");
}

TEST_F(PaneParsing, NamesAnEditablePanelInAMagicPanelAfterGroupMemberAndItself) {
    write(LayoutFile::magicPanels, R"(<m><magic_panels name="g"><magic_panel name="m">
        <panel name="top"><panel name="p" is_editable="true"/><panel name="q"/>
        <panel><panel is_editable="true"/></panel></panel></magic_panel></magic_panels></m>)");
    load();
    const auto& panes = magicPanel("g", "m")->panePanes();
    EXPECT_THAT(names(panes), ElementsAre("g-m-p", "q", "(absent)"));
    EXPECT_THAT(names(panes->back()->panePanes()), ElementsAre("g-m-(null)"));
}

TEST_F(PaneParsing, KeepsTheNameOfAMagicPanelsOwnPanelThoughItIsEditable) {
    write(LayoutFile::magicPanels, R"(<m><magic_panels name="g"><magic_panel name="m">
        <panel name="p" is_editable="true"/></magic_panel></magic_panels></m>)");
    load();
    EXPECT_EQ(magicPanel("g", "m")->panelName(), "p");
    EXPECT_TRUE(magicPanel("g", "m")->isEditable());
}

TEST_F(PaneParsing, KeepsTheNameOfAnEditablePanelOfAnOrdinaryStyleAndOfAReusePanel) {
    write(LayoutFile::reusePanels, R"(<r><reuse_panel name="bar" is_editable="true">
        <panel name="p" is_editable="true"/></reuse_panel></r>)");
    const auto panel = loadPanel("<panel name='p' is_editable='true'/><reuse_panel name='bar'/>");
    EXPECT_THAT(names(panel->panePanes()), ElementsAre("p", "bar"));
    EXPECT_THAT(names(panel->panePanes()->back()->panePanes()), ElementsAre("p"));
}

TEST_F(PaneParsing, NamesAnEditablePanelOnlyWithBothNamesPresentAndNotEmpty) {
    const auto panel = parsed("<panel name='p' is_editable='true'/>");
    EXPECT_EQ(loader.parsePaneInfo(panel, "m", "g")->panelName(), "g-m-p");
    EXPECT_EQ(loader.parsePaneInfo(panel, "", "g")->panelName(), "p");
    EXPECT_EQ(loader.parsePaneInfo(panel, "m", "")->panelName(), "p");
    EXPECT_EQ(loader.parsePaneInfo(panel, std::nullopt, "g")->panelName(), "p");
    EXPECT_EQ(loader.parsePaneInfo(panel, "m", std::nullopt)->panelName(), "p");
    EXPECT_EQ(
        loader.parsePaneInfo(parsed("<panel name='p' is_editable='True'/>"), "m", "g")->panelName(),
        "p");
}

TEST_F(PaneParsing, ReadsSizesByTheirOwnRules) {
    const auto missing = loadPanel("<panel/>")->panePanes()->front();
    EXPECT_EQ(missing->splitScale(), 1.0F);
    EXPECT_EQ(missing->fixSize(), -1.0F);
    const auto given =
        loadPanel("<panel split_scale='' min_size='7.9' fix_size=''/>")->panePanes()->front();
    EXPECT_EQ(given->splitScale(), 0.0F);
    EXPECT_EQ(given->fixSize(), 0.0F);
    EXPECT_EQ(given->minSize(), 7.0F);
}

TEST_F(PaneParsing, ReadsACapitalTrueAsFalse) {
    EXPECT_FALSE(loadPanel("<panel is_scroll_view='True'/>")->panePanes()->front()->isScrollView());
    EXPECT_TRUE(loadPanel("<panel is_scroll_view='true'/>")->panePanes()->front()->isScrollView());
}

TEST_F(PaneParsing, MakesNothingOfAnElementWithoutAName) {
    EXPECT_THAT(*loadPanel("<element/><element name=''/><element uuid='u'/>")->paneElements(),
                IsEmpty());
    EXPECT_EQ(loader.parseElementInfo(parsed("<element param='p'/>")), nullptr);
    EXPECT_EQ(loader.parseElementInfo(parsed("<element name=''/>")), nullptr);
    EXPECT_EQ(loader.parseElementInfo({}), nullptr);
}

TEST_F(PaneParsing, SplitsTheDestinationsOfAnElement) {
    const auto panel = loadPanel(
        "<element name='e' event_dispatch_dest='a;b'/>"
        "<element name='f' event_dispatch_dest='a'/>");
    EXPECT_THAT(*panel->paneElements()->front()->eventDispathDestArray(), ElementsAre("a", "b"));
    EXPECT_THAT(*panel->paneElements()->back()->eventDispathDestArray(), ElementsAre("a"));
    EXPECT_EQ(panel->paneElements()->front()->eventDispathSrcArray(), nullptr);
}

TEST_F(PaneParsing, PutsOneAndTheSameMagicPanelIntoEachStyleThatNamesItsGroup) {
    write(LayoutFile::styles, R"(<s><style name="a"><magic_panels name="chart"/></style>
        <style name="b"><panel><magic_panels name="chart"/></panel></style></s>)");
    load();
    const auto shared = magicPanel("chart", "kline");
    EXPECT_EQ(style("a")->stylePanes()->front(), shared);
    EXPECT_EQ(style("b")->stylePanes()->front()->panePanes()->front(), shared);
    EXPECT_TRUE(shared->isMagicPanels());
    EXPECT_EQ(shared->magicPanelsName(), "chart");
    // Nothing shows the other member, so it has no group's name yet.
    EXPECT_TRUE(magicPanel("chart", "trend")->isMagicPanels());
    EXPECT_EQ(magicPanel("chart", "trend")->magicPanelsName(), std::nullopt);
}

TEST_F(PaneParsing, PutsOneAndTheSameReusePanelIntoEachStyleThatNamesIt) {
    write(LayoutFile::styles, R"(<s><style name="a"><panel><reuse_panel name="bar"/></panel></style>
        <style name="b"><panel><reuse_panel name="bar"/></panel></style></s>)");
    load();
    const auto shared = style("a")->stylePanes()->front()->panePanes()->front();
    EXPECT_EQ(style("b")->stylePanes()->front()->panePanes()->front(), shared);
    shared->setPanelName("changed");
    EXPECT_THAT(names(style("b")->stylePanes()->front()->panePanes()), ElementsAre("changed"));
    EXPECT_FALSE(shared->isMagicPanels());
}

TEST_F(PaneParsing, AddsNothingForAnUnknownGroupOrReusePanel) {
    EXPECT_THAT(*loadPanel("<magic_panels name='none'/><magic_panels/><magic_panels name=''/>"
                           "<magic_panels name='empty'/><reuse_panel name='none'/><reuse_panel/>")
                     ->panePanes(),
                IsEmpty());
}

TEST_F(PaneParsing, FindsGroupsAndReusePanelsWithAnEmptyName) {
    write(LayoutFile::magicPanels,
          "<m><magic_panels name=''><magic_panel name=''><panel name='m'/></magic_panel>"
          "</magic_panels></m>");
    write(LayoutFile::reusePanels, "<r><reuse_panel name='' min_size='3'/></r>");
    const auto panel = loadPanel("<magic_panels name=''/><reuse_panel name=''/>");
    EXPECT_THAT(names(panel->panePanes()), ElementsAre("m", ""));
}

// ---- The operation itself -----------------------------------------------------------------------

class WalkOfOneNode : public PaneParsing {
protected:
    WalkOfOneNode() {
        load();
        style->setStyleName("s");
    }

    /// Walks the first child of a text's root.
    void walk(std::string_view text, bool withStyle, bool withPanel, bool* flag = nullptr) {
        loader.parsePaneOrElement(parsed(text).firstChild(), withStyle ? style : nullptr,
                                  withPanel ? panel : nullptr, flag, std::nullopt, std::nullopt);
    }

    std::shared_ptr<StyleConfigInfo> style = std::make_shared<StyleConfigInfo>();
    std::shared_ptr<PanelConfigInfo> panel = std::make_shared<PanelConfigInfo>();
};

TEST_F(WalkOfOneNode, SetsTheFlagAtASlotEvenWhenItsGroupIsUnknownOrUnnamed) {
    for (const char* text :
         {"<panel><magic_panels name='none'/></panel>", "<panel><magic_panels/></panel>",
          "<panel><magic_panels name='empty'/></panel>",
          "<style><magic_panels name='chart'/></style>",
          "<other><magic_panels name='chart'/></other>",
          "<style><panel><panel><magic_panels name='none'/></panel></panel></style>"}) {
        bool flag = false;
        walk(text, true, true, &flag);
        EXPECT_TRUE(flag) << text;
    }
}

TEST_F(WalkOfOneNode, LeavesTheFlagAloneElsewhere) {
    for (const char* text :
         {"<panel><panel name='p'/></panel>", "<panel><element name='e'/></panel>",
          "<panel><reuse_panel name='bar'/></panel>", "<panel>magic_panels</panel>",
          "<group><panel><magic_panels name='chart'/></panel></group>"}) {
        bool flag = false;
        walk(text, true, true, &flag);
        EXPECT_FALSE(flag) << text;
        flag = true;
        walk(text, true, true, &flag);
        EXPECT_TRUE(flag) << text;
    }
}

TEST_F(WalkOfOneNode, SkipsAnAbsentFlag) {
    walk("<panel><magic_panels name='chart'/></panel>", false, true, nullptr);
    EXPECT_THAT(names(panel->panePanes()), ElementsAre("kline_view"));
}

TEST_F(WalkOfOneNode, AttachesAPanelBelowAStyleElementToTheStyleRatherThanToThePanel) {
    walk("<style><panel name='p'/></style>", true, true);
    EXPECT_THAT(names(style->stylePanes()), ElementsAre("p"));
    EXPECT_THAT(*panel->panePanes(), IsEmpty());
}

TEST_F(WalkOfOneNode, DropsAPanelBelowAStyleElementWithoutAStyle) {
    walk("<style><panel name='p'/></style>", false, true);
    EXPECT_THAT(*panel->panePanes(), IsEmpty());
}

TEST_F(WalkOfOneNode, AttachesAPanelBelowAPanelOrReusePanelElement) {
    walk("<panel><panel name='a'/></panel>", true, true);
    walk("<reuse_panel><panel name='b'/></reuse_panel>", false, true);
    EXPECT_THAT(names(panel->panePanes()), ElementsAre("a", "b"));
    EXPECT_THAT(*style->stylePanes(), IsEmpty());
}

TEST_F(WalkOfOneNode, DropsAPanelBelowAPanelElementWithoutAParentPanel) {
    walk("<panel><panel name='a'><magic_panels name='chart'/></panel></panel>", true, false);
    EXPECT_THAT(*style->stylePanes(), IsEmpty());
    EXPECT_EQ(magicPanel("chart", "kline")->magicPanelsName(), std::nullopt);
}

TEST_F(WalkOfOneNode, DropsAPanelAtTheTopOfItsTree) {
    loader.parsePaneOrElement(parsed("<panel/>"), style, panel, nullptr, std::nullopt,
                              std::nullopt);
    EXPECT_THAT(*style->stylePanes(), IsEmpty());
    EXPECT_THAT(*panel->panePanes(), IsEmpty());
}

TEST_F(WalkOfOneNode, ComparesTheNameThatAnEditablePanelOfAMagicPanelIsGiven) {
    style->setStyleName("个股详细视图-1");
    loader.parsePaneOrElement(
        parsed("<panel><panel name='rtline_view' is_editable='true'/></panel>").firstChild(), style,
        panel, nullptr, "m", "g");
    loader.parsePaneOrElement(parsed("<panel><panel name='rtline_view'/></panel>").firstChild(),
                              style, panel, nullptr, "m", "g");
    EXPECT_THAT(names(panel->panePanes()), ElementsAre("g-m-rtline_view"));
}

TEST_F(WalkOfOneNode, AttachesAnElementToThePanelWhateverStandsAboveIt) {
    walk("<style><element name='a'/></style>", true, true);
    walk("<group><element name='b'/></group>", false, true);
    EXPECT_THAT(names(panel->paneElements()), ElementsAre("a", "b"));
    walk("<panel><element name='c'/></panel>", true, false);
    EXPECT_THAT(names(panel->paneElements()), ElementsAre("a", "b"));
}

TEST_F(WalkOfOneNode, AttachesAReusePanelToThePanelWhateverStandsAboveIt) {
    walk("<style><reuse_panel name='bar'/></style>", true, true);
    walk("<group><reuse_panel name='bar'/></group>", false, true);
    EXPECT_THAT(names(panel->panePanes()), ElementsAre("bar", "bar"));
    walk("<panel><reuse_panel name='bar'/></panel>", true, false);
    EXPECT_THAT(*style->stylePanes(), IsEmpty());
}

TEST_F(WalkOfOneNode, AttachesAMagicPanelWhereItsSlotStands) {
    walk("<style><magic_panels name='chart'/></style>", true, true);
    EXPECT_THAT(names(style->stylePanes()), ElementsAre("kline_view"));
    EXPECT_THAT(*panel->panePanes(), IsEmpty());
    walk("<panel><magic_panels name='chart'/></panel>", true, true);
    EXPECT_THAT(names(style->stylePanes()), ElementsAre("kline_view"));
    EXPECT_THAT(names(panel->panePanes()), ElementsAre("kline_view"));
}

TEST_F(WalkOfOneNode, MarksAMagicPanelThatItCannotPlace) {
    walk("<reuse_panel><magic_panels name='chart'/></reuse_panel>", true, true);
    EXPECT_THAT(*panel->panePanes(), IsEmpty());
    EXPECT_EQ(magicPanel("chart", "kline")->magicPanelsName(), "chart");
}

TEST_F(WalkOfOneNode, MarksTheRecordAnewWhenTheHostHasChangedIt) {
    const auto shared = magicPanel("chart", "kline");
    shared->setIsMagicPanels(false);
    shared->setMagicPanelsName("other");
    walk("<panel><magic_panels name='chart'/></panel>", true, true);
    EXPECT_TRUE(shared->isMagicPanels());
    EXPECT_EQ(shared->magicPanelsName(), "chart");
}

TEST_F(WalkOfOneNode, LosesWhatHasNoListToGoTo) {
    style->setStylePanes(nullptr);
    panel->setPanePanes(nullptr);
    panel->setPaneElements(nullptr);
    walk("<style><panel name='p'><panel/></panel></style>", true, true);
    walk("<style><magic_panels name='chart'/></style>", true, true);
    walk("<panel><panel/></panel>", true, true);
    walk("<panel><element name='e'/></panel>", true, true);
    walk("<panel><reuse_panel name='bar'/></panel>", true, true);
    walk("<panel><magic_panels name='chart'/></panel>", true, true);
    EXPECT_EQ(style->stylePanes(), nullptr);
    EXPECT_EQ(panel->panePanes(), nullptr);
    EXPECT_EQ(panel->paneElements(), nullptr);
}

TEST_F(WalkOfOneNode, IgnoresTextCommentsAndAnEmptyHandle) {
    walk("<panel>text</panel>", true, true);
    walk("<panel><!--panel--></panel>", true, true);
    walk("<panel/>", true, true);
    EXPECT_THAT(*panel->panePanes(), IsEmpty());
    EXPECT_THAT(*panel->paneElements(), IsEmpty());
}

TEST_F(WalkOfOneNode, ResolvesNothingBeforeALoad) {
    const yg::YGStyleConfigLoad empty;
    bool flag = false;
    const auto slot =
        parsed("<panel><magic_panels name='chart'/><reuse_panel name='bar'/></panel>");
    for (const auto& child : slot.children())
        empty.parsePaneOrElement(child, style, panel, &flag, std::nullopt, std::nullopt);
    EXPECT_TRUE(flag);
    EXPECT_THAT(*panel->panePanes(), IsEmpty());
}

}  // namespace
