// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/graphics/Image.h"

#include "graphics/CountedMemory.h"
#include "graphics/ImageFiles.h"

namespace {

using namespace yg::testing;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using yg::Image;

const double infinity = std::numeric_limits<double>::infinity();
const double noNumber = std::nan("");

/// Opaque pixels that count up from 0.
Image countingImage(std::size_t width, std::size_t height) {
    std::vector<Pixel> pixels(width * height);
    for (std::size_t i = 0; i < pixels.size(); ++i)
        pixels[i] = static_cast<Pixel>(i << 8 | 0xFF);
    return imageOf(width, pixels);
}

TEST(ImagePixels, AreKeptWithTheirSizes) {
    const std::optional<Image> image = Image::fromPixels(2, 1, {1, 2, 3, 4, 5, 6, 7, 8}, 1.5, 0.75);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->pixelWidth(), 2U);
    EXPECT_EQ(image->pixelHeight(), 1U);
    EXPECT_EQ(image->width(), 1.5);
    EXPECT_EQ(image->height(), 0.75);
    EXPECT_THAT(image->row(0), ElementsAre(1, 2, 3, 4, 5, 6, 7, 8));
    EXPECT_THAT(image->row(1), IsEmpty());
}

TEST(ImagePixels, OfAnotherNumberOrSizeAreNone) {
    EXPECT_FALSE(Image::fromPixels(1, 1, {1, 2, 3}));
    EXPECT_FALSE(Image::fromPixels(1, 1, {1, 2, 3, 4, 5}));
    EXPECT_FALSE(Image::fromPixels(0, 0, {}));
    EXPECT_FALSE(Image::fromPixels(0, 1, {}));
    EXPECT_FALSE(Image::fromPixels(std::size_t{1} << 62, 4, {}));
    for (const double size : {0.0, -1.0, infinity, noNumber}) {
        EXPECT_FALSE(Image::fromPixels(1, 1, {1, 2, 3, 4}, size, 1));
        EXPECT_FALSE(Image::fromPixels(1, 1, {1, 2, 3, 4}, 1, size));
    }
}

TEST(ImageCut, TakesTheRectangleAndTheSizeInPoints) {
    const Image image = countingImage(4, 3);
    const std::optional<Image> part = image.cut(1, 1, 2, 2, 10, 20.5);
    ASSERT_TRUE(part);
    EXPECT_EQ(part->width(), 10);
    EXPECT_EQ(part->height(), 20.5);
    EXPECT_EQ(part->pixelWidth(), 2U);
    EXPECT_EQ(part->pixelHeight(), 2U);
    EXPECT_THAT(pixelsOf(*part), ElementsAre(0x5FF, 0x6FF, 0x9FF, 0xAFF));
}

TEST(ImageCut, OfACutCountsFromItsOwnCorner) {
    const std::optional<Image> part =
        countingImage(4, 3).cut(1, 1, 3, 2, 3, 2)->cut(1, 1, 9, 9, 1, 1);
    ASSERT_TRUE(part);
    EXPECT_EQ(part->pixelWidth(), 2U);
    EXPECT_THAT(pixelsOf(*part), ElementsAre(0xAFF, 0xBFF));
}

TEST(ImageCut, IsWidenedToWholePixels) {
    // 101 pixels in four parts of 25.25.
    const Image image = countingImage(101, 1);
    const std::vector<std::pair<Pixel, std::size_t>> parts = {
        {0, 26}, {25, 26}, {50, 26}, {75, 26}};
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const std::optional<Image> part =
            image.cut(static_cast<double>(i) * 25.25, 0, 25.25, 1, 25.25, 1);
        ASSERT_TRUE(part);
        EXPECT_EQ(part->pixelWidth(), parts[i].second);
        EXPECT_EQ(pixelsOf(*part).front(), parts[i].first << 8 | 0xFF);
        EXPECT_EQ(part->width(), 25.25);
    }
}

TEST(ImageCut, IsClippedToTheImage) {
    const std::optional<Image> part = countingImage(3, 2).cut(-1, -5, 2.5, 100, 1, 1);
    ASSERT_TRUE(part);
    EXPECT_THAT(pixelsOf(*part), ElementsAre(0x0FF, 0x1FF, 0x3FF, 0x4FF));
    EXPECT_EQ(part->pixelWidth(), 2U);
    EXPECT_TRUE(countingImage(3, 2).cut(0, 0, 1e300, 1e300, 1, 1));
}

