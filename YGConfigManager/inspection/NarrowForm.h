// SPDX-License-Identifier: MIT
//
// Characters that an input method for Chinese gives in place of those of ASCII. Internal.
#pragma once

namespace yg {

/// The character of ASCII that was probably meant by a full-width one; '\0' for any other one.
constexpr char narrowFormOf(char32_t character) {
    if (character >= 0xFF01 && character <= 0xFF5E)
        return static_cast<char>(character - 0xFF01 + '!');
    return character == 0x3000 ? ' ' : character == 0x3001 ? ',' : character == 0x3002 ? '.' : '\0';
}

}  // namespace yg
