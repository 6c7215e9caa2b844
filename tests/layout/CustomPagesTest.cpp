// SPDX-License-Identifier: MIT
//
// Custom pages: a template with chosen panels in its slots, pattern members included.
#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/layout/YGStyleConfigLoad.h"
#include "YGConfigManager/text/Replace.h"
#include "YGConfigManager/xml/Element.h"

#include "layout/LayoutTest.h"
#include "layout/RecordText.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::StartsWith;
using yg::YGStyleConfigLoad;
using yg::testing::LayoutFile;
using yg::testing::LayoutTest;
using yg::testing::names;
using yg::testing::parsed;
using yg::testing::RecordText;

/// Templates in the main file, groups in the magic panel file, and the wildcard key STOCK.
class CustomPages : public LayoutTest {
protected:
    CustomPages() {
        write(LayoutFile::softStyles, "<styles/>");
        write(LayoutFile::styles, R"(<styles>
            <style name="quote" layer="3"><panel name="before"/><magic_panels name="chart"/>
                <panel name="after"/></style>
            <style name="two"><panel><magic_panels name="chart"/></panel>
                <magic_panels name="side"/></style>
            <style name="plain"><panel name="p"/></style></styles>)");
        write(LayoutFile::magicPanels, R"(<groups>
            <magic_panels name="chart">
                <magic_panel name="kline"><panel name="kline_view"/></magic_panel>
                <magic_panel name="STOCK"><panel name="STOCK_view" param="STOCK,STOCK"/></magic_panel>
            </magic_panels>
            <magic_panels name="side">
                <magic_panel name="depth"><panel name="depth_view"/></magic_panel>
            </magic_panels></groups>)");
        host->mappings["模版通配"] = {{"STOCK", {"SH01", "SZ02", "", "a&b", "a<b"}},
                                      {"NONE", {"XX"}}};
        load();
    }

    /// The page as XML text, "" for none.
    std::string page(std::optional<std::string_view> name) const {
        return loader.createXMLElementWithStyleName(name).serialise();
    }

    /// The page of a template with one slot of a group, whose members are `members`.
    std::string pageWithMembers(const std::string& members, std::string_view name) {
        write(LayoutFile::styles, "<s><style name='t'><magic_panels name='g'/></style></s>");
        write(LayoutFile::magicPanels,
              "<m><magic_panels name='g'>" + members + "</magic_panels></m>");
        load();
        return page(name);
    }
};

TEST_F(CustomPages, AreMadeOfTheStylesWithSlotsOfBothFiles) {
    write(LayoutFile::softStyles,
          R"(<styles><style name="two"><panel><magic_panels/></panel></style>
             <style name="a-b"><magic_panels name="chart"/></style>
             <page name="c"><magic_panels name="chart"/></page></styles>)");
    load();
    const auto templates = loader.templates();
    ASSERT_THAT(templates, SizeIs(2));
    EXPECT_EQ(templates[0].name, "two");
    EXPECT_THAT(templates[0].groups, ElementsAre(std::nullopt));
    EXPECT_EQ(templates[1].name, "quote");
    EXPECT_THAT(templates[1].groups, ElementsAre(std::optional<std::string>("chart")));
    EXPECT_GE(templates[1].size, std::string("quotechart").size());
}

TEST_F(CustomPages, HaveNoTemplatesBeforeLoadingAndWithoutTheSoftOptimizeFile) {
    EXPECT_THAT(YGStyleConfigLoad().templates(), IsEmpty());
    EXPECT_THAT(YGStyleConfigLoad().slotMembers("chart"), IsEmpty());
    write(LayoutFile::softStyles, "<styles>");
    load();
    EXPECT_THAT(loader.templates(), IsEmpty());
}

TEST_F(CustomPages, FindTheMembersOfTheMainFileThatHoldSomething) {
    const auto members = [&](std::optional<std::string_view> group) {
        std::vector<std::string> names;
        for (const yg::SlotMember& member : loader.slotMembers(group))
            names.push_back(member.name);
        return names;
    };
    EXPECT_THAT(members("chart"), ElementsAre("kline", "STOCK"));
    EXPECT_THAT(members("none"), IsEmpty());
    EXPECT_THAT(members(std::nullopt), IsEmpty());
    write(LayoutFile::magicPanels,
          "<g><magic_panels name='chart'><magic_panel name='empty'/>"
          "<magic_panel name='day'><panel/></magic_panel></magic_panels></g>");
    write(LayoutFile::softMagicPanels,
          "<g><magic_panels name='soft'><magic_panel name='a'><panel/></magic_panel>"
          "</magic_panels></g>");
    load();
    EXPECT_THAT(members("chart"), ElementsAre("day"));
    EXPECT_THAT(members("soft"), IsEmpty());
}

