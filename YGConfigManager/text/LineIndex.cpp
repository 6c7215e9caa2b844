// SPDX-License-Identifier: MIT
#include "YGConfigManager/text/LineIndex.h"

#include <algorithm>

#include "YGConfigManager/text/Utf8.h"

namespace yg::text {

LineIndex::LineIndex(std::string_view text) : lineBegins_{0} {
    for (std::size_t at = text.find('\n'); at != std::string_view::npos; at = text.find('\n', at))
        lineBegins_.push_back(++at);
}

TextPoint LineIndex::pointAt(std::string_view text, std::size_t offset) const {
    offset = std::min(offset, text.size());
    const auto next = std::upper_bound(lineBegins_.begin(), lineBegins_.end(), offset);
    const std::size_t begin = *(next - 1);
    return {static_cast<std::uint32_t>(next - lineBegins_.begin()),
            static_cast<std::uint32_t>(countCodePoints(text.substr(begin, offset - begin)) + 1)};
}

}  // namespace yg::text