TEST(ImageCut, WithNothingLeftIsNone) {
    const Image image = countingImage(3, 2);
    for (const auto& [x, y] : std::vector<std::pair<double, double>>{
             {3, 0}, {0, 2}, {-1, 0}, {0, -1}, {1e300, 0}, {-1e300, 0}}) {
        EXPECT_FALSE(image.cut(x, y, 1, 1, 1, 1)) << x << " " << y;
    }
}

TEST(ImageCut, WithNumbersThatMeanNothingIsNone) {
    const Image image = countingImage(3, 2);
    for (const double number : {infinity, -infinity, noNumber}) {
        EXPECT_FALSE(image.cut(number, 0, 1, 1, 1, 1));
        EXPECT_FALSE(image.cut(0, number, 1, 1, 1, 1));
    }
    for (const double number : {infinity, -infinity, noNumber, 0.0, -1.0}) {
        EXPECT_FALSE(image.cut(0, 0, number, 1, 1, 1));
        EXPECT_FALSE(image.cut(0, 0, 1, number, 1, 1));
        EXPECT_FALSE(image.cut(0, 0, 1, 1, number, 1));
        EXPECT_FALSE(image.cut(0, 0, 1, 1, 1, number));
    }
}

TEST(ImageCut, SharesThePixelsAndKeepsThem) {
    std::optional<Image> image = countingImage(4, 4);
    const std::uint8_t* const second = image->row(1).data();
    const Image part = *image->cut(0, 1, 4, 1, 4, 1);
    EXPECT_EQ(part.row(0).data(), second);
    image.reset();
    EXPECT_THAT(pixelsOf(part), ElementsAre(0x4FF, 0x5FF, 0x6FF, 0x7FF));
}

TEST(ImageScaling, ToHalfIsTheMeanOfFourPixels) {
    const Image image = imageOf(4, {0x000000FF, 0x040000FF, 0x00FF00FF, 0x00FF00FF,  //
                                    0x080000FF, 0x0C0000FF, 0x00FF00FF, 0x00FE00FF});
    EXPECT_THAT(pixelsOf(*image.scaled(2, 1)), ElementsAre(0x060000FF, 0x00FF00FF));
}

TEST(ImageScaling, ToTwiceInterpolatesBetweenCentresAndKeepsTheEdges) {
    const Image image = imageOf(2, {0x00000064, 0x64C86464,  //
                                    0xC8643264, 0x00000064});
    EXPECT_THAT(pixelsOf(*image.scaled(4, 4)),
                ElementsAre(0x00000064, 0x19321964, 0x4B964B64, 0x64C86464,  //
                            0x32190D64, 0x38381C64, 0x45773B64, 0x4B964B64,  //
                            0x964B2664, 0x77452264, 0x38381C64, 0x19321964,  //
                            0xC8643264, 0x964B2664, 0x32190D64, 0x00000064));
}

TEST(ImageScaling, ToTheSameSizeChangesNothing) {
    const Image image = imageOf(3, {0x01020304, 0xFF000000, 0xFFFFFFFF,  //
                                    0x80808001, 0x00FF0080, 0x12345678});
    EXPECT_EQ(pixelsOf(*image.scaled(3, 2)), pixelsOf(image));
}

TEST(ImageScaling, KeepsAConstantColourExactly) {
    const Image image = imageOf(7, std::vector<Pixel>(7 * 5, 0xC8643280));
    for (const auto& [width, height] :
         std::vector<std::pair<double, double>>{{3, 2}, {13, 11}, {7, 5}, {1, 1}, {100, 3}}) {
        EXPECT_THAT(pixelsOf(*image.scaled(width, height)), Each(0xC8643280));
    }
}

TEST(ImageScaling, TransparentPixelsLendNoColour) {
    const Image image = imageOf(2, {0x00FF0000, 0xC80000FF});
    EXPECT_THAT(pixelsOf(*image.scaled(1, 1)), ElementsAre(0xC8000080));
    EXPECT_THAT(pixelsOf(*image.scaled(4, 1)),
                ElementsAre(0x00FF0000, 0xC8000040, 0xC80000BF, 0xC80000FF));
}

