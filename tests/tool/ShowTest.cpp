// SPDX-License-Identifier: MIT
//
// Whole runs of `ygconfig show` on small roots.
#include <algorithm>
#include <cstddef>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "files/TemporaryFolder.h"
#include "tool/ToolRun.h"
#include "ygconfig/drawing/Display.h"

namespace {

using testing::HasSubstr;
using testing::Not;
using yg::files::TemporaryFolder;
using yg::testing::OutputTo;
using yg::testing::runTool;
using yg::testing::ToolRun;
using yg::testing::ToolSetting;
using yg::tool::displayWidth;

const std::string stylePath = "config/custompage_template.xml";

std::string showStyle(const TemporaryFolder& root, const std::string& name) {
    return runTool({"show", "style", "--root", root.path(), "--", name}).output;
}

std::string showLayout(const TemporaryFolder& root) {
    return runTool({"show", "layout", "--root", root.path()}).output;
}

TEST(ShowStyle, SaysWhatIsSet) {
    const TemporaryFolder root;
    root.write(stylePath, R"(<styles><style name="页" layer="2" focus="f">
        <panel name="all" split_scale="0.25" fix_size="0" scroll_size="9" min_size="1" max_size="2"
               vertical="true" is_scroll_view="true" is_dis_split_space="true"
               is_dis_wide_bound="true" is_border_radius="true" is_editable="true"
               is_border_right_angle="true" display_border="top,left" switch_expand_panel="other"
               foldPosition="left" excute_command_info="go">
            <element name="Grid" param="沪深" property="a=1" uuid="u" event="e"
                     event_dispatch_dest="x;y" event_dispatch_src="z" is_first_responder="true"
                     always_recv_event="true" event_not_change_style="true"/>
            <element name="Bare"/>
        </panel>
        <panel>
            <panel name=""/>
        </panel>
    </style></styles>)");
    EXPECT_EQ(showStyle(root, "页"), R"(页            layer 2  focus f
├─ all        ↓  scale 0.25  fixed 0  min 1  max 2  scrolls  scroll size 9
│  │          split bar  wide bound  rounded  square  border top,left  editable
│  │          expands other  folds left  command go
│  ├─ • Grid  "沪深"  [a=1]  uuid u  event e  to x, y  from z  first  always
│  │          keeps style
│  └─ • Bare
└─ (no name)  →
   └─ ""
)");
}

TEST(ShowStyle, CallsAPanelReuseOnlyWhenItIsTheReusePanel) {
    const TemporaryFolder root;
    root.write("base_optimize/reuse_panels.xml",
               "<r><reuse_panel name='bar' fix_size='9'><element name='e'/></reuse_panel></r>");
    root.write(stylePath, R"(<styles><style name="s"><panel name="p">
        <reuse_panel name="bar"/>
        <panel name="bar" fix_size="9"><element name="e"/></panel>
    </panel></style></styles>)");
    EXPECT_EQ(showStyle(root, "s"),
              "s          layer 0\n"
              "└─ p       →\n"
              "   ├─ bar  reuse  fixed 9\n"
              "   │  └─ • e\n"
              "   └─ bar  fixed 9\n"
              "      └─ • e\n");
}

TEST(ShowStyle, NamesTheSlotAndTheTemplate) {
    const TemporaryFolder root;
    root.write(stylePath, "<styles><style name='t'><magic_panels name='g'/></style></styles>");
    root.write("soft_optimize/custompage_template.xml", "<styles/>");
    root.write("config/magic_panels.xml",
               "<m><magic_panels name='g'><magic_panel name='x'><panel name='p'/></magic_panel>"
               "</magic_panels></m>");
    EXPECT_EQ(showStyle(root, "t"),
              "t     layer 0\n"
              "└─ p  slot g: x\n");
    EXPECT_EQ(showStyle(root, "t-x"),
              "t-x  custom page of template t  layer 0\n"
              "└─ p\n");
}

TEST(ShowStyle, SendsOnlyTextToTheTerminal) {
    const TemporaryFolder root;
    root.write(stylePath,
               "<styles><style name='s'><panel name='a&#10;b'/><panel name='&#x9b;31m'/></style>"
               "</styles>");
    EXPECT_EQ(showStyle(root, "s"),
              "s  layer 0\n"
              "├─ a\uFFFDb\n"
              "└─ \uFFFD31m\n");
}

TEST(ShowStyle, QuotesNamesOfAListThatHaveACommaOrAQuotationMark) {
    const TemporaryFolder root;
    root.write(stylePath, R"(<styles><style name="s"><panel name="p">
        <element name="e" event_dispatch_dest='a, b;c;;d"e' event_dispatch_src="x y"/>
    </panel></style></styles>)");
    EXPECT_EQ(showStyle(root, "s"),
              "s          layer 0\n"
              "└─ p\n"
              "   └─ • e  to \"a, b\", c, \"\", \"d\"e\"  from x y\n");
}

const std::string sampleRoot = YG_PROJECT_FOLDER "/examples/terminal";

const std::vector<std::vector<std::string>> drawings{
    {"show"},
    {"show", "layout"},
    {"show", "style", "行情报价"},
    {"show", "style", "quote-SH990001-depth"},
    {"show", "events"},
    {"show", "palette"},
    {"show", "servers"},
    {"show", "settings"},
    {"show", "web-pages"},
    {"show", "request-urls"},
};

std::string drawn(std::vector<std::string> words, const ToolSetting& setting) {
    words.insert(words.end(), {"--root", sampleRoot});
    const ToolRun run = runTool(words, setting);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, "");
    return run.output;
}

