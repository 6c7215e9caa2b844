// SPDX-License-Identifier: MIT
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/diagnostics/Rule.h"
#include "YGConfigManager/inspection/PageNames.h"

#include "inspection/Inspected.h"

namespace yg::testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;

constexpr const char* events = "config/events.xml";
constexpr const char* pages = "config/custompage_template.xml";
constexpr const char* tabs = "config/tab_styles.xml";
constexpr const char* magic = "config/magic_panels.xml";
constexpr const char* reuse = "base_optimize/reuse_panels.xml";
constexpr const char* softPages = "soft_optimize/custompage_template.xml";

/// A small layout: two pages, a tab, a template with two slots, and a group with a pattern.
Files layoutWith(Files files) {
    files.try_emplace(pages,
                      "<styles><style name='quote'><panel name='a'/></style>"
                      "<style name='trade-form'><panel name='a'/></style></styles>");
    files.try_emplace(tabs, "<styles><style name='trend'><panel name='a'/></style></styles>");
    files.try_emplace(softPages,
                      "<styles>\n<style name='work'><panel name='a'>\n"
                      "<magic_panels name='chart'/>\n"
                      "<panel name='b'>\n<magic_panels name='side'/></panel>"
                      "</panel></style></styles>");
    files.try_emplace(magic,
                      "<magic_panels><magic_panels name='chart'>"
                      "<magic_panel name='kline'><panel name='k'/></magic_panel>"
                      "<magic_panel name='STOCK'><panel name='STOCK_v'/></magic_panel>"
                      "</magic_panels><magic_panels name='side'>"
                      "<magic_panel name='depth'><panel name='d'/></magic_panel>"
                      "</magic_panels></magic_panels>");
    files.try_emplace(reuse, "<reuse_panels/>");
    files.try_emplace("host.json", R"({"mappings": {"模版通配": {"STOCK": ["SH1", "SH2"]}}})");
    return files;
}

std::string commandTo(const std::string& page) {
    return "<event_list><command_event><command name='c' change_style='" + page +
           "'/></command_event></event_list>";
}

