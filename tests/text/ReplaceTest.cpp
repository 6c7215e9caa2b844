// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "YGConfigManager/text/Replace.h"

namespace yg::text {
namespace {

TEST(Replace, ReplacesEveryOccurrence) {
    EXPECT_EQ(replaceAll("a-b-c", "-", "+"), "a+b+c");
    EXPECT_EQ(replaceAll("--", "-", ""), "");
    EXPECT_EQ(replaceAll("abab", "ab", "x"), "xx");
    EXPECT_EQ(replaceAll("abc", "abc", "d"), "d");
}

TEST(Replace, NeverLooksAtItsOwnOutput) {
    EXPECT_EQ(replaceAll("a&b", "&", "&amp;"), "a&amp;b");
    EXPECT_EQ(replaceAll("aabb", "ab", ""), "ab");
    EXPECT_EQ(replaceAll("aa", "a", "aa"), "aaaa");
}

TEST(Replace, GoesFromLeftToRight) {
    EXPECT_EQ(replaceAll("aaa", "aa", "b"), "ba");
}

TEST(Replace, KeepsATextWithoutTheTarget) {
    EXPECT_EQ(replaceAll("abc", "B", "x"), "abc");
    EXPECT_EQ(replaceAll("", "a", "x"), "");
    EXPECT_EQ(replaceAll("a", "ab", "x"), "a");
}

TEST(Replace, AnEmptyTargetChangesNothing) {
    EXPECT_EQ(replaceAll("abc", "", "x"), "abc");
}

}  // namespace
}  // namespace yg::text
