// SPDX-License-Identifier: MIT
//
// Where points of a text are in its bytes.
#pragma once

#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

#include "YGConfigManager/text/LineIndex.h"
#include "YGConfigManager/text/Utf8.h"

namespace yg::testing {

/// A range of bytes in a file.
using Range = std::pair<std::size_t, std::size_t>;

class Offsets {
public:
    explicit Offsets(std::string_view text) : text_(text) {
        for (std::size_t at = 0; at != std::string_view::npos;) {
            lines_.push_back(at);
            at = text.find('\n', at);
            at += at == std::string_view::npos ? 0 : 1;
        }
    }

    Range of(const TextPoint& begin, const TextPoint& end) const { return {of(begin), of(end)}; }

private:
    std::size_t of(const TextPoint& point) const {
        std::size_t at = lines_.at(point.line - 1);
        if (point.line == 1 && text_.starts_with(text::byteOrderMark))
            at += text::byteOrderMark.size();
        for (std::uint32_t column = 1; column < point.column; ++column)
            at += text::firstCharacter(text_.substr(at)).size;
        return at;
    }

    std::string_view text_;
    std::vector<std::size_t> lines_;
};

}  // namespace yg::testing
