// SPDX-License-Identifier: MIT
//
// What `ygconfig diff` prints, and its way with git.
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "files/TemporaryFolder.h"
#include "tool/Golden.h"
#include "tool/ToolRun.h"

namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;
using yg::files::contentOf;
using yg::files::TemporaryFolder;
using yg::testing::isGolden;
using yg::testing::OutputTo;
using yg::testing::runTool;
using yg::testing::ToolRun;
using Json = nlohmann::json;

constexpr const char* sample = YG_PROJECT_FOLDER "/examples/terminal";

/// The first occurrence, which must be there.
void replaceIn(const std::string& path, const std::string& text, const std::string& by) {
    std::string content = contentOf(path);
    const std::size_t at = content.find(text);
    ASSERT_NE(at, std::string::npos) << path << " without " << text;
    yg::files::put(path, content.replace(at, text.size(), by));
}

/// The sample, with edits of all kinds.
void makeEdited(const std::string& root) {
    std::filesystem::copy(sample, root, std::filesystem::copy_options::recursive);
    // Pages: an element less, a panel elsewhere, another default page.
    const std::string styles = root + "/config/custompage_template.xml";
    replaceIn(styles,
              R"(<element name="FlowChart" param="北向资金" uuid="overview.flow"
                                     event="curve_chart"/>)",
              "");
    replaceIn(styles, R"(<panel name="flow_history" is_border_radius="true">)",
              R"(<panel name="flow_history" is_border_radius="true" vertical="true">)");
    // A shared panel.
    replaceIn(root + "/base_optimize/reuse_panels.xml", R"(event="search_box")",
              R"(event="search_field")");
    // A colour that keys name.
    replaceIn(root + "/storage/palette_black.xml", R"(<COLOR NAME="panel" R="27" G="32" B="39"/>)",
              "");
    replaceIn(root + "/storage/skeleton_v1.xml", "40:192.0.2.11:9211;", "");
    replaceIn(root + "/storage/app_config.xml", ">black</theme>", ">white</theme>");
    replaceIn(root + "/storage/web_page_urls.xml", "https://help.terminal.example.com/<",
              "https://support.terminal.example.com/<");
    replaceIn(root + "/config/events.xml", R"(<command name="show_quotes")",
              R"(<command name="show_quotes_now")");
}

TEST(Diff, IsNoneBetweenARootAndItself) {
    const ToolRun run = runTool({"diff", sample, sample});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "no difference\n");
    EXPECT_EQ(run.errors, "");
    const ToolRun json = runTool({"diff", sample, sample, "--format", "json"});
    EXPECT_EQ(json.status, 0);
    EXPECT_EQ(Json::parse(json.output),
              Json::parse(R"({"changes": [], "summary": {"added": 0, "removed": 0, "changed": 0,
                              "moved": 0}})"));
}

TEST(Diff, SaysWhatChangesMeanAndWhereTheyAre) {
    const TemporaryFolder folder;
    makeEdited(folder.at("new"));
    const ToolRun run = runTool({"diff", sample, folder.at("new")});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.errors, "");
    EXPECT_TRUE(isGolden(run.output, "diff.txt"));
    const ToolRun back = runTool({"diff", folder.at("new"), sample});
    EXPECT_EQ(back.status, 1);
    EXPECT_THAT(back.output, HasSubstr("6 colour keys are no longer red in the dark theme"));
    EXPECT_TRUE(isGolden(runTool({"diff", "--help"}).output, "help-diff.txt"));
}

TEST(Diff, ListsEveryChangeAsJson) {
    const TemporaryFolder folder;
    makeEdited(folder.at("new"));
    const ToolRun run = runTool({"diff", sample, folder.at("new"), "--format=json"});
    EXPECT_EQ(run.status, 1);
    const Json all = Json::parse(run.output);
    std::map<std::string, int> kinds;
    Json element;
    for (const Json& change : all["changes"]) {
        ++kinds[change["kind"]];
        if (change["field"] == "elementEvent")
            element = change;
    }
    for (const char* const kind : {"added", "removed", "changed", "moved"})
        EXPECT_EQ(all["summary"][kind], kinds[kind]) << kind;
    EXPECT_EQ(element, Json::parse(R"({
        "kind": "changed", "subject": "element", "field": "elementEvent",
        "old": {"path": [{"subject": "reuse panel", "name": "nav_bar"},
                         {"subject": "panel", "name": "nav_search"},
                         {"subject": "element", "name": "nav.search"}],
                "value": "search_box", "file": "base_optimize/reuse_panels.xml",
                "line": 22, "column": 40},
        "new": {"path": [{"subject": "reuse panel", "name": "nav_bar"},
                         {"subject": "panel", "name": "nav_search"},
                         {"subject": "element", "name": "nav.search"}],
                "value": "search_field", "file": "base_optimize/reuse_panels.xml",
                "line": 22, "column": 40},
        "shownIn": 16})"));
}

