// SPDX-License-Identifier: MIT
//
// Findings in words. Internal. Throws std::bad_alloc.
#pragma once

#include <string>

#include "YGConfigManager/inspection/Gathering.h"

namespace yg {

/// One line for the author of the file: what is wrong with which text.
std::string messageOf(const Found& found);

/// What the library makes of the text, one line; "" when that is clear.
std::string readAs(const Found& found);

}  // namespace yg
