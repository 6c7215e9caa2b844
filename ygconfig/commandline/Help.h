// SPDX-License-Identifier: MIT
//
// Help texts, made from the table of commands and from what a command declares.
#pragma once

#include <string>

#include "ygconfig/commands/Commands.h"

namespace yg::tool {

/// The help of one command; `reader` has its operands and options declared.
std::string commandHelp(const Command& command, const CLI::App& reader);

/// The help of a group, with a line for each of its commands, or of the whole tool.
std::string groupHelp(const Group& group, const CLI::App& reader);

}  // namespace yg::tool
