// SPDX-License-Identifier: MIT
//
// The image formats that can be read, one row each, and the writer of the one that is written.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "YGConfigManager/graphics/PixelBuffer.h"

namespace yg {

/// What a file holds: its pixels and its density in dots per inch, 0 where it states none.
struct DecodedImage {
    std::shared_ptr<PixelBuffer> pixels;
    double horizontalDensity = 0;
    double verticalDensity = 0;
};

/// A format: how its files begin, and what makes pixels of one; none for a file that is damaged,
/// cut short or over the limits. `pixels` is how many it began to make, 0 when it was refused
/// for what its header says.
struct ImageFormat {
    std::string_view signature;
    std::optional<DecodedImage> (*decode)(std::string_view bytes, std::size_t& pixels);
};

/// Another format is another row.
std::span<const ImageFormat> imageFormats();

std::optional<DecodedImage> decodePng(std::string_view bytes, std::size_t& pixelCount);
std::optional<DecodedImage> decodeJpeg(std::string_view bytes, std::size_t& pixelCount);

/// A rectangle of pixels somewhere in a buffer.
struct PixelView {
    const std::uint8_t* first = nullptr;
    std::size_t stride = 0;
    std::size_t width = 0;
    std::size_t height = 0;

    const std::uint8_t* row(std::size_t y) const { return first + y * stride; }
};

/// The pixels as a PNG file; a density of 72 is left out. None when memory does not suffice.
std::optional<std::string> encodePng(const PixelView& pixels, double horizontalDensity,
                                     double verticalDensity);

}  // namespace yg
