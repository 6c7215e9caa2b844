// SPDX-License-Identifier: MIT
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/layout/StyleConfigInfo.h"

#include "layout/LayoutTest.h"
#include "layout/RecordText.h"

namespace {

using ::testing::ElementsAre;
using ::testing::Pair;
using ::testing::SizeIs;
using yg::PanelConfigInfo;
using yg::PanelList;
using yg::StyleConfigInfo;
using yg::testing::fieldsOf;
using yg::testing::names;

std::shared_ptr<PanelConfigInfo> panelNamed(const std::string& name) {
    auto panel = std::make_shared<PanelConfigInfo>();
    panel->setPanelName(name);
    return panel;
}

TEST(StyleConfigInfo, BeginsWithLayerZeroAndAnEmptyListOfPanels) {
    EXPECT_THAT(fieldsOf(StyleConfigInfo()),
                ElementsAre(Pair("styleName", "absent"), Pair("styleLayer", "0"),
                            Pair("styleFucus", "absent"), Pair("magicPanelsNameArray", "absent"),
                            Pair("stylePanes", "0 panels")));
}

TEST(StyleConfigInfo, KeepsWhatItIsGiven) {
    StyleConfigInfo style;
    style.setStyleName("行情");
    style.setStyleLayer(-7);
    style.setStyleFucus("");
    style.setMagicPanelsNameArray(
        std::make_shared<std::vector<std::string>>(std::vector<std::string>{"chart", ""}));
    style.stylePanes()->push_back(panelNamed("p"));
    EXPECT_THAT(fieldsOf(style), ElementsAre(Pair("styleName", "\"行情\""),
                                             Pair("styleLayer", "-7"), Pair("styleFucus", "\"\""),
                                             Pair("magicPanelsNameArray", "[\"chart\", \"\"]"),
                                             Pair("stylePanes", "1 panels")));
}

TEST(StyleConfigInfo, KeepsTheListsThemselves) {
    const auto panes = std::make_shared<PanelList>();
    const auto groups = std::make_shared<std::vector<std::string>>();
    StyleConfigInfo style;
    style.setStylePanes(panes);
    style.setMagicPanelsNameArray(groups);
    panes->push_back(panelNamed("later"));
    groups->push_back("later");
    EXPECT_THAT(names(style.stylePanes()), ElementsAre("later"));
    EXPECT_THAT(*style.magicPanelsNameArray(), ElementsAre("later"));
}

TEST(StyleConfigInfo, CanLoseWhatItWasGiven) {
    StyleConfigInfo style;
    style.setStyleName("a");
    style.setStyleName(std::nullopt);
    style.setStylePanes(nullptr);
    EXPECT_EQ(style.styleName(), std::nullopt);
    EXPECT_EQ(style.stylePanes(), nullptr);
}

TEST(StyleConfigInfo, CopyHasTheNameTheFocusAndTheLayer) {
    StyleConfigInfo style;
    style.setStyleName("a");
    style.setStyleLayer(3);
    style.setStyleFucus("f");
    const auto copy = style.copyWithZone();
    EXPECT_EQ(copy->styleName(), "a");
    EXPECT_EQ(copy->styleLayer(), 3);
    EXPECT_EQ(copy->styleFucus(), "f");
}

TEST(StyleConfigInfo, CopyHasNoMagicPanelsNameArrayEvenWhenTheSourceHasOne) {
    StyleConfigInfo style;
    style.setMagicPanelsNameArray(
        std::make_shared<std::vector<std::string>>(std::vector<std::string>{"chart"}));
    EXPECT_EQ(style.copyWithZone()->magicPanelsNameArray(), nullptr);
}

TEST(StyleConfigInfo, CopyHoldsACopyOfEachPanelInOrder) {
    StyleConfigInfo style;
    style.stylePanes()->push_back(panelNamed("first"));
    style.stylePanes()->push_back(panelNamed("second"));
    style.stylePanes()->front()->panePanes()->push_back(panelNamed("child"));

    const auto copy = style.copyWithZone();
    ASSERT_NE(copy->stylePanes(), style.stylePanes());
    ASSERT_THAT(names(copy->stylePanes()), ElementsAre("first", "second"));
    EXPECT_THAT(names(copy->stylePanes()->front()->panePanes()), ElementsAre("child"));
    for (std::size_t i = 0; i < 2; ++i)
        EXPECT_NE((*copy->stylePanes())[i], (*style.stylePanes())[i]);

    copy->stylePanes()->pop_back();
    copy->stylePanes()->front()->setPanelName("changed");
    EXPECT_THAT(names(style.stylePanes()), ElementsAre("first", "second"));
}

TEST(StyleConfigInfo, CopyWithoutPanelsHasAFreshEmptyList) {
    StyleConfigInfo empty;
    const auto copy = empty.copyWithZone();
    ASSERT_NE(copy->stylePanes(), nullptr);
    EXPECT_THAT(*copy->stylePanes(), SizeIs(0));
    EXPECT_NE(copy->stylePanes(), empty.stylePanes());

    StyleConfigInfo absent;
    absent.setStylePanes(nullptr);
    ASSERT_NE(absent.copyWithZone()->stylePanes(), nullptr);
    EXPECT_THAT(*absent.copyWithZone()->stylePanes(), SizeIs(0));
}

}  // namespace
