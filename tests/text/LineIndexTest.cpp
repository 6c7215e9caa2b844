// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "YGConfigManager/text/LineIndex.h"

namespace yg::text {
namespace {

TextPoint pointAt(std::string_view text, std::size_t offset) {
    return LineIndex(text).pointAt(text, offset);
}

TEST(LineIndex, CountsLinesAndCharactersFromOne) {
    EXPECT_EQ(pointAt("ab\ncd", 0), (TextPoint{1, 1}));
    EXPECT_EQ(pointAt("ab\ncd", 2), (TextPoint{1, 3}));
    EXPECT_EQ(pointAt("ab\ncd", 3), (TextPoint{2, 1}));
    EXPECT_EQ(pointAt("ab\ncd", 5), (TextPoint{2, 3}));
}

TEST(LineIndex, CountsACharacterOfSeveralBytesOnce) {
    EXPECT_EQ(pointAt("行情x", 6), (TextPoint{1, 3}));
}

TEST(LineIndex, AnswersTheEndForWhatLiesBehindIt) {
    EXPECT_EQ(pointAt("a\n", 99), (TextPoint{2, 1}));
    EXPECT_EQ(pointAt("", 7), (TextPoint{1, 1}));
}

TEST(LineIndex, CountsInLinesOfAnyLength) {
    std::string text;
    for (std::size_t count = 0; count < 2'100; ++count) {
        EXPECT_EQ(pointAt(text, text.size()),
                  (TextPoint{1, static_cast<std::uint32_t>(count + 1)}));
        EXPECT_EQ(pointAt("x\n" + text, text.size() + 2),
                  (TextPoint{2, static_cast<std::uint32_t>(count + 1)}));
        text += count % 3 == 0 ? "行" : "x";
    }
}

}  // namespace
}  // namespace yg::text
