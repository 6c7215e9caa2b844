// SPDX-License-Identifier: MIT
//
// The table of commands. A new command is a function and a row in the source of its subject.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include "YGConfigManager/inspection/Inspection.h"

#include "ygconfig/Answer.h"
#include "ygconfig/commandline/Arguments.h"
#include "ygconfig/drawing/Paint.h"
#include "ygconfig/files/UnreadableFiles.h"

namespace yg::tool {

/// What a command works with. The host of the root folder is installed while it runs.
struct Session {
    Arguments arguments;
    bool colour = false;                 ///< text for people may have colours
    std::size_t columns = usualColumns;  ///< how wide it may be
    /// For loaders, as long as they live; what it gets is named beside the answer.
    UnreadableFiles* unreadable = nullptr;

    Paint paint() const { return {colour, columns}; }
};

struct Command {
    std::string_view words;     ///< as typed: "dump layout"; empty for the program itself
    std::string_view help;      ///< one line
    std::string_view examples;  ///< indented command lines, shown by --help
    std::string_view notes;     ///< what else --help says
    void (*declare)(CLI::App& app, Arguments& arguments);  ///< what it takes; null for nothing
    Answer (*run)(const Session& session);  ///< null when a further word has to be given
    bool needsHost = true;  ///< otherwise it works with a root whose host.json cannot be used
    /// It draws for people: lines of the library's log are left out unless --log asks for them.
    bool draws = false;
    /// It is for programs that ask while someone types: nothing is logged or complained about, and
    /// the answer is empty when the root cannot be used.
    bool isQuiet = false;
};

/// All commands, each behind those whose words it begins with.
std::span<const Command> commands();

/// The commands of each subject.
std::span<const Command> layoutCommands();
std::span<const Command> eventCommands();
std::span<const Command> paletteCommands();
std::span<const Command> serverCommands();
std::span<const Command> settingsCommands();
std::span<const Command> webPageCommands();
std::span<const Command> requestUrlCommands();
std::span<const Command> chooseCommands();
std::span<const Command> lintCommands();
std::span<const Command> checkDeliveryCommands();
std::span<const Command> explainCommands();
std::span<const Command> simulateCommands();
std::span<const Command> diffCommands();
std::span<const Command> reportCommands();
std::span<const Command> previewCommands();
std::span<const Command> namesCommands();

/// What is said when the host has no path for the server file.
inline constexpr std::string_view noServerPath =
    "ygconfig: the host has no path for the server file";

/// What a command answers when the host has no path for a file of this name.
Answer nothingShownWithoutPath(std::string_view fileName);
Answer nothingFoundWithoutPath(std::string_view fileName);
Answer nothingStoredWithoutPath(std::string_view fileName);

/// The findings as text; exit status 1 when there is an error among them.
Answer findingsAnswer(const Session& session, std::shared_ptr<const Inspection> inspection);

/// Declares --format, the form of findings.
void declareFormat(CLI::App& app, Arguments& arguments);

/// Declares --format with text and JSON alone.
void declareTextOrJson(CLI::App& app, Arguments& arguments);

}  // namespace yg::tool
