// SPDX-License-Identifier: MIT
//
// What an inspection finds about pages across files.
#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/diagnostics/Rule.h"

#include "inspection/Inspected.h"

namespace yg::testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

const std::string styleFile = "config/custompage_template.xml";
const std::string softFile = "soft_optimize/custompage_template.xml";
const std::string magicFile = "config/magic_panels.xml";
const std::string softMagicFile = "soft_optimize/magic_panels.xml";
const std::string reuseFile = "base_optimize/reuse_panels.xml";
const std::string tabFile = "config/tab_styles.xml";

/// A file of styles, each on a line of its own from line 2.
std::string styles(const std::string& content, const std::string& attributes = "") {
    return "<styles" + attributes + ">\n" + content + "</styles>";
}

/// A file with one group "chart"; members from line 2.
std::string chart(const std::string& members) {
    return "<groups><magic_panels name='chart'>\n" + members + "</magic_panels></groups>";
}

std::string member(const std::string& name, const std::string& content = "") {
    return "<magic_panel name='" + name + "'><panel name='" + name + "'>" + content +
           "</panel></magic_panel>\n";
}

std::string wildcards(const std::string& lists) {
    return R"({"mappings": {"模版通配": {)" + lists + "}}}";
}

std::string messageOf(const Files& files, std::string_view rule) {
    const files::TemporaryFolder folder;
    for (const auto& [name, bytes] : files)
        folder.write(name, bytes);
    const auto inspection = inspected(folder.path());
    for (const RootFinding& finding : inspection->findings()) {
        if (finding.rule->name == rule)
            return finding.message;
    }
    return "";
}

// ---- The rules' own examples ----

TEST(LayoutCheck, ExamplesOfItsRulesAreFoundAndTheirRepairIsNot) {
    constexpr std::array names{
        "unknown-default-style",    "unknown-focus",           "unknown-expand-panel",
        "unknown-dispatch-element", "missing-on-some-pages",   "duplicate-uuid",
        "second-first-responder",   "min-above-max",           "fixed-size-out-of-bounds",
        "share-without-space",      "shares-above-whole",      "wildcard-in-two-lists",
        "wildcard-without-pattern", "wildcard-with-dash",      "template-with-dash",
        "member-with-dash",         "style-hides-custom-page", "unused-magic-group",
        "unused-reuse-panel"};
    const Files orderly{
        {styleFile, styles("<style name='quote'><panel name='main'/></style>")},
        {softFile, styles("<style name='detail'><magic_panels name='chart'/></style>")},
        {magicFile, chart(member("kline"))},
        {softMagicFile, "<groups/>"},
        {reuseFile, "<reuse_panels><reuse_panel name='toolbar'/></reuse_panels>"},
        {tabFile, "<styles/>"}};
    for (const char* const name : names) {
        const Rule* const rule = ruleNamed(name);
        ASSERT_NE(rule, nullptr) << name;
        Files files = orderly;
        if (!rule->besideFile.empty())
            files[std::string(rule->besideFile)] = rule->beside;
        files[std::string(rule->file)] = rule->before;
        EXPECT_THAT(linesOf(files, name), SizeIs(1)) << name;
        files[std::string(rule->file)] = rule->after;
        EXPECT_THAT(linesOf(files, name), IsEmpty()) << name;
    }
}

TEST(LayoutCheck, LeavesTheSampleInOrder) {
    for (const std::string& line : linesOf(*inspected(YG_SAMPLE_FOLDER))) {
        EXPECT_THAT(line, ::testing::Not(HasSubstr(" error ")));
        EXPECT_THAT(line, ::testing::Not(HasSubstr(" warning ")));
    }
}

// ---- Default style ----

TEST(LayoutCheck, FindsADefaultStyleThatIsNoPage) {
    EXPECT_THAT(linesOf({{styleFile, styles("<style name='quote'/>", " default_style='quoet'")}},
                        "unknown-default-style"),
                ElementsAre(styleFile + ":1:24 error unknown-default-style quoet -> quote"));
}

