// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "YGConfigManager/text/CaseFolding.h"

namespace yg::text {
namespace {

TEST(CaseFolding, GivesOneCharacterForAllFormsOfALetter) {
    EXPECT_EQ(foldedCase(U'A'), U'a');
    EXPECT_EQ(foldedCase(U'a'), U'a');
    EXPECT_EQ(foldedCase(U'Z'), U'z');
    EXPECT_EQ(foldedCase(U'É'), U'é');
    EXPECT_EQ(foldedCase(U'Σ'), U'σ');
    EXPECT_EQ(foldedCase(U'ς'), U'σ');
    EXPECT_EQ(foldedCase(U'Я'), U'я');
    EXPECT_EQ(foldedCase(U'\u212A'), U'k');
    EXPECT_EQ(foldedCase(U'ẞ'), U'ß');
    EXPECT_EQ(foldedCase(U'Ａ'), U'ａ');
    EXPECT_EQ(foldedCase(U'\U00010400'), U'\U00010428');
}

TEST(CaseFolding, LeavesEveryOtherCharacter) {
    for (const char32_t character : {U'@', U'[', U'ß', U'中', U'1', U'İ', U'ı', U'\0',
                                     char32_t{0x110000}, char32_t{0xFFFFFFFF}})
        EXPECT_EQ(foldedCase(character), character);
}

// Alternate characters are capitals there.
TEST(CaseFolding, KnowsPairsInARow) {
    EXPECT_EQ(foldedCase(U'Ā'), U'ā');
    EXPECT_EQ(foldedCase(U'ā'), U'ā');
    EXPECT_EQ(foldedCase(U'Ĭ'), U'ĭ');
}

}  // namespace
}  // namespace yg::text