TEST_F(CustomPages, WithoutArgumentsAreTheTemplateWithItsSlots) {
    EXPECT_EQ(page("quote"),
              "<style name=\"quote\" layer=\"3\"><panel name=\"before\"></panel>"
              "<magic_panels name=\"chart\"></magic_panels><panel name=\"after\"></panel></style>");
    EXPECT_EQ(page("plain"), "<style name=\"plain\"><panel name=\"p\"></panel></style>");
}

TEST_F(CustomPages, HaveTheMembersPanelInThePlaceOfTheSlotAndTheWholeName) {
    EXPECT_EQ(page("quote-kline"),
              "<style name=\"quote-kline\" layer=\"3\"><panel name=\"before\"></panel>"
              "<panel name=\"kline_view\"></panel><panel name=\"after\"></panel></style>");
}

TEST_F(CustomPages, AreNotAttachedToADocument) {
    const auto element = loader.createXMLElementWithStyleName("quote-kline");
    EXPECT_FALSE(element.parent());
    EXPECT_EQ(element.query("/style/panel").size(), 3U);
}

TEST_F(CustomPages, NeedOneArgumentForEachSlot) {
    EXPECT_EQ(page("two-kline"), "");
    EXPECT_EQ(page("two-kline-depth-depth"), "");
    EXPECT_EQ(page("quote-kline-kline"), "");
    EXPECT_EQ(page("plain-kline"), "");
    EXPECT_EQ(page("plain-"), "");
    EXPECT_NE(page("two-kline-depth"), "");
}

TEST_F(CustomPages, GiveEachSlotItsArgumentInDocumentOrder) {
    EXPECT_EQ(page("two-kline-depth"),
              "<style name=\"two-kline-depth\"><panel><panel name=\"kline_view\"></panel></panel>"
              "<panel name=\"depth_view\"></panel></style>");
}

TEST_F(CustomPages, LookForAnEmptyMemberAndThenForTheKeyOfTheEmptyText) {
    EXPECT_THAT(page("quote-"), StartsWith("<style name=\"quote-\" layer=\"3\">"
                                           "<panel name=\"before\"></panel>"
                                           "<panel name=\"_view\" param=\",\"></panel>"));
    EXPECT_EQ(pageWithMembers("<magic_panel name=''><panel name='p'/></magic_panel>", "t-"),
              "<style name=\"t-\"><panel name=\"p\"></panel></style>");
}

TEST_F(CustomPages, WriteTheArgumentIntoThePatternMember) {
    EXPECT_EQ(pageWithMembers(
                  "<magic_panel name='STOCK'><panel name='STOCK_view' b='STOCK,STOCK xSTOCKx'>"
                  "<STOCK>STOCK<!--STOCK--></STOCK></panel></magic_panel>",
                  "t-SH01"),
              "<style name=\"t-SH01\"><panel name=\"SH01_view\" b=\"SH01,SH01 xSH01x\">"
              "<SH01>SH01<!--SH01--></SH01></panel></style>");
}

TEST_F(CustomPages, OfAPatternAreParsedIntoRecords) {
    const auto style = loader.loadStyleConfigInfoWithName("quote-SH01");
    ASSERT_NE(style, nullptr);
    EXPECT_EQ(style->styleName(), "quote-SH01");
    EXPECT_EQ(style->styleLayer(), 3);
    EXPECT_THAT(names(style->stylePanes()), ElementsAre("before", "SH01_view", "after"));
}

TEST_F(CustomPages, PreferAMemberOfThatNameToAPattern) {
    EXPECT_EQ(pageWithMembers("<magic_panel name='STOCK'><panel name='STOCK'/></magic_panel>"
                              "<magic_panel name='SH01'><panel name='own'/></magic_panel>",
                              "t-SH01"),
              "<style name=\"t-SH01\"><panel name=\"own\"></panel></style>");
}

