// SPDX-License-Identifier: MIT
//
// Whole runs on the sample root, compared with files. See Golden.h for how to renew them.
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tool/Golden.h"
#include "tool/ToolRun.h"

namespace {

using yg::testing::isGolden;
using yg::testing::runTool;
using yg::testing::ToolRun;

struct Case {
    std::string file;  ///< holds the expected standard output
    std::vector<std::string> arguments;
    std::string errors;  ///< the expected standard error
};

void PrintTo(const Case& each, std::ostream* out) {
    *out << each.file;
}

class Golden : public testing::TestWithParam<Case> {};

TEST_P(Golden, StandardOutputIsTheFile) {
    const ToolRun run = runTool(GetParam().arguments);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, GetParam().errors);
    EXPECT_TRUE(isGolden(run.output, GetParam().file));
}

const std::string sample = "examples/terminal";
const std::string loads = "initWithStyleConfigPath\n";

INSTANTIATE_TEST_SUITE_P(
    Help, Golden,
    testing::Values(Case{"help.txt", {"--help"}, ""}, Case{"help-dump.txt", {"dump", "--help"}, ""},
                    Case{"help-show.txt", {"show", "-h"}, ""},
                    Case{"help-dump-style.txt", {"dump", "style", "--help"}, ""},
                    Case{"help-dump-settings.txt", {"dump", "settings", "--help"}, ""},
                    Case{"help-dump-web-pages.txt", {"dump", "web-pages", "--help"}, ""},
                    Case{"help-show-layout.txt", {"--help", "show", "layout"}, ""},
                    Case{"help-show-events.txt", {"show", "events", "--help"}, ""},
                    Case{"help-show-servers.txt", {"show", "servers", "--help"}, ""},
                    Case{"help-servers-deliver.txt", {"servers", "deliver", "--help"}, ""},
                    Case{"help-settings.txt", {"settings", "--help"}, ""},
                    Case{"help-settings-set.txt", {"settings", "set", "--help"}, ""},
                    Case{"help-check-delivery.txt", {"check-delivery", "--help"}, ""},
                    Case{"help-simulate-servers.txt", {"simulate", "servers", "--help"}, ""},
                    Case{"help-web-page.txt", {"web-page", "--help"}, ""},
                    Case{"help-request-url.txt", {"request-url", "--help"}, ""},
                    Case{"help-explain.txt", {"explain", "--help"}, ""},
                    Case{"help-explain-style.txt", {"explain", "style", "--help"}, ""},
                    Case{"help-choose.txt", {"choose", "--help"}, ""},
                    Case{"help-preview.txt", {"preview", "--help"}, ""},
                    Case{"help-names.txt", {"names", "--help"}, ""}));

INSTANTIATE_TEST_SUITE_P(
    Sample, Golden,
    testing::Values(
        // Without the pages, which would make the file six times as long; DumpLayout has them.
        Case{"dump-layout.json", {"dump", "layout", "--style=", "--root", sample}, loads},
        Case{"dump-style-default.json", {"dump", "style", "行情报价", "--root", sample}, loads},
        Case{"dump-style-detail.json",
             {"dump", "style", "个股详细视图-港股", "--root", sample},
             loads},
        Case{"dump-style-member.json", {"dump", "style", "single-kline", "--root", sample}, loads},
        Case{"dump-style-pattern.json",
             {"dump", "style", "看板-BK9001-BK9001-notice", "--root", sample},
             loads},
        Case{"show-layout.txt", {"show", "layout", "--root", sample}, ""},
        Case{"show-style-default.txt", {"show", "style", "行情报价", "--root", sample}, ""},
        Case{"show-style-custom.txt",
             {"show", "style", "quote-SH990001-depth", "--root", sample},
             ""},
        Case{"explain-style.txt",
             {"explain", "style", "quote-SH990001-depth", "--root", sample},
             ""},
        Case{"explain-templates.txt", {"explain", "style", "--templates", "--root", sample}, ""},
        Case{"explain-event.txt",
             {"explain", "event", "watch_list", "select", "--root", sample},
             ""},
        Case{"explain-color.txt",
             {"explain", "color", "QuoteGrid.名称", "--palette-style", "1", "--root", sample},
             ""},
        Case{"explain-image.txt", {"explain", "image", "NavTabs.自选", "--root", sample}, ""},
        Case{"command.json", {"command", "open_index_page", "--root", sample}, ""},
        Case{"event.json", {"event", "watch_list", "select", "--root", sample}, ""},
        Case{"dump-settings.json", {"dump", "settings", "--root", sample}, ""},
        Case{"dump-web-pages.json", {"dump", "web-pages", "--root", sample}, ""},
        Case{"show-settings.txt", {"show", "settings", "--root", sample}, ""},
        Case{"show-web-pages.txt", {"show", "web-pages", "--root", sample}, ""},
        Case{"show-request-urls.txt", {"show", "request-urls", "--root", sample}, ""},
        Case{"lint.txt", {"lint", "--root", sample}, ""},
        Case{"lint.json", {"lint", "--root", sample, "--format", "json"}, ""},
        Case{"simulate-servers.txt",
             {"simulate", "servers", "--root", sample, "--clients=1000000000", "--reloads=5",
              "--without=192.0.2.11:9211"},
             ""},
        Case{"show-events.txt", {"show", "events", "--root", sample}, ""}));

}  // namespace
