// SPDX-License-Identifier: MIT
//
// Finding one text in another and replacing it, in time linear in the size of both. Any thread may
// call.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace yg::text {

/// Where the target occurs first from an offset on; npos when it does not. The same answer as the
/// view's own find(), which takes the product of both sizes where a target nearly fits everywhere.
std::size_t findText(std::string_view text, std::string_view target, std::size_t from = 0);

/// The text with each occurrence of the target replaced, in one pass from left to right that never
/// looks at what it has put in. Bytes are compared, so letter case counts. An empty target changes
/// nothing.
std::string replaceAll(std::string_view text, std::string_view target,
                       std::string_view replacement);

/// The same, but letter case does not count, whatever the locale: characters are equal that Unicode
/// folds to one (simple case folding). Bytes that are not UTF-8 are equal to themselves only.
std::string replaceAllIgnoringCase(std::string_view text, std::string_view target,
                                   std::string_view replacement);

}  // namespace yg::text