TEST_F(CustomPages, UseThePatternForAMemberThatHasNoChild) {
    EXPECT_EQ(pageWithMembers("<magic_panel name='SH01'> </magic_panel>"
                              "<magic_panel name='STOCK'><panel name='STOCK'/></magic_panel>",
                              "t-SH01"),
              "<style name=\"t-SH01\"><panel name=\"SH01\"></panel></style>");
}

TEST_F(CustomPages, TakeThePatternItselfAsAMemberByItsKey) {
    EXPECT_EQ(pageWithMembers("<magic_panel name='STOCK'><panel name='STOCK_view'/></magic_panel>",
                              "t-STOCK"),
              "<style name=\"t-STOCK\"><panel name=\"STOCK_view\"></panel></style>");
}

TEST_F(CustomPages, LeaveASlotThatNeitherAMemberNorAPatternServes) {
    const std::string left =
        "<style name=\"t-NAME\"><magic_panels name=\"g\"></magic_panels></style>";
    const auto leftFor = [&](const std::string& name) {
        return yg::text::replaceAll(left, "NAME", name);
    };
    const std::string members = "<magic_panel name='x'><panel/></magic_panel>";
    EXPECT_EQ(pageWithMembers(members, "t-unknown"), leftFor("unknown"));
    // The list of STOCK holds it, but the group has no member STOCK.
    EXPECT_EQ(pageWithMembers(members, "t-SH01"), leftFor("SH01"));
    EXPECT_EQ(pageWithMembers("<magic_panel name='STOCK'/>", "t-SH01"), leftFor("SH01"));
    host->mappings.clear();
    EXPECT_EQ(pageWithMembers("<magic_panel name='STOCK'><panel/></magic_panel>", "t-SH01"),
              leftFor("SH01"));
}

TEST_F(CustomPages, LeaveASlotOfAnUnknownGroupAndServeTheOthers) {
    write(LayoutFile::styles,
          "<s><style name='t'><magic_panels name='none'/>"
          "<magic_panels/><magic_panels name='side'/></style></s>");
    load();
    EXPECT_EQ(page("t-kline-kline-depth"),
              "<style name=\"t-kline-kline-depth\"><magic_panels name=\"none\"></magic_panels>"
              "<magic_panels></magic_panels><panel name=\"depth_view\"></panel></style>");
}

TEST_F(CustomPages, ShowAnOrdinaryMagicPanelInASlotThatIsLeft) {
    const auto style = loader.loadStyleConfigInfoWithName("quote-unknown");
    ASSERT_NE(style, nullptr);
    EXPECT_THAT(names(style->stylePanes()), ElementsAre("before", "kline_view", "after"));
    EXPECT_EQ((*style->stylePanes())[1], magicPanel("chart", "kline"));
    EXPECT_EQ((*style->stylePanes())[1]->magicPanelsName(), "chart");
}

TEST_F(CustomPages, HoldRecordsOfTheirOwnThatAreNoSlots) {
    const auto style = loader.loadStyleConfigInfoWithName("quote-kline");
    const auto panel = (*style->stylePanes())[1];
    EXPECT_NE(panel, magicPanel("chart", "kline"));
    EXPECT_FALSE(panel->isMagicPanels());
    EXPECT_EQ(panel->magicPanelsName(), std::nullopt);
}

TEST_F(CustomPages, KeepThePlainNameOfAnEditablePanel) {
    pageWithMembers(
        "<magic_panel name='x'><panel><panel name='p' is_editable='true'/></panel>"
        "</magic_panel>",
        "t-x");
    const auto style = loader.loadStyleConfigInfoWithName("t-x");
    EXPECT_THAT(names(style->stylePanes()->front()->panePanes()), ElementsAre("p"));
    EXPECT_THAT(names(magicPanel("g", "x")->panePanes()), ElementsAre("g-x-p"));
}

TEST_F(CustomPages, TakeTheFirstChildOfAMemberOfWhateverKind) {
    EXPECT_EQ(pageWithMembers("<magic_panel name='x'><!-- c --><panel/></magic_panel>", "t-x"),
              "<style name=\"t-x\"><!-- c --></style>");
    EXPECT_EQ(pageWithMembers("<magic_panel name='x'>text<panel/></magic_panel>", "t-x"),
              "<style name=\"t-x\">text</style>");
    EXPECT_THAT(*loader.loadStyleConfigInfoWithName("t-x")->stylePanes(), IsEmpty());
    EXPECT_EQ(pageWithMembers(
                  "<magic_panel name='x'><panel name='1'/><panel name='2'/></magic_panel>", "t-x"),
              "<style name=\"t-x\"><panel name=\"1\"></panel></style>");
}

