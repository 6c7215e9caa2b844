// SPDX-License-Identifier: MIT
//
// The two libraries of panels as records and as expanded XML, and the swap of magic panels.
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
using yg::PanelList;
using yg::YGStyleConfigLoad;
using yg::testing::keys;
using yg::testing::LayoutFile;
using yg::testing::LayoutTest;
using yg::testing::names;

// ---- Reuse panels -------------------------------------------------------------------------------

using ReusePanels = LayoutTest;

TEST_F(ReusePanels, AreTheElementsBelowTheRootByName) {
    write(LayoutFile::reusePanels, R"(<any>text<!-- <reuse_panel name="c"/> -->
        <reuse_panel name="b" vertical="true" split_scale="0.5">
            <panel name="p"><element name="in"/></panel><element name="e"/></reuse_panel>
        <other_name name="a"/><reuse_panel/></any>)");
    const auto panels = loader.loadReusePanel(path(LayoutFile::reusePanels));
    ASSERT_THAT(keys(panels), ElementsAre("b", "a"));
    const auto b = *panels->find("b");
    EXPECT_EQ(b->panelName(), "b");
    EXPECT_TRUE(b->paneVertical());
    EXPECT_EQ(b->splitScale(), 0.5F);
    EXPECT_FALSE(b->isMagicPanels());
    EXPECT_THAT(names(b->panePanes()), ElementsAre("p"));
    EXPECT_THAT(names(b->panePanes()->front()->paneElements()), ElementsAre("in"));
    EXPECT_THAT(names(b->paneElements()), ElementsAre("e"));
}

TEST_F(ReusePanels, OfOneNameLeaveTheLaterOne) {
    write(LayoutFile::reusePanels,
          "<r><reuse_panel name='a' min_size='1'/><reuse_panel name='a' min_size='2'/></r>");
    const auto panels = loader.loadReusePanel(path(LayoutFile::reusePanels));
    EXPECT_THAT(keys(panels), ElementsAre("a"));
    EXPECT_EQ((*panels->find("a"))->minSize(), 2.0F);
}

TEST_F(ReusePanels, OfALoadAreTheRecordsThatItsStylesShow) {
    write(LayoutFile::reusePanels, "<r><reuse_panel name='b'/></r>");
    write(LayoutFile::styles,
          "<s><style name='a'><panel><reuse_panel name='b'/></panel></style></s>");
    load();
    EXPECT_EQ(*loader.reusePanelInfos()->find("b"),
              style("a")->stylePanes()->front()->panePanes()->front());
    EXPECT_THAT(keys(loader.reusePanelInfos()), ElementsAre("b"));
}

TEST_F(ReusePanels, MayHaveAnEmptyName) {
    write(LayoutFile::reusePanels, "<r><reuse_panel name=''/></r>");
    EXPECT_THAT(keys(loader.loadReusePanel(path(LayoutFile::reusePanels))), ElementsAre(""));
}

TEST_F(ReusePanels, AreAnEmptyMapWithoutAFile) {
    ASSERT_NE(loader.loadReusePanel(path(LayoutFile::reusePanels)), nullptr);
    EXPECT_TRUE(loader.loadReusePanel(path(LayoutFile::reusePanels))->empty());
    EXPECT_TRUE(loader.loadReusePanel(std::nullopt)->empty());
    EXPECT_TRUE(loader.loadReusePanel("")->empty());
}

TEST_F(ReusePanels, NeverResolveReferencesInTheirOwnFile) {
    write(LayoutFile::reusePanels, R"(<r><reuse_panel name="first"/>
        <reuse_panel name="second"><reuse_panel name="first"/><reuse_panel name="second"/>
        <panel name="p"><reuse_panel name="first"/></panel></reuse_panel></r>)");
    write(LayoutFile::styles,
          "<s><style name='a'><panel><reuse_panel name='second'/></panel></style></s>");
    load();
    const auto second = style("a")->stylePanes()->front()->panePanes()->front();
    EXPECT_THAT(names(second->panePanes()), ElementsAre("p"));
    EXPECT_THAT(*second->panePanes()->front()->panePanes(), IsEmpty());
}

