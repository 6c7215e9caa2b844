// SPDX-License-Identifier: MIT
//
// What XML takes for a name, and for no text. Internal. Any thread may call.
#pragma once

#include <string_view>

#include "YGConfigManager/text/Characters.h"

namespace yg::xml {

/// Whether elements and attributes can be named so, with a prefix or without.
bool isXmlName(std::string_view name);

/// Whether a text is white space alone, or empty.
constexpr bool isBlank(std::string_view text) {
    return text.find_first_not_of(text::whiteSpace) == std::string_view::npos;
}

}  // namespace yg::xml
