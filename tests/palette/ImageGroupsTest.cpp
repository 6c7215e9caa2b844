// SPDX-License-Identifier: MIT
//
// Cutting strips and scaling images. The strips have a grey of its own in each column, so that a
// piece shows where it was cut.
#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/palette/YGPaletteLoad.h"

#include "palette/PaletteRoot.h"

namespace yg {
namespace {

using ::testing::ElementsAre;
using ::testing::SizeIs;
using yg::testing::columns;
using yg::testing::firstColumn;

constexpr auto onePiece = YGPaletteLoad::getImageByImageAndGroupIndex;
constexpr auto allPieces = YGPaletteLoad::getImagesByImageAndGroupCount;
constexpr auto scaled = YGPaletteLoad::getImageFromOriImageByScale;
constexpr auto onePieceScaled = YGPaletteLoad::getImageInGroupByScale;
constexpr auto allPiecesScaled = YGPaletteLoad::getImagesInGroupByScale;

constexpr std::uint64_t mostPieces = std::numeric_limits<std::uint64_t>::max();
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

/// The numbers of an image: points, pixels, and the first column.
std::vector<double> numbersOf(const std::optional<Image>& image) {
    if (!image)
        return {};
    return {image->width(), image->height(), static_cast<double>(image->pixelWidth()),
            static_cast<double>(image->pixelHeight()), static_cast<double>(firstColumn(*image))};
}

/// 100 points wide with 200 pixels.
Image twicePixels() {
    return *columns(200, 40).cut(0, 0, 200, 40, 100, 20);
}

TEST(OnePiece, OfAHundredPointsInFourIsTwentyFiveWide) {
    const Image strip = columns(100, 20);
    EXPECT_THAT(numbersOf(onePiece(strip, 4, 0)), ElementsAre(25, 20, 25, 20, 0));
    EXPECT_THAT(numbersOf(onePiece(strip, 4, 3)), ElementsAre(25, 20, 25, 20, 75));
    EXPECT_EQ(onePiece(strip, 4, 4), std::nullopt);
}

TEST(OnePiece, IsNoneWithoutAnImageAndWithoutPieces) {
    EXPECT_EQ(onePiece(std::nullopt, 4, 0), std::nullopt);
    EXPECT_EQ(onePiece(columns(4, 1), 0, 0), std::nullopt);
    EXPECT_EQ(onePiece(columns(4, 1), mostPieces, mostPieces), std::nullopt);
}

TEST(OnePiece, WidensToWholePixelsAndKeepsItsPoints) {
    const Image strip = columns(101, 2);
    EXPECT_THAT(numbersOf(onePiece(strip, 4, 1)), ElementsAre(25.25, 2, 26, 2, 25));
    EXPECT_THAT(numbersOf(onePiece(strip, 4, 3)), ElementsAre(25.25, 2, 26, 2, 75));
    EXPECT_THAT(numbersOf(onePiece(strip, mostPieces, 0)),
                ElementsAre(101 / static_cast<double>(mostPieces), 2, 1, 2, 0));
}

TEST(OnePiece, TakesPointsForPixels) {
    EXPECT_THAT(numbersOf(onePiece(twicePixels(), 4, 1)), ElementsAre(25, 20, 25, 20, 25));
    // Its columns from 100 on belong to no piece.
    EXPECT_EQ(onePiece(twicePixels(), 4, 4), std::nullopt);
}

TEST(AllPieces, DropTheColumnsThatAreLeftOver) {
    const auto pieces = allPieces(columns(101, 20), 4);
    ASSERT_THAT(*pieces, SizeIs(4));
    EXPECT_THAT(numbersOf(pieces->front()), ElementsAre(25, 20, 25, 20, 0));
    EXPECT_THAT(numbersOf(pieces->back()), ElementsAre(25, 20, 25, 20, 75));
}

TEST(AllPieces, HaveAPointForEachPixel) {
    const auto pieces = allPieces(twicePixels(), 4);
    ASSERT_THAT(*pieces, SizeIs(4));
    EXPECT_THAT(numbersOf(pieces->at(1)), ElementsAre(50, 40, 50, 40, 50));
}

TEST(AllPieces, AreNullWithoutAnImageAndWithoutPieces) {
    EXPECT_EQ(allPieces(std::nullopt, 4), nullptr);
    EXPECT_EQ(allPieces(columns(4, 1), 0), nullptr);
}

TEST(AllPieces, AreNoneOfMorePiecesThanColumns) {
    EXPECT_THAT(*allPieces(columns(4, 1), 4), SizeIs(4));
    EXPECT_THAT(*allPieces(columns(4, 1), 5), SizeIs(0));
    EXPECT_THAT(*allPieces(columns(4, 1), mostPieces), SizeIs(0));
}

TEST(Scaling, KeepsTheAspectRatio) {
    const Image image = columns(40, 20);
    EXPECT_THAT(numbersOf(scaled(image, 0, 20)), ElementsAre(20, 10, 20, 10, ::testing::_));
    EXPECT_THAT(numbersOf(scaled(image, 1, 10)), ElementsAre(20, 10, 20, 10, ::testing::_));
    EXPECT_THAT(numbersOf(scaled(image, 1, 40)), ElementsAre(80, 40, 80, 40, ::testing::_));
    EXPECT_THAT(numbersOf(scaled(twicePixels(), 0, 50)), ElementsAre(50, 10, 50, 10, ::testing::_));
}

TEST(Scaling, KeepsTheFractionOfTheOtherSide) {
    const auto image = scaled(columns(100, 33), 0, 20);
    EXPECT_EQ(image->height(), 20.0 / 100 * 33);
    EXPECT_EQ(image->pixelHeight(), 7);
}

TEST(Scaling, IsNoneForAnyOtherTypeAndForNoSize) {
    const Image image = columns(40, 20);
    EXPECT_EQ(scaled(image, 2, 20), std::nullopt);
    EXPECT_EQ(scaled(image, 0xFFFFFFFF, 20), std::nullopt);
    for (const double value : {0.0, -0.0, -1.0, notANumber, infinity, -infinity, 1e9, 1e300}) {
        EXPECT_EQ(scaled(image, 0, value), std::nullopt) << value;
        EXPECT_EQ(scaled(image, 1, value), std::nullopt) << value;
    }
    EXPECT_EQ(scaled(std::nullopt, 0, 20), std::nullopt);
}

TEST(OnePieceScaled, IsThePieceScaled) {
    const auto piece = onePieceScaled(columns(100, 20), 4, 3, 0, 50);
    EXPECT_THAT(numbersOf(piece), ElementsAre(50, 40, 50, 40, 75));
}

TEST(OnePieceScaled, OfAnIndexEqualToTheCountIsNone) {
    const Image strip = columns(100, 20);
    EXPECT_EQ(onePieceScaled(strip, 4, 4, 0, 50), std::nullopt);
    EXPECT_EQ(onePieceScaled(strip, 4, 5, 0, 50), std::nullopt);
    EXPECT_EQ(onePieceScaled(strip, 0, 0, 0, 50), std::nullopt);
    EXPECT_EQ(onePieceScaled(strip, 4, 0, 0, 0), std::nullopt);
    EXPECT_EQ(onePieceScaled(strip, 4, 0, 2, 50), std::nullopt);
    EXPECT_EQ(onePieceScaled(std::nullopt, 4, 0, 0, 50), std::nullopt);
}

TEST(AllPiecesScaled, AreCutByPixelsAndScaled) {
    const auto pieces = allPiecesScaled(columns(101, 20), 4, 1, 40);
    ASSERT_THAT(*pieces, SizeIs(4));
    EXPECT_THAT(numbersOf(pieces->back()), ElementsAre(50, 40, 50, 40, 75));
}

TEST(AllPiecesScaled, LeaveOutWhatHasNoScaling) {
    EXPECT_THAT(*allPiecesScaled(columns(100, 20), 4, 2, 40), SizeIs(0));
    EXPECT_THAT(*allPiecesScaled(columns(100, 20), 4, 0, 1e9), SizeIs(0));
    EXPECT_THAT(*allPiecesScaled(columns(100, 20), mostPieces, 0, 40), SizeIs(0));
}

TEST(AllPiecesScaled, HaveNoMorePixelsTogetherThanAnImage) {
    // 128 times 65,536 pixels each: 8 Mi.
    const Image strip = columns(16, 512);
    EXPECT_THAT(*allPiecesScaled(strip, 16, 0, 128), SizeIs(8));
    EXPECT_THAT(*allPiecesScaled(strip, 8, 0, 128), SizeIs(8));
}

TEST(AllPiecesScaled, AreNullWithoutAnImagePiecesOrSize) {
    EXPECT_EQ(allPiecesScaled(std::nullopt, 4, 0, 40), nullptr);
    EXPECT_EQ(allPiecesScaled(columns(100, 20), 0, 0, 40), nullptr);
    EXPECT_EQ(allPiecesScaled(columns(100, 20), 4, 0, 0), nullptr);
    EXPECT_EQ(allPiecesScaled(columns(100, 20), 4, 0, notANumber), nullptr);
}

}  // namespace
}  // namespace yg
