// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "YGConfigManager/text/Paths.h"

namespace yg::text {
namespace {

TEST(Paths, LastComponentIsWhatFollowsTheLastSlash) {
    EXPECT_EQ(lastPathComponent("a/b"), "b");
    EXPECT_EQ(lastPathComponent("a//b"), "b");
    EXPECT_EQ(lastPathComponent("/a"), "a");
    EXPECT_EQ(lastPathComponent("a"), "a");
    EXPECT_EQ(lastPathComponent("a/.."), "..");
    EXPECT_EQ(lastPathComponent("a/b%20c.xml"), "b%20c.xml");
}

TEST(Paths, LastComponentIgnoresSlashesAtTheEnd) {
    EXPECT_EQ(lastPathComponent("a/b/"), "b");
    EXPECT_EQ(lastPathComponent("a/b///"), "b");
    EXPECT_EQ(lastPathComponent("b/"), "b");
}

TEST(Paths, LastComponentOfSlashesAloneIsOneSlash) {
    EXPECT_EQ(lastPathComponent("/"), "/");
    EXPECT_EQ(lastPathComponent("///"), "/");
}

TEST(Paths, LastComponentKeepsEmptyAndAbsentApart) {
    EXPECT_EQ(lastPathComponent(""), "");
    EXPECT_EQ(lastPathComponent(std::nullopt), std::nullopt);
}

TEST(Paths, JoiningPutsExactlyOneSlashBetween) {
    EXPECT_EQ(joinPath("a", "b"), "a/b");
    EXPECT_EQ(joinPath("a/", "b"), "a/b");
    EXPECT_EQ(joinPath("a", "/b"), "a/b");
    EXPECT_EQ(joinPath("a//", "//b"), "a/b");
    EXPECT_EQ(joinPath("/", "b"), "/b");
    EXPECT_EQ(joinPath("/", "/b"), "/b");
}

TEST(Paths, JoiningWithNothingAddsNothing) {
    EXPECT_EQ(joinPath("a", ""), "a");
    EXPECT_EQ(joinPath("a/", ""), "a/");
    EXPECT_EQ(joinPath("", "b"), "b");
    EXPECT_EQ(joinPath("", "/b"), "/b");
    EXPECT_EQ(joinPath("", ""), "");
}

TEST(Paths, JoiningResolvesNothing) {
    EXPECT_EQ(joinPath("a/./b", "../c//d/"), "a/./b/../c//d/");
    EXPECT_EQ(joinPath("~", "%20#"), "~/%20#");
}

TEST(Paths, APlainFileNameStaysInItsFolder) {
    EXPECT_TRUE(isPlainFileName("a.xml"));
    EXPECT_TRUE(isPlainFileName(".a"));
    EXPECT_TRUE(isPlainFileName("..."));
    EXPECT_TRUE(isPlainFileName("\xE9\x85\x8D\xE7\xBD\xAE"));
    EXPECT_FALSE(isPlainFileName(""));
    EXPECT_FALSE(isPlainFileName("."));
    EXPECT_FALSE(isPlainFileName(".."));
    EXPECT_FALSE(isPlainFileName("a/b"));
    EXPECT_FALSE(isPlainFileName("/"));
    EXPECT_FALSE(isPlainFileName(std::string_view("a\0b", 3)));
}

TEST(LeadsOut, OfAFolderWhereverThePathGoesAbove) {
    for (const char* path :
         {"..", "../a", "/../images/a.png", "a/../..", "a/./../../a", "a//../.."})
        EXPECT_TRUE(leadsOut(path)) << path;
    for (const char* path :
         {"", "/", "a", "/a", ".", "a/..", "a/../b", "./a/b/../../c", "...", "a/..b"})
        EXPECT_FALSE(leadsOut(path)) << path;
}

}  // namespace
}  // namespace yg::text
