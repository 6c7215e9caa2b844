// SPDX-License-Identifier: MIT
//
// Whole runs of `ygconfig dump` on small roots.
#include <string>
#include <string_view>

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
using yg::testing::runTool;
using yg::testing::ToolRun;

const std::string stylePath = "config/custompage_template.xml";

ToolRun dumpStyle(const TemporaryFolder& root, const std::string& name) {
    return runTool({"dump", "style", "--root", root.path(), "--", name});
}

/// The one panel of the one style "s" whose panel element has these attributes and this content.
json panelOf(std::string_view attributes, std::string_view content = "") {
    const TemporaryFolder root;
    root.write(stylePath, "<styles><style name='s'><panel " + std::string(attributes) + ">" +
                              std::string(content) + "</panel></style></styles>");
    return json::parse(dumpStyle(root, "s").output).at("stylePanes").at(0);
}

TEST(DumpStyle, DistinguishesAbsentTextsFromEmptyOnes) {
    const json panel = panelOf("foldPosition=''", "<element name='e' param=''/>");
    EXPECT_EQ(panel.at("panelName"), nullptr);
    EXPECT_EQ(panel.at("foldPosition"), "");
    const json& element = panel.at("paneElements").at(0);
    EXPECT_EQ(element.at("elementParam"), "");
    EXPECT_EQ(element.at("elementProperty"), nullptr);
}

TEST(DumpStyle, WritesEachFieldOfAPanelOnce) {
    const TemporaryFolder root;
    root.write(stylePath, "<styles><style name='s'><panel name='p'/></style></styles>");
    EXPECT_EQ(dumpStyle(root, "s").output, R"({
  "styleName": "s",
  "styleLayer": 0,
  "styleFucus": null,
  "magicPanelsNameArray": null,
  "stylePanes": [
    {
      "panelName": "p",
      "paneVertical": false,
      "isScrollView": false,
      "scrollSize": 0,
      "isDisSplitSpace": false,
      "isDispWideBound": false,
      "isBorderRaduis": false,
      "isBorderRightAngle": false,
      "panePanes": [],
      "paneElements": [],
      "isMagicPanels": false,
      "switchExpandPanelName": null,
      "foldPosition": null,
      "magicPanelsName": null,
      "displayBorders": null,
      "isEditable": false,
      "excuteCommandInfo": null,
      "splitScale": 1.0,
      "fixSize": -1.0,
      "minSize": 0.0,
      "maxSize": 0.0
    }
  ]
}
)");
}

TEST(DumpStyle, WritesFloatsWithTheirOwnDigits) {
    const TemporaryFolder root;
    root.write(stylePath,
               "<styles><style name='s'><panel split_scale='0.1' fix_size='16777217'/>"
               "</style></styles>");
    const std::string output = dumpStyle(root, "s").output;
    EXPECT_THAT(output, HasSubstr("\"splitScale\": 0.1,"));
    EXPECT_THAT(output, HasSubstr("\"fixSize\": 16777216.0,"));
}

TEST(DumpStyle, WritesListsOfNames) {
    const json element =
        panelOf("", "<element name='e' event_dispatch_dest='a;;b' event_dispatch_src=''/>")
            .at("paneElements")
            .at(0);
    EXPECT_EQ(element.at("eventDispathDestArray"), json({"a", "", "b"}));
    EXPECT_EQ(element.at("eventDispathSrcArray"), nullptr);
}

TEST(DumpStyle, WritesTextAsItStands) {
    const TemporaryFolder root;
    root.write(stylePath,
               "<styles><style name='行情'><panel name='&quot;\\&#10;'/></style></styles>");
    const ToolRun run = dumpStyle(root, "行情");
    EXPECT_THAT(run.output, HasSubstr("\"styleName\": \"行情\""));
    EXPECT_THAT(run.output, HasSubstr("\"panelName\": \"\\\"\\\\\\n\""));
}

TEST(DumpStyle, AnswersNullAndOneWithoutTheStyle) {
    const TemporaryFolder root;
    root.write(stylePath, "<styles><style name='s'/></styles>");
    const ToolRun run = dumpStyle(root, "t");
    EXPECT_EQ(run.output, "null\n");
    EXPECT_EQ(run.status, 1);
}

TEST(DumpStyle, TakesAnyName) {
    const TemporaryFolder root;
    root.write(stylePath,
               "<styles><style name='-x'/><style name='--root'/><style name='--'/>"
               "<style name='show'/><style name='[a,b]'/><style name='{}'/></styles>");
    for (const char* name : {"-x", "--root", "--", "show", "[a,b]", "{}"}) {
        const ToolRun run = dumpStyle(root, name);
        EXPECT_EQ(run.status, 0) << name;
        EXPECT_EQ(json::parse(run.output).at("styleName"), name);
    }
    // The only style without a name is the one that does not exist.
    EXPECT_EQ(dumpStyle(root, "").output, "null\n");
}

TEST(DumpStyle, TakesNamesThatAreNotUtf8) {
    const TemporaryFolder root;
    root.write(stylePath, "<styles><style name='t'><magic_panels name='g'/></style></styles>");
    root.write("soft_optimize/custompage_template.xml", "<styles/>");
    root.write("config/magic_panels.xml",
               "<m><magic_panels name='g'><magic_panel name='x'><panel/></magic_panel>"
               "</magic_panels></m>");
    EXPECT_EQ(dumpStyle(root, "\xff").output, "null\n");
    const ToolRun run = dumpStyle(root, "t-\xff");
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(json::accept(run.output));
}