TEST(ImageScaling, ColoursAreWeightedByTheirAlpha) {
    // A quarter of the first and all of the second: (64 × 200 + 255 × 100) / 319.
    const Image image = imageOf(2, {0xC8000040, 0x640000FF});
    EXPECT_THAT(pixelsOf(*image.scaled(1, 1)), ElementsAre(0x780000A0));
}

TEST(ImageScaling, APixelWithoutWeightDoesNotShow) {
    // The middle one of three lies exactly on a centre.
    const Image image = imageOf(3, {0xFF0000FF, 0x00000000, 0x00FF00FF});
    EXPECT_THAT(pixelsOf(*image.scaled(1, 1)), Each(0x00000000));
}

/// Bilinear scaling by the book, in double precision.
std::vector<double> scaledExactly(const Image& image, std::size_t width, std::size_t height) {
    struct Place {
        std::size_t near;
        std::size_t far;
        double weight;
    };
    const auto placeOf = [](std::size_t i, std::size_t from, std::size_t to) {
        const double position = std::clamp(
            (static_cast<double>(i) + 0.5) * static_cast<double>(from) / static_cast<double>(to) -
                0.5,
            0.0, static_cast<double>(from - 1));
        const auto near = static_cast<std::size_t>(position);
        return Place{near, std::min(near + 1, from - 1), position - static_cast<double>(near)};
    };
    std::vector<double> result;
    for (std::size_t y = 0; y < height; ++y) {
        const Place down = placeOf(y, image.pixelHeight(), height);
        for (std::size_t x = 0; x < width; ++x) {
            const Place across = placeOf(x, image.pixelWidth(), width);
            double sums[4] = {};
            const auto add = [&](std::size_t row, std::size_t column, double weight) {
                const std::uint8_t* const pixel = image.row(row).data() + 4 * column;
                for (int i = 0; i < 3; ++i)
                    sums[i] += weight * pixel[3] * pixel[i];
                sums[3] += weight * pixel[3];
            };
            add(down.near, across.near, (1 - down.weight) * (1 - across.weight));
            add(down.near, across.far, (1 - down.weight) * across.weight);
            add(down.far, across.near, down.weight * (1 - across.weight));
            add(down.far, across.far, down.weight * across.weight);
            for (int i = 0; i < 3; ++i)
                result.push_back(sums[3] > 0 ? sums[i] / sums[3] : 0);
            result.push_back(sums[3]);
        }
    }
    return result;
}

TEST(ImageScaling, ComesCloseToTheExactInterpolation) {
    std::mt19937 random(1);
    std::vector<std::uint8_t> bytes(17 * 13 * 4);
    for (std::uint8_t& byte : bytes)
        byte = static_cast<std::uint8_t>(random());
    for (std::size_t i = 3; i < bytes.size(); i += 4)
        bytes[i] = std::max<std::uint8_t>(bytes[i], 64);
    const Image image = *Image::fromPixels(17, 13, bytes);
    for (const auto& [width, height] : std::vector<std::pair<std::size_t, std::size_t>>{
             {40, 29}, {17, 30}, {9, 13}, {8, 7}, {3, 50}, {1, 1}}) {
        const Image scaled = *image.scaled(static_cast<double>(width), static_cast<double>(height));
        const std::vector<double> exact = scaledExactly(image, width, height);
        for (std::size_t i = 0; i < exact.size(); ++i) {
            // Weights are rounded to a 128th.
            ASSERT_NEAR(scaled.row(i / 4 / width)[i % (4 * width)], exact[i], 3.5);
        }
    }
}

TEST(ImageScaling, OpaqueStaysOpaque) {
    const Image image = countingImage(5, 5);
    for (double size = 1; size < 30; ++size) {
        for (const Pixel pixel : pixelsOf(*image.scaled(size, 31 - size))) {
            ASSERT_EQ(pixel & 0xFF, 0xFFU);
        }
    }
}

TEST(ImageScaling, OfACutSeesNoPixelOutsideOfIt) {
    const Image image = imageOf(4, {0xFF0000FF, 0x0000FFFF, 0x0000FFFF, 0xFF0000FF});
    EXPECT_THAT(pixelsOf(*image.cut(1, 0, 2, 1, 2, 1)->scaled(9, 3)), Each(0x0000FFFF));
}