TEST(LayoutCheck, TakesACustomPageForADefaultStyle) {
    Files files{{styleFile, styles("<style name='quote'><magic_panels name='chart'/></style>",
                                   " default_style='quote-kline'")},
                {softFile, "<styles/>"},
                {magicFile, chart(member("kline"))}};
    EXPECT_THAT(linesOf(files, "unknown-default-style"), IsEmpty());
    EXPECT_THAT(linesOf(files, "slot-left"), IsEmpty());
    files[styleFile] = styles("<style name='quote'><magic_panels name='chart'/></style>",
                              " default_style='quote-kline-depth'");
    EXPECT_THAT(linesOf(files, "unknown-default-style"), SizeIs(1));
}

TEST(LayoutCheck, LooksAtTheDefaultStyleThatCountsAlone) {
    const Files files{{styleFile, styles("<style name='quote'/>", " default_style='lost'")},
                      {softFile, styles("<style name='detail'/>", " default_style='quote'")}};
    EXPECT_THAT(linesOf(files, "unknown-default-style"), IsEmpty());
}

TEST(LayoutCheck, TakesNoTabForADefaultStyle) {
    const Files files{{styleFile, styles("<style name='quote'/>", " default_style='tab'")},
                      {tabFile, styles("<style name='tab'/>")}};
    EXPECT_THAT(linesOf(files, "unknown-default-style"), SizeIs(1));
}

// ---- References within a page ----

TEST(LayoutCheck, FindsAFocusOnAPanelThatThePageDoesNotHave) {
    EXPECT_THAT(linesOf({{styleFile, styles("<style name='a' focus='mian'><panel name='main'/>"
                                            "</style>\n<style name='b'><panel name='mian'/>"
                                            "</style>\n")}},
                        "unknown-focus"),
                ElementsAre(styleFile + ":2:24 error unknown-focus mian -> main"));
}

TEST(LayoutCheck, FindsAFocusInAPanelThatAReferenceOrASlotBrings) {
    const Files files{
        {styleFile, styles("<style name='a' focus='bar'><panel name='main'>"
                           "<reuse_panel name='bar'/></panel></style>\n"
                           "<style name='b' focus='kline'><magic_panels name='chart'/></style>\n")},
        {magicFile, chart(member("kline"))},
        {reuseFile, "<reuse_panels><reuse_panel name='bar'/></reuse_panels>"}};
    EXPECT_THAT(linesOf(files, "unknown-focus"), IsEmpty());
}

TEST(LayoutCheck, ReportsAnExpandedPanelOnceForAllPagesOfATemplate) {
    const Files files{
        {styleFile, styles("<style name='t'><panel name='main' switch_expand_panel='mani'/>"
                           "<magic_panels name='chart'/></style>\n")},
        {softFile, "<styles/>"},
        {magicFile, chart(member("kline") + member("trend"))}};
    EXPECT_THAT(linesOf(files, "unknown-expand-panel"),
                ElementsAre(styleFile + ":2:57 error unknown-expand-panel mani -> main (" +
                            styleFile + ":2:1)"));
}

TEST(LayoutCheck, KnowsThatSomeMembersOfAGroupHaveThePanelMeant) {
    const Files files{{styleFile, styles("<style name='t' focus='trend'>"
                                         "<magic_panels name='chart'/></style>\n")},
                      {softFile, "<styles/>"},
                      {magicFile, chart(member("kline") + member("trend"))}};
    EXPECT_THAT(linesOf(files, "unknown-focus"), IsEmpty());
    EXPECT_THAT(linesOf(files, "missing-on-some-pages"),
                ElementsAre(styleFile + ":2:24 info missing-on-some-pages trend"));
}

TEST(LayoutCheck, KnowsThatAMemberMayBeSwappedIntoAPageThatIsNoTemplate) {
    const Files files{{styleFile, styles("<style name='t-1' focus='trend'>"
                                         "<magic_panels name='chart'/></style>\n")},
                      {magicFile, chart(member("kline") + member("trend"))}};
    EXPECT_THAT(linesOf(files, "unknown-focus"), IsEmpty());
    EXPECT_THAT(linesOf(files, "missing-on-some-pages"), SizeIs(1));
}

TEST(LayoutCheck, FindsEachDispatchedElementThatThePageDoesNotHave) {
    const Files files{
        {styleFile,
         styles(
             "<style name='a'><panel name='p'><element name='x' uuid='list'/>\n"
             "<element name='y' event_dispatch_dest='list;lost' event_dispatch_src='liste'/>"
             "</panel></style>\n"
             "<style name='b'><panel name='p'><element name='x' uuid='lost'/></panel></style>")}};
    EXPECT_THAT(linesOf(files, "unknown-dispatch-element"),
                ElementsAre(styleFile + ":3:45 error unknown-dispatch-element lost -> list (" +
                                styleFile + ":2:1)",
                            styleFile + ":3:71 error unknown-dispatch-element liste -> list (" +
                                styleFile + ":2:1)"));
}

