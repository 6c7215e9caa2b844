// SPDX-License-Identifier: MIT
//
// Images: read from PNG and JPEG, cut, scaled, written as PNG. An image is a small value that
// shares its pixels, which never change: copying and cutting are cheap, and any thread may use
// copies of the same image. Without memory the answer is absent; nothing is thrown.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/export.h"
#include "YGConfigManager/text/OptionalText.h"

namespace yg {

class PixelBuffer;

/// A rectangle of pixels with a size in points of its own.
class YG_EXPORT Image {
public:
    /// No image has more pixels than this, in memory or in a file.
    static constexpr std::size_t maximumPixels = std::size_t{64} << 20;

    /// The image in a PNG or JPEG file; none when the file is missing, larger than 64 MiB, no
    /// regular file, or not readable by fromBytes(). Never waits for anything but the disk.
    static std::optional<Image> fromFile(OptionalText path);

    /// The image in the bytes of a PNG or JPEG file. None when they are of another format, cut
    /// short, damaged, or have more pixels than allowed: that is found out before memory is taken.
    /// None as well for a progressive JPEG of more than 64 scans, or whose scans have more than
    /// 1 Gi pixels together. What a PNG has packed behind its last row is not looked at.
    /// The size in points is pixels × 72 / the file's density, rounded to whole dots per inch; a
    /// file that states none has a point for each pixel.
    static std::optional<Image> fromBytes(OptionalText bytes);

    /// The image of these rows from the top, four bytes a pixel: red, green, blue, alpha, not
    /// multiplied. None when a size is 0 or too large, when `rgba` has not exactly that many bytes,
    /// or when a size in points is not a finite number above 0.
    static std::optional<Image> fromPixels(std::size_t pixelWidth, std::size_t pixelHeight,
                                           std::vector<std::uint8_t> rgba, double pointWidth,
                                           double pointHeight);

    /// The same with a point for each pixel.
    static std::optional<Image> fromPixels(std::size_t pixelWidth, std::size_t pixelHeight,
                                           std::vector<std::uint8_t> rgba);

    /// The size in points, above 0.
    double width() const { return pointWidth_; }
    double height() const { return pointHeight_; }

    /// The size in pixels, above 0.
    std::size_t pixelWidth() const { return pixelWidth_; }
    std::size_t pixelHeight() const { return pixelHeight_; }

    /// The pixels of row `y` from the top, `pixelWidth()` times red, green, blue, alpha, not
    /// multiplied; empty when there is no such row. Valid as long as any image that shares them.
    std::span<const std::uint8_t> row(std::size_t y) const;

    /// The part of the image in a rectangle that is given in pixels from the top left, with the
    /// size in points given. The rectangle is widened to whole pixels and clipped to the image.
    /// None when nothing is left, or when a number is not finite or a size not above 0. The pixels
    /// are shared, not copied: the part keeps the whole in memory.
    std::optional<Image> cut(double x, double y, double width, double height, double pointWidth,
                             double pointHeight) const;

    /// The whole image drawn at another size in points, with a pixel for each point; a size that is
    /// no whole number keeps its points and gets the next larger number of pixels (differences
    /// below a millionth do not count). Quick bilinear interpolation; transparent pixels lend their
    /// colour to no other. None when a size is not a finite number above 0 or when the result would
    /// have more pixels than allowed.
    std::optional<Image> scaled(double pointWidth, double pointHeight) const;

    /// The image as a PNG file with the density that its size in points means; none when memory
    /// does not suffice.
    std::optional<std::string> toPng() const;

private:
    friend class ImageFileReader;

    /// As above; `pixels` is how many were decoded, or begun and found damaged.
    static std::optional<Image> fromBytes(std::string_view bytes, std::size_t& pixels);

    Image(std::shared_ptr<const PixelBuffer> buffer, std::size_t left, std::size_t top,
          std::size_t pixelWidth, std::size_t pixelHeight, double pointWidth, double pointHeight);

    std::shared_ptr<const PixelBuffer> buffer_;
    std::size_t left_;
    std::size_t top_;
    std::size_t pixelWidth_;
    std::size_t pixelHeight_;
    double pointWidth_;
    double pointHeight_;
};

}  // namespace yg
