// SPDX-License-Identifier: MIT
//
// What XML calls a name, and white space. Internal. Any thread may call.
#pragma once

#include <string_view>

namespace yg::xml {

/// Whether elements and attributes can be named so, with a prefix or without.
bool isXmlName(std::string_view name);

inline constexpr std::string_view whiteSpace = " \t\r\n";

constexpr bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

/// True for "" too.
constexpr bool isBlank(std::string_view text) {
    return text.find_first_not_of(whiteSpace) == std::string_view::npos;
}

}  // namespace yg::xml
