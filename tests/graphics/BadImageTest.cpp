// SPDX-License-Identifier: MIT
#include <algorithm>
#include <ctime>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/graphics/Image.h"

#include "LargeInput.h"
#include "graphics/ImageFiles.h"

namespace {

using namespace std::string_literals;
using namespace yg::testing;
using testing::Each;
using yg::Image;

/// The most address space that the process ever had, used or not.
long peakKilobytes() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmPeak:"))
            return std::stol(line.substr(7));
    }
    return 0;
}

/// Reads the bytes and looks at what it took: processor time, which other programs do not disturb,
/// and memory.
std::optional<Image> readCheaply(const std::string& bytes) {
    const long memory = peakKilobytes();
    const std::clock_t start = std::clock();
    std::optional<Image> image = Image::fromBytes(bytes);
    EXPECT_LT(std::clock() - start, CLOCKS_PER_SEC / 4);
    if (!isSanitized) {
        EXPECT_LT(peakKilobytes() - memory, 16 << 10);
    }
    return image;
}

/// `count` zero bytes, deflated piece by piece.
std::string deflatedZeros(std::size_t count, int ending = Z_FINISH) {
    z_stream stream = {};
    deflateInit(&stream, 1);
    std::string zeros(1 << 20, '\0');
    std::string result(count / 100 + 1024, '\0');
    stream.next_out = reinterpret_cast<Bytef*>(result.data());
    stream.avail_out = static_cast<uInt>(result.size());
    while (count > 0) {
        stream.next_in = reinterpret_cast<Bytef*>(zeros.data());
        stream.avail_in = static_cast<uInt>(std::min(count, zeros.size()));
        count -= stream.avail_in;
        deflate(&stream, count == 0 ? ending : Z_NO_FLUSH);
    }
    result.resize(stream.total_out);
    deflateEnd(&stream);
    return result;
}

TEST(BadImage, UnknownFormatsAreNone) {
    for (const std::string& bytes :
         {""s, "\x89"s, "\x89PNG"s, "\x89PNG\r\n\x1A\n"s, "\xFF\xD8"s, "\xFF\xD8\xFF"s, "GIF89a"s,
          "BM"s, "<svg xmlns='http://www.w3.org/2000/svg'/>"s, "RIFF\4\0\0\0WEBP"s}) {
        EXPECT_FALSE(Image::fromBytes(bytes)) << bytes;
    }
}

TEST(BadImage, AFileCutShortAnywhereIsNone) {
    const std::string png =
        pngHeader(4, 2, PngColor::rgb, 8) + pngDensity(2835, 2835) + pngEnd(std::string(26, '\0'));
    const std::string jpeg = flatJpeg(40, 40, JCS_RGB, {1, 2, 3});
    const std::string progressive =
        flatJpeg(40, 40, JCS_RGB, {1, 2, 3},
                 [](jpeg_compress_struct& compressor) { jpeg_simple_progression(&compressor); });
    for (const std::string& file : {png, jpeg, progressive}) {
        ASSERT_TRUE(Image::fromBytes(file));
        for (std::size_t size = 0; size < file.size(); ++size) {
            EXPECT_FALSE(Image::fromBytes(std::string_view(file).substr(0, size))) << size;
        }
        EXPECT_TRUE(Image::fromBytes(file + "what stands behind"));
    }
}

TEST(BadImage, DamagedBytesAreNone) {
    const std::string png = smallPng();
    for (std::size_t i = 0; i < png.size(); ++i) {
        std::string damaged = png;
        damaged[i] = static_cast<char>(damaged[i] ^ 0x10);
        EXPECT_FALSE(Image::fromBytes(damaged)) << i;
    }
    // Damage to a JPEG shows only in the codes themselves: these are not valid codes.
    std::string jpeg = flatJpeg(64, 64, JCS_GRAYSCALE, {200});
    std::fill(jpeg.end() - 20, jpeg.end() - 2, '\x7F');
    EXPECT_FALSE(Image::fromBytes(jpeg));
}

