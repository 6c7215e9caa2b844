// SPDX-License-Identifier: MIT
//
// What `ygconfig explain` prints, on the sample.
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tool/ToolRun.h"

namespace {

using testing::AnyOf;
using testing::HasSubstr;
using testing::StartsWith;
using yg::testing::runTool;
using yg::testing::ToolRun;
using Json = nlohmann::json;
using Words = std::vector<std::string>;

const std::string sample = "examples/terminal";

Words with(Words words, const Words& more) {
    words.insert(words.end(), more.begin(), more.end());
    return words;
}

/// An explanation and the look-up that it explains.
struct Pair {
    Words explained;
    Words look;
};

void PrintTo(const Pair& pair, std::ostream* out) {
    for (const std::string& word : pair.explained)
        *out << word << ' ';
}

class Explain : public testing::TestWithParam<Pair> {};

TEST_P(Explain, HasTheAnswerOfTheLookUpAndItsPlace) {
    const ToolRun look = runTool(with(GetParam().look, {"--root", sample}));
    const ToolRun run = runTool(
        with(with({"explain"}, GetParam().explained), {"--root", sample, "--format", "json"}));
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, "");
    const Json explanation = Json::parse(run.output);
    EXPECT_EQ(explanation.at("answer"), Json::parse(look.output));
    EXPECT_EQ(explanation.size(), 3U);
    EXPECT_TRUE(explanation.at("from").at("file").is_string());
    EXPECT_GE(explanation.at("from").at("line"), 1);
    EXPECT_GE(explanation.at("from").at("column"), 1);
    ASSERT_FALSE(explanation.at("steps").empty());
    for (const Json& step : explanation.at("steps")) {
        EXPECT_EQ(step.size(), 5U);
        EXPECT_FALSE(step.at("text").get<std::string>().empty());
        EXPECT_FALSE(step.at("file").get<std::string>().empty());
        EXPECT_GE(step.at("line"), 1);
        EXPECT_GE(step.at("column"), 1);
        EXPECT_THAT(step.at("outcome").get<std::string>(), AnyOf("taken", "lost"));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Sample, Explain,
    testing::Values(Pair{{"style", "行情报价"}, {"dump", "style", "行情报价"}},
                    Pair{{"style", "quote-SH990001-depth"},
                         {"dump", "style", "quote-SH990001-depth"}},
                    Pair{{"event", "watch_list", "select"}, {"event", "watch_list", "select"}},
                    Pair{{"command", "open_index_page"}, {"command", "open_index_page"}},
                    Pair{{"color", "QuoteGrid.名称"}, {"color", "QuoteGrid.名称"}},
                    Pair{{"color", "QuoteGrid.名称", "--palette-style", "1"},
                         {"color", "QuoteGrid.名称", "--palette-style", "1"}},
                    Pair{{"font", "QuoteGrid.名称"}, {"font", "QuoteGrid.名称"}},
                    Pair{{"setting", "app_config.xml", "appearance", "theme"},
                         {"settings", "get", "app_config.xml", "appearance", "theme"}},
                    Pair{{"setting", "appearance", "theme"},
                         {"settings", "get", "app_config.xml", "appearance", "theme"}},
                    Pair{{"web-page", "web_page_urls.xml", "help_center"},
                         {"web-page", "web_page_urls.xml", "help_center"}},
                    Pair{{"url", "quote_ranking"}, {"request-url", "quote_ranking"}}));

TEST(ExplainServer, AnswersOneOfTheServersThatALoadGives) {
    const ToolRun run =
        runTool({"explain", "server", "1", "深圳行情", "--root", sample, "--format", "json"});
    EXPECT_EQ(run.status, 0);
    const Json answer = Json::parse(run.output).at("answer");
    EXPECT_EQ(answer.at("serverName"), "深圳行情");
    EXPECT_EQ(answer.at("serverKey"), 101);
    EXPECT_THAT(answer.at("ipAddr").get<std::string>(), StartsWith("192.0.2.1"));
}

TEST(ExplainImage, AnswersItsSize) {
    const ToolRun run = runTool({"explain", "image", "logo", "--root", sample, "--format", "json"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(Json::parse(run.output).at("answer"),
              Json::parse(R"({"width": 32.0, "height": 32.0, "pixelWidth": 64,
                             "pixelHeight": 64})"));
}

TEST(ExplainPanelAndElement, AnswerTheRecordOfThePage) {
    for (const Words& words : {Words{"panel", "市场总览", "overview_left"},
                               Words{"element", "市场总览", "index.domestic"}}) {
        const ToolRun run =
            runTool(with(with({"explain"}, words), {"--root", sample, "--format", "json"}));
        EXPECT_EQ(run.status, 0) << run.errors;
        EXPECT_TRUE(Json::parse(run.output).at("answer").is_object());
    }
}

/// What is not there, and how the explanation begins.
struct Substitute {
    Words explained;
    std::string beginning;
    std::string answer;
};

void PrintTo(const Substitute& substitute, std::ostream* out) {
    for (const std::string& word : substitute.explained)
        *out << word << ' ';
}

class ExplainSubstitute : public testing::TestWithParam<Substitute> {};

TEST_P(ExplainSubstitute, IsNamedFirstAndGivesStatusOne) {
    const Words words = with({"explain"}, GetParam().explained);
    const ToolRun text = runTool(with(words, {"--root", sample}));
    EXPECT_EQ(text.status, 1);
    EXPECT_THAT(text.output, HasSubstr("'\n" + GetParam().beginning));
    const ToolRun json = runTool(with(words, {"--root", sample, "--format", "json"}));
    EXPECT_EQ(json.status, 1);
    const Json explanation = Json::parse(json.output);
    EXPECT_EQ(explanation.at("from"), nullptr);
    EXPECT_EQ(explanation.at("answer").dump(), GetParam().answer);
    EXPECT_EQ(explanation.at("steps").back().at("outcome"), "missing");
}

INSTANTIATE_TEST_SUITE_P(
    Sample, ExplainSubstitute,
    testing::Values(
        Substitute{
            {"style", "quot-SH-x"}, "Not found: the answer is null. Nearest: 'quote'.\n", "null"},
        Substitute{{"panel", "市场总览", "overview_lef"},
                   "Not found: the answer is null. Nearest: 'overview_left'.\n",
                   "null"},
        Substitute{{"event", "watch_list", "selct"},
                   "Not found: the answer is null. Nearest: 'select'.\n",
                   "null"},
        Substitute{{"command", "open_index"}, "Not found: the answer is null.", "null"},
        Substitute{{"color", "QuoteGrid.名"},
                   "Not found: the answer is red, a substitute.",
                   R"({"alpha":1.0,"blue":0.0,"green":0.0,"red":1.0})"},
        Substitute{{"image", "loga"}, "Not found: the answer is null. Nearest: 'logo'.\n", "null"},
        Substitute{{"server", "nobody"}, "Not found: the answer is null.", "null"},
        Substitute{{"setting", "appearance", "them"},
                   "Not found: the answer is null. Nearest: 'theme'.\n",
                   "null"},
        Substitute{{"web-page", "help"},
                   "Not found: the answer is about:blank, a substitute.",
                   R"("about:blank")"},
        Substitute{{"url", "quote_rankin"},
                   "Not found: the answer is null. Nearest: 'quote_ranking'.\n",
                   "null"}));

TEST(Explain, CannotRunWithTheWrongNumberOfNames) {
    for (const Words& words :
         {Words{"style"}, Words{"style", "a", "b"}, Words{"panel", "a"}, Words{"event", "a"},
          Words{"command"}, Words{"color"}, Words{"server"}, Words{"server", "one", "a"},
          Words{"setting", "a"}, Words{"url"}, Words{"style", "a", "--templates"}}) {
        const ToolRun run = runTool(with(with({"explain"}, words), {"--root", sample}));
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.output, "");
        EXPECT_THAT(run.errors, StartsWith("ygconfig explain " + words[0] + ": give "));
    }
}

TEST(Explain, ListsTheTemplatesAsJson) {
    const ToolRun run =
        runTool({"explain", "style", "--templates", "--root", sample, "--format", "json"});
    EXPECT_EQ(run.status, 0);
    const Json templates = Json::parse(run.output);
    for (const Json& each : templates) {
        if (each.at("name") != "quote")
            continue;
        EXPECT_EQ(each.at("pages"), 140);
        EXPECT_EQ(each.at("slots").at(1).at("group"), "side");
        EXPECT_EQ(each.at("slots").at(1).at("arguments").at(0), "depth");
        return;
    }
    FAIL() << "no template 'quote'";
}

}  // namespace
