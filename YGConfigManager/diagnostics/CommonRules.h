// SPDX-License-Identifier: MIT
//
// The rules that every file format shares. What belongs to one format stands with its loader.
#pragma once

#include "YGConfigManager/diagnostics/DiagnosticsSink.h"

namespace yg::rules {

inline constexpr Rule unreadableFile{
    "unreadable-file", Handling::unresolved,
    "The file is missing or is not well-formed XML, so it contributes nothing."};
inline constexpr Rule unsavedFile{
    "unsaved-file", Handling::unresolved,
    "The file could not be written; what was to be in it is not there at the next start."};
inline constexpr Rule unknownAttribute{"unknown-attribute", Handling::dropped,
                                       "No attribute of this name is read here."};
inline constexpr Rule unknownElement{"unknown-element", Handling::dropped,
                                     "No element of this name has a meaning here."};
inline constexpr Rule strayText{"stray-text", Handling::dropped, "Text has no meaning here."};
inline constexpr Rule oddFlag{
    "odd-flag", Handling::defaulted,
    "A flag is true only for the exact text \"true\"; this reads as false."};
inline constexpr Rule oddNumber{
    "odd-number", Handling::defaulted,
    "The text is no plain number of the range: only the number that it begins with counts, 0 "
    "without one, the nearest bound when it is too large."};
inline constexpr Rule emptyList{"empty-list", Handling::defaulted,
                                "An empty list counts as no list."};

/// What `unsaved-file` says of a file that the host has no path for.
inline constexpr std::string_view noPathToWrite = "there is no path to write to";

}  // namespace yg::rules
