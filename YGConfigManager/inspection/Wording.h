// SPDX-License-Identifier: MIT
//
// Findings in words. Internal. Throws std::bad_alloc.
#pragma once

#include <string>
#include <string_view>

#include "YGConfigManager/inspection/Gathering.h"

namespace yg {

/// A name as messages show it: "'NAME'".
inline std::string quoted(std::string_view name) {
    return std::string("'").append(name).append("'");
}

/// One line for the author of the file: what is wrong with which text.
std::string messageOf(const Found& found);

/// What the library makes of the text, one line; "" when that is clear.
std::string readAs(const Found& found);

}  // namespace yg