TEST(ImageScaling, KeepsPointsThatAreNoWholeNumber) {
    const std::optional<Image> image = countingImage(100, 33).scaled(20, 6.6);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->width(), 20);
    EXPECT_EQ(image->height(), 6.6);
    EXPECT_EQ(image->pixelWidth(), 20U);
    EXPECT_EQ(image->pixelHeight(), 7U);
}

TEST(ImageScaling, MakesAtLeastAPixelAndNoneForATrace) {
    const Image image = countingImage(4, 4);
    EXPECT_EQ(image.scaled(0.001, 3)->pixelWidth(), 1U);
    EXPECT_EQ(image.scaled(3.0000000001, 3)->pixelWidth(), 3U);
    EXPECT_EQ(image.scaled(3.001, 3)->pixelWidth(), 4U);
}

TEST(ImageScaling, OverTheLimitOrToNothingIsNone) {
    const Image image = countingImage(4, 4);
    for (const double size : {0.0, -1.0, infinity, -infinity, noNumber, 1e9, 1e300}) {
        EXPECT_FALSE(image.scaled(size, 10)) << size;
        EXPECT_FALSE(image.scaled(10, size)) << size;
    }
    EXPECT_FALSE(image.scaled(8192, 8192.5));
}

TEST(ImageScaling, KeepsEachOfManyColumnsAndRows) {
    const Image row = countingImage(5000, 1);
    const Image rows = *row.scaled(5000, 2);
    std::vector<Pixel> twice = pixelsOf(row);
    twice.insert(twice.end(), twice.begin(), twice.begin() + 5000);
    EXPECT_EQ(pixelsOf(rows), twice);
    const Image column = countingImage(1, 5000);
    EXPECT_EQ(pixelsOf(*column.scaled(1, 5000)), pixelsOf(column));
}

#ifndef YG_NO_COUNTED_MEMORY
TEST(ImageScaling, TakesTheMemoryOfTheResultAndNoMore) {
    constexpr double many = 1 << 22;
    constexpr std::size_t little = 1 << 16;
    const Image small = countingImage(3, 3);
    const auto taken = [](const Image& image, double width, double height) {
        const std::size_t before = bytesTaken();
        EXPECT_TRUE(image.scaled(width, height));
        return bytesTaken() - before;
    };
    EXPECT_LT(taken(small, many, 1), 4 * std::size_t{1 << 22} + little);
    EXPECT_LT(taken(small, 1, many), 4 * std::size_t{1 << 22} + little);
    EXPECT_LT(taken(*small.scaled(many, 1), 1, 1), little);
    EXPECT_LT(taken(*small.scaled(1, many), 1, 1), little);
}
#endif

TEST(ImageWriting, GivesAPngThatReadsBackTheSame) {
    const Image image = imageOf(3, {0x01020304, 0xFF000000, 0xFFFFFFFF,  //
                                    0x80808001, 0x00FF0080, 0x12345678});
    const std::optional<std::string> file = image.toPng();
    ASSERT_TRUE(file);
    const std::optional<Image> again = Image::fromBytes(*file);
    ASSERT_TRUE(again);
    EXPECT_EQ(pixelsOf(*again), pixelsOf(image));
    EXPECT_EQ(again->width(), 3);
    EXPECT_EQ(again->height(), 2);
    EXPECT_EQ(file->find("pHYs"), std::string::npos);
}

TEST(ImageWriting, KeepsTheSizeInPoints) {
    std::vector<std::uint8_t> bytes(6 * 4 * 4);
    const Image image = *Image::fromPixels(6, 4, bytes, 3, 1);
    const std::optional<Image> again = Image::fromBytes(image.toPng().value());
    ASSERT_TRUE(again);
    EXPECT_EQ(again->width(), 3);
    EXPECT_EQ(again->height(), 1);
}

TEST(ImageWriting, WritesThePartThatWasCut) {
    const Image part = *countingImage(4, 3).cut(1, 1, 2, 2, 2, 2);
    EXPECT_EQ(pixelsOf(*Image::fromBytes(part.toPng().value())), pixelsOf(part));
}

}  // namespace
