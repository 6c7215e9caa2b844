// SPDX-License-Identifier: MIT
#include "YGConfigManager/text/LineIndex.h"

#include <algorithm>

#include "YGConfigManager/text/Utf8.h"

namespace yg::text {

namespace {

/// The point before the byte at an offset, which lies in the line that begins at `begin`.
TextPoint pointInLine(std::string_view text, std::size_t begin, std::size_t offset,
                      std::size_t line) {
    std::string_view before = text.substr(begin, offset - begin);
    if (begin == 0 && text.starts_with(byteOrderMark))
        before.remove_prefix(std::min(before.size(), byteOrderMark.size()));
    return {static_cast<std::uint32_t>(line),
            static_cast<std::uint32_t>(countCodePoints(before) + 1)};
}

}  // namespace

TextPoint pointAt(std::string_view text, std::size_t offset) {
    const std::string_view before = text.substr(0, offset);
    const auto line = static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n')) + 1;
    return pointInLine(text, before.rfind('\n') + 1, before.size(), line);  // npos + 1 is 0
}

LineIndex::LineIndex(std::string_view text) : lineBegins_{0} {
    for (std::size_t at = text.find('\n'); at != std::string_view::npos; at = text.find('\n', at))
        lineBegins_.push_back(++at);
}

TextPoint LineIndex::pointAt(std::string_view text, std::size_t offset) const {
    offset = std::min(offset, text.size());
    const auto next = std::upper_bound(lineBegins_.begin(), lineBegins_.end(), offset);
    return pointInLine(text, *(next - 1), offset,
                       static_cast<std::size_t>(next - lineBegins_.begin()));
}

}  // namespace yg::text
