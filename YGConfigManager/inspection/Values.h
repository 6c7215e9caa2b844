// SPDX-License-Identifier: MIT
//
// One value of an attribute: what the library makes of it, and what its author probably meant.
// Internal. Throws std::bad_alloc.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "YGConfigManager/records/Description.h"

namespace yg {

/// The row that an attribute is read by, in whatever format an element of this name stands; null
/// when there is none, and when formats differ in the kind of value.
const AttributeInfo* attributeRow(std::string_view element, std::string_view attribute);

/// A text that can stand in the place of a value with something odd about it, and has nothing odd
/// about it itself. Absent for a value that is in order, and when it is not clear what is meant.
/// - flag: the word of truth or untruth, in English or Chinese, misspelt too: "Yes" is "true".
/// - number: the same digits in ASCII, without unit and blanks: "132px" is "132", and "24O" with a
///   letter is "240"; with a point for a comma; the nearest bound when it is out of range, but 128
///   of an attribute from 0 to 1 is 128/255. A fraction where none counts is cut off, as the
///   library does.
/// - list: ";" for other separators, without blanks around names.
/// - name: without quotes and blanks around it and without what cannot be seen.
std::optional<std::string> repairedValue(const AttributeInfo& row, std::string_view value);

/// What counts for the value: "false", "132", "1 name: 'a,b'". "" for a text, unless it has
/// characters that cannot be seen: "text with U+00A0 (no-break space)".
std::string readValue(const AttributeInfo& row, std::string_view value);

/// The same for the name alone, as a part of a list has it.
std::string readName(std::string_view name);

}  // namespace yg
