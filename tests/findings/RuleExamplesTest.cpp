// SPDX-License-Identifier: MIT
//
// Each rule shows a file that breaks it and the same file in order. Both are inspected here, in a
// root whose other files are in order.
#include <algorithm>
#include <set>
#include <string>
#include <string_view>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/diagnostics/Rule.h"

#include "inspection/Inspected.h"

namespace yg::testing {
namespace {

using ::testing::IsEmpty;

/// One white pixel.
const std::string image(
    "\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\0\1\0\0\0\1\x08\0\0\0\0:~\x9bU\0\0\0\nIDAT"
    "x\x9c"
    "c`\0\0\0\2\0\1H\xaf\xa4q\0\0\0\0IEND\xae"
    "B`\x82",
    67);

const std::string servers =
    R"(<application><server type="1" name="Quotes"><entry key="1" name="East" addrs="192.0.2.1:9211"/></server></application>)";

const Files root{
    {"config/custompage_template.xml",
     R"(<styles default_style="quote"><style name="quote"><panel name="main"><reuse_panel name="toolbar"/></panel></style></styles>)"},
    {"config/tab_styles.xml", R"(<styles><style name="tab"/></styles>)"},
    {"config/magic_panels.xml",
     R"(<groups><magic_panels name="chart"><magic_panel name="kline"><panel name="kline"/></magic_panel></magic_panels></groups>)"},
    {"soft_optimize/custompage_template.xml",
     R"(<styles><style name="detail"><magic_panels name="chart"/></style></styles>)"},
    {"soft_optimize/magic_panels.xml", "<groups/>"},
    {"base_optimize/reuse_panels.xml",
     R"(<reuse_panels><reuse_panel name="toolbar"/></reuse_panels>)"},
    {"config/events.xml", "<event_list/>"},
    {"storage/palette_white.xml", "<ROOT/>"},
    {"storage/palette_black.xml", "<ROOT/>"},
    {"storage/skeleton_v1.xml", servers},
    {"storage/skeleton_gray_v1.xml", servers},
    {"storage/skeleton_l2_v1.xml", servers},
    {"storage/skeleton_l2_gray_v1.xml", servers},
    {"storage/app_config.xml", "<config/>"},
    {"storage/web_page_urls.xml", "<urls/>"},
    {"storage/request_urls_json.txt", R"({"md5Value": "1", "urlConfigList": []})"},
    {"host.json", "{}"},
    {"images/logo.png", image}};

/// The root with some files in the places of its own.
Files rootWith(Files changed) {
    changed.insert(root.begin(), root.end());
    return changed;
}

/// Whether the rule is found with its example in the root, if only as what follows from a finding.
bool isFound(const Rule& rule, std::string_view example) {
    Files files{{std::string(rule.file), std::string(example)}};
    if (!rule.besideFile.empty())
        files.emplace(rule.besideFile, rule.beside);
    const files::TemporaryFolder folder;
    for (const auto& [name, bytes] : rootWith(files))
        folder.write(name, bytes);
    const auto inspection = inspected(folder.path());
    return std::ranges::any_of(inspection->findings(), [&](const RootFinding& finding) {
        return finding.rule == &rule ||
               std::ranges::any_of(finding.consequences, [&](const RootPlace& consequence) {
                   return consequence.message.ends_with(rule.meaning);
               });
    });
}

TEST(Rules, HaveNamesOfTheirOwnMadeOfSmallLettersAndDashes) {
    std::set<std::string_view> names;
    for (const Rule& rule : rules()) {
        EXPECT_EQ(rule.name.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789-"),
                  std::string_view::npos)
            << rule.name;
        EXPECT_TRUE(names.insert(rule.name).second) << rule.name;
        EXPECT_EQ(ruleNamed(rule.name), &rule);
    }
    EXPECT_EQ(ruleNamed("no-such-rule"), nullptr);
    EXPECT_EQ(ruleNamed(std::nullopt), nullptr);
}

TEST(Rules, HaveASentenceAndAnExplanationThatEndWithAFullStop) {
    for (const Rule& rule : rules()) {
        EXPECT_TRUE(rule.meaning.ends_with('.')) << rule.name;
        EXPECT_TRUE(rule.explanation.ends_with('.')) << rule.name;
    }
}

TEST(Rules, AreBrokenByTheirExampleAndKeptByTheSameFileAfterwards) {
    for (const Rule& rule : rules()) {
        // The example of a look-up is a call.
        if (rule.file.empty())
            continue;
        EXPECT_TRUE(isFound(rule, rule.before)) << rule.name << '\n' << rule.before;
        EXPECT_FALSE(isFound(rule, rule.after)) << rule.name << '\n' << rule.after;
    }
}

TEST(Rules, TheExamplesRootIsInOrder) {
    EXPECT_THAT(linesOf(root), IsEmpty());
}

}  // namespace
}  // namespace yg::testing
