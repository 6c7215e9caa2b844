// SPDX-License-Identifier: MIT
//
// Where something is in a text file, for people and for editors.
#pragma once

#include <compare>
#include <cstdint>
#include <string>

namespace yg {

/// A point between two characters of a text.
struct TextPoint {
    std::uint32_t line = 0;    ///< from 1; 0 when nothing is known
    std::uint32_t column = 0;  ///< of the character behind it, in characters, from 1

    friend auto operator<=>(const TextPoint&, const TextPoint&) = default;  // NOLINT(*-nullptr)
};

/// A part of a file. Without a line the whole file is meant, or a place that does not exist there.
struct Place {
    std::string file;  ///< the path as it was given; empty for bytes and text
    TextPoint begin;   ///< before the first character
    TextPoint end;     ///< behind the last one

    friend bool operator==(const Place&, const Place&) = default;
};

}  // namespace yg