TEST_F(CustomPages, LeaveTheSlotWhenThePatternIsAComment) {
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(
        pageWithMembers("<magic_panel name='STOCK'><!-- STOCK --><panel/></magic_panel>", "t-SH01"),
        "<style name=\"t-SH01\"><magic_panels name=\"g\"></magic_panels></style>");
    EXPECT_THAT(::testing::internal::GetCapturedStderr(), StartsWith("Line 1: "));
}

TEST_F(CustomPages, HaveReusePanelsExpandedInTheirMembersOnly) {
    write(LayoutFile::reusePanels,
          "<r><reuse_panel name='bar'><element name='e'/></reuse_panel></r>");
    write(LayoutFile::styles,
          "<s><style name='t'><panel name='page'><reuse_panel name='bar'/>"
          "<magic_panels name='g'/></panel></style></s>");
    write(LayoutFile::magicPanels,
          "<m><magic_panels name='g'><magic_panel name='x'>"
          "<reuse_panel name='bar'/></magic_panel></magic_panels></m>");
    load();
    EXPECT_EQ(page("t-x"),
              "<style name=\"t-x\"><panel name=\"page\">"
              "<reuse_panel name=\"bar\"></reuse_panel>"
              "<panel name=\"bar\"><element name=\"e\"></element></panel>"
              "</panel></style>");
}

TEST_F(CustomPages, AreTheSameOfAFileThatServesForTheStylesToo) {
    write(LayoutFile::reusePanels,
          "<r><reuse_panel name='bar'><element name='e'/></reuse_panel></r>");
    write(LayoutFile::styles,
          "<s><style name='t'><panel><reuse_panel name='bar'/></panel><magic_panels name='g'/>"
          "</style><magic_panels name='g'><magic_panel name='x'>"
          "<reuse_panel name='bar'/></magic_panel></magic_panels></s>");
    loader.initWithStyleConfigPath(path(LayoutFile::styles), {}, path(LayoutFile::styles));
    EXPECT_EQ(page("t-x"),
              "<style name=\"t-x\"><panel><reuse_panel name=\"bar\"></reuse_panel></panel>"
              "<panel name=\"bar\"><element name=\"e\"></element></panel></style>");
}

TEST_F(CustomPages, AreTheSameOfAFileThatServesForTheReusePanelsToo) {
    write(LayoutFile::styles, "<s><style name='t'><magic_panels name='g'/></style></s>");
    write(LayoutFile::reusePanels,
          "<r><reuse_panel name='a'><reuse_panel name='b'/></reuse_panel>"
          "<reuse_panel name='b'><element name='e'/></reuse_panel>"
          "<magic_panels name='g'><magic_panel name='x'><reuse_panel name='a'/></magic_panel>"
          "</magic_panels></r>");
    loader.initWithStyleConfigPath(path(LayoutFile::styles), {}, path(LayoutFile::reusePanels));
    EXPECT_EQ(page("t-x"),
              "<style name=\"t-x\"><panel name=\"a\"><reuse_panel name=\"b\"></reuse_panel>"
              "</panel></style>");
}

TEST_F(CustomPages, TakeTheirMembersFromTheFirstMagicFileAlone) {
    write(LayoutFile::softMagicPanels, R"(<m><magic_panels name="chart">
        <magic_panel name="soft"><panel/></magic_panel></magic_panels></m>)");
    load();
    EXPECT_EQ(page("quote-soft"),
              "<style name=\"quote-soft\" layer=\"3\"><panel name=\"before\"></panel>"
              "<magic_panels name=\"chart\"></magic_panels><panel name=\"after\"></panel></style>");
    EXPECT_NE(page("quote-kline"), page("quote-soft"));
}

TEST_F(CustomPages, FindGroupsAndMembersUnderTheirProperElementNamesOnly) {
    write(LayoutFile::styles,
          "<s><style name='t'><magic_panels name='g'/></style>"
          "<page name='u'/></s>");
    write(LayoutFile::magicPanels,
          R"(<m><group name="g"><magic_panel name="x"><panel/></magic_panel>
        </group><magic_panels name="g"><member name="x"><panel name="no"/></member>
        <magic_panel name="x"><panel name="yes"/></magic_panel></magic_panels></m>)");
    load();
    EXPECT_EQ(page("t-x"), "<style name=\"t-x\"><panel name=\"yes\"></panel></style>");
    EXPECT_EQ(page("u"), "");
}