TEST_F(ReusePanels, NeverResolveMagicPanelsInTheirFile) {
    write(LayoutFile::reusePanels, R"(<r><reuse_panel name="a"><magic_panels name="g"/>
        <panel name="p"><magic_panels name="g"/></panel></reuse_panel></r>)");
    write(LayoutFile::magicPanels,
          "<m><magic_panels name='g'><magic_panel "
          "name='x'><panel/></magic_panel></magic_panels></m>");
    write(LayoutFile::styles,
          "<s><style name='s'><panel><reuse_panel name='a'/></panel></style></s>");
    load();
    const auto a = style("s")->stylePanes()->front()->panePanes()->front();
    EXPECT_THAT(names(a->panePanes()), ElementsAre("p"));
    EXPECT_THAT(*a->panePanes()->front()->panePanes(), IsEmpty());
}

// ---- Magic panels -------------------------------------------------------------------------------

using MagicPanels = LayoutTest;

TEST_F(MagicPanels, AreGroupsOfMembersByNameInTheOrderOfTheFile) {
    write(LayoutFile::magicPanels, R"(<any>text<!-- -->
        <magic_panels name="b"><magic_panel name="2"><panel name="p2"/></magic_panel>text
            <magic_panel name="1"><panel name="p1" fix_size="3"><element name="e"/>
            <panel name="in"/></panel></magic_panel></magic_panels>
        <other name="a"><another name="x"><third name="p3"/></another></other>
        <magic_panels><magic_panel name="lost"><panel/></magic_panel></magic_panels></any>)");
    load();
    ASSERT_THAT(keys(loader.magicPanelInfos()), ElementsAre("b", "a"));
    EXPECT_THAT(keys(*loader.magicPanelInfos()->find("b")), ElementsAre("2", "1"));
    const auto panel = magicPanel("b", "1");
    EXPECT_EQ(panel->panelName(), "p1");
    EXPECT_EQ(panel->fixSize(), 3.0F);
    EXPECT_TRUE(panel->isMagicPanels());
    EXPECT_EQ(panel->magicPanelsName(), std::nullopt);
    EXPECT_THAT(names(panel->paneElements()), ElementsAre("e"));
    EXPECT_THAT(names(panel->panePanes()), ElementsAre("in"));
    EXPECT_FALSE(panel->panePanes()->front()->isMagicPanels());
    EXPECT_EQ(magicPanel("a", "x")->panelName(), "p3");
}

TEST_F(MagicPanels, TakeTheFirstElementAfterAComment) {
    write(LayoutFile::magicPanels, R"(<m><magic_panels name="g"><magic_panel name="x">
        <!-- first --><?second?>third<panel name="p"/></magic_panel></magic_panels></m>)");
    load();
    EXPECT_EQ(magicPanel("g", "x")->panelName(), "p");
}

TEST_F(MagicPanels, TakeTheFirstOfTwoElementsAlone) {
    write(LayoutFile::magicPanels, R"(<m><magic_panels name="g"><magic_panel name="x">
        <panel name="first"/><panel name="second"/></magic_panel></magic_panels></m>)");
    load();
    EXPECT_EQ(magicPanel("g", "x")->panelName(), "first");
    EXPECT_THAT(keys(*loader.magicPanelInfos()->find("g")), ElementsAre("x"));
    EXPECT_THAT(*magicPanel("g", "x")->panePanes(), IsEmpty());
}

TEST_F(MagicPanels, SkipMembersWithoutANameOrAnElement) {
    write(LayoutFile::magicPanels, R"(<m><magic_panels name="g">
        <magic_panel><panel name="nameless"/></magic_panel><magic_panel name="empty"/>
        <magic_panel name="text">text</magic_panel><magic_panel name="comment"><!-- --></magic_panel>
        <magic_panel name=""><panel name="p"/></magic_panel></magic_panels></m>)");
    load();
    EXPECT_THAT(keys(*loader.magicPanelInfos()->find("g")), ElementsAre(""));
}

TEST_F(MagicPanels, KeepAGroupWithoutAUsableMemberAsAnEmptyMap) {
    write(LayoutFile::magicPanels,
          "<m><magic_panels name='g'><magic_panel name='x'/></magic_panels><magic_panels "
          "name='h'/></m>");
    load();
    ASSERT_THAT(keys(loader.magicPanelInfos()), ElementsAre("g", "h"));
    ASSERT_NE(*loader.magicPanelInfos()->find("g"), nullptr);
    EXPECT_TRUE((*loader.magicPanelInfos()->find("g"))->empty());
    EXPECT_TRUE((*loader.magicPanelInfos()->find("h"))->empty());
}

