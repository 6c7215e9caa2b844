// SPDX-License-Identifier: MIT
#include <string>

#include <gtest/gtest.h>

#include "YGConfigManager/text/Utf8.h"

namespace yg::text {
namespace {

std::string encoded(char32_t codePoint) {
    const auto byte = [](char32_t bits) { return static_cast<char>(bits); };
    if (codePoint < 0x80)
        return {byte(codePoint)};
    if (codePoint < 0x800)
        return {byte(0xC0 | codePoint >> 6), byte(0x80 | (codePoint & 0x3F))};
    if (codePoint < 0x10000) {
        return {byte(0xE0 | codePoint >> 12), byte(0x80 | (codePoint >> 6 & 0x3F)),
                byte(0x80 | (codePoint & 0x3F))};
    }
    return {byte(0xF0 | codePoint >> 18), byte(0x80 | (codePoint >> 12 & 0x3F)),
            byte(0x80 | (codePoint >> 6 & 0x3F)), byte(0x80 | (codePoint & 0x3F))};
}

TEST(Utf8, EveryCodePointButTheSurrogatesIsValid) {
    std::string all;
    std::size_t count = 0;
    for (char32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
        const bool surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
        const std::string text = encoded(codePoint);
        ASSERT_EQ(isValidUtf8(text), !surrogate) << static_cast<unsigned>(codePoint);
        if (!surrogate) {
            all += text;
            ++count;
        }
    }
    EXPECT_TRUE(isValidUtf8(all));
    EXPECT_EQ(countCodePoints(all), count);
}

TEST(Utf8, OfTwoBytesOnlyTheShortestFormsAreValid) {
    std::size_t valid = 0;
    for (int first = 0x80; first <= 0xFF; ++first) {
        for (int second = 0; second <= 0xFF; ++second) {
            const std::string text{static_cast<char>(first), static_cast<char>(second)};
            valid += isValidUtf8(text) ? 1 : 0;
        }
    }
    EXPECT_EQ(valid, 0x800U - 0x80U);
}

TEST(Utf8, OfThreeBytesOnlyTheShortestFormsAreValid) {
    std::size_t valid = 0;
    for (int first = 0xE0; first <= 0xFF; ++first) {
        for (int second = 0x70; second <= 0xFF; ++second) {
            for (int third = 0x70; third <= 0xFF; ++third) {
                const std::string text{static_cast<char>(first), static_cast<char>(second),
                                       static_cast<char>(third)};
                valid += isValidUtf8(text) ? 1 : 0;
            }
        }
    }
    EXPECT_EQ(valid, 0x10000U - 0x800U - 0x800U);
}

TEST(Utf8, RefusesWhatIsNoShortestFormOfACodePoint) {
    const std::string_view refused[] = {
        "\x80",
        "\xBF",
        "\xC0\x80",
        "\xC1\xBF",
        "\xC3",
        "\xC3\x28",
        "\xE0\x80\x80",
        "\xE0\x9F\xBF",
        "\xE4\xBD",
        "\xE4\x28\xA0",
        "\xE4\xBD\x28",
        "\xED\xA0\x80",
        "\xED\xBF\xBF",
        "\xF0\x80\x80\x80",
        "\xF0\x8F\xBF\xBF",
        "\xF0\x9F\x98",
        "\xF0\x9F\x98\x28",
        "\xF4\x90\x80\x80",
        "\xF5\x80\x80\x80",
        "\xF8\x88\x80\x80\x80",
        "\xFE",
        "\xFF",
    };
    for (const std::string_view text : refused) {
        EXPECT_EQ(validUtf8Prefix(text), 0U) << testing::PrintToString(text);
        EXPECT_FALSE(isValidUtf8(text)) << testing::PrintToString(text);
    }
}

TEST(Utf8, TheValidPrefixEndsBeforeTheFirstIncompleteSequence) {
    EXPECT_EQ(validUtf8Prefix("ab\xFFzz"), 2U);
    EXPECT_EQ(validUtf8Prefix("\xE4\xBD\xA0\xE4\xBD"), 3U);
    EXPECT_EQ(validUtf8Prefix("abc"), 3U);
    EXPECT_EQ(validUtf8Prefix(""), 0U);
    EXPECT_EQ(validUtf8Prefix(std::string_view("a\0b", 3)), 3U);
}

TEST(Utf8, ASequenceThatGoesOnBehindTheEndIsIncomplete) {
    for (const std::string_view text : {"\xC3\xA9", "\xE4\xBD\xA0", "\xF0\x9F\x98\x80"}) {
        for (std::size_t size = 1; size < text.size(); ++size) {
            EXPECT_EQ(validUtf8Prefix(text.substr(0, size)), 0U);
        }
        EXPECT_EQ(validUtf8Prefix(text), text.size());
    }
}

TEST(Utf8, ABadByteIsFoundAtEveryPlaceOfALongText) {
    for (std::size_t begin = 0; begin < 9; ++begin) {
        for (std::size_t at = begin; at < 40; ++at) {
            std::string text(40, 'a');
            text[at] = '\xA0';
            EXPECT_EQ(validUtf8Prefix(std::string_view(text).substr(begin)), at - begin);
        }
    }
}

TEST(Utf8, CodePointsAreCountedNotBytes) {
    EXPECT_EQ(countCodePoints(""), 0U);
    EXPECT_EQ(countCodePoints("abc"), 3U);
    EXPECT_EQ(countCodePoints("\xE4\xBD\xA0\xE5\xA5\xBD"), 2U);
    EXPECT_EQ(countCodePoints("\xF0\x9F\x98\x80!"), 2U);
    // Byte by byte it is the same, whether or not they are characters.
    std::string all;
    for (unsigned i = 0; i < 3'000; ++i)
        all += static_cast<char>(i * i / 7 + i);
    std::size_t count = 0;
    for (std::size_t size = 0; size < all.size(); ++size) {
        ASSERT_EQ(countCodePoints(std::string_view(all).substr(0, size)), count) << size;
        count += (static_cast<unsigned char>(all[size]) & 0xC0U) == 0x80 ? 0 : 1;
    }
    EXPECT_GT(count, 1'500U);
    EXPECT_LT(count, 2'900U);
}

}  // namespace
TEST(FirstCharacter, IsACharacterOrAByte) {
    const auto expect = [](std::string_view text, char32_t value, std::size_t size, bool isValid) {
        const yg::text::Character first = yg::text::firstCharacter(text);
        EXPECT_EQ(first.value, value);
        EXPECT_EQ(first.size, size);
        EXPECT_EQ(first.isValid, isValid);
    };
    expect("ab", U'a', 1, true);
    expect(std::string_view("\0", 1), 0, 1, true);
    expect("\u009bx", 0x9B, 2, true);
    expect("市场", U'市', 3, true);
    expect("\uFFFD", 0xFFFD, 3, true);
    expect("\U0010FFFF", 0x10FFFF, 4, true);
    for (const char* wrong : {"\x9b", "\xc0\x9b", "\xe5\x9b", "\xed\xa0\x80", "\xf4\x90\x80\x80"})
        expect(wrong, 0xFFFD, 1, false);
}

}  // namespace yg::text
