// SPDX-License-Identifier: MIT
#include "ygconfig/commands/Commands.h"

#include <vector>

#include "ygconfig/drawing/Display.h"
#include "ygconfig/json/Json.h"

namespace yg::tool {

namespace {

/// The words that several commands begin with.
constexpr Command groups[] = {
    {"", "shows what the configuration of a terminal holds",
     "  ygconfig show layout --root examples/terminal\n"
     "  ygconfig dump style 行情报价 --root examples/terminal\n"
     "  ygconfig event watch_list select --root examples/terminal\n",
     "Exit status: 0 answered, 1 the answer is null or false, 2 the command line, the root folder\n"
     "or host.json cannot be used, 3 the answer cannot be made or written.\n",
     nullptr, nullptr},

    {"dump", "prints what the library holds, as JSON",
     "  ygconfig dump layout --root examples/terminal\n"
     "  ygconfig dump style quote-kline-depth --root examples/terminal\n"
     "  ygconfig dump servers --root examples/terminal --right l2 --gray\n",
     "", nullptr, nullptr},

    {"settings", "reads and changes the application's settings",
     "  ygconfig settings get app_config.xml appearance theme --root examples/terminal\n"
     "  ygconfig settings set app_config.xml appearance theme white --root examples/terminal\n",
     "", nullptr, nullptr},

    {"servers", "changes the servers that the library keeps",
     "  ygconfig servers deliver new.xml 900150983cd24fb0d6963f7d28e17f72 --root "
     "examples/terminal\n",
     "", nullptr, nullptr},
};

/// A subject is a row here, and a source that has its commands in a table of its own.
std::vector<Command> commandsOfAllSubjects() {
    std::vector<Command> all;
    for (const std::span<const Command> subject :
         {std::span<const Command>(groups), layoutCommands(), eventCommands(), paletteCommands(),
          serverCommands(), settingsCommands(), webPageCommands(), requestUrlCommands(),
          chooseCommands(), lintCommands(), checkDeliveryCommands(), explainCommands(),
          diffCommands(), reportCommands(), previewCommands(), simulateCommands(), namesCommands()})
        all.insert(all.end(), subject.begin(), subject.end());
    return all;
}

}  // namespace

std::span<const Command> commands() {
    static const std::vector<Command> all = commandsOfAllSubjects();
    return all;
}

void declareTextOrJson(CLI::App& app, Arguments& arguments) {
    declareChoice(app, "--format", "FORMAT", arguments.format, {"text", "json"},
                  "text or json; text if not given");
}

Answer nothingShownWithoutPath(std::string_view fileName) {
    return {"", ExitCode::noAnswer, "ygconfig: there is no path for '" + printable(fileName) + "'"};
}

Answer nothingFoundWithoutPath(std::string_view fileName) {
    Answer answer = jsonAnswer(nullptr);
    answer.complaint = nothingShownWithoutPath(fileName).complaint;
    return answer;
}

Answer nothingStoredWithoutPath(std::string_view fileName) {
    Answer answer = jsonAnswer(nullptr);
    answer.complaint =
        "ygconfig: nothing was stored: there is no path for '" + printable(fileName) + "'";
    return answer;
}

}  // namespace yg::tool