TEST(DumpStyle, FollowsTheMappingsOfTheRoot) {
    const TemporaryFolder root;
    root.write("host.json", R"({"mappings": {"模版通配": {"STOCK": ["SH01"]}}})");
    root.write(stylePath, "<styles><style name='t'><magic_panels name='g'/></style></styles>");
    root.write("soft_optimize/custompage_template.xml", "<styles/>");
    root.write("config/magic_panels.xml",
               "<m><magic_panels name='g'><magic_panel name='STOCK'><panel name='STOCK_view'/>"
               "</magic_panel></magic_panels></m>");
    const json style = json::parse(dumpStyle(root, "t-SH01").output);
    EXPECT_EQ(style.at("stylePanes").at(0).at("panelName"), "SH01_view");
}

TEST(DumpLayout, IsAllNullOrEmptyOnAnEmptyRoot) {
    const TemporaryFolder root;
    const ToolRun run = runTool({"dump", "layout", "--root", root.path()});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output,
              "{\n"
              "  \"defaultStyleName\": null,\n"
              "  \"styleInfos\": null,\n"
              "  \"tabStyleInfos\": null,\n"
              "  \"magicPanelInfos\": {},\n"
              "  \"scrollPanelDict\": null\n"
              "}\n");
}

TEST(DumpLayout, HoldsTheStylesThatDumpStylePrints) {
    const ToolRun run = runTool({"dump", "layout", "--root", "examples/terminal"});
    const json styles = json::parse(run.output).at("styleInfos");
    EXPECT_GT(styles.size(), 20);
    for (const auto& [name, style] : styles.items()) {
        const ToolRun one = runTool({"dump", "style", "--root", "examples/terminal", "--", name});
        EXPECT_EQ(json::parse(one.output), style) << name;
    }
}

TEST(DumpLayout, KeepsTheOrderOfTheFile) {
    const TemporaryFolder root;
    root.write(stylePath, "<styles><style name='b'/><style name='a'/></styles>");
    const ToolRun run = runTool({"dump", "layout", "--root", root.path()});
    EXPECT_LT(run.output.find("\"b\": {"), run.output.find("\"a\": {"));
}

TEST(DumpLayout, ReadsTheFilesOfItsOptions) {
    const TemporaryFolder root;
    root.write("s.xml", "<styles><style name='s'/></styles>");
    root.write("t.xml", "<styles><style name='t'/></styles>");
    root.write("m.xml", "<m><magic_panels name='g'/></m>");
    const json layout = json::parse(
        runTool({"dump", "layout", "--style", "s.xml", "--tab=t.xml", "--magic", "m.xml"},
                {.folder = root.path()})
            .output);
    EXPECT_TRUE(layout.at("styleInfos").contains("s"));
    EXPECT_TRUE(layout.at("tabStyleInfos").contains("t"));
    EXPECT_TRUE(layout.at("magicPanelInfos").contains("g"));
}

TEST(DumpLayout, AnEmptyPathIsNotTheDefaultOne) {
    const TemporaryFolder root;
    root.write(stylePath, "<styles><style name='s'/></styles>");
    for (const std::vector<std::string>& option :
         {std::vector<std::string>{"--style", ""}, std::vector<std::string>{"--style="}}) {
        std::vector<std::string> words{"dump", "layout", "--root", root.path()};
        words.insert(words.end(), option.begin(), option.end());
        const ToolRun run = runTool(words);
        EXPECT_EQ(json::parse(run.output).at("styleInfos"), nullptr);
        EXPECT_THAT(run.errors, Not(HasSubstr("fail:" + root.at(stylePath))));
    }
}

TEST(DumpLayout, LogsABrokenFileAndAnswersTheRest) {
    const TemporaryFolder root;
    root.write(stylePath, "<styles><style name='s'></styles>");
    root.write("config/tab_styles.xml", "<styles><style name='t'/></styles>");
    const ToolRun run = runTool({"dump", "layout", "--root", root.path()});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.errors, HasSubstr("\nload style config fail:Line 1: "));
    const json layout = json::parse(run.output);
    EXPECT_EQ(layout.at("styleInfos"), nullptr);
    EXPECT_TRUE(layout.at("tabStyleInfos").contains("t"));
}

TEST(DumpLayout, JoinsRootAndPathWithOneSlash) {
    const TemporaryFolder root;
    for (const char* end : {"", "/", "//"}) {
        const ToolRun run = runTool({"dump", "layout", "--root", root.path() + end});
        EXPECT_THAT(run.errors, HasSubstr("fail:" + root.at(stylePath) + ":"));
    }
}

TEST(DumpLayout, WritesTreesOfHundredsOfLevels) {
    constexpr int levels = 250;
    const TemporaryFolder root;
    std::string xml = "<styles><style name='s'>";
    for (int i = 0; i < levels; ++i)
        xml += "<panel name='p'>";
    for (int i = 0; i < levels; ++i)
        xml += "</panel>";
    root.write(stylePath, xml + "</style></styles>");
    const json layout = json::parse(runTool({"dump", "layout", "--root", root.path()}).output);
    const json* panels = &layout.at("styleInfos").at("s").at("stylePanes");
    int depth = 0;
    for (; !panels->empty(); panels = &panels->at(0).at("panePanes"))
        ++depth;
    EXPECT_EQ(depth, levels);
}

}  // namespace
