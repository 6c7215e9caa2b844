// SPDX-License-Identifier: MIT
//
// The memory behind images: rows of pixels without gaps, red, green, blue, alpha, not multiplied.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace yg {

class PixelBuffer {
public:
    static constexpr std::size_t bytesPerPixel = 4;

    /// A buffer whose pixels are still to be written. Null when a size is 0, when there would be
    /// more than Image::maximumPixels, or when there is no memory. Memory is only touched by
    /// writing.
    static std::shared_ptr<PixelBuffer> make(std::size_t width, std::size_t height);

    /// Whether make() would consider these sizes.
    static bool isAllowed(std::size_t width, std::size_t height);

    PixelBuffer(const PixelBuffer&) = delete;
    PixelBuffer& operator=(const PixelBuffer&) = delete;

    std::size_t width() const { return width_; }
    std::size_t height() const { return height_; }
    std::size_t rowBytes() const { return width_ * bytesPerPixel; }

    std::uint8_t* row(std::size_t y) { return bytes_.get() + y * rowBytes(); }
    const std::uint8_t* row(std::size_t y) const { return bytes_.get() + y * rowBytes(); }

private:
    PixelBuffer(std::size_t width, std::size_t height);

    std::size_t width_;
    std::size_t height_;
    std::unique_ptr<std::uint8_t[]> bytes_;
};

}  // namespace yg