TEST_F(CustomPages, ReplaceASlotInsideASlotThatIsLeft) {
    write(LayoutFile::styles,
          "<s><style name='t'><magic_panels name='none'>"
          "<magic_panels name='side'/></magic_panels></style></s>");
    load();
    EXPECT_EQ(page("t-x-depth"),
              "<style name=\"t-x-depth\"><magic_panels name=\"none\">"
              "<panel name=\"depth_view\"></panel></magic_panels></style>");
}

TEST_F(CustomPages, LoseASlotInsideASlotThatIsReplaced) {
    write(LayoutFile::styles,
          "<s><style name='t'><magic_panels name='chart'>"
          "<magic_panels name='side'/></magic_panels></style></s>");
    load();
    EXPECT_EQ(page("t-kline-depth"),
              "<style name=\"t-kline-depth\"><panel name=\"kline_view\"></panel></style>");
    EXPECT_EQ(page("t-kline"), "");
}

TEST_F(CustomPages, LeaveSlotsInsideAnInsertedMember) {
    EXPECT_EQ(
        pageWithMembers("<magic_panel name='x'><panel><magic_panels name='g'/></panel>"
                        "</magic_panel>",
                        "t-x"),
        "<style name=\"t-x\"><panel><magic_panels name=\"g\"></magic_panels></panel></style>");
}

TEST_F(CustomPages, AreEqualEachTimeAndChangeNothingThatIsKept) {
    const std::string first = page("two-SH01-depth");
    const std::string other = page("two-SZ02-depth");
    EXPECT_NE(first, other);
    EXPECT_EQ(page("two-SH01-depth"), first);
    auto changed = loader.createXMLElementWithStyleName("quote");
    changed.setContent("x");
    EXPECT_NE(page("quote"), changed.serialise());
    EXPECT_THAT(page("quote"), StartsWith("<style name=\"quote\" layer=\"3\"><panel"));
}

TEST_F(CustomPages, TellTheConsoleOfAPatternThatBreaksAndLeaveTheSlot) {
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(
        pageWithMembers("<magic_panel name='STOCK'><panel name='STOCK'/></magic_panel>", "t-a<b"),
        "<style name=\"t-a&lt;b\"><magic_panels name=\"g\"></magic_panels></style>");
    const std::string console = ::testing::internal::GetCapturedStderr();
    EXPECT_THAT(console, StartsWith("Line 1: "));
    EXPECT_EQ(console.find('\n'), console.size() - 1);
    EXPECT_THAT(host->businessLog(), IsEmpty());
}

TEST_F(CustomPages, SayNothingElsewhere) {
    host->clear();
    ::testing::internal::CaptureStderr();
    for (const char* name : {"quote-kline", "quote-SH01", "quote-unknown", "two-kline", "nothing"})
        page(name);
    page(std::nullopt);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
    EXPECT_THAT(host->log(), IsEmpty());
}

TEST_F(CustomPages, SplitTheNameAtEveryDashWithoutEscapes) {
    write(LayoutFile::styles, "<s><style name='a-b'/><style name='a'/><style name=''/></s>");
    load();
    EXPECT_EQ(page("a-b"), "");
    EXPECT_EQ(page("a"), "<style name=\"a\"></style>");
    EXPECT_EQ(page(""), "<style name=\"\"></style>");
    EXPECT_EQ(page("-"), "");
    EXPECT_EQ(page(std::nullopt), "");
    // A style with a dash in its name is still found as a loaded one.
    EXPECT_NE(loader.loadStyleConfigInfoWithName("a-b"), nullptr);
}

TEST_F(CustomPages, KeepAnArgumentThatLooksLikeXmlAsItIsInTheName) {
    EXPECT_EQ(loader.createXMLElementWithStyleName("quote-\"&<>").attribute("name"), "quote-\"&<>");
    EXPECT_EQ(loader.loadStyleConfigInfoWithName("quote-\"&<>")->styleName(), "quote-\"&<>");
}

