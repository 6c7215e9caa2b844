// SPDX-License-Identifier: MIT
//
// Characters that word processors, chats and input methods put where ASCII is meant. Internal.
// Throws std::bad_alloc.
#pragma once

#include <string>
#include <string_view>

namespace yg {

enum class OddKind {
    blank,      ///< looks like a blank: U+00A0
    invisible,  ///< takes no room: U+200B
    quote,      ///< “ ”
    sign,       ///< full-width forms, "−", "、"
};

/// One character that looks like another one.
struct OddCharacter {
    char32_t value;
    OddKind kind;
    std::string_view name;   ///< of Unicode, in small letters; "full-width form" for all of those
    std::string_view meant;  ///< what it looks like; "" for nothing
};

/// What is odd about the character; `meant` is empty when nothing is, and `name`, too.
OddCharacter oddCharacter(char32_t character);

/// "U+00A0 (no-break space)".
std::string shownCharacter(const OddCharacter& odd);

/// The text with what was meant in the place of odd characters: invisible ones left out, full-width
/// forms as ASCII, straight quotes.
std::string withoutOddCharacters(std::string_view text);

/// The invisible characters and odd blanks in a text, each kind once, as shownCharacter() has them,
/// with commas between; "" without any.
std::string hiddenCharacters(std::string_view text);

}  // namespace yg