TEST_F(MagicPanels, OfOneNameLeaveTheLaterOne) {
    write(LayoutFile::magicPanels, R"(<m>
        <magic_panels name="g"><magic_panel name="old"><panel/></magic_panel></magic_panels>
        <magic_panels name="g"><magic_panel name="x"><panel name="1"/></magic_panel>
        <magic_panel name="x"><panel name="2"/></magic_panel></magic_panels></m>)");
    load();
    EXPECT_THAT(keys(loader.magicPanelInfos()), ElementsAre("g"));
    EXPECT_THAT(keys(*loader.magicPanelInfos()->find("g")), ElementsAre("x"));
    EXPECT_EQ(magicPanel("g", "x")->panelName(), "2");
}

TEST_F(MagicPanels, OfTheSoftOptimizeFileReplaceAGroupWhole) {
    write(LayoutFile::magicPanels, R"(<m>
        <magic_panels name="g"><magic_panel name="first only"><panel/></magic_panel>
        <magic_panel name="both"><panel name="old"/></magic_panel></magic_panels>
        <magic_panels name="kept"><magic_panel name="x"><panel/></magic_panel></magic_panels></m>)");
    write(LayoutFile::softMagicPanels, R"(<m>
        <magic_panels name="added"><magic_panel name="x"><panel/></magic_panel></magic_panels>
        <magic_panels name="g"><magic_panel name="both"><panel name="new"/></magic_panel>
        </magic_panels></m>)");
    load();
    EXPECT_THAT(keys(loader.magicPanelInfos()), ElementsAre("g", "kept", "added"));
    EXPECT_THAT(keys(*loader.magicPanelInfos()->find("g")), ElementsAre("both"));
    EXPECT_EQ(magicPanel("g", "both")->panelName(), "new");
}

TEST_F(MagicPanels, OfTheSoftOptimizeFileCountWithoutTheFirstFile) {
    write(LayoutFile::softMagicPanels,
          "<m><magic_panels name='g'><magic_panel "
          "name='x'><panel/></magic_panel></magic_panels></m>");
    load();
    EXPECT_THAT(keys(loader.magicPanelInfos()), ElementsAre("g"));
}

TEST_F(MagicPanels, ResolveReusePanels) {
    write(LayoutFile::reusePanels,
          "<r><reuse_panel name='bar'><element name='e'/></reuse_panel></r>");
    const std::string_view group =
        "<m><magic_panels name='g'><magic_panel name='x'><panel><reuse_panel name='bar'/></panel>"
        "</magic_panel></magic_panels></m>";
    write(LayoutFile::magicPanels, group);
    write(LayoutFile::styles, "<s><style name='s'><magic_panels name='g'/></style></s>");
    write(LayoutFile::softMagicPanels, group);
    load();
    const auto first = style("s")->stylePanes()->front()->panePanes()->front();
    EXPECT_EQ(first->panelName(), "bar");
    EXPECT_EQ(magicPanel("g", "x")->panePanes()->front(), first);
    EXPECT_NE(magicPanel("g", "x"), style("s")->stylePanes()->front());
}

TEST_F(MagicPanels, OfTheFirstFileSupportNoSlotsOfTheirOwn) {
    write(LayoutFile::magicPanels, R"(<m><magic_panels name="g"><magic_panel name="x"><panel>
        <magic_panels name="g"/></panel></magic_panel></magic_panels></m>)");
    load();
    EXPECT_THAT(*magicPanel("g", "x")->panePanes(), IsEmpty());
}

TEST_F(MagicPanels, AreAnEmptyMapWithoutAFile) {
    ASSERT_NE(loader.loadMagicPanel(path(LayoutFile::magicPanels)), nullptr);
    EXPECT_TRUE(loader.loadMagicPanel(path(LayoutFile::magicPanels))->empty());
    EXPECT_TRUE(loader.loadMagicPanel(std::nullopt)->empty());
    load();
    ASSERT_NE(loader.magicPanelInfos(), nullptr);
    EXPECT_TRUE(loader.magicPanelInfos()->empty());
}

// ---- The expanded XML ---------------------------------------------------------------------------

class ExpandedMagicPanels : public LayoutTest {
protected:
    std::string expanded() const {
        return loader
            .loadMagicPanelsConfigWithMagicPath(path(LayoutFile::magicPanels),
                                                path(LayoutFile::reusePanels))
            .serialise();
    }
};

