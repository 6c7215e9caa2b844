// SPDX-License-Identifier: MIT
//
// What `ygconfig show` says of files that it cannot read: which, where and why.
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

struct Shown {
    std::string what;
    std::string file;
};

void PrintTo(const Shown& shown, std::ostream* out) {
    *out << shown.what;
}

class BrokenFile : public testing::TestWithParam<Shown> {};

TEST_P(BrokenFile, IsNamedWithTheLine) {
    const TemporaryFolder root;
    root.write(GetParam().file, "<a>\n<b>\n</a>");
    const auto run = runTool({"show", GetParam().what, "--root", root.path()});
    EXPECT_THAT("\n" + run.errors,
                HasSubstr("\nygconfig: " + root.path() + "/" + GetParam().file + ": Line 3: "));
}

TEST_P(BrokenFile, IsNotInTheSample) {
    const auto run =
        runTool({"show", GetParam().what, "--root", YG_PROJECT_FOLDER "/examples/terminal"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT("\n" + run.errors, Not(HasSubstr("\nygconfig: ")));
}

INSTANTIATE_TEST_SUITE_P(Of, BrokenFile,
                         testing::Values(Shown{"layout", "config/custompage_template.xml"},
                                         Shown{"layout", "config/tab_styles.xml"},
                                         Shown{"layout", "config/magic_panels.xml"},
                                         Shown{"events", "config/events.xml"},
                                         Shown{"palette", "storage/palette_black.xml"},
                                         Shown{"servers", "storage/skeleton_v1.xml"},
                                         Shown{"settings", "storage/app_config.xml"},
                                         Shown{"web-pages", "storage/web_page_urls.xml"}));

TEST(BrokenFiles, AreNamedOnceHoweverOftenTheyAreRead) {
    const TemporaryFolder root;
    root.write("config/custompage_template.xml", "<a>");
    const std::string errors = runTool({"show", "layout", "--root", root.path()}).errors;
    const std::string line = "ygconfig: " + root.path() + "/config/custompage_template.xml: Line 1";
    EXPECT_THAT(errors, HasSubstr(line));
    EXPECT_EQ(errors.find(line), errors.rfind(line)) << errors;
}

TEST(BrokenFiles, AListOfRequestUrlsThatIsNotJsonIsNamed) {
    const TemporaryFolder root;
    root.write("user/request_urls_json.txt", "{\"md5Value\":");
    EXPECT_THAT(runTool({"show", "request-urls", "--root", root.path()}).errors,
                HasSubstr("\nygconfig: " + root.path() + "/user/request_urls_json.txt: "));
}

}  // namespace