TEST(BadImage, MissingOrRepeatedPartsAreNone) {
    const std::string header = pngHeader(1, 1, PngColor::palette, 8);
    EXPECT_FALSE(Image::fromBytes(header + pngEnd("\0\0"s)));
    EXPECT_FALSE(Image::fromBytes(header + pngChunk("PLTE", "\1\2\3") + pngChunk("IEND", "")));
    EXPECT_FALSE(Image::fromBytes(smallPng(pngChunk("ABCD", ""))));
    EXPECT_FALSE(Image::fromBytes(smallPng(pngHeader(2, 1, PngColor::gray, 8).substr(8))));
}

TEST(BadImage, ChunksOfNoNameOrOutOfOrderAreNone) {
    const std::string header = pngHeader(2, 1, PngColor::gray, 8);
    const std::string pixels = deflated("\0\x11\x22"s);
    const std::string half = pngChunk("IDAT", pixels.substr(0, 4));
    const std::string rest = pngChunk("IDAT", pixels.substr(4));
    const std::string end = pngChunk("IEND", "");
    EXPECT_TRUE(Image::fromBytes(header + half + rest + pngChunk("abCd", "") + end));
    EXPECT_FALSE(Image::fromBytes(header + half + pngChunk("abCd", "") + rest + end));
    EXPECT_FALSE(Image::fromBytes(header + half + rest + pngChunk("ab.d", "") + end));
    EXPECT_FALSE(Image::fromBytes(header + half + rest + pngChunk("ABCD", "") + end));
}

TEST(BadImage, APngThatClaimsMoreThanItHoldsCostsNothing) {
    for (const auto& [width, height] :
         std::vector<std::pair<std::uint32_t, std::uint32_t>>{{65000, 65000},
                                                              {8192, 8193},
                                                              {8192, 8192},
                                                              {32768, 2048},
                                                              {32769, 1},
                                                              {0, 1},
                                                              {1, 0},
                                                              {0x7FFFFFFF, 0x7FFFFFFF},
                                                              {0xFFFFFFFF, 1}}) {
        EXPECT_FALSE(readCheaply(pngHeader(width, height, PngColor::rgba, 8) +
                                 pngEnd(std::string(100, '\0'))))
            << width << "x" << height;
    }
}

TEST(BadImage, APngThatUnpacksToNineHundredMillionPixelsCostsNothing) {
    // One bit a pixel: 110 kilobytes of file, 3.4 gigabytes of colours.
    const std::size_t rows = std::size_t{30000} * (1 + 30000 / 8);
    const std::string file = pngHeader(30000, 30000, PngColor::gray, 1) +
                             pngChunk("IDAT", deflatedZeros(rows)) + pngChunk("IEND", "");
    ASSERT_LT(file.size(), 1'000'000U);
    EXPECT_FALSE(readCheaply(file));
}

TEST(BadImage, TextsThatUnpackToAGigabyteAreSkipped) {
    // Above and below what a single chunk may take.
    const std::string packed = deflatedZeros(50'000'000);
    const std::string smaller = deflatedZeros(7'000'000);
    std::string chunks;
    for (int i = 0; i < 20; ++i) {
        chunks += pngChunk("zTXt", "Comment\0\0"s + packed);
        chunks += pngChunk("iTXt", "Comment\0\1\0\0\0"s + packed);
    }
    for (int i = 0; i < 100; ++i)
        chunks += pngChunk("zTXt", "Comment\0\0"s + smaller);
    chunks += pngChunk("iCCP", "profile\0\0"s + packed);
    const std::optional<Image> image = readCheaply(smallPng(chunks));
    ASSERT_TRUE(image);
    EXPECT_THAT(pixelsOf(*image), testing::ElementsAre(0x111111FF, 0x222222FF));
}

TEST(BadImage, WhatFollowsTheLastRowIsNotUnpacked) {
    // Two gigabytes behind a single pixel. An end that is not marked lets the blocks be repeated.
    std::string block = deflatedZeros(16'000'000, Z_FULL_FLUSH);
    std::string packed = block;
    block.erase(0, 2);
    for (int i = 0; i < 128; ++i)
        packed += block;
    for (const bool isInterlaced : {false, true}) {
        const std::optional<Image> image =
            readCheaply(pngHeader(1, 1, PngColor::gray, 8, isInterlaced) +
                        pngChunk("IDAT", packed) + pngChunk("IEND", ""));
        ASSERT_TRUE(image);
        EXPECT_THAT(pixelsOf(*image), testing::ElementsAre(0x000000FF));
    }
}

