// SPDX-License-Identifier: MIT
//
// Lines and columns of a text. Internal. Any thread may call.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "YGConfigManager/text/Place.h"

namespace yg::text {

/// The point before the byte at an offset; the end of the text for one beyond it. A line ends
/// behind "\n", and a byte-order mark at the start takes no column. Takes the length of the text.
TextPoint pointAt(std::string_view text, std::size_t offset);

/// The lines of a UTF-8 text, which it does not keep: pass the same text to each call. A look-up
/// takes the same time in any text, however many lines it has and however long they are.
class LineIndex {
public:
    explicit LineIndex(std::string_view text);

    /// The same as text::pointAt().
    TextPoint pointAt(std::string_view text, std::size_t offset) const;

private:
    std::size_t charactersBefore(std::string_view text, std::size_t offset) const;

    /// What is before a block of the text.
    struct Block {
        std::size_t characters = 0;
        std::size_t lines = 0;  ///< that end there
    };

    std::vector<std::size_t> begins_;  ///< of the lines
    std::vector<Block> blocks_;
};

}  // namespace yg::text
