// SPDX-License-Identifier: MIT
//
// How wide the page is that a person reads.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace yg::tool {

/// The columns of the terminal that standard output goes to, as COLUMNS or else the terminal says;
/// 80 when it goes elsewhere and when neither says.
std::size_t terminalWidth();

/// The printable text in lines of at most `width` columns, broken at blanks and beside wide
/// characters; a word that is longer stays whole. The lines after the first begin with `indent`
/// blanks, and `column` columns of the first one are taken already. No line feed at the end.
std::string folded(std::string_view text, std::size_t width, std::size_t column,
                   std::size_t indent);

}  // namespace yg::tool
