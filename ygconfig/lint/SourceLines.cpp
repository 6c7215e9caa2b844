// SPDX-License-Identifier: MIT
#include "ygconfig/lint/SourceLines.h"

namespace yg::tool {

namespace {

/// As columns are counted, also where the text is not UTF-8.
bool continues(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

}  // namespace

std::size_t offsetAfter(std::string_view text, std::size_t offset, std::size_t characters) {
    for (; characters > 0 && offset < text.size(); --characters) {
        ++offset;
        while (offset < text.size() && continues(text[offset]))
            ++offset;
    }
    return offset;
}

std::size_t offsetBefore(std::string_view text, std::size_t offset) {
    --offset;
    while (offset > 0 && continues(text[offset]))
        --offset;
    return offset;
}

bool SourceLines::goTo(const std::string& file, std::uint32_t line) {
    if (line != line_ || file != file_) {
        file_ = file;
        line_ = line;
        text_ = inspection_.line(file, line);
        column_ = 1;
        offset_ = 0;
    }
    return text_.has_value();
}

std::size_t SourceLines::offsetOf(std::uint32_t column) {
    if (column < column_) {
        column_ = 1;
        offset_ = 0;
    }
    offset_ = offsetAfter(*text_, offset_, column - column_);
    column_ = column;
    return offset_;
}

}  // namespace yg::tool
