// SPDX-License-Identifier: MIT
//
// The lines that findings are in, and where their columns are. Asked for in the order of the
// findings, each line is read once and walked once, however many findings it has.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "YGConfigManager/inspection/Inspection.h"

namespace yg::tool {

/// The offset behind so many characters from an offset on; the end of the text beyond that.
std::size_t offsetAfter(std::string_view text, std::size_t offset, std::size_t characters);

/// The offset of the character before an offset that is not 0.
std::size_t offsetBefore(std::string_view text, std::size_t offset);

class SourceLines {
public:
    /// The inspection must outlive it.
    explicit SourceLines(const Inspection& inspection) : inspection_(inspection) {}

    /// Goes to a line of a file; false when there is no such line.
    bool goTo(const std::string& file, std::uint32_t line);

    /// The line that it went to.
    std::string_view text() const { return *text_; }

    /// The offset of a column, from 1, in that line; its end beyond that.
    std::size_t offsetOf(std::uint32_t column);

private:
    const Inspection& inspection_;
    std::string file_;
    std::uint32_t line_ = 0;
    std::optional<std::string> text_;
    std::uint32_t column_ = 1;  ///< where the last walk ended
    std::size_t offset_ = 0;
};

}  // namespace yg::tool
