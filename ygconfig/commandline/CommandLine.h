// SPDX-License-Identifier: MIT
//
// Reads the words of a command line; does not run the command and opens no file.
#pragma once

#include <span>
#include <string>

#include "ygconfig/Answer.h"
#include "ygconfig/commandline/Arguments.h"
#include "ygconfig/commands/Commands.h"

namespace yg::tool {

struct CommandLine {
    /// What to run; null when the answer below is all there is to say.
    const Command* command = nullptr;
    Arguments arguments = {};
    /// Help, the version, or what is wrong with the words.
    Answer answer = {};
};

/// Reads the words after the program's name. Options may stand behind the words of the command, as
/// "--option VALUE" or "--option=VALUE", until "--" ends them; --root and --right may also stand
/// before them. A word that begins with "-" is a value after its option and a name after "--",
/// otherwise an option. A word that is not expected gets the nearest known one as a suggestion.
CommandLine readCommandLine(std::span<const std::string> words);

}  // namespace yg::tool
