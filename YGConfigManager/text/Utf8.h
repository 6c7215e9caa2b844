// SPDX-License-Identifier: MIT
//
// Checking and measuring UTF-8. Any thread may call.
#pragma once

#include <cstddef>
#include <string_view>

namespace yg::text {

/// What may stand before the first character of a text, and is not part of it.
inline constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";

/// The number of bytes up to the first one that is not part of a complete, strictly valid UTF-8
/// sequence: overlong forms, surrogates and code points above U+10FFFF are refused. The size of the
/// text if all of it is valid.
std::size_t validUtf8Prefix(std::string_view text);

/// Whether all of the text is strictly valid UTF-8; an empty text is.
bool isValidUtf8(std::string_view text);

/// A character of a text, or a byte that belongs to none.
struct Character {
    char32_t value;    ///< U+FFFD for a byte alone
    std::size_t size;  ///< in bytes
    bool isValid;
};

namespace detail {

Character firstOfSeveralBytes(std::string_view text);

}  // namespace detail

/// The first character of a text that is not empty.
inline Character firstCharacter(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text.front());
    return lead < 0x80 ? Character{lead, 1, true} : detail::firstOfSeveralBytes(text);
}

/// The number of code points of a valid text. In any other text each byte counts that is not a
/// continuation byte.
std::size_t countCodePoints(std::string_view text);

}  // namespace yg::text
