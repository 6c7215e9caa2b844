// SPDX-License-Identifier: MIT
//
// Whole runs that concern no command in particular: roots, words that are not known, the streams.
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/version.h"

#include "files/TemporaryFolder.h"
#include "tool/ToolRun.h"

namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using yg::files::TemporaryFolder;
using yg::testing::OutputTo;
using yg::testing::runTool;
using yg::testing::ToolRun;

/// Expects a run that ends with status 2, prints nothing and prints exactly this line on standard
/// error.
void expectRefused(const std::vector<std::string>& arguments, const std::string& line) {
    const ToolRun run = runTool(arguments);
    EXPECT_EQ(run.status, 2) << line;
    EXPECT_EQ(run.output, "") << line;
    EXPECT_EQ(run.errors, line + "\n");
}

TEST(Root, MustBeAFolder) {
    const TemporaryFolder root;
    root.write("file", "");
    expectRefused({"dump", "layout", "--root", root.at("none")},
                  "ygconfig: root folder \"" + root.at("none") + "\": No such file or directory");
    expectRefused({"dump", "layout", "--root", root.at("file")},
                  "ygconfig: root folder \"" + root.at("file") + "\": Not a directory");
    expectRefused({"show", "--root="}, "ygconfig: root folder \"\": No such file or directory");
}

TEST(Root, IsTheCurrentFolderIfNotGiven) {
    const TemporaryFolder root;
    root.write("config/custompage_template.xml", "<styles><style name='s'/></styles>");
    const ToolRun run = runTool({"dump", "style", "s"}, {.folder = root.path()});
    EXPECT_EQ(run.status, 0);
}

TEST(HostJson, MustBeAnObject) {
    const TemporaryFolder root;
    for (const char* text : {"[]", "null", "{", "", "{\"rightLevel\": 1}"}) {
        root.write("host.json", text);
        const ToolRun run = runTool({"dump", "layout", "--root", root.path()});
        EXPECT_EQ(run.status, 2) << text;
        EXPECT_EQ(run.output, "") << text;
        EXPECT_THAT(run.errors, StartsWith("ygconfig: " + root.at("host.json") + ": ")) << text;
        EXPECT_EQ(run.errors.find('\n'), run.errors.size() - 1) << text;
    }
}

TEST(HostJson, MayBeMissing) {
    const TemporaryFolder root;
    EXPECT_EQ(runTool({"dump", "layout", "--root", root.path()}).status, 0);
}

TEST(UnknownWords, GetASuggestion) {
    expectRefused({"dmup", "layout"}, "ygconfig: unexpected 'dmup'; did you mean 'dump'?");
    expectRefused({"dump", "layuot"}, "ygconfig dump: unexpected 'layuot'; did you mean 'layout'?");
    expectRefused({"show", "styel", "x"},
                  "ygconfig show: unexpected 'styel'; did you mean 'style'?");
    expectRefused({"dump", "layout", "--roto", "x"},
                  "ygconfig dump layout: unexpected '--roto'; did you mean '--root'?");
    expectRefused({"--versoin"}, "ygconfig: unexpected '--versoin'; did you mean '--version'?");
}

TEST(UnknownWords, GetNoSuggestionWhenNothingIsSimilar) {
    expectRefused({"frobnicate"}, "ygconfig: unexpected 'frobnicate'");
    expectRefused({"dump", "layout", "-5"}, "ygconfig dump layout: unexpected '-5'");
}

TEST(UnknownWords, StayInOneLine) {
    expectRefused({"a\nb\x1b[31m\xff"}, "ygconfig: unexpected 'a\uFFFDb\uFFFD[31m\uFFFD'");
}

TEST(MissingWords, AreAskedFor) {
    expectRefused({}, "ygconfig: A subcommand is required");
    expectRefused({"dump"}, "ygconfig dump: A subcommand is required");
    expectRefused({"dump", "style"}, "ygconfig dump style: NAME is required");
    expectRefused({"dump", "layout", "--root"},
                  "ygconfig dump layout: --root: 1 required ROOT missing");
}

TEST(Version, IsTheLibrarys) {
    const ToolRun run = runTool({"--version"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, std::string("ygconfig ") + YGConfigManagerVersionString + "\n");
    EXPECT_EQ(run.errors, "");
}

TEST(StandardOutput, ThatIsFullIsAnError) {
    const TemporaryFolder root;
    for (const char* command : {"dump", "show"}) {
        const ToolRun run =
            runTool({command, "layout", "--root", root.path()}, {.outputTo = OutputTo::fullDisk});
        EXPECT_EQ(run.status, 3);
        EXPECT_THAT(run.errors, HasSubstr("ygconfig: standard output: No space left on device\n"));
    }
    EXPECT_EQ(runTool({"--help"}, {.outputTo = OutputTo::fullDisk}).status, 3);
}

TEST(StandardOutput, ThatIsClosedIsAnError) {
    const TemporaryFolder root;
    const ToolRun run =
        runTool({"dump", "layout", "--root", root.path()}, {.outputTo = OutputTo::nowhere});
    EXPECT_EQ(run.status, 3);
    EXPECT_THAT(run.errors, HasSubstr("ygconfig: standard output: Bad file descriptor\n"));
}

TEST(StandardOutput, ThatIsNoLongerReadIsAQuietError) {
    const ToolRun run = runTool({"--help"}, {.outputTo = OutputTo::closedPipe});
    EXPECT_EQ(run.status, 3);
    EXPECT_EQ(run.errors, "");
    const TemporaryFolder root;
    const ToolRun dump =
        runTool({"dump", "layout", "--root", root.path()}, {.outputTo = OutputTo::closedPipe});
    EXPECT_EQ(dump.status, 3);
    EXPECT_THAT(dump.errors, Not(HasSubstr("ygconfig: standard output")));
}

}  // namespace