std::size_t widestLineOf(const std::string& text) {
    std::istringstream lines(text);
    std::size_t widest = 0;
    for (std::string line; std::getline(lines, line);)
        widest = std::max(widest, displayWidth(line));
    return widest;
}

TEST(Show, FitsIntoEightyColumnsAndIntoTheTerminal) {
    for (const auto& words : drawings) {
        EXPECT_LE(widestLineOf(drawn(words, {})), 80u) << testing::PrintToString(words);
        const ToolSetting narrow{.outputTo = OutputTo::terminal,
                                 .environment = {"COLUMNS=50", "TERM=dumb"}};
        EXPECT_LE(widestLineOf(drawn(words, narrow)), 50u) << testing::PrintToString(words);
    }
}

/// Without blanks, line ends and the lines beside branches, in which folded text differs.
std::string withoutFolds(const std::string& text) {
    std::string rest = std::regex_replace(text, std::regex("[ \n]"), "");
    return std::regex_replace(rest, std::regex("│"), "");
}

TEST(Show, FoldsWithoutLosingText) {
    for (const auto& words : drawings) {
        if (words.back() == "palette" || words.back() == "servers")
            continue;  // columns side by side; another address in each run
        const auto columns = [&](const char* variable) {
            return withoutFolds(drawn(
                words, {.outputTo = OutputTo::terminal, .environment = {variable, "TERM=dumb"}}));
        };
        EXPECT_EQ(columns("COLUMNS=50"), columns("COLUMNS=1000")) << testing::PrintToString(words);
    }
}

TEST(Show, PrintsTheLogOnlyWhenAskedTo) {
    EXPECT_EQ(drawn({"show", "style", "行情报价"}, {}),
              runTool({"show", "style", "行情报价", "--log", "--root", sampleRoot}).output);
    EXPECT_EQ(runTool({"show", "style", "行情报价", "--log", "--root", sampleRoot}).errors,
              "initWithStyleConfigPath\n");
    EXPECT_EQ(runTool({"show", "--log", "layout", "--root", sampleRoot}).errors,
              "initWithStyleConfigPath\n");
    EXPECT_EQ(runTool({"dump", "style", "行情报价", "--root", sampleRoot}).errors,
              "initWithStyleConfigPath\n");
}

