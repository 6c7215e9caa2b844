// SPDX-License-Identifier: MIT
//
// Kinds of characters, in ASCII and without a locale. Any thread may call.
#pragma once

#include <string_view>

namespace yg::text {

/// What XML and JSON take for white space.
inline constexpr std::string_view whiteSpace = " \t\r\n";

constexpr bool isWhiteSpace(char character) {
    return character == ' ' || character == '\t' || character == '\r' || character == '\n';
}

constexpr std::string_view withoutBlanksAround(std::string_view text) {
    while (!text.empty() && isWhiteSpace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isWhiteSpace(text.back()))
        text.remove_suffix(1);
    return text;
}

constexpr bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

}  // namespace yg::text
