// SPDX-License-Identifier: MIT
//
// The known word that somebody probably meant. Internal. Any thread may call. Throws
// std::bad_alloc.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace yg::text {

/// The known word that is nearest to `word`: the same but for case, width (full-width forms) and
/// blanks first, else the one that the fewest added, left out, changed or swapped characters lead
/// to. Of several the first. "" when none is near: where a third of the characters would change.
std::string_view nearest(std::string_view word, std::span<const std::string> known);

}  // namespace yg::text
