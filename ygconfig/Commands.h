// SPDX-License-Identifier: MIT
//
// The table of commands. A new command is a function in a source of its own and a row here.
#pragma once

#include <span>
#include <string_view>

#include "ygconfig/Answer.h"
#include "ygconfig/Arguments.h"

namespace yg::tool {

/// What a command works with. The host of the root folder is installed while it runs.
struct Session {
    Arguments arguments;
    bool colour = false;  ///< text for people may have colours
};

struct Command {
    std::string_view words;     ///< as typed: "dump layout"
    std::string_view help;      ///< one line
    std::string_view examples;  ///< command lines, shown by --help
    std::string_view notes;     ///< what else --help says
    void (*declare)(CLI::App& app, Arguments& arguments);
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

/// Declares ITEM… and --weighted.
void declareChoose(CLI::App& app, Arguments& arguments);

Answer choose(const Session& session);
Answer deliverServers(const Session& session);
Answer dumpEvents(const Session& session);
Answer dumpLayout(const Session& session);
Answer dumpPalette(const Session& session);
Answer dumpRequestUrls(const Session& session);
Answer dumpServers(const Session& session);
Answer dumpStyle(const Session& session);
Answer findColor(const Session& session);
Answer findCommand(const Session& session);
Answer findEvent(const Session& session);
Answer findFont(const Session& session);
Answer findRequestUrl(const Session& session);
Answer findWebPage(const Session& session);
Answer getSetting(const Session& session);
Answer setSetting(const Session& session);
Answer showEvents(const Session& session);
Answer showLayout(const Session& session);
Answer showPalette(const Session& session);
Answer showRequestUrls(const Session& session);
Answer showServers(const Session& session);
Answer showSettings(const Session& session);
Answer showStyle(const Session& session);
Answer showWebPages(const Session& session);
Answer writeImage(const Session& session);

}  // namespace yg::tool