/// What is found in a command that changes to this page.
std::vector<std::string> pageFindings(const std::string& page) {
    return linesOf(layoutWith({{events, commandTo(page)}}), "unknown-page");
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

// ---- Elements and their groups ----

TEST(EventsCheck, FindsUnknownGroupsWhereverElementsStand) {
    const Files files = layoutWith({
        {events,
         "<event_list>\n<element_event name='list'><event name='e'/></element_event>"
         "</event_list>"},
        {pages,
         "<styles><style name='p'><panel name='a'>\n<element name='x' event='lits'/>"
         "</panel></style></styles>"},
        {tabs,
         "<styles><style name='t'><panel name='a'>\n<element name='x' event='other'/>"
         "</panel></style></styles>"},
        {magic,
         "<magic_panels><magic_panels name='chart'><magic_panel name='m'><panel name='a'>\n"
         "<element name='x' event='List'/></panel></magic_panel></magic_panels>"
         "</magic_panels>"},
        {reuse,
         "<reuse_panels><reuse_panel name='r'>\n<element name='x' event='list '/>"
         "</reuse_panel></reuse_panels>"},
    });
    EXPECT_THAT(
        linesOf(files, "unknown-event-group"),
        ElementsAre("base_optimize/reuse_panels.xml:2:26 error unknown-event-group list  -> list "
                    "(config/events.xml:2:22)",
                    "config/custompage_template.xml:2:26 error unknown-event-group lits -> list "
                    "(config/events.xml:2:22)",
                    "config/magic_panels.xml:2:26 error unknown-event-group List -> list "
                    "(config/events.xml:2:22)",
                    "config/tab_styles.xml:2:26 error unknown-event-group other"));
}

TEST(EventsCheck, SaysNothingOfGroupsThatExistAndOfElementsWithoutOne) {
    const Files files = layoutWith(
        {{events,
          "<event_list><element_event name='list'><event name='e'/></element_event>"
          "<element_event name='SH2_list'><event name='e'/></element_event></event_list>"},
         {pages,
          "<styles><style name='p'><panel name='a'><element name='x' event='list'/>"
          "<element name='x' event=''/><element name='x'/></panel></style></styles>"},
         {magic,
          "<magic_panels><magic_panels name='chart'><magic_panel name='STOCK'>"
          "<panel name='a'><element name='x' event='STOCK_list'/></panel></magic_panel>"
          "</magic_panels></magic_panels>"}});
    EXPECT_THAT(linesOf(files, "unknown-event-group"), IsEmpty());
    EXPECT_THAT(linesOf(files, "unused-event-group"), IsEmpty());
}

TEST(EventsCheck, WritesWildcardsIntoGroupsOfPatternsAlone) {
    const Files files = layoutWith(
        {{events,
          "<event_list><element_event name='SH2_list'><event name='e'/></element_event>"
          "</event_list>"},
         {pages,
          "<styles><style name='p'><panel name='a'><element name='x' event='STOCK_list'/>"
          "</panel></style></styles>"},
         {magic,
          "<magic_panels><magic_panels name='chart'><magic_panel name='STOCK'>\n"
          "<panel name='a'><element name='x' event='STOCK_bar'/></panel></magic_panel>"
          "</magic_panels></magic_panels>"}});
    EXPECT_THAT(
        linesOf(files, "unknown-event-group"),
        ElementsAre("config/custompage_template.xml:1:66 error unknown-event-group STOCK_list",
                    "config/magic_panels.xml:2:42 error unknown-event-group STOCK_bar"));
}

// ---- Commands ----

TEST(EventsCheck, FindsUnknownCommandsOfEventsInGroupsAndTemplates) {
    const Files files{{events,
                       "<event_list>\n<event_template name='t'><event name='e' command='opne'/>"
                       "</event_template>\n<element_event name='g'><event name='e' command='b;c'/>"
                       "<include src='t'/></element_event>\n"
                       "<command_event><command name='open'/></command_event></event_list>"}};
    EXPECT_THAT(linesOf(files, "unknown-command"),
                ElementsAre("config/events.xml:2:51 error unknown-command opne -> open "
                            "(config/events.xml:4:31)",
                            "config/events.xml:3:50 error unknown-command b;c"));
}

TEST(EventsCheck, SaysNothingOfCommandsThatExistAndOfEventsWithoutOne) {
    EXPECT_THAT(linesOf({{events,
                          "<event_list><element_event name='g'>"
                          "<event name='a' command='open'/><event name='b' command=''/>"
                          "<event name='c'/></element_event><command_event>"
                          "<command name='open'/></command_event></event_list>"}},
                        "unknown-command"),
                IsEmpty());
}

TEST(EventsCheck, TakesThePlainCommandOfAPanelForTheNameOfOne) {
    const auto withCommand = [](const std::string& info) {
        return linesOf(layoutWith({{events,
                                    "<event_list><command_event><command name='open'/>"
                                    "</command_event></event_list>"},
                                   {pages,
                                    "<styles><style name='p'>\n<panel name='a' "
                                    "excute_command_info='" +
                                        info + "'/></style></styles>"}}),
                       "unknown-panel-command");
    };
    EXPECT_THAT(withCommand("opne"),
                ElementsAre("config/custompage_template.xml:2:38 warning unknown-panel-command "
                            "opne -> open (config/events.xml:1:43)"));
    EXPECT_THAT(withCommand(" open"), SizeIs(1));
    EXPECT_THAT(withCommand("其他"), SizeIs(1));
    for (const char* const info : {"open", "", "opne:5", "opne symbol", "opne；close", "opne(1)"})
        EXPECT_THAT(withCommand(info), IsEmpty()) << info;
}

// ---- Pages ----

TEST(EventsCheck, KnowsPagesThatAreStoredOrCanBeBuilt) {
    for (const char* const page : {"quote", "trade-form", "work", "work-kline-depth",
                                   "work-SH2-depth", "work-STOCK-depth", ""})
        EXPECT_THAT(pageFindings(page), IsEmpty()) << page;
}

TEST(EventsCheck, PointsAtThePartOfAPageThatFails) {
    const std::string begin = "config/events.xml:1:";
    EXPECT_THAT(pageFindings("quoet"), ElementsAre(begin + "60 error unknown-page quoet -> quote"));
    EXPECT_THAT(pageFindings("zzz"), ElementsAre(begin + "60 error unknown-page zzz"));
    EXPECT_THAT(pageFindings("trade-from"),
                ElementsAre(begin + "66 error unknown-page from -> form"));
    EXPECT_THAT(pageFindings("wrok-kline-depth"),
                ElementsAre(begin + "60 error unknown-page wrok -> work"));
    EXPECT_THAT(pageFindings("work-klien-depth"),
                ElementsAre(begin + "65 error unknown-page klien -> kline "
                                    "(soft_optimize/custompage_template.xml:3:1)"));
    EXPECT_THAT(pageFindings("work-SH3-dept"),
                ElementsAre(begin + "60 error unknown-page work-SH3-dept -> work-SH1-depth "
                                    "(soft_optimize/custompage_template.xml:3:1)"));
    EXPECT_THAT(pageFindings("work-kline-zzz"),
                ElementsAre(begin + "71 error unknown-page zzz "
                                    "(soft_optimize/custompage_template.xml:5:1)"));
    EXPECT_THAT(pageFindings("work-kline"),
                ElementsAre(begin + "60 error unknown-page work-kline "
                                    "(soft_optimize/custompage_template.xml:2:1)"));
}

TEST(EventsCheck, SaysWhichPartOfAPageFails) {
    const auto message = [](const std::string& page) {
        return messageOf(layoutWith({{events, commandTo(page)}}), "unknown-page");
    };
    EXPECT_THAT(message("quoet"), HasSubstr("no stored page, tab or template has this name"));
    EXPECT_THAT(message("wrok-kline-depth"), HasSubstr("there is no template 'wrok'"));
    EXPECT_THAT(message("work-kline"),
                HasSubstr("template 'work' has 2 slots, and the name gives 1 argument."));
    EXPECT_THAT(message("work-kline-zzz"), HasSubstr("group 'side' has no member 'zzz'"));
}

TEST(EventsCheck, ReadsOtherDashesInPagesAsPlainOnes) {
    const std::string begin = "config/events.xml:1:60 error unknown-page ";
    EXPECT_THAT(pageFindings("work－kline－depth"),
                ElementsAre(begin + "work－kline－depth -> work-kline-depth"));
    EXPECT_THAT(pageFindings("work-kline–depth"),
                ElementsAre(begin + "work-kline–depth -> work-kline-depth"));
    EXPECT_THAT(pageFindings("trade－form"), ElementsAre(begin + "trade－form -> trade-form"));
    EXPECT_THAT(messageOf(layoutWith({{events, commandTo("trade－form")}}), "unknown-page"),
                HasSubstr("only the plain \"-\" separates"));
}

TEST(EventsCheck, LooksAtThePagesOfEventsToo) {
    const Files files =
        layoutWith({{events,
                     "<event_list><element_event name='g'><event name='e' change_style='quoet'/>"
                     "</element_event></event_list>"}});
    EXPECT_THAT(linesOf(files, "unknown-page"),
                ElementsAre("config/events.xml:1:67 error unknown-page quoet -> quote"));
}

TEST(EventsCheck, CannotBuildPagesWithAPatternThatTheArgumentBreaks) {
    const Files files =
        layoutWith({{events, commandTo("work-A&amp;B-depth")},
                    {"host.json", R"({"mappings": {"模版通配": {"STOCK": ["A&B"]}}})"}});
    ::testing::internal::CaptureStderr();
    const std::vector<std::string> lines = linesOf(files, "unknown-page");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
    EXPECT_THAT(lines, ElementsAre(HasSubstr("unknown-page work-A&B-depth")));
}

TEST(EventsCheck, TellsTabsFromPages) {
    const Files files = layoutWith({{events, commandTo("trend")}});
    EXPECT_THAT(linesOf(files, "tab-as-page"),
                ElementsAre("config/events.xml:1:60 info tab-as-page trend"));
    EXPECT_THAT(linesOf(files, "unknown-page"), IsEmpty());
}

TEST(EventsCheck, ReportsNothingElseForPagesThatCannotBeBuilt) {
    const Files files = layoutWith({{events, commandTo("work-kline")}});
    EXPECT_THAT(linesOf(files, "argument-count"), IsEmpty());
    EXPECT_THAT(linesOf(layoutWith({{events, commandTo("work-kline-zzz")}}), "slot-left"),
                IsEmpty());
}

TEST(Effort, EndsAndThenGrantsNothing) {
    Effort effort;
    const std::vector<std::string> known{"depth"};
    EXPECT_EQ(effort.nearest("detph", known), "depth");
    EXPECT_EQ(effort.nearest(std::string(1000, 'd'), known), "");
    EXPECT_TRUE(effort.spend(1'000'000));
    EXPECT_FALSE(effort.spend(1'000'000'000));
    EXPECT_FALSE(effort.spend(1));
    EXPECT_EQ(effort.nearest("detph", known), "");
}

// ---- Templates ----

TEST(EventsCheck, SaysThatATemplateIsDefinedBelowItsUse) {
    const Files files{
        {events,
         "<event_list>\n<event_template name='t'><event name='a' src='u'/>"
         "</event_template>\n<event_template name='u'><event name='b'/></event_template>"
         "</event_list>"}};
    EXPECT_THAT(linesOf(files, "unknown-event-template"),
                ElementsAre("config/events.xml:2:47 error unknown-event-template u "
                            "(config/events.xml:3:23)"));
    EXPECT_THAT(messageOf(files, "unknown-event-template"), HasSubstr("is defined below"));
}

TEST(EventsCheck, SaysThatATemplateCannotIncludeItself) {
    const Files files{{events,
                       "<event_list><event_template name='t'><event name='a' src='t'/>"
                       "</event_template></event_list>"}};
    EXPECT_THAT(messageOf(files, "unknown-event-template"), HasSubstr("cannot include itself"));
}

TEST(EventsCheck, LeavesIncludesOfTemplatesThatAreNowhere) {
    const Files files{{events,
                       "<event_list><event_template name='base'><event name='a'/>"
                       "</event_template><element_event name='g'><include src='bsae'/>"
                       "</element_event></event_list>"}};
    EXPECT_THAT(linesOf(files, "unknown-event-template"),
                ElementsAre(HasSubstr("unknown-event-template bsae -> base")));
    EXPECT_THAT(messageOf(files, "unknown-event-template"), Not(HasSubstr("below this include")));
}

// ---- What nothing uses ----

TEST(EventsCheck, FindsWhatNothingUses) {
    const Files files =
        layoutWith({{events,
                     "<event_list>\n<command_event><command name='c'/></command_event>\n"
                     "<event_template name='t'><event name='a'/></event_template>\n"
                     "<element_event name='g'><event name='a'/></element_event></event_list>"}});
    EXPECT_THAT(linesOf(files),
                ::testing::AllOf(Contains("config/events.xml:2:31 info unused-command c"),
                                 Contains("config/events.xml:3:23 info unused-event-template t"),
                                 Contains("config/events.xml:4:22 info unused-event-group g")));
}

TEST(EventsCheck, CountsEveryUse) {
    const Files files =
        layoutWith({{events,
                     "<event_list><command_event><command name='a'/><command name='b'/>"
                     "<command name='c'/><command name='d'/><command name='near'/></command_event>"
                     "<event_template name='t'><event name='x' command='a'/></event_template>"
                     "<event_template name='u'><include src='t'/></event_template>"
                     "<element_event name='g'><include src='u'/>"
                     "<event name='z' command='naer'/></element_event></event_list>"},
                    {pages,
                     "<styles><style name='quote'><panel name='a' excute_command_info='b'>"
                     "<panel name='e' excute_command_info='c;d 1'/><element name='x' event='g'/>"
                     "</panel></style></styles>"}});
    for (const char* const rule : {"unused-command", "unused-event-template", "unused-event-group"})
        EXPECT_THAT(linesOf(files, rule), IsEmpty()) << rule;
}

TEST(EventsCheck, DoesNotSayWhatIsUnusedWhenTheLayoutCannotBeRead) {
    const char* const list =
        "<event_list><command_event><command name='c'/></command_event>"
        "<element_event name='g'><event name='a'/></element_event></event_list>";
    for (const char* const file : {pages, tabs, magic, reuse, softPages}) {
        const Files files = layoutWith({{events, list}, {file, "<styles"}});
        EXPECT_THAT(linesOf(files, "unused-command"), IsEmpty()) << file;
        EXPECT_THAT(linesOf(files, "unused-event-group"), IsEmpty()) << file;
    }
    EXPECT_THAT(linesOf({{events, list}}, "unused-command"), IsEmpty());
}

// ---- The rules ----

TEST(EventsCheck, GivesEachExampleItsFindingAndNoneAfterTheRepair) {
    for (const char* const name :
         {"unknown-event-group", "unknown-command", "unknown-panel-command", "unknown-page",
          "tab-as-page", "unused-event-group", "unused-event-template", "unused-command"}) {
        const Rule& rule = *ruleNamed(name);
        const auto with = [&](std::string_view text) {
            Files files{{std::string(rule.file), std::string(text)}};
            if (!rule.besideFile.empty())
                files.emplace(rule.besideFile, rule.beside);
            return linesOf(layoutWith(files), name);
        };
        EXPECT_THAT(with(rule.before), SizeIs(1)) << name;
        EXPECT_THAT(with(rule.after), IsEmpty()) << name;
    }
}

TEST(EventsCheck, FindsNothingInTheSample) {
    for (const std::string& line : linesOf(*inspected(YG_SAMPLE_FOLDER))) {
        for (const char* const rule : {"unknown-", "tab-as-page", "unused-event", "unused-command"})
            EXPECT_THAT(line, Not(HasSubstr(rule)));
    }
}

}  // namespace
}  // namespace yg::testing
