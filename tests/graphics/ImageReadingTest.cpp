// SPDX-License-Identifier: MIT
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/graphics/Image.h"

#include "files/TemporaryFolder.h"
#include "graphics/ImageFiles.h"

namespace {

using namespace std::string_literals;
using namespace yg::testing;
using testing::Each;
using testing::ElementsAre;
using yg::Image;

std::vector<Pixel> read(const std::string& file) {
    const std::optional<Image> image = Image::fromBytes(file);
    return image ? pixelsOf(*image) : std::vector<Pixel>();
}

TEST(PngReading, EveryKindOfPixelBecomesRedGreenBlueAlpha) {
    EXPECT_THAT(read(pngHeader(2, 1, PngColor::gray, 8) + pngEnd("\0\x11\x22"s)),
                ElementsAre(0x111111FF, 0x222222FF));
    EXPECT_THAT(read(pngHeader(3, 1, PngColor::gray, 1) + pngEnd("\0\xA0"s)),
                ElementsAre(0xFFFFFFFF, 0x000000FF, 0xFFFFFFFF));
    EXPECT_THAT(read(pngHeader(2, 1, PngColor::gray, 16) + pngEnd("\0\x80\x80\x10\xF0"s)),
                ElementsAre(0x808080FF, 0x111111FF));
    EXPECT_THAT(read(pngHeader(1, 1, PngColor::grayAlpha, 8) + pngEnd("\0\x40\x80"s)),
                ElementsAre(0x40404080));
    EXPECT_THAT(read(pngHeader(1, 2, PngColor::rgb, 8) + pngEnd("\0\1\2\3\0\4\5\6"s)),
                ElementsAre(0x010203FF, 0x040506FF));
    EXPECT_THAT(read(pngHeader(1, 1, PngColor::rgba, 8) + pngEnd("\0\1\2\3\4"s)),
                ElementsAre(0x01020304));
    EXPECT_THAT(
        read(pngHeader(1, 1, PngColor::rgba, 16) + pngEnd("\0\xFF\xFF\x80\x80\0\0\x7F\x7F"s)),
        ElementsAre(0xFF80007F));
}

TEST(PngReading, APaletteAndItsTransparencyAreLookedUp) {
    EXPECT_THAT(read(pngHeader(4, 1, PngColor::palette, 2) + pngChunk("PLTE", "\1\2\3\4\5\6"s) +
                     pngChunk("tRNS", "\x80"s) + pngEnd("\0\x14"s)),
                ElementsAre(0x01020380, 0x040506FF, 0x040506FF, 0x01020380));
}

TEST(PngReading, AColourMadeTransparentIsTransparent) {
    EXPECT_THAT(read(pngHeader(2, 1, PngColor::gray, 8) + pngChunk("tRNS", "\0\x22"s) +
                     pngEnd("\0\x11\x22"s)),
                ElementsAre(0x111111FF, 0x22222200));
}

TEST(PngReading, InterlacedRowsAreSorted) {
    EXPECT_THAT(read(pngHeader(2, 2, PngColor::gray, 8, true) + pngEnd("\0\1\0\2\0\3\4"s)),
                ElementsAre(0x010101FF, 0x020202FF, 0x030303FF, 0x040404FF));
}

TEST(PngReading, InterlacedFilesOfAnySizeAreReadAsOthers) {
    struct Pass {
        unsigned left, top, across, down;
    };
    constexpr Pass passes[] = {{0, 0, 8, 8}, {4, 0, 8, 8}, {0, 4, 4, 8}, {2, 0, 4, 4},
                               {0, 2, 2, 4}, {1, 0, 2, 2}, {0, 1, 1, 2}};
    for (unsigned width = 1; width <= 10; ++width) {
        for (unsigned height = 1; height <= 10; ++height) {
            const auto pixel = [&](unsigned x, unsigned y) {
                return static_cast<char>(y * width + x + 1);
            };
            std::string rows;
            for (unsigned y = 0; y < height; ++y) {
                rows += '\0';
                for (unsigned x = 0; x < width; ++x)
                    rows += pixel(x, y);
            }
            std::string sorted;
            for (const Pass& pass : passes) {
                for (unsigned y = pass.top; y < height && pass.left < width; y += pass.down) {
                    sorted += '\0';
                    for (unsigned x = pass.left; x < width; x += pass.across)
                        sorted += pixel(x, y);
                }
            }
            EXPECT_EQ(read(pngHeader(width, height, PngColor::gray, 8, true) + pngEnd(sorted)),
                      read(pngHeader(width, height, PngColor::gray, 8) + pngEnd(rows)))
                << width << "x" << height;
            sorted.pop_back();
            EXPECT_FALSE(yg::Image::fromBytes(pngHeader(width, height, PngColor::gray, 8, true) +
                                              pngEnd(sorted)))
                << width << "x" << height;
        }
    }
}

TEST(JpegReading, GrayAndColourAreRead) {
    EXPECT_THAT(read(flatJpeg(3, 2, JCS_GRAYSCALE, {0x80})), Each(0x808080FF));
    EXPECT_THAT(read(flatJpeg(16, 8, JCS_RGB, {0xFF, 0xFF, 0xFF})), Each(0xFFFFFFFF));
    const std::vector<Pixel> red = read(flatJpeg(8, 8, JCS_RGB, {0xFE, 0, 0}));
    EXPECT_THAT(red, testing::SizeIs(64));
    EXPECT_THAT(red, Each(0xFE0000FF));
}

TEST(JpegReading, ProgressiveFilesAreRead) {
    EXPECT_THAT(read(flatJpeg(40, 30, JCS_RGB, {0xFE, 0, 0},
                              [](jpeg_compress_struct& jpeg) { jpeg_simple_progression(&jpeg); })),
                Each(0xFE0000FF));
}

TEST(JpegReading, InkBecomesLight) {
    // With Adobe's marker the numbers say how much of the paper shows.
    EXPECT_THAT(read(flatJpeg(8, 8, JCS_CMYK, {0xFF, 0x80, 0, 0xFF})), Each(0xFF8000FF));
    EXPECT_THAT(read(flatJpeg(8, 8, JCS_CMYK, {0xFF, 0xFF, 0xFF, 0x80})), Each(0x808080FF));
    const auto withoutMarker = [](jpeg_compress_struct& jpeg) { jpeg.write_Adobe_marker = FALSE; };
    EXPECT_THAT(read(flatJpeg(8, 8, JCS_CMYK, {0, 0x7F, 0xFF, 0}, withoutMarker)),
                Each(0xFF8000FF));
    const auto asYcck = [](jpeg_compress_struct& jpeg) { jpeg_set_colorspace(&jpeg, JCS_YCCK); };
    EXPECT_THAT(read(flatJpeg(8, 8, JCS_CMYK, {0xFF, 0xFF, 0xFF, 0x80}, asYcck)), Each(0x808080FF));
}

struct Size {
    double width;
    double height;
    bool operator==(const Size&) const = default;
};

std::optional<Size> sizeOf(const std::string& file) {
    const std::optional<Image> image = Image::fromBytes(file);
    return image ? std::optional(Size{image->width(), image->height()}) : std::nullopt;
}

TEST(ImageDensity, ThatOfAPngGivesTheSizeInPoints) {
    EXPECT_EQ(sizeOf(smallPng()), (Size{2, 1}));
    EXPECT_EQ(sizeOf(smallPng(pngDensity(2835, 2835))), (Size{2, 1}));
    EXPECT_EQ(sizeOf(smallPng(pngDensity(5669, 5669))), (Size{1, 0.5}));
    EXPECT_EQ(sizeOf(smallPng(pngDensity(5669, 2835))), (Size{1, 1}));
    EXPECT_EQ(sizeOf(smallPng(pngDensity(3780, 3780))), (Size{1.5, 0.75}));
}

TEST(ImageDensity, AnAspectRatioOrNothingMeansAPointForEachPixel) {
    EXPECT_EQ(sizeOf(smallPng(pngDensity(5669, 5669, 0))), (Size{2, 1}));
    EXPECT_EQ(sizeOf(smallPng(pngDensity(0, 0))), (Size{2, 1}));
    EXPECT_EQ(sizeOf(smallPng(pngDensity(1, 1))), (Size{2, 1}));
}

std::string jpegOfDensity(int unit, int across, int down) {
    return flatJpeg(300, 200, JCS_GRAYSCALE, {0}, [&](jpeg_compress_struct& jpeg) {
        jpeg.density_unit = static_cast<UINT8>(unit);
        jpeg.X_density = static_cast<UINT16>(across);
        jpeg.Y_density = static_cast<UINT16>(down);
    });
}

TEST(ImageDensity, ThatOfAJpegGivesTheSizeInPoints) {
    EXPECT_EQ(sizeOf(jpegOfDensity(0, 2, 1)), (Size{300, 200}));
    EXPECT_EQ(sizeOf(jpegOfDensity(1, 144, 72)), (Size{150, 200}));
    EXPECT_EQ(sizeOf(jpegOfDensity(1, 0, 0)), (Size{300, 200}));
    // 57 to the centimetre are 144.78 to the inch.
    EXPECT_EQ(sizeOf(jpegOfDensity(2, 57, 57)), (Size{300 * 72.0 / 145, 200 * 72.0 / 145}));
}

TEST(ImageFile, IsRead) {
    const yg::files::TemporaryFolder folder;
    yg::files::put(folder / "a.png", smallPng());
    const std::optional<Image> image = Image::fromFile(folder / "a.png");
    ASSERT_TRUE(image);
    EXPECT_EQ(image->pixelWidth(), 2U);
    EXPECT_EQ(image->pixelHeight(), 1U);
}

TEST(ImageFile, WhatIsNoReadableFileIsNoImage) {
    const yg::files::TemporaryFolder folder;
    std::filesystem::create_directory(folder / "folder");
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    yg::files::put(folder / "empty", "");
    for (const std::string& path :
         {folder / "missing", folder / "folder", folder / "pipe", folder / "empty", ""s, "a\0b"s}) {
        EXPECT_FALSE(Image::fromFile(path)) << path;
    }
}

TEST(ImageFile, AFileOverTheLimitIsNotRead) {
    const yg::files::TemporaryFolder folder;
    yg::files::put(folder / "large.png", smallPng());
    ASSERT_TRUE(Image::fromFile(folder / "large.png"));
    std::filesystem::resize_file(folder / "large.png", std::uintmax_t{64} << 20);
    EXPECT_TRUE(Image::fromFile(folder / "large.png"));
    std::filesystem::resize_file(folder / "large.png", (std::uintmax_t{64} << 20) + 1);
    EXPECT_FALSE(Image::fromFile(folder / "large.png"));
}

TEST(ImageThreads, SeveralReadCutAndScaleAtOnce) {
    const std::string png = smallPng();
    const std::string jpeg = flatJpeg(16, 16, JCS_RGB, {0xFE, 0, 0});
    const Image shared = *Image::fromBytes(jpeg);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < 50; ++round) {
                EXPECT_THAT(read(png), ElementsAre(0x111111FF, 0x222222FF));
                EXPECT_THAT(read(jpeg), Each(0xFE0000FF));
                const Image piece = *shared.cut(4, 4, 8, 8, 8, 8)->scaled(3, 3);
                EXPECT_THAT(pixelsOf(piece), Each(0xFE0000FF));
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}

}  // namespace
