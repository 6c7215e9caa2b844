// SPDX-License-Identifier: MIT
//
// Letter case without a locale. Any thread may call.
#pragma once

namespace yg::text {

/// The character that stands for all forms of a letter, by Unicode's folding of one character to
/// one character; the character itself when it has no other form. What is no character stays.
char32_t foldedCase(char32_t character);

}  // namespace yg::text
