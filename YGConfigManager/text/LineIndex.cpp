// SPDX-License-Identifier: MIT
#include "YGConfigManager/text/LineIndex.h"

#include <algorithm>

#include "YGConfigManager/text/Utf8.h"

namespace yg::text {

namespace {

constexpr std::size_t blockSize = 256;

}  // namespace

LineIndex::LineIndex(std::string_view text) {
    std::size_t count = 0;
    for (std::size_t at = 0; at <= text.size(); at += blockSize) {
        characters_.push_back(count);
        count += countCodePoints(text.substr(at, blockSize));
    }
    begins_.push_back(0);
    for (std::size_t at = text.find('\n'); at != std::string_view::npos; at = text.find('\n', at))
        begins_.push_back(++at);
}

std::size_t LineIndex::charactersBefore(std::string_view text, std::size_t offset) const {
    const std::size_t block = offset / blockSize;
    return characters_[block] + countCodePoints(text.substr(block * blockSize, offset % blockSize));
}

TextPoint LineIndex::pointAt(std::string_view text, std::size_t offset) const {
    offset = std::min(offset, text.size());
    const auto next = std::ranges::upper_bound(begins_, offset);
    const std::size_t begin = next[-1];
    const auto column =
        static_cast<std::uint32_t>(charactersBefore(text, offset) - charactersBefore(text, begin));
    if (begin == 0 && text.starts_with(byteOrderMark))
        return {1, column + (offset == 0)};
    return {static_cast<std::uint32_t>(next - begins_.begin()), column + 1};
}

TextPoint pointAt(std::string_view text, std::size_t offset) {
    return LineIndex(text).pointAt(text, offset);
}

}  // namespace yg::text
