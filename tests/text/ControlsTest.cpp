// SPDX-License-Identifier: MIT
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/text/Controls.h"

namespace {

using namespace std::string_view_literals;
using testing::ElementsAre;
using yg::text::isControl;

std::string shown(std::string_view text) {
    std::string copy(text.size(), '\0');
    copy.resize(yg::text::copyWithoutControls(text, copy.data()));
    return copy;
}

TEST(Controls, AreTheseCharactersAndNoOthers) {
    std::vector<std::pair<unsigned, unsigned>> ranges;
    for (unsigned character = 0; character <= 0x10FFFF; ++character) {
        if (!isControl(character))
            continue;
        if (ranges.empty() || ranges.back().second + 1 != character)
            ranges.emplace_back(character, character);
        ranges.back().second = character;
    }
    EXPECT_THAT(ranges, ElementsAre(std::pair(0x00, 0x1F), std::pair(0x7F, 0x9F),
                                    std::pair(0x61C, 0x61C), std::pair(0x200E, 0x200F),
                                    std::pair(0x2028, 0x202E), std::pair(0x2066, 0x2069)));
}

TEST(CopyWithoutControls, MakesABlankOfEach) {
    EXPECT_EQ(shown("a\nb\r\nc\x1b[31m\x7f\0d"sv), "a b  c [31m  d");
    EXPECT_EQ(shown("a\u0085b\u009b31mc\u061cd"), "a b 31mc d");
    EXPECT_EQ(shown("a\u200eb\u2028c\u202ed\u2066e\u2069"), "a b c d e ");
}

TEST(CopyWithoutControls, KeepsTabsAndText) {
    EXPECT_EQ(shown("a\tb"), "a\tb");
    EXPECT_EQ(shown(""), "");
    // Beside the controls and with their bytes in them: 0x9B ends the second, 0x80 to 0x9F occur in
    // nearly all others.
    EXPECT_EQ(shown("行情配置 é \u00db \u00a0 \u2027 \u202f \u2065 \u206a \U0001F4C8"),
              "行情配置 é \u00db \u00a0 \u2027 \u202f \u2065 \u206a \U0001F4C8");
}

TEST(CopyWithoutControls, TakesBytesOutsideUtf8ByTheirValue) {
    EXPECT_EQ(shown("a\x9b"
                    "31m\x80\x9f"),
              "a 31m  ");
    EXPECT_EQ(shown("\xb9\xa4\xff"), "\xb9\xa4\xff");
    // Long forms of U+009B and U+001B, and a character that is cut off.
    EXPECT_EQ(shown("\xe0\x82\x9b"), "\xe0  ");
    EXPECT_EQ(shown("\xc0\x9b"), "\xc0 ");
    EXPECT_EQ(shown("\xe5\x9b"), "\xe5 ");
}

}  // namespace