TEST(LayoutCheck, FindsADispatchInAReusePanelWithThePageWhereItFails) {
    const Files files{
        {styleFile, styles("<style name='a'><panel name='p'><reuse_panel name='bar'/></panel>"
                           "</style>\n")},
        {reuseFile,
         "<reuse_panels>\n<reuse_panel name='bar'><element name='x' "
         "event_dispatch_src='symbol'/></reuse_panel></reuse_panels>"}};
    EXPECT_THAT(linesOf(files, "unknown-dispatch-element"),
                ElementsAre(reuseFile + ":2:63 error unknown-dispatch-element symbol (" +
                            styleFile + ":2:1)"));
}

TEST(LayoutCheck, TakesASharedPanelOnOtherPagesForWorthKnowing) {
    const Files files{
        {styleFile, styles("<style name='a'><panel name='p'><reuse_panel name='bar'/></panel>"
                           "</style>\n<style name='b'><panel name='p'><element name='s' "
                           "uuid='symbol'/><reuse_panel name='bar'/></panel></style>\n")},
        {reuseFile,
         "<reuse_panels>\n<reuse_panel name='bar'><element name='x' "
         "event_dispatch_src='symbol'/></reuse_panel></reuse_panels>"}};
    EXPECT_THAT(linesOf(files, "unknown-dispatch-element"), IsEmpty());
    EXPECT_THAT(
        linesOf(files, "missing-on-some-pages"),
        ElementsAre(reuseFile + ":2:63 info missing-on-some-pages symbol (" + styleFile + ":2:1)"));
}

TEST(LayoutCheck, LetsElementsOfTabsAndPagesMeet) {
    const Files files{
        {styleFile, styles("<style name='a'><panel name='p'><element name='x' uuid='symbol' "
                           "event_dispatch_dest='tab'/></panel></style>\n")},
        {tabFile, styles("<style name='t'><panel name='p'><element name='x' uuid='tab' "
                         "event_dispatch_src='symbol'/></panel></style>\n")}};
    EXPECT_THAT(linesOf(files, "unknown-dispatch-element"), IsEmpty());
}

TEST(LayoutCheck, LooksIntoMembersThatNoPageShows) {
    const Files files{
        {softMagicFile,
         chart(member("kline") +
               member("trend", "<element name='x' uuid='t' event_dispatch_src='t;kline'/>"))}};
    EXPECT_THAT(linesOf(files, "unknown-dispatch-element"), SizeIs(1));
}

// ---- What stands once ----

TEST(LayoutCheck, FindsAUuidTwiceOnAPage) {
    const Files files{
        {styleFile, styles("<style name='a'><panel name='p'><element name='x' uuid='list'/>\n"
                           "<reuse_panel name='bar'/></panel></style>\n"
                           "<style name='b'><panel name='p'><element name='x' uuid='list'/>"
                           "</panel></style>\n")},
        {reuseFile,
         "<reuse_panels>\n<reuse_panel name='bar'><element name='y' uuid='list'/>"
         "</reuse_panel></reuse_panels>"}};
    // Elements of a panel come before those of its panels.
    EXPECT_THAT(
        linesOf(files, "duplicate-uuid"),
        ElementsAre(reuseFile + ":2:49 warning duplicate-uuid list (" + styleFile + ":2:51)"));
}

TEST(LayoutCheck, FindsAPanelThatIsShownTwiceByItsUuids) {
    const Files files{{styleFile, styles("<style name='a'><panel name='p'><reuse_panel name='bar'/>"
                                         "<reuse_panel name='bar'/></panel></style>\n")},
                      {reuseFile,
                       "<reuse_panels>\n<reuse_panel name='bar'><element name='y' uuid='list'/>"
                       "</reuse_panel></reuse_panels>"}};
    EXPECT_THAT(linesOf(files, "duplicate-uuid"),
                ElementsAre(reuseFile + ":2:49 warning duplicate-uuid list"));
    EXPECT_THAT(messageOf(files, "duplicate-uuid"), HasSubstr("this is shown twice"));
}

