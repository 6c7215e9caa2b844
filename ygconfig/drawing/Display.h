// SPDX-License-Identifier: MIT
//
// Text on a terminal: its characters, the columns that it takes, and what must not reach it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

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

/// The same of a text that may have colours (drawing/Paint.h).
std::size_t shownWidth(std::string_view text);

/// A number for people, with three digits that count.
std::string threeDigits(double number);

/// A printable text, which may have colours, in lines of at most so many columns, colours ending
/// with each line. Lines behind the first begin with `indent` blanks. A line ends at a blank if
/// there is one, else behind a mark such as a comma, else anywhere. At least one line.
std::vector<std::string> folded(std::string_view text, std::size_t columns, std::size_t indent = 2);

}  // namespace yg::tool
