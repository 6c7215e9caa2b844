// SPDX-License-Identifier: MIT
//
// The known word that a misspelt one probably means.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace yg::tool {

/// The known word nearest to `word`, the first of several that are equally near; empty when none is
/// near. A character missing, added, changed or swapped with the next is one step; as many
/// steps are near as a third of the longer word's characters, and one from three characters on.
std::string_view nearest(std::string_view word, std::span<const std::string> known);

/// "; did you mean 'X'?" with the nearest known word; "" when none is near.
std::string suggestion(std::string_view word, std::span<const std::string> known);

}  // namespace yg::tool
