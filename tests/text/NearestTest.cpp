// SPDX-License-Identifier: MIT
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "YGConfigManager/text/Nearest.h"

namespace {

using yg::text::nearest;

const std::vector<std::string> commands{"dump", "show", "settings", "servers", "web-page"};

TEST(Nearest, FindsAWordOneSlipAway) {
    EXPECT_EQ(nearest("dmup", commands), "dump");          // swapped
    EXPECT_EQ(nearest("dum", commands), "dump");           // left out
    EXPECT_EQ(nearest("shoow", commands), "show");         // doubled
    EXPECT_EQ(nearest("setyings", commands), "settings");  // changed
    EXPECT_EQ(nearest("webpage", commands), "web-page");
}

TEST(Nearest, FindsNothingFarAway) {
    EXPECT_EQ(nearest("palette", commands), "");
    EXPECT_EQ(nearest("", commands), "");
    EXPECT_EQ(nearest("x", std::vector<std::string>{"y", ""}), "");
    EXPECT_EQ(nearest("-5", std::vector<std::string>{"-h"}), "");
    EXPECT_EQ(nearest("dump", {}), "");
}

TEST(Nearest, TakesTheFirstOfTheNearest) {
    EXPECT_EQ(nearest("aab", std::vector<std::string>{"ccc", "aac", "aad"}), "aac");
    EXPECT_EQ(nearest("abcdef", std::vector<std::string>{"abcdxy", "abcdex"}), "abcdex");
}

TEST(Nearest, CountsCharactersNotBytes) {
    const std::vector<std::string> pages{"自选股", "行情报价"};
    EXPECT_EQ(nearest("行情报介", pages), "行情报价");
    EXPECT_EQ(nearest("自股选", pages), "自选股");
    EXPECT_EQ(nearest("交易", pages), "");
}

TEST(Nearest, LooksThroughCaseWidthAndBlanks) {
    const std::vector<std::string> names{"quote_bar", "quote_bars", "SH600000"};
    EXPECT_EQ(nearest("QUOTE _BARS", names), "quote_bars");
    EXPECT_EQ(nearest("ｑｕｏｔｅ＿ｂａｒ", names), "quote_bar");
    EXPECT_EQ(nearest("SH6OOOOO", names), "SH600000");
    EXPECT_EQ(nearest("quоte_bar", names), "quote_bar");  // with a Cyrillic o
    EXPECT_EQ(nearest("sh600000 ", names), "SH600000");
}

TEST(Nearest, EndsWhenItHasDoneAllTheWorkThatItMay) {
    const std::vector<std::string> known(200, std::string(200, 'a'));
    yg::text::KnownWords words(known);
    EXPECT_NE(words.nearest(std::string(199, 'a') + "b"), "");
    EXPECT_EQ(words.nearest(std::string(198, 'a') + "bb"), "");
    EXPECT_NE(words.nearest(std::string(200, 'A')), "") << "the same word takes no search";
}

}  // namespace