TEST_F(ExpandedMagicPanels, HaveADefinitionInThePlaceOfItsReference) {
    write(LayoutFile::reusePanels, R"(<r><reuse_panel name="toolbar" fix_size="24">text<!-- c -->
        <element name="e"/></reuse_panel></r>)");
    write(LayoutFile::magicPanels, R"(<m a="1"><magic_panels name="g"><magic_panel name="x"><panel>
        <element name="before"/><reuse_panel name="toolbar" fix_size="99"><panel/></reuse_panel>
        <!-- after --></panel></magic_panel></magic_panels></m>)");
    EXPECT_EQ(expanded(),
              "<m a=\"1\"><magic_panels name=\"g\"><magic_panel name=\"x\"><panel>"
              "<element name=\"before\"></element>"
              "<panel name=\"toolbar\" fix_size=\"24\">text<!-- c --><element name=\"e\"></element>"
              "</panel><!-- after --></panel></magic_panel></magic_panels></m>");
}

TEST_F(ExpandedMagicPanels, TakeTheFirstDefinitionOfANameAmongTheRightElements) {
    write(LayoutFile::reusePanels, R"(<r><panel name="a"/><reuse_panel name="b"/>
        <reuse_panel name="a" min_size="1"/><reuse_panel name="a" min_size="2"/></r>)");
    write(LayoutFile::magicPanels, "<m><reuse_panel name='a'/></m>");
    EXPECT_EQ(expanded(), "<m><panel name=\"a\" min_size=\"1\"></panel></m>");
}

TEST_F(ExpandedMagicPanels, LookForDefinitionsRightBelowTheRootOnly) {
    write(LayoutFile::reusePanels, "<r><group><reuse_panel name='a'/></group></r>");
    write(LayoutFile::magicPanels, "<m><reuse_panel name='a'/></m>");
    EXPECT_EQ(expanded(), "<m><reuse_panel name=\"a\"></reuse_panel></m>");
}

TEST_F(ExpandedMagicPanels, KeepAReferenceThatHasNoDefinitionOrNoName) {
    write(LayoutFile::reusePanels, "<r><reuse_panel/><reuse_panel name='b'/></r>");
    write(LayoutFile::magicPanels, "<m><reuse_panel name='a'/><reuse_panel/></m>");
    EXPECT_EQ(expanded(),
              "<m><reuse_panel name=\"a\"></reuse_panel><reuse_panel></reuse_panel></m>");
}

TEST_F(ExpandedMagicPanels, ExpandNoReferenceInsideAnInsertedDefinition) {
    write(LayoutFile::reusePanels, R"(<r><reuse_panel name="a"><reuse_panel name="b"/>
        <reuse_panel name="a"/></reuse_panel><reuse_panel name="b"/></r>)");
    write(LayoutFile::magicPanels, "<m><reuse_panel name='a'/><reuse_panel name='b'/></m>");
    EXPECT_EQ(expanded(),
              "<m><panel name=\"a\"><reuse_panel name=\"b\"></reuse_panel>"
              "<reuse_panel name=\"a\"></reuse_panel></panel>"
              "<panel name=\"b\"></panel></m>");
}

TEST_F(ExpandedMagicPanels, ReplaceAReferenceInsideAReferenceTogetherWithIt) {
    write(LayoutFile::reusePanels, "<r><reuse_panel name='a'/><reuse_panel name='b'/></r>");
    write(LayoutFile::magicPanels,
          "<m><reuse_panel name='a'><reuse_panel name='b'/></reuse_panel>"
          "<reuse_panel name='x'><reuse_panel name='b'/></reuse_panel></m>");
    EXPECT_EQ(expanded(),
              "<m><panel name=\"a\"></panel>"
              "<reuse_panel name=\"x\"><panel name=\"b\"></panel></reuse_panel></m>");
}

TEST_F(ExpandedMagicPanels, LeaveARootAloneThatIsNamedLikeAReference) {
    write(LayoutFile::reusePanels, "<r><reuse_panel name='a'/></r>");
    write(LayoutFile::magicPanels, "<reuse_panel name='a'/>");
    EXPECT_EQ(expanded(), "<reuse_panel name=\"a\"></reuse_panel>");
}

