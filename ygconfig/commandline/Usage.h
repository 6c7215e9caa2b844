// SPDX-License-Identifier: MIT
//
// What each command takes, as its declarations say: for the manual and for shells.
#pragma once

#include <string>
#include <vector>

#include "ygconfig/commands/Commands.h"

namespace yg::tool {

struct OptionUsage {
    std::vector<std::string> names;  ///< "-o", "--output"
    std::string valueName;           ///< "FILE"; empty when it takes no value
    std::string help;
    Values values;  ///< what its value may be
    bool isRequired = false;
};

struct OperandUsage {
    std::string name;  ///< "FILE"
    std::string help;
    Values values;
    bool isRequired = false;
    bool isRepeated = false;  ///< any number of them
};

struct CommandUsage {
    const Command* command;          ///< never null
    std::vector<std::string> below;  ///< the words that may follow: "layout" of "dump"
    std::vector<OptionUsage> options;
    std::vector<OperandUsage> operands;
};

/// In the order of commands().
std::vector<CommandUsage> usages();

}  // namespace yg::tool
