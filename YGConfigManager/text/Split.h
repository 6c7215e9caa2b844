// SPDX-License-Identifier: MIT
//
// Cutting a text into pieces at a separator. Any thread may call.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace yg::text {

/// The pieces between the separators, empty ones included and none trimmed: "" gives one empty
/// piece, "a;" gives "a" and "".
std::vector<std::string> split(std::string_view text, char separator);

}  // namespace yg::text
