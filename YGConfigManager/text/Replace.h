// SPDX-License-Identifier: MIT
//
// Replacing one text by another inside a third. Any thread may call.
#pragma once

#include <string>
#include <string_view>

namespace yg::text {

/// The text with each occurrence of the target replaced, in one pass from left to right that never
/// looks at what it has put in. Bytes are compared, so letter case counts. An empty target changes
/// nothing.
std::string replaceAll(std::string_view text, std::string_view target,
                       std::string_view replacement);

/// The same, but letter case does not count (foldedCase in CaseFolding.h), whatever the locale.
/// Bytes that are no UTF-8 are equal to themselves only.
std::string replaceAllIgnoringCase(std::string_view text, std::string_view target,
                                   std::string_view replacement);

}  // namespace yg::text
