// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "YGConfigManager/text/LineIndex.h"

namespace yg::text {
namespace {

TextPoint pointIn(std::string_view text, std::size_t offset) {
    const TextPoint point = LineIndex(text).pointAt(text, offset);
    EXPECT_EQ(pointAt(text, offset), point);
    return point;
}

TEST(LineIndex, CountsLinesAndCharactersFromOne) {
    EXPECT_EQ(pointIn("ab\ncd", 0), (TextPoint{1, 1}));
    EXPECT_EQ(pointIn("ab\ncd", 2), (TextPoint{1, 3}));
    EXPECT_EQ(pointIn("ab\ncd", 3), (TextPoint{2, 1}));
    EXPECT_EQ(pointIn("ab\ncd", 5), (TextPoint{2, 3}));
}

TEST(LineIndex, CountsACharacterOfSeveralBytesOnce) {
    EXPECT_EQ(pointIn("行情x", 6), (TextPoint{1, 3}));
}

TEST(LineIndex, DoesNotCountAByteOrderMark) {
    EXPECT_EQ(pointIn("\xef\xbb\xbf"
                      "ab\n\xef\xbb\xbf",
                      0),
              (TextPoint{1, 1}));
    EXPECT_EQ(pointIn("\xef\xbb\xbf"
                      "ab\n\xef\xbb\xbf",
                      1),
              (TextPoint{1, 1}));
    EXPECT_EQ(pointIn("\xef\xbb\xbf"
                      "ab\n\xef\xbb\xbf",
                      4),
              (TextPoint{1, 2}));
    EXPECT_EQ(pointIn("\xef\xbb\xbf"
                      "ab\n\xef\xbb\xbf",
                      9),
              (TextPoint{2, 2}));
}

TEST(LineIndex, AnswersTheEndForWhatLiesBehindIt) {
    EXPECT_EQ(pointIn("a\n", 99), (TextPoint{2, 1}));
    EXPECT_EQ(pointIn("", 7), (TextPoint{1, 1}));
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

TEST(LineIndex, CountsLinesHoweverManyStandTogether) {
    std::string text;
    for (unsigned i = 0; i < 1'200; ++i)
        text += i % 600 < 300 ? "\n" : i % 600 < 450 ? "x" : i % 7 == 0 ? "行\n" : "情";
    const LineIndex index(text);
    TextPoint point{1, 1};
    for (std::size_t at = 0; at < text.size(); ++at) {
        ASSERT_EQ(index.pointAt(text, at), point) << at;
        if ((static_cast<unsigned char>(text[at]) & 0xC0U) != 0x80)
            ++point.column;
        if (text[at] == '\n')
            point = {point.line + 1, 1};
    }
    EXPECT_EQ(index.pointAt(text, text.size()), point);
}

}  // namespace
}  // namespace yg::text