TEST(Diff, SumsWhatHappensToManyThings) {
    const TemporaryFolder folder;
    std::string colors;
    std::string keys;
    for (int at = 0; at < 30; ++at) {
        colors += "<C NAME='c" + std::to_string(at) + "'/>";
        keys += "<I KEY='k" + std::to_string(at) + "' VALUE='c" + std::to_string(at) + "'/>";
    }
    const auto palette = [&](const std::string& of) {
        return "<ROOT><SWPALETTE><COLORES>" + of + "</COLORES><APP_MAP><COLORES>" + keys +
               "</COLORES></APP_MAP></SWPALETTE></ROOT>";
    };
    folder.write("old/storage/palette_black.xml", palette(colors));
    folder.write("new/storage/palette_black.xml", palette(""));
    const std::string output = runTool({"diff", folder.at("old"), folder.at("new")}).output;
    EXPECT_THAT(output, StartsWith("30 colour keys become red in the dark theme: k0, k1, k2 and 27 "
                                   "more\nthe dark theme loses 30 colours: c0, c1, c2 and 27 "
                                   "more\n\n"));
    EXPECT_THAT(output, HasSubstr("\n  and 40 more, which --format json lists\n"));
    EXPECT_THAT(output, HasSubstr("\n30 removed, 30 changed\n"));
}

TEST(Diff, FoldsAtTheWidthOfTheTerminalAndHasColours) {
    const TemporaryFolder folder;
    makeEdited(folder.at("new"));
    const ToolRun narrow = runTool({"diff", sample, folder.at("new")},
                                   {.outputTo = OutputTo::terminal, .environment = {"COLUMNS=40"}});
    EXPECT_THAT(narrow.output, HasSubstr("\x1b["));
    const ToolRun wide = runTool({"diff", sample, folder.at("new")},
                                 {.outputTo = OutputTo::terminal, .environment = {"COLUMNS=200"}});
    EXPECT_GT(std::ranges::count(narrow.output, '\n'), std::ranges::count(wide.output, '\n'));
    EXPECT_THAT(runTool({"diff", sample, folder.at("new"), "--color=never"}).output,
                Not(HasSubstr("\x1b[")));
}

TEST(Diff, ShowsNothingThatCommandsATerminal) {
    const TemporaryFolder folder;
    folder.write("old/config/tab_styles.xml", "<styles><style name='a\xC2\x9B[31m'/></styles>");
    folder.write("new/config/tab_styles.xml", "<styles><style name='b'/></styles>");
    EXPECT_THAT(runTool({"diff", folder.at("old"), folder.at("new")}).output,
                Not(HasSubstr("\xC2\x9B")));
}

TEST(Diff, CannotRunWithoutTwoFolders) {
    const TemporaryFolder folder;
    const auto expectRefused = [](const std::vector<std::string>& words, const std::string& why) {
        const ToolRun run = runTool(words);
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(run.errors, why + "\n");
    };
    expectRefused({"diff", sample, folder.at("none")},
                  "ygconfig: root folder \"" + folder.at("none") + "\": No such file or directory");
    expectRefused({"diff", sample}, "ygconfig diff: two root folders are compared: OLD NEW");
    expectRefused({"diff", sample, sample, sample},
                  "ygconfig diff: two root folders are compared: OLD NEW");
    expectRefused({"diff", "--git"}, "ygconfig diff: --git takes one revision or two");
    expectRefused({"diff", "--git", "--root", sample, "--", "--output=x"},
                  "ygconfig diff: \"--output=x\" is not a revision");
}

// ---- With git ----

class DiffWithGit : public testing::Test {
protected:
    void SetUp() override {
        if (std::system("git --version >/dev/null 2>&1") != 0)
            GTEST_SKIP() << "git is not installed";
        ASSERT_TRUE(git("init --quiet"));
        std::filesystem::copy(sample, root_, std::filesystem::copy_options::recursive);
        ASSERT_TRUE(git("add ."));
        ASSERT_TRUE(commit("first"));
    }

    bool git(const std::string& words) const {
        const std::string command = "cd '" + folder_.path() +
                                    "' && HOME=/nonexistent git -c user.name=n -c user.email=e "
                                    "-c init.defaultBranch=main " +
                                    words;
        return std::system(command.c_str()) == 0;
    }
    bool commit(const std::string& message) const {
        return git("commit --quiet --all --message " + message);
    }

    void edit(const std::string& by) const {
        replaceIn(root_ + "/storage/app_config.xml", ">black</theme>", ">" + by + "</theme>");
    }

    /// With temporary files in a folder that is empty afterwards.
    ToolRun diff(std::vector<std::string> words) const {
        words.insert(words.begin(), "diff");
        words.insert(words.end(), {"--root", root_});
        const ToolRun run = runTool(words, {.environment = {"TMPDIR=" + temporary_.path()}});
        EXPECT_THAT(temporary_.names(), IsEmpty());
        return run;
    }

