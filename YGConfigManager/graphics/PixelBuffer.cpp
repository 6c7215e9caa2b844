// SPDX-License-Identifier: MIT
#include "YGConfigManager/graphics/PixelBuffer.h"

#include <new>

#include "YGConfigManager/graphics/Image.h"

namespace yg {

PixelBuffer::PixelBuffer(std::size_t width, std::size_t height)
    : width_(width),
      height_(height),
      // Not filled with zeros: a header that lies would make us touch all of it.
      bytes_(new std::uint8_t[width * height * bytesPerPixel]) {}

bool PixelBuffer::isAllowed(std::size_t width, std::size_t height) {
    return width > 0 && height > 0 && width <= Image::maximumPixels / height;
}

std::shared_ptr<PixelBuffer> PixelBuffer::make(std::size_t width, std::size_t height) {
    if (!isAllowed(width, height))
        return nullptr;
    try {
        return std::shared_ptr<PixelBuffer>(new PixelBuffer(width, height));
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

}  // namespace yg
