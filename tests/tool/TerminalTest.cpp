// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "ygconfig/drawing/Terminal.h"

namespace {

using yg::tool::folded;

TEST(Folded, BreaksAtBlanks) {
    EXPECT_EQ(folded("one two three", 7, 0, 2), "one two\n  three");
    EXPECT_EQ(folded("one two three", 6, 0, 2), "one\n  two\n  three");
    EXPECT_EQ(folded("one two", 7, 0, 0), "one two");
    EXPECT_EQ(folded("", 7, 0, 0), "");
}

TEST(Folded, CountsWhatStandsInFrontOfTheText) {
    EXPECT_EQ(folded("one two", 9, 3, 3), "one\n   two");
    EXPECT_EQ(folded("one two", 10, 3, 3), "one two");
}

TEST(Folded, BreaksBesideWideCharactersOfTwoColumnsEach) {
    EXPECT_EQ(folded("行情报价", 5, 0, 1), "行情\n 报价");
    EXPECT_EQ(folded("page 行情 is", 8, 0, 0), "page 行\n情 is");
}

TEST(Folded, LeavesALongWordWhole) {
    EXPECT_EQ(folded("in config/custompage_template.xml here", 10, 0, 0),
              "in\nconfig/custompage_template.xml\nhere");
}

}  // namespace
