// SPDX-License-Identifier: MIT
//
// The known word that a misspelt one probably means.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace yg::tool {

/// "; did you mean 'X'?" with the nearest known word; "" when none is near.
std::string suggestion(std::string_view word, std::span<const std::string> known);

}  // namespace yg::tool
