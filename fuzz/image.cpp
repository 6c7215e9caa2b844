// SPDX-License-Identifier: MIT
//
// Image files, PNG and JPEG by their first bytes: what is read has sensible sizes, written as PNG
// it reads back the same, and it can be cut and scaled.
//
// A PNG is read with its chunks' check sums put right as well, because hardly any change of one
// gets past them.
#include "YGConfigManager/graphics/Image.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "Target.h"

namespace {

using yg::Image;
using yg::fuzz::require;
using yg::fuzz::textOf;

std::uint32_t checkSum(std::string_view bytes) {
    std::uint32_t sum = 0xFFFFFFFF;
    for (const char byte : bytes) {
        sum ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit)
            sum = sum >> 1 ^ ((sum & 1) != 0 ? 0xEDB88320 : 0);
    }
    return ~sum;
}

std::string withRightSums(std::string file) {
    std::size_t at = 8;
    while (file.size() >= at + 12) {
        std::size_t length = 0;
        for (std::size_t i = 0; i < 4; ++i)
            length = length << 8 | static_cast<unsigned char>(file[at + i]);
        if (length > file.size() - at - 12)
            break;
        const std::uint32_t sum = checkSum(std::string_view(file).substr(at + 4, length + 4));
        for (std::size_t i = 0; i < 4; ++i)
            file[at + 8 + length + i] = static_cast<char>(sum >> (24 - 8 * i));
        at += length + 12;
    }
    return file;
}

bool equal(const Image& left, const Image& right) {
    if (left.pixelWidth() != right.pixelWidth() || left.pixelHeight() != right.pixelHeight())
        return false;
    for (std::size_t y = 0; y < left.pixelHeight(); ++y) {
        const std::span<const std::uint8_t> leftRow = left.row(y);
        const std::span<const std::uint8_t> rightRow = right.row(y);
        if (!std::equal(leftRow.begin(), leftRow.end(), rightRow.begin(), rightRow.end()))
            return false;
    }
    return true;
}

void look(const Image& image) {
    const std::size_t pixels = image.pixelWidth() * image.pixelHeight();
    require(pixels > 0 && pixels <= Image::maximumPixels, "the number of pixels is allowed");
    require(image.width() > 0 && image.height() > 0, "the size in points is above 0");
    require(image.row(image.pixelHeight() - 1).size() == 4 * image.pixelWidth(),
            "every row has its pixels");
    constexpr std::size_t quick = 1 << 16;
    if (pixels > quick)
        return;

    const std::optional<std::string> written = image.toPng();
    require(written.has_value(), "an image can be written");
    const std::optional<Image> again = Image::fromBytes(*written);
    require(again && equal(image, *again), "what was written reads back the same");

    const auto width = static_cast<double>(image.pixelWidth());
    const auto height = static_cast<double>(image.pixelHeight());
    const std::optional<Image> same = image.scaled(width, height);
    require(same && equal(image, *same), "scaling to the same size changes nothing");
    const std::optional<Image> part = image.cut(width / 3, height / 3, width / 2, height / 2, 7, 5);
    require(part.has_value(), "there is something in the middle");
    const std::optional<Image> small = part->scaled(7.5, 5);
    require(small && small->pixelWidth() == 8 && small->pixelHeight() == 5,
            "scaling gives the size asked for");
}

void read(std::string_view bytes) {
    if (const std::optional<Image> image = Image::fromBytes(bytes))
        look(*image);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes = textOf(data, size);
    read(bytes);
    if (bytes.starts_with("\x89PNG"))
        read(withRightSums(std::string(bytes)));
    return 0;
}
