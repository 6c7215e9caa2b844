// SPDX-License-Identifier: MIT
//
// Applications that use fontconfig themselves, with one font that is installed and one of their
// own.
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "Program.h"
#include "files/TemporaryFolder.h"
#include "graphics/TestFonts.h"

namespace yg::testing {
namespace {

class Sharing : public ::testing::Test {
protected:
    Sharing() {
        std::filesystem::create_directory(root_.at("fonts"));
        std::filesystem::copy(testFontPath("latin.ttf"), root_.at("fonts"));
        root_.write("fonts.conf", "<fontconfig><dir>" + root_.at("fonts") + "</dir><cachedir>" +
                                      root_.at("cache") + "</cachedir></fontconfig>");
        ::setenv("FONTCONFIG_FILE", root_.at("fonts.conf").c_str(), 1);
        // fontconfig keeps pointers as distances, which a search for leaks cannot follow.
        ::setenv("ASAN_OPTIONS", "detect_leaks=0", 1);
    }
    ~Sharing() override {
        ::unsetenv("FONTCONFIG_FILE");
        ::unsetenv("ASAN_OPTIONS");
    }

    /// What an application prints that takes these steps.
    static std::string printed(std::vector<std::string> steps) {
        steps.insert(steps.begin(), YG_SHARING_PROGRAM);
        Program program(std::move(steps));
        std::string all = program.all();
        EXPECT_EQ(program.wait(), 0);
        return all;
    }

    const std::string own_ = testFontPath("square.ttf");

private:
    files::TemporaryFolder root_;
};

TEST_F(Sharing, MakesTheFontsOfTheApplicationKnown) {
    EXPECT_EQ(printed({"add", own_, "share", "find", "YG Test Square", "find", "YG Test Latin",
                       "find", "No Such Face"}),
              "added\nshares\nknown\nknown\nunknown\n");
}

TEST_F(Sharing, IsNotDoneUnasked) {
    EXPECT_EQ(printed({"add", own_, "find", "YG Test Square", "find", "YG Test Latin"}),
              "added\nunknown\nknown\n");
}

TEST_F(Sharing, ComesTooLateAfterTheFirstFont) {
    EXPECT_EQ(printed({"add", own_, "find", "YG Test Latin", "share", "find", "YG Test Square"}),
              "added\nknown\ndoes not share\nunknown\n");
}

TEST_F(Sharing, MayBeAskedForAgain) {
    EXPECT_EQ(printed({"share", "share", "find", "YG Test Latin", "share"}),
              "shares\nshares\nknown\nshares\n");
}

TEST_F(Sharing, LoadsTheConfigurationThatIsNotThereYet) {
    EXPECT_EQ(printed({"share", "find", "YG Test Latin", "add", own_, "ask", "YG Test Square",
                       "find", "YG Test Square"}),
              "shares\nknown\nadded\nthere\nunknown\n");
}

TEST_F(Sharing, LeavesTheApplicationItsFonts) {
    EXPECT_EQ(printed({"add", own_, "share", "find", "YG Test Latin", "ask", "YG Test Square",
                       "ask", "YG Test Latin"}),
              "added\nshares\nknown\nthere\nnot there\n");
}

TEST_F(Sharing, IsDoneOnceForManyThreads) {
    EXPECT_EQ(printed({"add", own_, "threads"}), "added\n8 threads\n");
}

}  // namespace
}  // namespace yg::testing
