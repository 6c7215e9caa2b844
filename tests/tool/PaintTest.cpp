// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "ygconfig/drawing/Paint.h"

namespace {

using yg::tool::Paint;
using yg::tool::Tone;
using yg::tool::wantsColour;

TEST(WantsColour, OnATerminalOnly) {
    EXPECT_TRUE(wantsColour({.isTerminal = true, .term = "xterm"}));
    EXPECT_TRUE(wantsColour({.isTerminal = true}));
    EXPECT_FALSE(wantsColour({.isTerminal = false, .term = "xterm"}));
}

TEST(WantsColour, UnlessItIsRefused) {
    EXPECT_FALSE(wantsColour({.isTerminal = true, .noColour = "1", .term = "xterm"}));
    EXPECT_FALSE(wantsColour({.isTerminal = true, .noColour = "0", .term = "xterm"}));
    EXPECT_TRUE(wantsColour({.isTerminal = true, .noColour = "", .term = "xterm"}));
    EXPECT_FALSE(wantsColour({.isTerminal = true, .term = "dumb"}));
}

TEST(WantsColour, WhenItIsForcedAndNotRefused) {
    EXPECT_TRUE(wantsColour({.forceColour = "1"}));
    EXPECT_TRUE(wantsColour({.forceColour = "1", .term = "dumb"}));
    EXPECT_FALSE(wantsColour({.forceColour = "0"}));
    EXPECT_FALSE(wantsColour({.forceColour = ""}));
    EXPECT_FALSE(wantsColour({.isTerminal = true, .noColour = "1", .forceColour = "1"}));
}

TEST(WantsColour, AsTheOptionSaysWhateverTheEnvironment) {
    EXPECT_TRUE(wantsColour({.choice = "always", .noColour = "1", .term = "dumb"}));
    EXPECT_FALSE(wantsColour({.choice = "never", .isTerminal = true, .forceColour = "1"}));
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
