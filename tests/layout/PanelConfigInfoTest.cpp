// SPDX-License-Identifier: MIT
#include <cstdint>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/layout/PanelConfigInfo.h"

#include "layout/LayoutTest.h"
#include "layout/RecordText.h"

namespace {

using ::testing::ElementsAre;
using ::testing::Pair;
using ::testing::SizeIs;
using yg::ElementConfigInfo;
using yg::ElementList;
using yg::PanelConfigInfo;
using yg::PanelList;
using yg::testing::fieldsOf;
using yg::testing::names;
using yg::testing::parsed;

std::shared_ptr<PanelConfigInfo> panelNamed(const std::string& name) {
    auto panel = std::make_shared<PanelConfigInfo>();
    panel->setPanelName(name);
    return panel;
}

std::shared_ptr<ElementConfigInfo> elementNamed(const std::string& name) {
    auto element = std::make_shared<ElementConfigInfo>();
    element->setElementName(name);
    return element;
}

/// A panel whose every field differs from that of a new one.
std::shared_ptr<PanelConfigInfo> fullPanel() {
    auto panel = panelNamed("p");
    panel->setPaneVertical(true);
    panel->setIsScrollView(true);
    panel->setScrollSize(40);
    panel->setIsDisSplitSpace(false);
    panel->setIsDispWideBound(true);
    panel->setIsBorderRaduis(true);
    panel->setIsBorderRightAngle(true);
    panel->panePanes()->push_back(panelNamed("child"));
    panel->paneElements()->push_back(elementNamed("leaf"));
    panel->setIsMagicPanels(true);
    panel->setSwitchExpandPanelName("wide");
    panel->setFoldPosition("left");
    panel->setMagicPanelsName("chart");
    panel->setDisplayBorders("top");
    panel->setIsEditable(true);
    panel->setExcuteCommandInfo("command");
    panel->setSplitScale(0.25F);
    panel->setFixSize(28.5F);
    panel->setMinSize(10);
    panel->setMaxSize(20);
    return panel;
}

std::string addressOf(const PanelConfigInfo& panel) {
    std::ostringstream text;
    text << "0x" << std::hex << reinterpret_cast<std::uintptr_t>(&panel);
    return text.str();
}

TEST(PanelConfigInfo, BeginsWithASplitBarAWholeShareNoFixedSizeAndEmptyLists) {
    EXPECT_THAT(
        fieldsOf(PanelConfigInfo()),
        ElementsAre(Pair("panelName", "absent"), Pair("paneVertical", "false"),
                    Pair("isScrollView", "false"), Pair("scrollSize", "0"),
                    Pair("isDisSplitSpace", "true"), Pair("isDispWideBound", "false"),
                    Pair("isBorderRaduis", "false"), Pair("isBorderRightAngle", "false"),
                    Pair("panePanes", "0 panels"), Pair("paneElements", "0 elements"),
                    Pair("isMagicPanels", "false"), Pair("switchExpandPanelName", "absent"),
                    Pair("foldPosition", "absent"), Pair("magicPanelsName", "absent"),
                    Pair("displayBorders", "absent"), Pair("isEditable", "false"),
                    Pair("excuteCommandInfo", "absent"), Pair("splitScale", "1.0"),
                    Pair("fixSize", "-1.0"), Pair("minSize", "0.0"), Pair("maxSize", "0.0")));
}

TEST(PanelConfigInfo, KeepsWhatItIsGiven) {
    EXPECT_THAT(
        fieldsOf(*fullPanel()),
        ElementsAre(Pair("panelName", "\"p\""), Pair("paneVertical", "true"),
                    Pair("isScrollView", "true"), Pair("scrollSize", "40"),
                    Pair("isDisSplitSpace", "false"), Pair("isDispWideBound", "true"),
                    Pair("isBorderRaduis", "true"), Pair("isBorderRightAngle", "true"),
                    Pair("panePanes", "1 panels"), Pair("paneElements", "1 elements"),
                    Pair("isMagicPanels", "true"), Pair("switchExpandPanelName", "\"wide\""),
                    Pair("foldPosition", "\"left\""), Pair("magicPanelsName", "\"chart\""),
                    Pair("displayBorders", "\"top\""), Pair("isEditable", "true"),
                    Pair("excuteCommandInfo", "\"command\""), Pair("splitScale", "0.25"),
                    Pair("fixSize", "28.5"), Pair("minSize", "10.0"), Pair("maxSize", "20.0")));
}

TEST(PanelConfigInfo, CanLoseEachTextThatItWasGiven) {
    const auto panel = fullPanel();
    panel->setPanelName(std::nullopt);
    panel->setSwitchExpandPanelName(std::nullopt);
    panel->setFoldPosition(std::nullopt);
    panel->setMagicPanelsName(std::nullopt);
    panel->setDisplayBorders(std::nullopt);
    panel->setExcuteCommandInfo(std::nullopt);
    EXPECT_EQ(panel->panelName(), std::nullopt);
    EXPECT_EQ(panel->switchExpandPanelName(), std::nullopt);
    EXPECT_EQ(panel->foldPosition(), std::nullopt);
    EXPECT_EQ(panel->magicPanelsName(), std::nullopt);
    EXPECT_EQ(panel->displayBorders(), std::nullopt);
    EXPECT_EQ(panel->excuteCommandInfo(), std::nullopt);
}

TEST(PanelConfigInfo, KeepsTheListsThemselves) {
    const auto panes = std::make_shared<PanelList>();
    const auto elements = std::make_shared<ElementList>();
    PanelConfigInfo panel;
    panel.setPanePanes(panes);
    panel.setPaneElements(elements);
    panes->push_back(panelNamed("later"));
    elements->push_back(elementNamed("later"));
    EXPECT_THAT(names(panel.panePanes()), ElementsAre("later"));
    EXPECT_THAT(names(panel.paneElements()), ElementsAre("later"));
}

TEST(PanelConfigInfo, CopySharesItsElementListWithTheSource) {
    const auto panel = fullPanel();
    const auto copy = panel->copyWithZone();
    EXPECT_EQ(copy->paneElements(), panel->paneElements());

    panel->paneElements()->push_back(elementNamed("of the source"));
    copy->paneElements()->push_back(elementNamed("of the copy"));
    EXPECT_THAT(names(copy->paneElements()), ElementsAre("leaf", "of the source", "of the copy"));
    EXPECT_THAT(names(panel->paneElements()), ElementsAre("leaf", "of the source", "of the copy"));
}

TEST(PanelConfigInfo, CopyOfAPanelWithoutAnElementListHasNoneEither) {
    PanelConfigInfo panel;
    panel.setPaneElements(nullptr);
    EXPECT_EQ(panel.copyWithZone()->paneElements(), nullptr);
}

TEST(PanelConfigInfo, CopyHasEveryFieldButRightAngleFoldPositionAndBorders) {
    EXPECT_THAT(
        fieldsOf(*fullPanel()->copyWithZone()),
        ElementsAre(Pair("panelName", "\"p\""), Pair("paneVertical", "true"),
                    Pair("isScrollView", "true"), Pair("scrollSize", "40"),
                    Pair("isDisSplitSpace", "false"), Pair("isDispWideBound", "true"),
                    Pair("isBorderRaduis", "true"), Pair("isBorderRightAngle", "false"),
                    Pair("panePanes", "1 panels"), Pair("paneElements", "1 elements"),
                    Pair("isMagicPanels", "true"), Pair("switchExpandPanelName", "\"wide\""),
                    Pair("foldPosition", "absent"), Pair("magicPanelsName", "\"chart\""),
                    Pair("displayBorders", "absent"), Pair("isEditable", "true"),
                    Pair("excuteCommandInfo", "\"command\""), Pair("splitScale", "0.25"),
                    Pair("fixSize", "28.5"), Pair("minSize", "10.0"), Pair("maxSize", "20.0")));
}

TEST(PanelConfigInfo, CopyHasDistinctChildPanelsWithEqualFieldsAtEveryDepth) {
    const auto panel = panelNamed("top");
    for (const char* name : {"first", "second"}) {
        const auto child = fullPanel();
        child->setPanelName(name);
        child->setIsBorderRightAngle(false);
        child->setFoldPosition(std::nullopt);
        child->setDisplayBorders(std::nullopt);
        panel->panePanes()->push_back(child);
    }

    const auto copy = panel->copyWithZone();
    ASSERT_THAT(names(copy->panePanes()), ElementsAre("first", "second"));
    for (std::size_t i = 0; i < 2; ++i) {
        const auto& child = (*panel->panePanes())[i];
        const auto& copied = (*copy->panePanes())[i];
        EXPECT_NE(copied, child);
        EXPECT_EQ(fieldsOf(*copied), fieldsOf(*child));
        EXPECT_NE(copied->panePanes(), child->panePanes());
        EXPECT_NE(copied->panePanes()->front(), child->panePanes()->front());
        EXPECT_EQ(copied->paneElements(), child->paneElements());
    }
}

TEST(PanelConfigInfo, CopyWithoutChildPanelsHasAFreshEmptyList) {
    PanelConfigInfo empty;
    const auto copy = empty.copyWithZone();
    ASSERT_NE(copy->panePanes(), nullptr);
    EXPECT_THAT(*copy->panePanes(), SizeIs(0));
    EXPECT_NE(copy->panePanes(), empty.panePanes());

    PanelConfigInfo absent;
    absent.setPanePanes(nullptr);
    ASSERT_NE(absent.copyWithZone()->panePanes(), nullptr);
    EXPECT_THAT(*absent.copyWithZone()->panePanes(), SizeIs(0));
}

TEST(PanelConfigInfo, DescriptionOfANewPanelNegatesAllButTheSplitBar) {
    const PanelConfigInfo panel;
    EXPECT_EQ(panel.description(), "[(null)] H " + addressOf(panel) +
                                       "\n显示分割条, 不显示宽边界, 不是圆角边界,不是直角边界, "
                                       "\n折叠名字[(null)],折叠位置[(null)]");
}

TEST(PanelConfigInfo, DescriptionOfAParsedPanelWithoutFlagsNegatesAllFour) {
    const auto panel =
        yg::YGStyleConfigLoad().parsePaneInfo(parsed("<panel name='p'/>"), "", std::nullopt);
    EXPECT_EQ(panel->description(), "[p] H " + addressOf(*panel) +
                                        "\n不显示分割条, 不显示宽边界, 不是圆角边界,不是直角边界, "
                                        "\n折叠名字[(null)],折叠位置[(null)]");
}

TEST(PanelConfigInfo, DescriptionTellsEachFlagAndEachText) {
    const auto panel = fullPanel();
    panel->setPanelName("行情%@");
    EXPECT_EQ(panel->description(), "[行情%@] V " + addressOf(*panel) +
                                        "\n不显示分割条, 显示宽边界, 是圆角边界,是直角边界, "
                                        "\n折叠名字[wide],折叠位置[left]");

    panel->setIsDisSplitSpace(true);
    panel->setIsDispWideBound(false);
    panel->setIsBorderRaduis(true);
    panel->setIsBorderRightAngle(false);
    panel->setSwitchExpandPanelName("");
    EXPECT_EQ(panel->description(), "[行情%@] V " + addressOf(*panel) +
                                        "\n显示分割条, 不显示宽边界, 是圆角边界,不是直角边界, "
                                        "\n折叠名字[],折叠位置[left]");
}

}  // namespace
