// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstddef>
#include <random>
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

/// Added, left out, changed and swapped characters between two words.
std::size_t stepsBetween(const std::string& from, const std::string& to) {
    std::vector<std::vector<std::size_t>> steps(from.size() + 1,
                                                std::vector<std::size_t>(to.size() + 1));
    for (std::size_t i = 0; i <= from.size(); ++i) {
        for (std::size_t j = 0; j <= to.size(); ++j) {
            std::size_t& least = steps[i][j] = i + j;
            if (i > 0 && j > 0)
                least = std::min({least, steps[i - 1][j] + 1, steps[i][j - 1] + 1,
                                  steps[i - 1][j - 1] + (from[i - 1] == to[j - 1] ? 0 : 1)});
            if (i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1])
                least = std::min(least, steps[i - 2][j - 2] + 1);
        }
    }
    return steps[from.size()][to.size()];
}

TEST(Nearest, IsTheFirstWordWithTheFewestSteps) {
    std::mt19937 random(1);
    const auto below = [&](std::size_t limit) { return random() % limit; };
    const std::string letters = "aeoxpcdfghkmnqrstuvwyz_2345678";  // none of which is folded
    for (int round = 0; round < 2000; ++round) {
        const std::size_t kinds = 2 + below(letters.size() - 1);
        const auto makeWord = [&] {
            std::string word;
            for (std::size_t size = 1 + below(12); word.size() < size;)
                word += letters[below(kinds)];
            return word;
        };
        std::vector<std::string> known;
        for (std::size_t count = below(6); known.size() < count;)
            known.push_back(makeWord());
        std::string wanted =
            known.empty() || below(2) == 0 ? makeWord() : known[below(known.size())];
        for (std::size_t count = below(5); count > 0; --count)
            wanted[below(wanted.size())] = letters[below(kinds)];

        std::string expected;
        std::size_t best = 0;
        for (const std::string& word : known) {
            const std::size_t longer = std::max(word.size(), wanted.size());
            const std::size_t steps = stepsBetween(wanted, word);
            if (steps <= std::max<std::size_t>(1, longer / 3) && 2 * steps < longer &&
                (expected.empty() || steps < best)) {
                expected = word;
                best = steps;
            }
        }
        EXPECT_EQ(nearest(wanted, known), expected)
            << wanted << " of " << ::testing::PrintToString(known);
    }
}

TEST(Nearest, EndsWhenItHasDoneAllTheWorkThatItMay) {
    const std::vector<std::string> known(200, std::string(200, 'a'));
    yg::text::KnownWords words(known);
    EXPECT_NE(words.nearest(std::string(199, 'a') + "b"), "");
    EXPECT_EQ(words.nearest(std::string(198, 'a') + "bb"), "");
    EXPECT_NE(words.nearest(std::string(200, 'A')), "") << "the same word takes no search";
}

}  // namespace
