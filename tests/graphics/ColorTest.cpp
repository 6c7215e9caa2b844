// SPDX-License-Identifier: MIT
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "YGConfigManager/graphics/Color.h"

namespace {

using yg::Color;

TEST(Color, ComponentsInsideTheRangeStayAsTheyAre) {
    EXPECT_EQ(Color::sRGB(0, 0.25, 1, 0.5), (Color{0, 0.25, 1, 0.5}));
}

TEST(Color, ComponentsOutsideTheRangeAreMovedIntoIt) {
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(Color::sRGB(-0.1, 1.1, 255, 128), (Color{0, 1, 1, 1}));
    EXPECT_EQ(Color::sRGB(infinity, -infinity, -0.0, infinity), (Color{1, 0, 0, 1}));
}

TEST(Color, WhatIsNoNumberIsNothing) {
    const double none = std::nan("");
    EXPECT_EQ(Color::sRGB(none, 1, none, none), (Color{0, 1, 0, 0}));
}

TEST(Color, RedIsPureAndOpaque) {
    EXPECT_EQ(Color::redColor(), Color::sRGB(1, 0, 0, 1));
}

}  // namespace