TEST_F(ExpandedMagicPanels, AreNothingWithoutTheMagicFileAndUnchangedWithoutTheReuseFile) {
    EXPECT_EQ(expanded(), "");
    write(LayoutFile::magicPanels, "<m><reuse_panel name='a'/></m>");
    EXPECT_EQ(expanded(), "<m><reuse_panel name=\"a\"></reuse_panel></m>");
    EXPECT_THAT(host->runtimeLog(), SizeIs(3));
}

// ---- Swapping the panel of a slot ---------------------------------------------------------------

std::shared_ptr<PanelConfigInfo> panelNamed(const std::string& name) {
    auto panel = std::make_shared<PanelConfigInfo>();
    panel->setPanelName(name);
    return panel;
}

std::shared_ptr<PanelConfigInfo> slotNamed(const std::string& name, const std::string& group) {
    auto panel = panelNamed(name);
    panel->setIsMagicPanels(true);
    panel->setMagicPanelsName(group);
    return panel;
}

std::shared_ptr<PanelList> listOf(std::vector<std::shared_ptr<PanelConfigInfo>> panels) {
    return std::make_shared<PanelList>(std::move(panels));
}

TEST_F(MagicPanels, ReplaceSlotsOfEveryGroupAtEveryDepth) {
    write(LayoutFile::magicPanels, R"(<m>
        <magic_panels name="g"><magic_panel name="x"><panel name="gx"/></magic_panel>
        <magic_panel name="y"><panel name="gy"/></magic_panel></magic_panels>
        <magic_panels name="h"><magic_panel name="x"><panel name="hx"/></magic_panel>
        </magic_panels></m>)");
    write(LayoutFile::styles, R"(<s><style name="s"><magic_panels name="g"/><panel name="p">
        <panel name="q"><magic_panels name="h"/></panel><panel name="r"/></panel></style></s>)");
    load();
    const auto panes = style("s")->stylePanes();
    const auto chosen = magicPanel("g", "y");
    bool found = false;
    YGStyleConfigLoad::replaceMagicPanel(panes, chosen, found);
    EXPECT_TRUE(found);
    EXPECT_EQ((*panes)[0], chosen);
    EXPECT_EQ((*panes)[1]->panePanes()->front()->panePanes()->front(), chosen);
    EXPECT_THAT(names((*panes)[1]->panePanes()), ElementsAre("q", "r"));

    // What was put in is a slot again.
    YGStyleConfigLoad::replaceMagicPanel(panes, magicPanel("h", "x"), found);
    EXPECT_EQ((*panes)[0]->panelName(), "hx");
}

TEST(SwapOfMagicPanels, LeavesTheFlagAsItIsWithoutASlot) {
    const auto panels = listOf({panelNamed("a"), panelNamed("b")});
    panels->front()->panePanes()->push_back(panelNamed("c"));
    for (bool flag : {false, true}) {
        const bool before = flag;
        YGStyleConfigLoad::replaceMagicPanel(panels, panelNamed("new"), flag);
        EXPECT_EQ(flag, before);
    }
    EXPECT_THAT(names(panels), ElementsAre("a", "b"));
}

TEST(SwapOfMagicPanels, DoesNothingWithoutAListAPanelOrAnEntry) {
    bool flag = false;
    YGStyleConfigLoad::replaceMagicPanel(nullptr, panelNamed("new"), flag);
    const auto panels = listOf({slotNamed("a", "g")});
    YGStyleConfigLoad::replaceMagicPanel(panels, nullptr, flag);
    YGStyleConfigLoad::replaceMagicPanel(listOf({}), panelNamed("new"), flag);
    EXPECT_FALSE(flag);
    EXPECT_THAT(names(panels), ElementsAre("a"));
}

TEST(SwapOfMagicPanels, GoesNotIntoAReplacedSlot) {
    const auto outer = slotNamed("outer", "g");
    outer->panePanes()->push_back(slotNamed("inner", "g"));
    const auto chosen = slotNamed("chosen", "g");
    chosen->panePanes()->push_back(slotNamed("inside", "g"));
    const auto panels = listOf({outer});
    bool flag = false;
    YGStyleConfigLoad::replaceMagicPanel(panels, chosen, flag);
    EXPECT_THAT(names(panels), ElementsAre("chosen"));
    EXPECT_THAT(names(outer->panePanes()), ElementsAre("inner"));
    EXPECT_THAT(names(chosen->panePanes()), ElementsAre("inside"));
}

