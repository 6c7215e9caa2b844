// SPDX-License-Identifier: MIT
//
// What drawings, dumps and look-ups say of files that cannot be read: which, where and why.
#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "files/TemporaryFolder.h"
#include "tool/ToolRun.h"

namespace {

using testing::HasSubstr;
using testing::Not;
using yg::files::TemporaryFolder;
using yg::testing::runTool;

struct Reading {
    std::vector<std::string> words;
    std::string file;
};

void PrintTo(const Reading& reading, std::ostream* out) {
    *out << testing::PrintToString(reading.words);
}

/// The errors of the command on a root in which the file has this text, each behind a line feed.
std::string errorsOn(const TemporaryFolder& root, const Reading& reading, const std::string& text) {
    root.write(reading.file, text);
    std::vector<std::string> words{"--root", root.path()};
    words.insert(words.end(), reading.words.begin(), reading.words.end());
    return "\n" + runTool(words).errors;
}

std::size_t countOf(const std::string& part, const std::string& text) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

class BrokenFile : public testing::TestWithParam<Reading> {};

TEST_P(BrokenFile, IsNamedOnceWithLineAndColumn) {
    const TemporaryFolder root;
    const std::string errors = errorsOn(root, GetParam(), "<a>\n<b>\n</a>");
    const std::string name = "\nygconfig: " + root.path() + "/" + GetParam().file + ": ";
    EXPECT_EQ(countOf(name, errors), 1u) << errors;
    EXPECT_THAT(errors, HasSubstr(name + "Line 3, column "));
}

TEST_P(BrokenFile, IsNotInTheSample) {
    std::vector<std::string> words{"--root", YG_PROJECT_FOLDER "/examples/terminal"};
    words.insert(words.end(), GetParam().words.begin(), GetParam().words.end());
    EXPECT_THAT("\n" + runTool(words).errors, Not(HasSubstr("\nygconfig: /")));
}

const std::string styleFile = "config/custompage_template.xml";
const std::string eventFile = "config/events.xml";
const std::string lightFile = "storage/palette_white.xml";
const std::string serverFile = "storage/skeleton_v1.xml";
const std::string settingsFile = "storage/app_config.xml";
const std::string pageFile = "storage/web_page_urls.xml";
const std::string png = "/dev/null";

INSTANTIATE_TEST_SUITE_P(Of, BrokenFile,
                         testing::Values(Reading{{"show", "layout"}, styleFile},
                                         Reading{{"show", "layout"}, "config/tab_styles.xml"},
                                         Reading{{"show", "layout"}, "config/magic_panels.xml"},
                                         Reading{{"show", "style", "x"}, styleFile},
                                         Reading{{"dump", "layout"},
                                                 "base_optimize/reuse_panels.xml"},
                                         Reading{{"dump", "style", "x"}, styleFile}));

/// Whose root element must have a certain name.
const auto namedRoots = testing::Values(
    Reading{{"show", "events"}, eventFile}, Reading{{"dump", "events"}, eventFile},
    Reading{{"command", "x"}, eventFile}, Reading{{"event", "x", "y"}, eventFile},
    Reading{{"show", "palette"}, lightFile}, Reading{{"dump", "palette"}, lightFile},
    Reading{{"color", "x"}, lightFile}, Reading{{"font", "x"}, lightFile},
    Reading{{"image", "x", "-o", png}, lightFile}, Reading{{"show", "servers"}, serverFile},
    Reading{{"dump", "servers"}, serverFile}, Reading{{"show", "settings"}, settingsFile},
    Reading{{"dump", "settings"}, settingsFile},
    Reading{{"settings", "get", "app_config.xml", "x", "y"}, settingsFile},
    Reading{{"show", "web-pages"}, pageFile}, Reading{{"dump", "web-pages"}, pageFile},
    Reading{{"web-page", "web_page_urls.xml", "x"}, pageFile});

INSTANTIATE_TEST_SUITE_P(WithARoot, BrokenFile, namedRoots);

class OtherRoot : public testing::TestWithParam<Reading> {};

TEST_P(OtherRoot, IsNamedOnceWithLineAndColumn) {
    const TemporaryFolder root;
    const std::string errors =
        errorsOn(root, GetParam(), "<?xml version='1.0'?>\n <other><a/></other>");
    const std::string line =
        "\nygconfig: " + root.path() + "/" + GetParam().file + ": Line 2, column 2: The root of a";
    EXPECT_EQ(countOf(line, errors), 1u) << errors;
}

INSTANTIATE_TEST_SUITE_P(Of, OtherRoot, namedRoots);

class BrokenList : public testing::TestWithParam<Reading> {};

TEST_P(BrokenList, IsNamedOnceWithTheReason) {
    const TemporaryFolder root;
    const std::string name = "\nygconfig: " + root.path() + "/user/request_urls_json.txt: ";
    const std::string missing = errorsOn(root, {GetParam().words, "host.json"}, "{}");
    EXPECT_EQ(countOf(name + "No such file or directory\n", missing), 1u) << missing;
    const std::string errors = errorsOn(root, GetParam(), "{\"md5Value\":");
    EXPECT_EQ(countOf(name, errors), 1u) << errors;
    EXPECT_THAT(errors, HasSubstr(name + "line 1, column "));
}

INSTANTIATE_TEST_SUITE_P(
    Of, BrokenList,
    testing::Values(Reading{{"show", "request-urls"}, "user/request_urls_json.txt"},
                    Reading{{"dump", "request-urls"}, "user/request_urls_json.txt"},
                    Reading{{"request-url", "k"}, "user/request_urls_json.txt"},
                    Reading{{"request-url", "k", "--refresh"}, "user/request_urls_json.txt"}));

TEST(BrokenFiles, AreNamedOnceHoweverOftenTheyAreRead) {
    const TemporaryFolder root;
    root.write("config/custompage_template.xml", "<a>");
    const std::string errors = runTool({"show", "layout", "--root", root.path()}).errors;
    const std::string line =
        "ygconfig: " + root.path() + "/config/custompage_template.xml: Line 1, column ";
    EXPECT_THAT(errors, HasSubstr(line));
    EXPECT_EQ(errors.find(line), errors.rfind(line)) << errors;
}

}  // namespace
