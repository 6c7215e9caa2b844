// SPDX-License-Identifier: MIT
//
// Files that people give to the tool.
#pragma once

#include <string>

namespace yg::tool {

/// Reads a file whole, standard input for "-"; 0, or the error number. What never ends, such as a
/// device, ends at 1 GiB with an error.
int readInput(const std::string& path, std::string& bytes);

}  // namespace yg::tool