TEST(SwapOfMagicPanels, ReplacesASlotByAPanelThatIsNoSlotForGood) {
    const auto panels = listOf({slotNamed("a", "g")});
    bool flag = false;
    YGStyleConfigLoad::replaceMagicPanel(panels, panelNamed("plain"), flag);
    YGStyleConfigLoad::replaceMagicPanel(panels, panelNamed("other"), flag);
    EXPECT_THAT(names(panels), ElementsAre("plain"));
}

TEST(SwapOfMagicPanels, PassesOverMissingPanelsAndMissingLists) {
    const auto childless = panelNamed("childless");
    childless->setPanePanes(nullptr);
    const auto panels = listOf({nullptr, childless, slotNamed("a", "g")});
    bool flag = false;
    YGStyleConfigLoad::replaceMagicPanel(panels, panelNamed("new"), flag);
    EXPECT_TRUE(flag);
    EXPECT_EQ((*panels)[0], nullptr);
    EXPECT_EQ((*panels)[2]->panelName(), "new");
}

TEST(SwapOfMagicPanels, ReplacesInAListThatStandsInTwoPlacesOnce) {
    const auto shared = panelNamed("shared");
    shared->panePanes()->push_back(slotNamed("a", "g"));
    const auto panels = listOf({shared, shared});
    bool flag = false;
    YGStyleConfigLoad::replaceMagicPanel(panels, panelNamed("new"), flag);
    EXPECT_THAT(names(shared->panePanes()), ElementsAre("new"));
}

TEST(SwapOfMagicPanels, EndsWithAPanelThatHoldsItself) {
    const auto panel = panelNamed("a");
    panel->panePanes()->push_back(panel);
    panel->panePanes()->push_back(slotNamed("slot", "g"));
    const auto between = panelNamed("between");
    between->setPanePanes(listOf({panel, slotNamed("slot", "g")}));
    panel->panePanes()->push_back(between);
    bool flag = false;
    YGStyleConfigLoad::replaceMagicPanel(panel->panePanes(), panelNamed("new"), flag);
    EXPECT_TRUE(flag);
    EXPECT_THAT(names(panel->panePanes()), ElementsAre("a", "new", "between"));
    EXPECT_THAT(names(between->panePanes()), ElementsAre("a", "new"));
    panel->panePanes()->clear();
    between->panePanes()->clear();
}

TEST(SwapOfMagicPanels, PutsAPanelIntoASlotOfItsOwn) {
    const auto panel = slotNamed("a", "g");
    panel->panePanes()->push_back(slotNamed("inner", "g"));
    bool flag = false;
    YGStyleConfigLoad::replaceMagicPanel(panel->panePanes(), panel, flag);
    EXPECT_TRUE(flag);
    EXPECT_EQ(panel->panePanes()->front(), panel);
    YGStyleConfigLoad::replaceMagicPanel(listOf({panel}), panel, flag);
    EXPECT_EQ(panel->panePanes()->front(), panel);
    panel->panePanes()->clear();
}

// The panel given is one that the swap itself would otherwise release before its last use.
TEST(SwapOfMagicPanels, TakesItsPanelFromInsideTheSlotThatItReplaces) {
    const auto panels = listOf({slotNamed("first", "g"), slotNamed("second", "g")});
    panels->front()->panePanes()->push_back(panelNamed("inside"));
    bool flag = false;
    YGStyleConfigLoad::replaceMagicPanel(panels, panels->front()->panePanes()->front(), flag);
    EXPECT_THAT(names(panels), ElementsAre("inside", "inside"));
}

TEST(SwapOfMagicPanels, ReachesTheBottomOfATreeOfAnyDepth) {
    const auto top = panelNamed("top");
    std::vector<std::shared_ptr<PanelConfigInfo>> chain{top};
    for (int depth = 0; depth < 5000; ++depth) {
        chain.push_back(panelNamed("p"));
        chain[chain.size() - 2]->panePanes()->push_back(chain.back());
    }
    chain.back()->panePanes()->push_back(slotNamed("slot", "g"));
    bool flag = false;
    YGStyleConfigLoad::replaceMagicPanel(top->panePanes(), panelNamed("new"), flag);
    EXPECT_TRUE(flag);
    EXPECT_THAT(names(chain.back()->panePanes()), ElementsAre("new"));
    while (!chain.empty()) {
        chain.back()->panePanes()->clear();
        chain.pop_back();
    }
}

}  // namespace