TEST(ShowLayout, HasASectionForEachKindOfFile) {
    const TemporaryFolder root;
    root.write(stylePath, R"(<styles default_style="a">
        <style name="a"><panel name="p"><reuse_panel name="bar"/><magic_panels name="g"/></panel></style>
    </styles>)");
    root.write("config/tab_styles.xml",
               "<styles><style name='t'><panel name='q'/></style></styles>");
    root.write("config/magic_panels.xml", R"(<m>
        <magic_panels name="g">
            <magic_panel name="x"><panel name="view"><element name="e"/></panel></magic_panel>
        </magic_panels>
        <magic_panels name="none"/>
    </m>)");
    root.write("base_optimize/reuse_panels.xml",
               "<r><reuse_panel name='bar' fix_size='9'><element name='e'/></reuse_panel></r>");
    EXPECT_EQ(showLayout(root), R"(Styles  1, default a

a           default  layer 0
└─ p        →
   ├─ bar   reuse  fixed 9
   └─ view  slot g: x

Tab styles  1

t  layer 0
└─ q

Magic panels  2

g
└─ x: view
   └─ • e

none  empty

Reuse panels  1 in use

bar  fixed 9
└─ • e
)");
}

TEST(ShowLayout, DrawsTheMemberOfAReplacedGroupWhereItStands) {
    const TemporaryFolder root;
    root.write(stylePath, "<styles><style name='s'><magic_panels name='g'/></style></styles>");
    const auto group = [](const std::string& element) {
        return "<m><magic_panels name='g'><magic_panel name='x'><panel name='p'><element name='" +
               element + "'/></panel></magic_panel></magic_panels></m>";
    };
    root.write("config/magic_panels.xml", group("Old"));
    root.write("soft_optimize/magic_panels.xml", group("New"));
    EXPECT_THAT(showLayout(root), HasSubstr("└─ p  slot g (main file's)\n   └─ • Old\n"));
}

TEST(ShowLayout, SaysWhatIsMissing) {
    const TemporaryFolder root;
    EXPECT_EQ(showLayout(root), "Styles  none\n\nTab styles  none\n\nMagic panels  0\n");
    root.write(stylePath, "<styles default_style='x'><style name='s'/></styles>");
    EXPECT_THAT(showLayout(root), HasSubstr("Styles  1, default x (there is no such style)\n"));
    root.write(stylePath, "<styles default_style='x'/>");
    EXPECT_THAT(showLayout(root), HasSubstr("Styles  none, default x (there is no such style)\n\n"
                                            "Tab styles  none\n"));
}

TEST(ShowLayout, IsWhatShowAloneMeans) {
    const TemporaryFolder root;
    root.write(stylePath, "<styles><style name='s'/></styles>");
    EXPECT_EQ(runTool({"show", "--root", root.path()}).output, showLayout(root));
    EXPECT_THAT(runTool({"show", "--style=", "--root", root.path()}).output,
                HasSubstr("Styles  none"));
}

/// Whether `show` colours what it prints to a terminal with these variables set.
bool isColoured(const std::vector<std::string>& environment) {
    const TemporaryFolder root;
    const ToolRun run = runTool({"show", "--root", root.path()},
                                {.outputTo = OutputTo::terminal, .environment = environment});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.output, HasSubstr("Styles"));
    return run.output.find('\x1b') != std::string::npos;
}

TEST(ShowLayout, ColoursForATerminalThatWantsIt) {
    EXPECT_TRUE(isColoured({"TERM=xterm"}));
    EXPECT_TRUE(isColoured({"TERM=xterm", "NO_COLOR="}));
    EXPECT_FALSE(isColoured({"TERM=xterm", "NO_COLOR=1"}));
    EXPECT_FALSE(isColoured({"TERM=dumb"}));
}

TEST(ShowLayout, ColoursOtherOutputOnlyWhenAskedTo) {
    const TemporaryFolder root;
    const auto shown = [&](const std::string& option, const std::string& variable) {
        return runTool({"show", option, "--root", root.path()}, {.environment = {variable}}).output;
    };
    EXPECT_THAT(shown("--color=auto", "TERM=xterm"), Not(HasSubstr("\x1b")));
    EXPECT_THAT(shown("--color=auto", "CLICOLOR_FORCE=1"), HasSubstr("\x1b"));
    EXPECT_THAT(shown("--color=always", "NO_COLOR=1"), HasSubstr("\x1b"));
    EXPECT_THAT(shown("--color=never", "CLICOLOR_FORCE=1"), Not(HasSubstr("\x1b")));
}

TEST(ShowLayout, TakesNoOtherWordForColours) {
    const ToolRun run = runTool({"show", "layout", "--color", "yes"});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.errors, "ygconfig show layout: --color: 'yes' is not always, never or auto\n");
}

}  // namespace
