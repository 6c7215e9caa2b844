// SPDX-License-Identifier: MIT
//
// Web pages where a file should be: a network that wants a sign-in answers every request by one.
// Internal. Throws std::bad_alloc.
#pragma once

#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "YGConfigManager/inspection/Gathering.h"

namespace yg {

/// Where the document type or the root of an HTML page begins, in bytes; absent when the text is
/// not one.
std::optional<std::size_t> beginOfHtml(std::string_view text);

/// Of a file that nothing is read of because it is a web page there is one finding that says so,
/// instead of those about its root's name or its syntax. `textOf` answers a file's text by its
/// path.
void reportHtml(Gathering& findings,
                const std::function<std::string_view(std::string_view path)>& textOf);

}  // namespace yg
