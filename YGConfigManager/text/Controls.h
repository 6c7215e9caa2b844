// SPDX-License-Identifier: MIT
//
// What must not reach a person's terminal from a file or a server. Any thread may call.
#pragma once

#include <cstddef>
#include <string_view>

namespace yg::text {

/// Whether a character could command a terminal, break a line or show text in another order than it
/// has: the control characters U+0000 to U+001F and U+007F to U+009F, the line and the paragraph
/// separator, and the bidirectional controls U+061C, U+200E, U+200F, U+202A to U+202E and U+2066 to
/// U+2069.
constexpr bool isControl(char32_t character) {
    return character < 0x20 || (character >= 0x7F && character < 0xA0) || character == 0x061C ||
           character == 0x200E || character == 0x200F ||
           (character >= 0x2028 && character <= 0x202E) ||
           (character >= 0x2066 && character <= 0x2069);
}

/// Copies `text` to `out`, which has room for as much, and answers the size of the copy. Each
/// control character becomes a blank, except tabs, which stay. So does each byte from 0x80 to 0x9F
/// that is not part of valid UTF-8; other such bytes stay. Takes no memory.
std::size_t copyWithoutControls(std::string_view text, char* out);

}  // namespace yg::text
