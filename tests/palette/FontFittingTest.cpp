// SPDX-License-Identifier: MIT
//
// Fonts shrunk to widths, in the build's own font, of which every character is one em wide: five
// characters are 60 points wide at size 12, exactly.
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "YGConfigManager/palette/YGPaletteLoad.h"

#include "palette/TestFonts.h"

namespace yg {
namespace {

using yg::testing::latinFace;
using yg::testing::squareFace;

Font fontOf(double size) {
    return *Font::named(squareFace, size);
}

/// The size that the font gets.
double fitted(double size, const std::optional<std::string_view>& text, double width) {
    return YGPaletteLoad::fixFontWithFont(fontOf(size), text, width).pointSize();
}

TEST(FontWithName, IsTheSystemFontForAnUnknownFace) {
    EXPECT_EQ(YGPaletteLoad::fontWithName(latinFace, 9), *Font::named(latinFace, 9));
    EXPECT_EQ(YGPaletteLoad::fontWithName("No Such Face", 9), Font::system(9));
    EXPECT_EQ(YGPaletteLoad::fontWithName("", 9), Font::system(9));
    EXPECT_EQ(YGPaletteLoad::fontWithName(std::nullopt, 9), Font::system(9));
}

TEST(FontFitting, NeedsMoreThanOnePointOfSlack) {
    ASSERT_EQ(fontOf(12).widthOf("price"), 60);
    EXPECT_EQ(fitted(12, "price", 61.5), 12);
    EXPECT_EQ(fitted(12, "price", 61), 11);
    EXPECT_EQ(fitted(12, "price", 56), 10);
    EXPECT_EQ(fitted(12, "价格涨跌幅", 61), 11);
}

TEST(FontFitting, EndsAtTheSizeOne) {
    EXPECT_EQ(fitted(12, "price", 6.5), 1);
    for (const double width : {6.0, 0.0, -5.0, std::numeric_limits<double>::quiet_NaN()})
        EXPECT_EQ(fitted(12, "price", width), 1) << width;
    EXPECT_EQ(fitted(1, "price", 0), 1);
}

TEST(FontFitting, LeavesAFontOfLessThanOnePointAsItIs) {
    EXPECT_EQ(YGPaletteLoad::fixFontWithFont(fontOf(0.75), "price", 100), fontOf(0.75));
    EXPECT_EQ(YGPaletteLoad::fixFontWithFont(fontOf(0.75), "price", 0), fontOf(0.75));
}

TEST(FontFitting, TakesAnAbsentTextForOneWithoutWidth) {
    EXPECT_EQ(fitted(12.5, std::nullopt, 1.5), 12);
    EXPECT_EQ(fitted(12.5, "", 1.5), 12);
    EXPECT_EQ(fitted(12.5, std::nullopt, 1), 1);
}

TEST(FontFitting, DropsTheFractionOfASizeThatFits) {
    EXPECT_EQ(fitted(12.5, "price", 1000), 12);
    EXPECT_EQ(fitted(12.99, "price", 61.5), 12);
}

TEST(FontFitting, KeepsTheFace) {
    const Font font = *Font::named(latinFace, 40);
    EXPECT_EQ(YGPaletteLoad::fixFontWithFont(font, "price", 50), *Font::named(latinFace, 19));
}

TEST(FontFitting, StopsWhereCountingDownWould) {
    const auto countedDown = [](int size, std::string_view text, double width) {
        while (size > 1 && !(width > fontOf(size).widthOf(text) + 1))
            --size;
        return size;
    };
    for (const int size : {1, 2, 3, 7, 40, 41}) {
        for (double width = 0; width < 220; width += 0.5)
            ASSERT_EQ(fitted(size, "price", width), countedDown(size, "price", width))
                << size << " into " << width;
    }
}

TEST(FontFitting, EndsSoonForAHugeFont) {
    EXPECT_EQ(fitted(2e9, "price", 61.5), 12);
    EXPECT_EQ(fitted(1e300, "", 2), std::numeric_limits<std::int32_t>::max());
}

}  // namespace
}  // namespace yg
