// SPDX-License-Identifier: MIT
#include "YGConfigManager/graphics/ImageFileReader.h"

namespace yg {

ImageFileReader::Reading ImageFileReader::read(std::string_view path) {
    if (pixels_ >= maxPixels)
        return {Outcome::tooManyPixels, std::nullopt};
    if (bytes_ >= maxBytes)
        return {Outcome::tooManyBytes, std::nullopt};
    const std::optional<files::FileIdentity> identity = files::identityOf(path);
    if (!identity)
        return {};
    auto known = images_.find(*identity);
    if (known == images_.end())
        known = images_.emplace(*identity, decoded(path)).first;
    return {known->second ? Outcome::read : Outcome::unreadable, known->second};
}

std::optional<Image> ImageFileReader::decoded(std::string_view path) {
    const files::FileReading file = files::readWholeFile(path, largestFile);
    bytes_ += file.bytesRead;
    std::size_t pixels = 0;
    std::optional<Image> image = file ? Image::fromBytes(file.bytes, pixels) : std::nullopt;
    pixels_ += pixels;
    return image;
}

}  // namespace yg
