// SPDX-License-Identifier: MIT
//
// Makes image files for tests: PNG chunk by chunk, so that anything can be wrong with them, JPEG
// with the library's own encoder.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <string_view>
#include <vector>
#include <zlib.h>

#include <jpeglib.h>

#include "YGConfigManager/graphics/Image.h"

namespace yg::testing {

inline std::string bigEndian(std::uint32_t value) {
    return {static_cast<char>(value >> 24), static_cast<char>(value >> 16),
            static_cast<char>(value >> 8), static_cast<char>(value)};
}

inline std::string pngChunk(std::string_view type, std::string_view data) {
    const std::string named = std::string(type) + std::string(data);
    const auto sum = static_cast<std::uint32_t>(
        crc32(0, reinterpret_cast<const Bytef*>(named.data()), static_cast<uInt>(named.size())));
    return bigEndian(static_cast<std::uint32_t>(data.size())) + named + bigEndian(sum);
}

enum class PngColor : char { gray = 0, rgb = 2, palette = 3, grayAlpha = 4, rgba = 6 };

inline std::string pngHeader(std::uint32_t width, std::uint32_t height, PngColor color, int depth,
                             bool isInterlaced = false) {
    return "\x89PNG\r\n\x1A\n" +
           pngChunk("IHDR", bigEndian(width) + bigEndian(height) +
                                std::string{static_cast<char>(depth), static_cast<char>(color), 0,
                                            0, isInterlaced ? '\1' : '\0'});
}

inline std::string deflated(std::string_view bytes) {
    uLongf size = compressBound(static_cast<uLong>(bytes.size()));
    std::string result(size, '\0');
    compress2(reinterpret_cast<Bytef*>(result.data()), &size,
              reinterpret_cast<const Bytef*>(bytes.data()), static_cast<uLong>(bytes.size()), 9);
    result.resize(size);
    return result;
}

/// `rows` with the filter byte before each.
inline std::string pngEnd(std::string_view rows) {
    return pngChunk("IDAT", deflated(rows)) + pngChunk("IEND", "");
}

inline std::string pngDensity(std::uint32_t across, std::uint32_t down, char unit = 1) {
    return pngChunk("pHYs", bigEndian(across) + bigEndian(down) + unit);
}

/// Two gray pixels beside each other, with chunks before them.
inline std::string smallPng(std::string_view chunks = "") {
    return pngHeader(2, 1, PngColor::gray, 8) + std::string(chunks) +
           pngEnd(std::string_view("\0\x11\x22", 3));
}

/// A JPEG of one colour: `components` bytes in `space`; `adjust` sets what else is wished.
inline std::string flatJpeg(unsigned width, unsigned height, J_COLOR_SPACE space,
                            std::vector<std::uint8_t> components,
                            const std::function<void(jpeg_compress_struct&)>& adjust = {}) {
    jpeg_compress_struct jpeg;
    jpeg_error_mgr errors;
    jpeg.err = jpeg_std_error(&errors);
    jpeg_create_compress(&jpeg);
    unsigned char* bytes = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&jpeg, &bytes, &size);
    jpeg.image_width = width;
    jpeg.image_height = height;
    jpeg.input_components = static_cast<int>(components.size());
    jpeg.in_color_space = space;
    jpeg_set_defaults(&jpeg);
    jpeg_set_quality(&jpeg, 100, TRUE);
    if (adjust)
        adjust(jpeg);
    jpeg_start_compress(&jpeg, TRUE);
    std::vector<std::uint8_t> pixels;
    for (unsigned x = 0; x < width; ++x)
        pixels.insert(pixels.end(), components.begin(), components.end());
    while (jpeg.next_scanline < height) {
        JSAMPROW row = pixels.data();
        jpeg_write_scanlines(&jpeg, &row, 1);
    }
    jpeg_finish_compress(&jpeg);
    jpeg_destroy_compress(&jpeg);
    std::string file(reinterpret_cast<const char*>(bytes), size);
    std::free(bytes);
    return file;
}

/// A pixel as it is written by hand: 0xRRGGBBAA.
using Pixel = std::uint32_t;

inline std::vector<Pixel> pixelsOf(const Image& image) {
    std::vector<Pixel> pixels;
    for (std::size_t y = 0; y < image.pixelHeight(); ++y) {
        const auto row = image.row(y);
        for (std::size_t x = 0; x + 4 <= row.size(); x += 4) {
            pixels.push_back(Pixel{row[x]} << 24 | Pixel{row[x + 1]} << 16 |
                             Pixel{row[x + 2]} << 8 | row[x + 3]);
        }
    }
    return pixels;
}

inline Image imageOf(std::size_t width, const std::vector<Pixel>& pixels) {
    std::vector<std::uint8_t> bytes;
    for (const Pixel pixel : pixels) {
        for (int shift = 24; shift >= 0; shift -= 8)
            bytes.push_back(static_cast<std::uint8_t>(pixel >> shift));
    }
    return Image::fromPixels(width, pixels.size() / width, std::move(bytes)).value();
}

}  // namespace yg::testing
