// SPDX-License-Identifier: MIT
//
// Each rule shows a file that breaks it and the same file in order. Both are loaded here, in a root
// whose other files are in order.
#include <algorithm>
#include <set>
#include <string>
#include <string_view>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/diagnostics/Rule.h"

#include "diagnostics/RecordingSink.h"
#include "findings/Root.h"

namespace yg::testing {
namespace {

using ::testing::IsEmpty;

const RootFiles root{
    {"config/custompage_template.xml",
     R"(<styles default_style="quote"><style name="quote"><panel name="main"/></style></styles>)"},
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
    {"storage/skeleton_v1.xml", "<application/>"},
    {"storage/app_config.xml", "<config/>"},
    {"storage/web_page_urls.xml", "<urls/>"},
    {"storage/request_urls_json.txt", R"({"md5Value": "1", "urlConfigList": []})"},
    {"images/logo.png",
     std::string("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\0\1\0\0\0\1\x08\0\0\0\0:~\x9bU\0\0\0\nIDAT"
                 "x\x9c"
                 "c`\0\0\0\2\0\1H\xaf\xa4q\0\0\0\0IEND\xae"
                 "B`\x82",
                 67)}};

/// How often the rule is found with the file in the place of the root's own.
std::ptrdiff_t timesFound(const Rule& rule, std::string_view bytes) {
    RootFiles files = root;
    files[std::string(rule.file)] = bytes;
    RecordingSink sink;
    Root(files).answers(lookupsOf(files), &sink);
    const auto found = sink.rules();
    return std::count(found.begin(), found.end(), rule.name);
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
        if (rule.file.empty())
            continue;
        EXPECT_TRUE(root.contains(rule.file)) << rule.name;
        EXPECT_GT(timesFound(rule, rule.before), 0) << rule.name << '\n' << rule.before;
        EXPECT_EQ(timesFound(rule, rule.after), 0) << rule.name << '\n' << rule.after;
    }
}

TEST(Rules, TheExamplesRootIsInOrder) {
    RecordingSink sink;
    Root(root).answers(lookupsOf(root), &sink);
    EXPECT_THAT(sink.lines(), IsEmpty());
}

}  // namespace
}  // namespace yg::testing