    const TemporaryFolder temporary_;
    const TemporaryFolder folder_;
    const std::string root_ = folder_.at("里/terminal");

    DiffWithGit() { folder_.makeFolder("里"); }
};

TEST_F(DiffWithGit, ComparesARootWithAnOlderState) {
    EXPECT_EQ(diff({"--git", "HEAD"}).status, 0);
    edit("white");
    const ToolRun run = diff({"--git", "HEAD"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.output,
              "storage/app_config.xml changes 1 setting: appearance/theme (text black → white)\n\n"
              "storage/app_config.xml\n"
              "  ~ setting appearance/theme: text black → white\n"
              "      old and new storage/app_config.xml:13:9\n\n"
              "1 changed\n");
    EXPECT_EQ(run.errors, "");
}

TEST_F(DiffWithGit, ComparesTwoStates) {
    edit("white");
    ASSERT_TRUE(commit("second"));
    EXPECT_EQ(diff({"--git", "HEAD"}).status, 0);
    EXPECT_THAT(diff({"--git", "HEAD~1", "HEAD"}).output, HasSubstr("text black → white"));
    EXPECT_THAT(diff({"--git", "HEAD", "HEAD~1"}).output, HasSubstr("text white → black"));
    EXPECT_EQ(diff({"--git", "HEAD", "HEAD"}).status, 0);
}

TEST_F(DiffWithGit, LeavesTheRepositoryAsItIs) {
    edit("white");
    ASSERT_TRUE(git("status --short > status"));
    const std::string index = contentOf(folder_.at(".git/index"));
    EXPECT_EQ(diff({"--git", "HEAD"}).status, 1);
    EXPECT_EQ(contentOf(folder_.at(".git/index")), index);
    EXPECT_TRUE(git("diff --cached --quiet"));
}

TEST_F(DiffWithGit, SaysWhyAStateCannotBeUsed) {
    const ToolRun unknown = diff({"--git", "none"});
    EXPECT_EQ(unknown.status, 2);
    EXPECT_EQ(unknown.errors, "ygconfig diff: git knows no revision \"none\"\n");
    folder_.makeFolder("later");
    EXPECT_EQ(runTool({"diff", "--git", "HEAD", "--root", folder_.at("later")}).errors,
              "ygconfig diff: revision \"HEAD\" does not have the folder \"later/\"\n");
    const ToolRun outside = runTool({"diff", "--git", "HEAD", "--root", temporary_.path()});
    EXPECT_EQ(outside.status, 2);
    EXPECT_THAT(outside.errors, HasSubstr("not a git repository"));
    const ToolRun without =
        runTool({"diff", "--git", "HEAD", "--root", root_}, {.environment = {"PATH=/nonexistent"}});
    EXPECT_EQ(without.status, 2);
    EXPECT_EQ(without.errors,
              "ygconfig diff: \"" + root_ + "\": git cannot be run: No such file or directory\n");
}

TEST(Diff, RemovesItsFolderWhenASignalEndsTheRun) {
    const TemporaryFolder temporary;
    const TemporaryFolder programs;
    programs.write("git", "#!/bin/sh\nkill -TERM $PPID\n");
    std::filesystem::permissions(programs.at("git"), std::filesystem::perms::owner_all);
    const ToolRun run =
        runTool({"diff", "--git", "HEAD", "--root", sample},
                {.environment = {"TMPDIR=" + temporary.path(), "PATH=" + programs.path()}});
    EXPECT_EQ(run.status, -1);
    EXPECT_THAT(temporary.names(), IsEmpty());
}

// The recipe of docs/diff.md.
TEST_F(DiffWithGit, ShowsWhatFilesMeanThroughTextconv) {
    const std::string events = root_ + "/config/events.xml";
    const std::string tool =
        std::string("'2>/dev/null ") + YG_TOOL + " dump events --root " + sample + " --events'";
    folder_.write(".gitattributes", "**/config/events.xml diff=ygevents\n");
    ASSERT_TRUE(git("config diff.ygevents.textconv " + tool));
    replaceIn(events, "<command name=\"show_quotes\" change_style=\"行情报价\"",
              "<command   change_style=\"行情报价\" name=\"show_quotes\"");
    ASSERT_TRUE(git("diff > '" + temporary_.at("same") + "'"));
    EXPECT_THAT(contentOf(temporary_.at("same")), Not(HasSubstr("\n+ ")));
    replaceIn(events, "change_style=\"行情报价\" name", "change_style=\"自选\" name");
    ASSERT_TRUE(git("diff > '" + temporary_.at("other") + "'"));
    EXPECT_THAT(contentOf(temporary_.at("other")),
                HasSubstr("\n+      \"changeStyleName\": \"自选\""));
}

}  // namespace
