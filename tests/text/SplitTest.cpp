// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/text/Split.h"

namespace yg::text {
namespace {

using testing::ElementsAre;

TEST(Split, CutsAtEachSeparator) {
    EXPECT_THAT(split("a;b;c", ';'), ElementsAre("a", "b", "c"));
    EXPECT_THAT(split("a;b,c", ','), ElementsAre("a;b", "c"));
    EXPECT_THAT(split("abc", ';'), ElementsAre("abc"));
}

TEST(Split, KeepsEmptyPieces) {
    EXPECT_THAT(split("", ';'), ElementsAre(""));
    EXPECT_THAT(split(";", ';'), ElementsAre("", ""));
    EXPECT_THAT(split("a;", ';'), ElementsAre("a", ""));
    EXPECT_THAT(split(";a", ';'), ElementsAre("", "a"));
    EXPECT_THAT(split("a;;b", ';'), ElementsAre("a", "", "b"));
}

TEST(Split, TrimsNothing) {
    EXPECT_THAT(split(" a ;\tb\n", ';'), ElementsAre(" a ", "\tb\n"));
}

}  // namespace
}  // namespace yg::text
