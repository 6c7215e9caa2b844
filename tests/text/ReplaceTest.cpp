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

TEST(Replace, FindsTargetsOfEveryLength) {
    for (std::size_t size = 1; size < 600; ++size) {
        const std::string target = std::string(size, 'a') + 'b';
        EXPECT_EQ(replaceAll("a" + target + target + 'c' + target.substr(1), target, "-"),
                  "a--c" + target.substr(1))
            << size;
    }
}

// Compared at each place, the target would take 10 to the power of 13 steps.
TEST(Replace, TakesTimeInProportion) {
    const std::string text(10'000'000, 'a');
    for (const std::size_t size : {100'000u, 1'000'000u, 5'000'000u}) {
        for (const std::size_t odd : {std::size_t{0}, size / 2, size - 1}) {
            std::string target(size, 'a');
            target[odd] = 'b';
            EXPECT_EQ(replaceAll(text, target, "x"), text);
        }
        EXPECT_EQ(replaceAll(text, std::string(size, 'a'), "x"),
                  std::string(text.size() / size, 'x'));
    }
}

TEST(FindText, AnswersTheFirstPlaceFromAnOffsetOn) {
    const std::string target = std::string(100, 'a') + 'b';
    const std::string text = target + 'c' + target;
    EXPECT_EQ(findText(text, target), 0u);
    EXPECT_EQ(findText(text, target, 1), 102u);
    EXPECT_EQ(findText(text, target, 102), 102u);
    EXPECT_EQ(findText(text, target, 103), std::string::npos);
    EXPECT_EQ(findText(text, target, text.size()), std::string::npos);
    EXPECT_EQ(findText(text, target, text.size() + 1), std::string::npos);
    EXPECT_EQ(findText({}, target), std::string::npos);
    EXPECT_EQ(findText("abcabc", "bc", 2), 4u);
    EXPECT_EQ(findText("abc", "d"), std::string::npos);
    EXPECT_EQ(findText("abc", "", 3), 3u);
    EXPECT_EQ(findText("abc", "", 4), std::string::npos);
}

TEST(ReplaceIgnoringCase, ReplacesEveryForm) {
    EXPECT_EQ(replaceAllIgnoringCase("aAbA", "a", "x"), "xxbx");
    EXPECT_EQ(replaceAllIgnoringCase("StraSSe", "ss", "-"), "Stra-e");
    EXPECT_EQ(replaceAllIgnoringCase("ΑΒΓ αβγ", "αβ", "ab"), "abΓ abγ");
    EXPECT_EQ(replaceAllIgnoringCase("1&2", "&", "&amp;"), "1&amp;2");
    EXPECT_EQ(replaceAllIgnoringCase("", "a", "x"), "");
    EXPECT_EQ(replaceAllIgnoringCase("abc", "", "x"), "abc");
}

TEST(ReplaceIgnoringCase, FoldsOneCharacterToOneWithoutALocale) {
    struct Row {
        std::string_view target;
        std::string_view forms;
        std::string_view others;
    };
    for (const Row& row : {
             Row{"a", "aA", "@[àａ"},
             Row{"Σ", "Σσς", "ζ"},
             Row{"ẞ", "ẞß", "ssS"},
             Row{"i", "iI", "İı"},
             Row{"Я", "Яя", "RЮ"},
             Row{"ａ", "Ａａ", "aA"},
             Row{"Ā", "Āā", "ĂăAa"},
             Row{"\U00010400", "\U00010400\U00010428", "\U00010401"},
             Row{"中", "中", "国"},
             Row{"1", "1", "١!"},
         }) {
        EXPECT_EQ(replaceAllIgnoringCase(row.forms, row.target, ""), "") << row.target;
        EXPECT_EQ(replaceAllIgnoringCase(row.others, row.target, ""), row.others) << row.target;
    }
}

// The forms of a letter need not have the same number of bytes.
TEST(ReplaceIgnoringCase, FindsFormsOfOtherLengths) {
    EXPECT_EQ(replaceAllIgnoringCase("1\u212A 2k 3K", "k", "x"), "1x 2x 3x");
    EXPECT_EQ(replaceAllIgnoringCase("ak\u212AKb", "kkk", "-"), "a-b");
}

TEST(ReplaceIgnoringCase, GoesFromLeftToRightAndNeverOverItsOutput) {
    EXPECT_EQ(replaceAllIgnoringCase("aAa", "aa", "AA"), "AAa");
    EXPECT_EQ(replaceAllIgnoringCase("aabAAb", "aab", "aa"), "aaaa");
    EXPECT_EQ(replaceAllIgnoringCase("aaAab", "aab", "-"), "aa-");
    EXPECT_EQ(replaceAllIgnoringCase("ababABac", "abaBac", "-"), "ab-");
}

TEST(ReplaceIgnoringCase, TakesBytesThatAreNoUtf8AsTheyStand) {
    EXPECT_EQ(replaceAllIgnoringCase("a\xff\xc3", "A", "x"), "x\xff\xc3");
    EXPECT_EQ(replaceAllIgnoringCase("\xffz\xff", "\xffZ", "-"), "-\xff");
    EXPECT_EQ(replaceAllIgnoringCase("\xc3\xa9", "\xc3", "-"), "\xc3\xa9");
}

TEST(ReplaceIgnoringCase, TakesTimeInProportion) {
    const std::string text(1'000'000, 'a');
    EXPECT_EQ(replaceAllIgnoringCase(text, std::string(500'000, 'A') + 'b', "x"), text);
}

}  // namespace
}  // namespace yg::text