TEST_F(CustomPages, WriteAnArgumentIntoThePatternAsTextThatMayBecomeMarkup) {
    host->mappings["模版通配"] = {{"STOCK", {"x\" fix_size=\"7", "&amp;"}}};
    EXPECT_EQ(pageWithMembers("<magic_panel name='STOCK'><panel name='STOCK'/></magic_panel>",
                              "t-x\" fix_size=\"7"),
              "<style name=\"t-x&quot; fix_size=&quot;7\">"
              "<panel name=\"x\" fix_size=\"7\"></panel></style>");
    EXPECT_EQ(loader.loadStyleConfigInfoWithName("t-&amp;")->stylePanes()->front()->panelName(),
              "&");
}

TEST_F(CustomPages, NeedNoPatternTextInThePattern) {
    host->mappings["模版通配"] = {{"", {"any"}}};
    EXPECT_EQ(pageWithMembers("<magic_panel name=''><panel name='p'/></magic_panel>", "t-any"),
              "<style name=\"t-any\"><panel name=\"p\"></panel></style>");
}

// ---- Wildcard keys ------------------------------------------------------------------------------

TEST_F(CustomPages, FindTheKeyWhoseListHoldsExactlyTheValue) {
    host->mappings["模版通配"] = {{"A", {"1", "2"}}, {"B", {"3", ""}}, {"C", {}}};
    EXPECT_EQ(YGStyleConfigLoad::getWildCardKeyWithValue("2"), "A");
    EXPECT_EQ(YGStyleConfigLoad::getWildCardKeyWithValue("3"), "B");
    EXPECT_EQ(YGStyleConfigLoad::getWildCardKeyWithValue(""), "B");
    EXPECT_EQ(YGStyleConfigLoad::getWildCardKeyWithValue("A"), std::nullopt);
    EXPECT_EQ(YGStyleConfigLoad::getWildCardKeyWithValue("1 "), std::nullopt);
    host->mappings.clear();
    EXPECT_EQ(YGStyleConfigLoad::getWildCardKeyWithValue("2"), std::nullopt);
}

// ---- Searching ----------------------------------------------------------------------------------

TEST(SearchOfChildren, FindsTheFirstOfThatElementNameAndName) {
    const auto root = parsed(R"(<r>text<!-- --><a/><b name="x" n="1"/><a name="X"/>
        <a name="x" n="2"/><a name="x" n="3"/></r>)");
    EXPECT_EQ(YGStyleConfigLoad::searchNodeWithNodeName("a", "x", root).attribute("n"), "2");
    EXPECT_EQ(YGStyleConfigLoad::searchNodeWithNodeName("b", "x", root).attribute("n"), "1");
    EXPECT_FALSE(YGStyleConfigLoad::searchNodeWithNodeName("A", "x", root));
    EXPECT_FALSE(YGStyleConfigLoad::searchNodeWithNodeName("a", "y", root));
    EXPECT_FALSE(YGStyleConfigLoad::searchNodeWithNodeName("a", "", root));
    EXPECT_FALSE(YGStyleConfigLoad::searchNodeWithNodeName("a", std::nullopt, root));
    EXPECT_FALSE(YGStyleConfigLoad::searchNodeWithNodeName("", "x", root));
    EXPECT_FALSE(YGStyleConfigLoad::searchNodeWithNodeName("a", "x", {}));
}

TEST(SearchOfChildren, TakesAnEmptyNameForAName) {
    const auto root = parsed("<r><a/><a name='' n='1'/></r>");
    EXPECT_EQ(YGStyleConfigLoad::searchNodeWithNodeName("a", "", root).attribute("n"), "1");
}

TEST(SearchOfChildren, FindsNoGrandchildAndNotTheRoot) {
    const auto root = parsed("<a name='x'><b><a name='x'/></b></a>");
    EXPECT_FALSE(YGStyleConfigLoad::searchNodeWithNodeName("a", "x", root));
}

TEST(SearchOfChildren, PassesOverInstructionsOfThatName) {
    const auto root = parsed("<r><?a name='x'?><a name='x' n='1'/></r>");
    EXPECT_EQ(YGStyleConfigLoad::searchNodeWithNodeName("a", "x", root).attribute("n"), "1");
}

TEST(SearchOfASubtree, ListsTheOuterSlotBeforeTheInner) {
    const auto root = parsed(R"(<magic_panels name="root"><a><magic_panels name="1">
        <b><magic_panels name="2"/></b></magic_panels></a>text<!-- --><magic_panels name="3"/>
        <Magic_panels/></magic_panels>)");
    std::vector<yg::xml::Element> found;
    YGStyleConfigLoad::recursiveSearchNodeWithNodeName("magic_panels", root, found);
    std::vector<std::string> order;
    for (const auto& element : found)
        order.emplace_back(*element.attribute("name"));
    EXPECT_THAT(order, ElementsAre("1", "2", "3"));
}

