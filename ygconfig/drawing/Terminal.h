// SPDX-License-Identifier: MIT
//
// How wide the page is that a person reads.
#pragma once

#include <cstddef>

namespace yg::tool {

/// The columns of the terminal that standard output goes to, as COLUMNS or else the terminal says;
/// 80 when it goes elsewhere and when neither says.
std::size_t terminalWidth();

}  // namespace yg::tool