TEST(LayoutCheck, FindsASecondFirstResponderThatOnlyACustomPageHas) {
    const Files files{
        {styleFile, styles("<style name='t'><panel name='p'><element name='x' "
                           "is_first_responder='true'/></panel><magic_panels name='chart'/>"
                           "</style>\n")},
        {softFile, "<styles/>"},
        {magicFile, chart(member("kline") + member("trend",
                                                   "<element name='y' "
                                                   "is_first_responder='true'/>"))}};
    EXPECT_THAT(linesOf(files, "second-first-responder"),
                ElementsAre(magicFile + ":3:85 warning second-first-responder true (" + styleFile +
                            ":2:51)"));
}

// ---- Sizes ----

TEST(LayoutCheck, FindsSizesThatCannotHold) {
    const Files files{{styleFile, styles("<style name='a'>\n"
                                         "<panel min_size='320' max_size='240'/>\n"
                                         "<panel min_size='320' fix_size='240'/>\n"
                                         "<panel max_size='320' fix_size='400'/>\n"
                                         "<panel split_scale='-0.5'/>\n</style>")}};
    EXPECT_THAT(linesOf(files, "min-above-max"),
                ElementsAre(styleFile + ":3:18 error min-above-max 320 (" + styleFile + ":3:23)"));
    EXPECT_THAT(
        linesOf(files, "fixed-size-out-of-bounds"),
        ElementsAre(
            styleFile + ":4:33 warning fixed-size-out-of-bounds 240 (" + styleFile + ":4:8)",
            styleFile + ":5:33 warning fixed-size-out-of-bounds 400 (" + styleFile + ":5:8)"));
    EXPECT_THAT(linesOf(files, "share-without-space"),
                ElementsAre(styleFile + ":6:21 warning share-without-space -0.5"));
}

TEST(LayoutCheck, TakesSizesThatHold) {
    const Files files{
        {styleFile, styles("<style name='a'><panel min_size='320'/><panel max_size='320'/>"
                           "<panel fix_size='320' min_size='320' max_size='320'/>"
                           "<panel split_scale='0' fix_size='20'/>"
                           "<panel split_scale='0' min_size='20'/></style>")}};
    for (const char* const rule :
         {"min-above-max", "fixed-size-out-of-bounds", "share-without-space"})
        EXPECT_THAT(linesOf(files, rule), IsEmpty()) << rule;
}

TEST(LayoutCheck, AddsUpTheSharesThatAreWrittenBesideEachOther) {
    const auto found = [](const std::string& panels) {
        return linesOf({{styleFile, styles("<style name='个股详细视图-A'><panel name='p'>" +
                                           panels + "</panel></style>")},
                        {magicFile, chart("<magic_panel name='k'><panel split_scale='0.9'/>"
                                          "</magic_panel>")}},
                       "shares-above-whole");
    };
    EXPECT_THAT(found("<panel split_scale='0.7'/><panel split_scale='0.5'/>"), SizeIs(1));
    EXPECT_THAT(found("<panel split_scale='0.7'/><panel split_scale='0.3'/>"), IsEmpty());
    EXPECT_THAT(found("<panel split_scale='0.7'/><panel split_scale='0.5' fix_size='20'/>"),
                IsEmpty());
    EXPECT_THAT(found("<panel split_scale='0.7'/><magic_panels name='chart'/>"), IsEmpty());
    EXPECT_THAT(found("<panel split_scale='1'/><panel split_scale='2'/>"), IsEmpty());
    EXPECT_THAT(found("<panel split_scale='0.7'/><panel/>"), IsEmpty());
    EXPECT_THAT(found("<panel split_scale='0.7'/><panel split_scale='0.3'/>"
                      "<panel name='rtline_view' split_scale='0.3'/>"),
                IsEmpty());
}

// ---- Names ----

TEST(LayoutCheck, SaysThatAGroupIsKnownOnlyLater) {
    const Files files{{styleFile, styles("<style name='quote'/>")},
                      {softFile, styles("<style name='a'><magic_panels name='chart'/></style>")},
                      {softMagicFile, chart(member("kline"))}};
    EXPECT_THAT(linesOf(files, "unknown-magic-group"),
                ElementsAre(softFile + ":2:37 error unknown-magic-group chart (" + softMagicFile +
                            ":1:9)"));
    EXPECT_THAT(messageOf(files, "unknown-magic-group"),
                "Group 'chart' exists, but is not known yet when this is read: the soft-optimize "
                "magic panels are read after the pages.");
}

