// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "ygconfig/drawing/Paint.h"

namespace {

using yg::tool::Paint;
using yg::tool::Tone;
using yg::tool::wantsColour;

TEST(WantsColour, OnATerminalOnly) {
    EXPECT_TRUE(wantsColour(true, nullptr, "xterm"));
    EXPECT_TRUE(wantsColour(true, nullptr, nullptr));
    EXPECT_FALSE(wantsColour(false, nullptr, "xterm"));
}

TEST(WantsColour, UnlessItIsRefused) {
    EXPECT_FALSE(wantsColour(true, "1", "xterm"));
    EXPECT_FALSE(wantsColour(true, "0", "xterm"));
    EXPECT_TRUE(wantsColour(true, "", "xterm"));
    EXPECT_FALSE(wantsColour(true, nullptr, "dumb"));
}

TEST(Paint, WrapsTextInItsColour) {
    const Paint paint(true);
    EXPECT_EQ(paint(Tone::element, "a"), "\x1b[32ma\x1b[0m");
    EXPECT_EQ(paint(Tone::plain, "a"), "a");
    EXPECT_EQ(paint(Tone::element, ""), "");
}

TEST(Paint, LeavesTextAsItIsWithoutColours) {
    EXPECT_EQ(Paint(false)(Tone::element, "a"), "a");
}

}  // namespace
