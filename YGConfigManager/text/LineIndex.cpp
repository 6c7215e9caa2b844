// SPDX-License-Identifier: MIT
#include "YGConfigManager/text/LineIndex.h"

#include <algorithm>

#include "YGConfigManager/text/Utf8.h"

namespace yg::text {

namespace {

constexpr std::size_t blockSize = 256;

}  // namespace

LineIndex::LineIndex(std::string_view text) {
    blocks_.reserve(text.size() / blockSize + 1);
    begins_.push_back(0);
    Block before;
    for (std::size_t at = 0; at <= text.size(); at += blockSize) {
        blocks_.push_back(before);
        const std::string_view block = text.substr(at, blockSize);
        before.characters += countCodePoints(block);
        for (std::size_t end = block.find('\n'); end != std::string_view::npos;
             end = block.find('\n', end + 1))
            begins_.push_back(at + end + 1);
        before.lines = begins_.size() - 1;
    }
}

std::size_t LineIndex::charactersBefore(std::string_view text, std::size_t offset) const {
    const std::size_t block = offset / blockSize;
    return blocks_[block].characters +
           countCodePoints(text.substr(block * blockSize, offset % blockSize));
}

TextPoint LineIndex::pointAt(std::string_view text, std::size_t offset) const {
    offset = std::min(offset, text.size());
    // The line that the block begins in, or one that begins in it.
    const auto first =
        begins_.begin() + static_cast<std::ptrdiff_t>(blocks_[offset / blockSize].lines);
    constexpr std::ptrdiff_t most = blockSize + 1;
    const auto next =
        std::upper_bound(first, first + std::min(most, begins_.end() - first), offset);
    const std::size_t begin = next[-1];
    const std::size_t characters =
        offset - begin < blockSize ? countCodePoints(text.substr(begin, offset - begin))
                                   : charactersBefore(text, offset) - charactersBefore(text, begin);
    const auto column = static_cast<std::uint32_t>(characters);
    if (begin == 0 && text.starts_with(byteOrderMark))
        return {1, column + (offset == 0)};
    return {static_cast<std::uint32_t>(next - begins_.begin()), column + 1};
}

TextPoint pointAt(std::string_view text, std::size_t offset) {
    return LineIndex(text).pointAt(text, offset);
}

}  // namespace yg::text
