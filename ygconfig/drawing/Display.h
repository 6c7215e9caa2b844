// SPDX-License-Identifier: MIT
//
// Text on a terminal: its characters, the columns that it takes, and what must not reach it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace yg::tool {

/// The characters of a UTF-8 text; each byte that belongs to none gives U+FFFD.
std::wstring characters(std::string_view text);

/// The text in valid UTF-8 and without control characters (text/Controls.h), each of which becomes
/// U+FFFD, so that what a file holds can neither break a line nor command a terminal nor show
/// itself in another order.
std::string printable(std::string_view text);

/// How many columns a printable text takes: two for each wide character (Chinese, for one), none
/// for combining ones.
std::size_t displayWidth(std::string_view text);

}  // namespace yg::tool
