// SPDX-License-Identifier: MIT
//
// Whole runs on event files: dump events, command, event, show events.
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "files/TemporaryFolder.h"
#include "tool/ToolRun.h"

namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::Not;
using yg::files::TemporaryFolder;
using yg::testing::OutputTo;
using yg::testing::runTool;
using yg::testing::ToolRun;

const std::string eventsPath = "config/events.xml";
const std::string sample = "examples/terminal";

ToolRun runOn(const TemporaryFolder& root, std::vector<std::string> words) {
    words.insert(words.begin(), {"--root", root.path()});
    return runTool(words);
}

TEST(DumpEvents, WritesEachFieldOfEachRecord) {
    const TemporaryFolder root;
    root.write(eventsPath, R"(<event_list>
        <command_event><command name="go" change_style="页" dispatch=""/></command_event>
        <event_template name="t"><e name="click" disptch="d" dispatch="x"/></event_template>
        <element_event name="g"><include src="t"/></element_event>
    </event_list>)");
    const ToolRun run = runOn(root, {"dump", "events"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(run.output, R"({
  "commandDatas": {
    "go": {
      "commandName": "go",
      "changeStyleName": "页",
      "dispatchParam": "",
      "addtionData": null
    }
  },
  "eventTemplateDatas": {
    "t": {
      "click": {
        "eventName": "click",
        "command": null,
        "changeStyleName": null,
        "dispatchParam": "d",
        "addtionData": null
      }
    }
  },
  "elementEventDatas": {
    "g": {
      "click": {
        "eventName": "click",
        "command": null,
        "changeStyleName": null,
        "dispatchParam": "d",
        "addtionData": null
      }
    }
  }
}
)");
}

TEST(DumpEvents, IsEmptyWithoutAFile) {
    const TemporaryFolder root;
    const ToolRun run = runOn(root, {"dump", "events"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output,
              "{\n  \"commandDatas\": {},\n  \"eventTemplateDatas\": {},\n"
              "  \"elementEventDatas\": {}\n}\n");
    EXPECT_THAT(run.errors, HasSubstr("load palette config fail:" + root.at(eventsPath)));
}

TEST(DumpEvents, ReadsTheFileOfItsOption) {
    const TemporaryFolder root;
    const auto write = [&](const char* file, const std::string& command) {
        root.write(file, "<event_list><command_event><c name='" + command +
                             "'/></command_event></event_list>");
    };
    write("a.xml", "a");
    write("b.xml", "b");
    const ToolRun run =
        runTool({"dump", "events", "--events", "a.xml", "--events=b.xml"}, {.folder = root.path()});
    const json commands = json::parse(run.output).at("commandDatas");
    EXPECT_EQ(commands.size(), 1);
    EXPECT_TRUE(commands.contains("b"));
}

TEST(DumpEvents, AnEmptyPathIsNotTheDefaultOne) {
    const TemporaryFolder root;
    root.write(eventsPath, "<event_list><command_event><c name='c'/></command_event></event_list>");
    const ToolRun run = runOn(root, {"dump", "events", "--events="});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, "");
    EXPECT_TRUE(json::parse(run.output).at("commandDatas").empty());
}

TEST(DumpEvents, HoldsTheRecordsThatAreFoundByName) {
    const json all = json::parse(runTool({"dump", "events", "--root", sample}).output);
    EXPECT_GT(all.at("commandDatas").size(), 50);
    for (const char* name : {"open_index_page", "show_menu"}) {
        const ToolRun run = runTool({"command", name, "--root", sample});
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(json::parse(run.output), all.at("commandDatas").at(name));
    }
    for (const auto& [name, event] : all.at("elementEventDatas").at("watch_list").items()) {
        const ToolRun run = runTool({"event", "watch_list", name, "--root", sample});
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(json::parse(run.output), event);
    }
}

TEST(FindCommand, AnswersNullAndOneWithoutTheCommand) {
    for (const char* name : {"open_stocks", "", "select"}) {
        const ToolRun run = runTool({"command", "--root", sample, "--", name});
        EXPECT_EQ(run.output, "null\n") << name;
        EXPECT_EQ(run.status, 1) << name;
    }
}

TEST(FindCommand, TakesAnyName) {
    const TemporaryFolder root;
    root.write(eventsPath,
               "<event_list><command_event><c name='-x'/><c name='{}'/>"
               "<c name='[a,b]'/><c name='event'/></command_event></event_list>");
    for (const char* name : {"-x", "{}", "[a,b]", "event"}) {
        const ToolRun run = runOn(root, {"command", "--", name});
        EXPECT_EQ(run.status, 0) << name;
        EXPECT_EQ(json::parse(run.output).at("commandName"), name);
    }
}

TEST(FindEvent, LooksIntoItsGroupAlone) {
    const TemporaryFolder root;
    root.write(eventsPath, R"(<event_list>
        <event_template name="t"><e name="in_template"/></event_template>
        <element_event name="g"><event name="here"/></element_event>
        <element_event name="h"><event name="there"/></element_event>
    </event_list>)");
    EXPECT_EQ(runOn(root, {"event", "g", "here"}).status, 0);
    for (const std::vector<std::string>& names : {std::vector<std::string>{"g", "there"},
                                                  {"t", "in_template"},
                                                  {"", "here"},
                                                  {"g", ""},
                                                  {"here", "g"}}) {
        const ToolRun run = runOn(root, {"event", names[0], names[1]});
        EXPECT_EQ(run.output, "null\n") << names[0] << ' ' << names[1];
        EXPECT_EQ(run.status, 1) << names[0] << ' ' << names[1];
    }
}

TEST(FindEvent, NeedsBothNames) {
    const ToolRun run = runTool({"event", "g", "--root", sample});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.errors, "ygconfig event: NAME is required\n");
}

