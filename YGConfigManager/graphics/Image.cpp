// SPDX-License-Identifier: MIT
#include "YGConfigManager/graphics/Image.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

#include "YGConfigManager/graphics/ImageFileReader.h"
#include "YGConfigManager/graphics/ImageFormats.h"
#include "YGConfigManager/graphics/PixelBuffer.h"
#include "YGConfigManager/graphics/Scaling.h"
#include "YGConfigManager/host/Guarded.h"

namespace yg {

namespace {

constexpr double pointsPerInch = 72;

bool isSize(double size) {
    return std::isfinite(size) && size > 0;
}

double pointsOf(std::size_t pixels, double density) {
    const double dots = std::round(density);
    return static_cast<double>(pixels) * pointsPerInch / (dots > 0 ? dots : pointsPerInch);
}

/// The pixels for a number of points, still as a double because it may be of any size.
double pixelsFor(double points) {
    // A product that should be whole may come out a trace above.
    constexpr double trace = 1e-6;
    return std::max(1.0, std::ceil(points - trace));
}

}  // namespace

Image::Image(std::shared_ptr<const PixelBuffer> buffer, std::size_t left, std::size_t top,
             std::size_t pixelWidth, std::size_t pixelHeight, double pointWidth, double pointHeight)
    : buffer_(std::move(buffer)),
      left_(left),
      top_(top),
      pixelWidth_(pixelWidth),
      pixelHeight_(pixelHeight),
      pointWidth_(pointWidth),
      pointHeight_(pointHeight) {}

std::optional<Image> Image::fromFile(OptionalText path) {
    return guarded("load image", [path] { return ImageFileReader().read(*path).image; });
}

std::optional<Image> Image::fromBytes(OptionalText bytes) {
    std::size_t pixels = 0;
    return fromBytes(*bytes, pixels);
}

std::optional<Image> Image::fromBytes(std::string_view bytes, std::size_t& pixels) {
    pixels = 0;
    for (const ImageFormat& format : imageFormats()) {
        if (!bytes.starts_with(format.signature))
            continue;
        try {
            const std::optional<DecodedImage> decoded = format.decode(bytes, pixels);
            if (!decoded)
                return std::nullopt;
            const std::size_t width = decoded->pixels->width();
            const std::size_t height = decoded->pixels->height();
            return Image(decoded->pixels, 0, 0, width, height,
                         pointsOf(width, decoded->horizontalDensity),
                         pointsOf(height, decoded->verticalDensity));
        } catch (...) {
            logException("load image");
            return std::nullopt;
        }
    }
    return std::nullopt;
}

std::optional<Image> Image::fromPixels(std::size_t pixelWidth, std::size_t pixelHeight,
                                       std::vector<std::uint8_t> rgba, double pointWidth,
                                       double pointHeight) {
    if (!PixelBuffer::isAllowed(pixelWidth, pixelHeight) ||
        rgba.size() != pixelWidth * pixelHeight * PixelBuffer::bytesPerPixel ||
        !isSize(pointWidth) || !isSize(pointHeight))
        return std::nullopt;
    const std::shared_ptr<PixelBuffer> buffer = PixelBuffer::make(pixelWidth, pixelHeight);
    if (!buffer)
        return std::nullopt;
    std::memcpy(buffer->row(0), rgba.data(), rgba.size());
    return Image(buffer, 0, 0, pixelWidth, pixelHeight, pointWidth, pointHeight);
}

std::optional<Image> Image::fromPixels(std::size_t pixelWidth, std::size_t pixelHeight,
                                       std::vector<std::uint8_t> rgba) {
    return fromPixels(pixelWidth, pixelHeight, std::move(rgba), static_cast<double>(pixelWidth),
                      static_cast<double>(pixelHeight));
}

std::span<const std::uint8_t> Image::row(std::size_t y) const {
    if (y >= pixelHeight_)
        return {};
    return {buffer_->row(top_ + y) + left_ * PixelBuffer::bytesPerPixel,
            pixelWidth_ * PixelBuffer::bytesPerPixel};
}

std::optional<Image> Image::cut(double x, double y, double width, double height, double pointWidth,
                                double pointHeight) const {
    if (!std::isfinite(x) || !std::isfinite(y) || !isSize(width) || !isSize(height) ||
        !isSize(pointWidth) || !isSize(pointHeight))
        return std::nullopt;
    const double left = std::max(0.0, std::floor(x));
    const double top = std::max(0.0, std::floor(y));
    const double right = std::min(static_cast<double>(pixelWidth_), std::ceil(x + width));
    const double bottom = std::min(static_cast<double>(pixelHeight_), std::ceil(y + height));
    if (left >= right || top >= bottom)
        return std::nullopt;
    return Image(buffer_, left_ + static_cast<std::size_t>(left),
                 top_ + static_cast<std::size_t>(top), static_cast<std::size_t>(right - left),
                 static_cast<std::size_t>(bottom - top), pointWidth, pointHeight);
}

std::optional<Image> Image::scaled(double pointWidth, double pointHeight) const {
    if (!isSize(pointWidth) || !isSize(pointHeight))
        return std::nullopt;
    const double width = pixelsFor(pointWidth);
    const double height = pixelsFor(pointHeight);
    if (width * height > static_cast<double>(maximumPixels))
        return std::nullopt;
    const std::shared_ptr<PixelBuffer> target =
        PixelBuffer::make(static_cast<std::size_t>(width), static_cast<std::size_t>(height));
    if (!target)
        return std::nullopt;
    scaleBilinear({row(0).data(), buffer_->rowBytes(), pixelWidth_, pixelHeight_}, *target);
    return Image(target, 0, 0, target->width(), target->height(), pointWidth, pointHeight);
}

std::optional<std::string> Image::toPng() const {
    return encodePng({row(0).data(), buffer_->rowBytes(), pixelWidth_, pixelHeight_},
                     static_cast<double>(pixelWidth_) * pointsPerInch / pointWidth_,
                     static_cast<double>(pixelHeight_) * pointsPerInch / pointHeight_);
}

}  // namespace yg