TEST(SearchOfASubtree, AppendsToWhatIsThere) {
    std::vector<yg::xml::Element> found{parsed("<first/>")};
    YGStyleConfigLoad::recursiveSearchNodeWithNodeName("a", parsed("<r><a/></r>"), found);
    YGStyleConfigLoad::recursiveSearchNodeWithNodeName("a", {}, found);
    ASSERT_THAT(found, SizeIs(2));
    EXPECT_EQ(found.front().name(), "first");
}

// ---- Threads ------------------------------------------------------------------------------------

TEST_F(CustomPages, AreTheSameFromSeveralThreadsAtOnce) {
    // The group "late" is not known yet when the styles are read, so that the first lookup of a
    // page that shows its panel marks it.
    write(LayoutFile::styles, R"(<s><style name="late"><magic_panels name="late"/></style>
        <style name="t"><panel><magic_panels name="chart"/><magic_panels name="side"/></panel></style>
        </s>)");
    write(LayoutFile::softMagicPanels, R"(<m><magic_panels name="late">
        <magic_panel name="x"><panel name="p"/></magic_panel></magic_panels></m>)");
    YGStyleConfigLoad fresh;
    load(fresh);
    YGStyleConfigLoad alone;
    load(alone);

    const std::vector<std::string> pageNames = {
        "late-x", "t-kline-depth", "t-unknown-unknown", "t-SH01-none", "t", "none", "t-a"};
    std::vector<std::string> expected;
    for (const std::string& name : pageNames)
        expected.push_back(RecordText::of(alone.loadStyleConfigInfoWithName(name)));
    EXPECT_THAT(expected.front(), ::testing::HasSubstr("magicPanelsName \"late\""));
    EXPECT_EQ((*fresh.magicPanelInfos()->find("late"))->begin()->value->magicPanelsName(),
              std::nullopt);

    std::vector<std::string> failures(8);
    std::vector<std::thread> threads;
    for (std::string& failure : failures) {
        threads.emplace_back([&] {
            for (int round = 0; round < 20; ++round) {
                for (std::size_t i = 0; i < pageNames.size(); ++i) {
                    const auto record = fresh.loadStyleConfigInfoWithName(pageNames[i]);
                    if (RecordText::of(record) != expected[i])
                        failure = pageNames[i];
                }
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_THAT(failures, ::testing::Each(std::string()));
}

TEST_F(CustomPages, MarkPanelsThatOtherThreadsRead) {
    // Each page is the first to show its group's panel.
    constexpr int groups = 100;
    std::string styles = "<s>";
    std::string late = "<m>";
    for (int group = 0; group < groups; ++group) {
        const std::string name = "late" + std::to_string(group);
        styles += "<style name='" + name + "'><magic_panels name='" + name + "'/></style>";
        late += "<magic_panels name='" + name +
                "'><magic_panel name='x'><panel name='p' foldPosition='left'/></magic_panel>"
                "</magic_panels>";
    }
    write(LayoutFile::styles, styles + "</s>");
    write(LayoutFile::softMagicPanels, late + "</m>");
    YGStyleConfigLoad fresh;
    load(fresh);
    std::atomic<int> ready = 0;
    std::atomic<int> failures = 0;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&, thread] {
            for (++ready; ready < 4;)
                std::this_thread::yield();
            for (int group = 0; group < groups; ++group) {
                const std::string name = "late" + std::to_string(group);
                if (thread < 2) {
                    fresh.loadStyleConfigInfoWithName(name + "-x");
                    continue;
                }
                const auto panel = (*fresh.magicPanelInfos()->find(name))->begin()->value;
                const std::optional<std::string> shown = panel->magicPanelsName();
                if ((shown && *shown != name) || !panel->isMagicPanels() ||
                    panel->foldPosition() != "left" || RecordText::of(panel).empty() ||
                    !panel->copyWithZone())
                    ++failures;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(failures, 0);
    for (int group = 0; group < groups; ++group) {
        const std::string name = "late" + std::to_string(group);
        EXPECT_EQ((*fresh.magicPanelInfos()->find(name))->begin()->value->magicPanelsName(), name);
    }
}

}  // namespace
