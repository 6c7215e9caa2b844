// SPDX-License-Identifier: MIT
//
// The table of commands. A new command is a function and a row in the source of its subject.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "ygconfig/Answer.h"
#include "ygconfig/commandline/Arguments.h"

namespace yg::tool {

/// What a command works with. The host of the root folder is installed while it runs.
struct Session {
    Arguments arguments;
    bool colour = false;  ///< text for people may have colours
};

struct Command {
    std::string_view words;                                ///< as typed: "dump layout"
    std::string_view help;                                 ///< one line
    std::string_view examples;                             ///< command lines, shown by --help
    std::string_view notes;                                ///< what else --help says
    void (*declare)(CLI::App& app, Arguments& arguments);  ///< what it takes; null for nothing
    Answer (*run)(const Session& session);
};

/// Words that several commands begin with.
struct Group {
    std::string_view words;     ///< "dump"; empty for the tool itself
    std::string_view help;      ///< one line
    std::string_view examples;  ///< command lines, shown by --help
    std::string_view notes;     ///< what else --help says
    std::string_view meaning;   ///< the command meant when no further word is given, or empty
};

std::span<const Command> commands();
std::span<const Group> groups();

/// The command or group of exactly these words; null when there is none.
const Command* commandNamed(std::string_view words);
const Group* groupNamed(std::string_view words);

/// The commands of each subject.
std::span<const Command> layoutCommands();
std::span<const Command> eventCommands();
std::span<const Command> paletteCommands();
std::span<const Command> serverCommands();
std::span<const Command> settingsCommands();
std::span<const Command> webPageCommands();
std::span<const Command> requestUrlCommands();
std::span<const Command> chooseCommands();

/// What a command answers when the host has no path for a file of this name.
Answer nothingShownWithoutPath(std::string_view fileName);
Answer nothingStoredWithoutPath(std::string_view fileName);

}  // namespace yg::tool
