// SPDX-License-Identifier: MIT
//
// What is looked for in a text before libxml2 reads it. Internal.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace yg::xml {

struct Fault {
    std::size_t at;  ///< offset in the text
    const char* message;
};

/// Why libxml2 need not look at a text; nothing when it decides. Finds what it would take too long
/// for, read without a limit or take for something else. Each byte is looked at a fixed number of
/// times.
std::optional<Fault> faultOf(const std::string& text);

}  // namespace yg::xml
