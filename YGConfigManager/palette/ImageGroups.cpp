// SPDX-License-Identifier: MIT
//
// Strips of images: cutting and scaling. One piece is cut by the strip's points and all pieces by
// its pixels, as the interface has it.
#include <algorithm>
#include <cstddef>

#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/palette/YGPaletteLoad.h"

namespace yg {

namespace {

enum ScaleType : std::uint32_t { fitToWidth = 0, fitToHeight = 1 };

/// Calls `visit` with each piece of a strip that is cut by pixels.
template <class Visit>
void forEachPiece(const Image& strip, std::uint64_t count, Visit visit) {
    const std::uint64_t columns = strip.pixelWidth() / count;
    // Nothing can be cut, however many pieces are asked for.
    if (columns == 0)
        return;
    const auto width = static_cast<double>(columns);
    const auto height = static_cast<double>(strip.pixelHeight());
    for (std::uint64_t i = 0; i < count; ++i) {
        const double left = static_cast<double>(i) * width;
        if (const auto piece = strip.cut(left, 0, width, height, width, height))
            visit(*piece);
    }
}

/// An empty list with room for the pieces; there are never more of them than columns.
std::shared_ptr<ImageList> listFor(const Image& strip, std::uint64_t count) {
    auto list = std::make_shared<ImageList>();
    list->reserve(static_cast<std::size_t>(std::min<std::uint64_t>(count, strip.pixelWidth())));
    return list;
}

}  // namespace

std::optional<Image> YGPaletteLoad::getImageByImageAndGroupIndex(const std::optional<Image>& image,
                                                                 std::uint64_t groupCount,
                                                                 std::uint64_t indexInGroup) {
    if (!image || indexInGroup >= groupCount)
        return std::nullopt;
    const double width = image->width() / static_cast<double>(groupCount);
    const double left = static_cast<double>(indexInGroup) * width;
    return image->cut(left, 0, width, image->height(), width, image->height());
}

std::shared_ptr<ImageList> YGPaletteLoad::getImagesByImageAndGroupCount(
    const std::optional<Image>& image, std::uint64_t groupCount) {
    if (!image || groupCount == 0)
        return nullptr;
    return guarded("cut image", [&] {
        auto pieces = listFor(*image, groupCount);
        forEachPiece(*image, groupCount, [&](const Image& piece) { pieces->push_back(piece); });
        return pieces;
    });
}

std::optional<Image> YGPaletteLoad::getImageFromOriImageByScale(const std::optional<Image>& image,
                                                                std::uint32_t scaleType,
                                                                double scaleValue) {
    if (!image || !(scaleValue > 0))
        return std::nullopt;
    switch (scaleType) {
        case fitToWidth:
            return image->scaled(scaleValue, scaleValue / image->width() * image->height());
        case fitToHeight:
            return image->scaled(scaleValue / image->height() * image->width(), scaleValue);
        default:
            return std::nullopt;
    }
}

std::optional<Image> YGPaletteLoad::getImageInGroupByScale(const std::optional<Image>& image,
                                                           std::uint64_t groupCount,
                                                           std::uint64_t indexInGroup,
                                                           std::uint32_t scaleType,
                                                           double scaleValue) {
    // The index that equals the count is refused by the cut.
    if (!image || groupCount == 0 || indexInGroup > groupCount || !(scaleValue > 0))
        return std::nullopt;
    return getImageFromOriImageByScale(
        getImageByImageAndGroupIndex(image, groupCount, indexInGroup), scaleType, scaleValue);
}

std::shared_ptr<ImageList> YGPaletteLoad::getImagesInGroupByScale(const std::optional<Image>& image,
                                                                  std::uint64_t groupCount,
                                                                  std::uint32_t scaleType,
                                                                  double scaleValue) {
    if (!image || groupCount == 0 || !(scaleValue > 0))
        return nullptr;
    return guarded("cut image", [&] {
        auto pieces = listFor(*image, groupCount);
        // A narrow strip would otherwise give each of its columns as many pixels as an image may
        // have.
        std::size_t pixels = 0;
        std::size_t pixelsOfOne = 0;
        forEachPiece(*image, groupCount, [&](const Image& piece) {
            if (pixels + pixelsOfOne > Image::maximumPixels)
                return;
            if (auto scaled = getImageFromOriImageByScale(piece, scaleType, scaleValue)) {
                pixelsOfOne = scaled->pixelWidth() * scaled->pixelHeight();
                pixels += pixelsOfOne;
                pieces->push_back(*std::move(scaled));
            }
        });
        return pieces;
    });
}

}  // namespace yg
