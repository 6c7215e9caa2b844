// SPDX-License-Identifier: MIT

#include <gtest/gtest.h>

#include "YGConfigManager/palette/ColorOrSubstitute.h"

namespace yg {
namespace {

TEST(ColorOrSubstitute, IsTheColourWhereThereIsOne) {
    const Color color{0.25, 0.5, 0.75, 0.125};
    EXPECT_EQ(colorOrSubstitute(color, 0), color);
    EXPECT_EQ(colorOrSubstitute(color, 1), color);
}

TEST(ColorOrSubstitute, IsBlackInTheLightStyleAndWhiteInAnyOther) {
    EXPECT_EQ(colorOrSubstitute(std::nullopt, 0), (Color{0, 0, 0, 1}));
    for (const int style : {1, 2, -1})
        EXPECT_EQ(colorOrSubstitute(std::nullopt, static_cast<std::int8_t>(style)),
                  (Color{1, 1, 1, 1}));
}

}  // namespace
}  // namespace yg