/// The file with another size in its header.
std::string withSize(std::string jpeg, unsigned width, unsigned height) {
    for (std::size_t i = 2; i + 9 < jpeg.size(); ++i) {
        const auto marker = static_cast<unsigned char>(jpeg[i + 1]);
        if (jpeg[i] == '\xFF' && marker >= 0xC0 && marker <= 0xC2) {
            jpeg[i + 5] = static_cast<char>(height >> 8);
            jpeg[i + 6] = static_cast<char>(height);
            jpeg[i + 7] = static_cast<char>(width >> 8);
            jpeg[i + 8] = static_cast<char>(width);
            return jpeg;
        }
    }
    return {};
}

TEST(BadImage, AJpegThatClaimsMoreThanItHoldsCostsNothing) {
    const auto progressive = [](jpeg_compress_struct& jpeg) { jpeg_simple_progression(&jpeg); };
    for (const std::string& file :
         {flatJpeg(8, 8, JCS_RGB, {1, 2, 3}), flatJpeg(8, 8, JCS_RGB, {1, 2, 3}, progressive)}) {
        ASSERT_TRUE(Image::fromBytes(withSize(file, 8, 8)));
        for (const auto& [width, height] :
             std::vector<std::pair<unsigned, unsigned>>{{65500, 65500},
                                                        {65535, 1},
                                                        {65000, 1000},
                                                        {8192, 8192},
                                                        {4000, 4000},
                                                        {0, 8},
                                                        {8, 0}}) {
            EXPECT_FALSE(readCheaply(withSize(file, width, height))) << width << "x" << height;
        }
    }
}

TEST(BadImage, AJpegOfEndlessScansIsNone) {
    const std::string file = flatJpeg(64, 64, JCS_GRAYSCALE, {1}, [](jpeg_compress_struct& jpeg) {
        jpeg_simple_progression(&jpeg);
    });
    const std::size_t lastScan = file.rfind("\xFF\xDA");
    ASSERT_NE(lastScan, std::string::npos);
    const std::string scan = file.substr(lastScan, file.size() - 2 - lastScan);
    const auto withScans = [&](int count) {
        std::string longer = file.substr(0, file.size() - 2);
        for (int i = 0; i < count; ++i)
            longer += scan;
        return longer + "\xFF\xD9";
    };
    EXPECT_TRUE(Image::fromBytes(withScans(10)));
    EXPECT_FALSE(Image::fromBytes(withScans(100)));
    EXPECT_FALSE(readCheaply(withScans(100'000)));
}

TEST(BadImage, AJpegOfManyPixelsMayHaveFewerScans) {
    // Six scans, and 60 are allowed for so many pixels.
    std::string file = flatJpeg(4352, 4096, JCS_GRAYSCALE, {1},
                                [](jpeg_compress_struct& jpeg) { jpeg_simple_progression(&jpeg); });
    EXPECT_TRUE(Image::fromBytes(file));
    file.resize(file.size() - 2);
    const std::string scan = file.substr(file.rfind("\xFF\xDA"));
    for (int i = 0; i < 55; ++i)
        file += scan;
    EXPECT_FALSE(Image::fromBytes(file + "\xFF\xD9"));
}

TEST(BadImage, AJpegOfArithmeticCodesIsNone) {
    EXPECT_FALSE(Image::fromBytes(flatJpeg(
        8, 8, JCS_GRAYSCALE, {1}, [](jpeg_compress_struct& jpeg) { jpeg.arith_code = TRUE; })));
}

TEST(BadImage, AJpegOfTwoComponentsIsNone) {
    EXPECT_FALSE(Image::fromBytes(flatJpeg(8, 8, JCS_UNKNOWN, {1, 2})));
}

}  // namespace