TEST(LayoutCheck, SaysThatAReusePanelCannotReferToAnother) {
    const Files files{{reuseFile,
                       "<reuse_panels><reuse_panel name='bar'/>\n<reuse_panel name='low'>"
                       "<reuse_panel name='bar'/></reuse_panel></reuse_panels>"}};
    EXPECT_THAT(
        linesOf(files, "unknown-reuse-panel"),
        ElementsAre(reuseFile + ":2:44 error unknown-reuse-panel bar (" + reuseFile + ":1:15)"));
    EXPECT_THAT(messageOf(files, "unknown-reuse-panel"), HasSubstr("is not known yet"));
}

TEST(LayoutCheck, FindsWildcardValuesThatAreNotServed) {
    const Files files{
        {"host.json", wildcards("\n\"STOCK\": [\"S1\", \"F1\", \"S-2\"],\n\"FUND\": [\"F1\"],\n"
                                "\"LOST\": []")},
        {magicFile, chart(member("STOCK") + member("FUND"))}};
    EXPECT_THAT(linesOf(files, "wildcard-in-two-lists"),
                ElementsAre("host.json:2:17 error wildcard-in-two-lists F1 (host.json:3:10)"));
    EXPECT_THAT(linesOf(files, "wildcard-with-dash"),
                ElementsAre("host.json:2:23 error wildcard-with-dash S-2"));
    EXPECT_THAT(linesOf(files, "wildcard-without-pattern"),
                ElementsAre("host.json:4:1 warning wildcard-without-pattern LOST"));
}

TEST(LayoutCheck, TakesADashInAPatternsNameAndItsKey) {
    const Files files{{"host.json", wildcards(R"("A-SHARE": ["S1"])")},
                      {styleFile, styles("<style name='t'><magic_panels name='chart'/></style>")},
                      {softFile, "<styles/>"},
                      {magicFile, chart(member("A-SHARE") + member("day-line"))}};
    EXPECT_THAT(linesOf(files, "member-with-dash"),
                ElementsAre(magicFile + ":3:20 warning member-with-dash day-line"));
    EXPECT_THAT(linesOf(files, "wildcard-without-pattern"), IsEmpty());
}

TEST(LayoutCheck, FindsAStoredPageThatATemplateWouldBuild) {
    const Files files{{styleFile, styles("<style name='t'><magic_panels name='chart'/></style>\n"
                                         "<style name='t-kline'/>\n<style name='t-a-b'/>\n"
                                         "<style name='u-kline'/>\n")},
                      {softFile, "<styles/>"},
                      {magicFile, chart(member("kline"))}};
    EXPECT_THAT(linesOf(files, "style-hides-custom-page"),
                ElementsAre(styleFile + ":3:14 info style-hides-custom-page t-kline (" + styleFile +
                            ":2:1)"));
}

// ---- Pages ----

TEST(LayoutCheck, BreaksAPatternWithAnyValueOfItsList) {
    const Files files{{"host.json", wildcards(R"("STOCK": ["S1", "A&B"])")},
                      {styleFile, styles("<style name='t'><magic_panels name='chart'/></style>\n"
                                         "<style name='u'><magic_panels name='chart'/></style>\n")},
                      {softFile, "<styles/>"},
                      {magicFile, chart(member("STOCK"))}};
    ::testing::internal::CaptureStderr();
    EXPECT_THAT(linesOf(files, "broken-pattern"),
                ElementsAre("host.json:1:40 error broken-pattern A&B (" + magicFile + ":2:1)"));
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

TEST(LayoutCheck, ShowsEachMemberWhenThereAreTooManyPages) {
    std::string slots;
    std::string members;
    for (int i = 0; i < 20; ++i) {
        slots += "<magic_panels name='chart'/>";
        members += member("m" + std::to_string(i),
                          "<element name='x' is_first_responder='true' "
                          "uuid='u" +
                              std::to_string(i) + "'/>");
    }
    const Files files{{styleFile, styles("<style name='t'>" + slots + "</style>\n")},
                      {softFile, "<styles/>"},
                      {magicFile, chart(members)}};
    // Each page shows one member in each slot.
    EXPECT_THAT(linesOf(files, "second-first-responder"), SizeIs(20));
}

}  // namespace
}  // namespace yg::testing