TEST(ShowEvents, SaysWhereEventsLeadAndWhereTheyComeFrom) {
    const TemporaryFolder root;
    root.write(eventsPath, R"(<event_list>
        <command_event>
            <command name="go" change_style="页" dispatch="d" addtion_data=""/>
            <command name="stay"/>
        </command_event>
        <event_template name="base"><e name="a" command="go"/></event_template>
        <event_template name="more"><e src="base"/><e name="b" disptch="x"/></event_template>
        <element_event name="g">
            <include src="more"/>
            <event name="c" command="go" change_style="own" addtion_data="y"/>
            <event name="d" command="gone" change_style=""/>
            <event name="e" command="stay" dispatch=""/>
        </element_event>
        <element_event name="base"><include src="base"/></element_event>
        <element_event name="copy"><event name="a" command="go"/></element_event>
        <element_event name="none"><include src="unknown"/></element_event>
    </event_list>)");
    EXPECT_EQ(runOn(root, {"show", "events"}).output, R"(Groups  4

g
├─ a  go  → 页  from base
├─ b  dispatch x  from more
├─ c  go  → own  data y
├─ d  gone  (no such command)  → ""
└─ e  stay  dispatch ""

base
└─ a  go  → 页  from base

copy
└─ a  go  → 页

none  empty

Templates  2

base
└─ a  go  → 页

more
├─ a  go  → 页  from base
└─ b  dispatch x

Commands  2

go  → 页  dispatch d  data ""
stay
)");
}

TEST(ShowEvents, CountsNothingOnAnEmptyRoot) {
    const TemporaryFolder root;
    const ToolRun run = runOn(root, {"show", "events"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "Groups  0\n\nTemplates  0\n\nCommands  0\n");
}

TEST(ShowEvents, HasColoursOnATerminalOnly) {
    EXPECT_THAT(runTool({"show", "events", "--root", sample}).output, Not(HasSubstr("\x1b")));
    EXPECT_THAT(
        runTool({"show", "events", "--root", sample}, {.outputTo = OutputTo::terminal}).output,
        HasSubstr("\x1b[36mfrom base_view\x1b[0m"));
}

}  // namespace
