// SPDX-License-Identifier: MIT
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ygconfig/drawing/Display.h"

namespace {

using namespace std::string_view_literals;
using yg::tool::characters;
using yg::tool::displayWidth;
using yg::tool::folded;
using yg::tool::printable;
using yg::tool::shownWidth;

TEST(DisplayWidth, CountsColumns) {
    EXPECT_EQ(displayWidth(""), 0);
    EXPECT_EQ(displayWidth("abc"), 3);
    EXPECT_EQ(displayWidth("市场"), 4);
    EXPECT_EQ(displayWidth("A股（美）"), 9);
    EXPECT_EQ(displayWidth("é"), 1);
    EXPECT_EQ(displayWidth("e\u0301"), 1);  // an accent of its own
    EXPECT_EQ(displayWidth("ｶ"), 1);        // half width
    EXPECT_EQ(displayWidth("𠀀"), 2);
    EXPECT_EQ(displayWidth("├─ "), 3);
}

TEST(Printable, KeepsText) {
    EXPECT_EQ(printable("a 市场 \U0001F4C8"), "a 市场 \U0001F4C8");
}

TEST(Printable, ReplacesControlCharacters) {
    EXPECT_EQ(printable("a\nb\tc\x7f"), "a\uFFFDb\uFFFDc\uFFFD");
    EXPECT_EQ(printable("\x1b[31m"), "\uFFFD[31m");
    EXPECT_EQ(printable("\u009b31m"), "\uFFFD31m");
    EXPECT_EQ(printable("a\0b"sv), "a\uFFFDb");
    EXPECT_EQ(printable("a\u2028b\u202eb\u2069"), "a\uFFFDb\uFFFDb\uFFFD");
    EXPECT_EQ(displayWidth(printable("a\u202eb\u200f市\u061c")), 7);
}

TEST(Printable, ReplacesWhatIsNotUtf8) {
    EXPECT_EQ(printable("a\xff\xfe"), "a\uFFFD\uFFFD");
    EXPECT_EQ(printable("\xe5\xb8"), "\uFFFD\uFFFD");
    EXPECT_EQ(printable("\xe5\xb8市"), "\uFFFD\uFFFD市");
}

TEST(Folded, BreaksAtBlanksThenBehindMarksThenAnywhere) {
    using Lines = std::vector<std::string>;
    EXPECT_EQ(folded("", 10), Lines{""});
    EXPECT_EQ(folded("one two", 7), Lines{"one two"});
    EXPECT_EQ(folded("one two", 6), (Lines{"one", "  two"}));
    EXPECT_EQ(folded("one two three", 5, 0), (Lines{"one", "two", "three"}));
    EXPECT_EQ(folded("one,two,three", 9), (Lines{"one,two,", "  three"}));
    EXPECT_EQ(folded("abcdefghij", 6), (Lines{"abcdef", "  ghij"}));
    EXPECT_EQ(folded("市场总览", 5), (Lines{"市场", "  总", "  览"}));
    EXPECT_EQ(folded("e\u0301e\u0301e\u0301", 2), (Lines{"e\u0301e\u0301", "  e\u0301"}));
    EXPECT_EQ(folded("市市", 1), (Lines{"市", "  市"}));
}

TEST(Folded, EndsColoursWithEachLine) {
    EXPECT_EQ(folded("a \x1b[32mone two\x1b[0m b", 6),
              (std::vector<std::string>{"a \x1b[32mone\x1b[0m", "  \x1b[32mtwo\x1b[0m", "  b"}));
    EXPECT_EQ(shownWidth("a \x1b[32m市\x1b[0m"), 4u);
}

TEST(Characters, DoNotDependOnTheLocale) {
    EXPECT_EQ(characters("a市"), L"a\u5e02");
}

}  // namespace
