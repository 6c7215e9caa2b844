// SPDX-License-Identifier: MIT
//
// The texts of the page around the model, in pieces. Written from page/ when the tool is built.
#pragma once

#include <string_view>
#include <vector>

namespace yg::tool {

using PageText = std::vector<std::string_view>;

extern const PageText fileBefore;
extern const PageText fileBehind;
extern const PageText liveBefore;
extern const PageText liveBehind;

}  // namespace yg::tool
