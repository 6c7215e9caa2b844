// SPDX-License-Identifier: MIT
#include <memory>
#include <new>

#include "YGConfigManager/events/YGEventLoader.h"

#include "ygconfig/commands/Commands.h"
#include "ygconfig/drawing/EventsView.h"
#include "ygconfig/files/UnreadableFiles.h"
#include "ygconfig/json/Json.h"

namespace yg::tool {

namespace {

void declareEvents(CLI::App& app, Arguments& arguments) {
    declareText(app, "--events", "PATH", arguments.events,
                "the event file; ROOT/config/events.xml if not given");
}

void declareCommandName(CLI::App& app, Arguments& arguments) {
    declareOperand(app, "NAME", arguments.name, "a command's name");
    declareEvents(app, arguments);
}

void declareEventName(CLI::App& app, Arguments& arguments) {
    declareOperand(app, "GROUP", arguments.group,
                   "the group's name, as in the event attribute of elements");
    declareOperand(app, "NAME", arguments.name, "the event's name in its group");
    declareEvents(app, arguments);
}

/// A loader that has read the file of the root folder, or that of the option; never null.
std::shared_ptr<YGEventLoader> loadEvents(const Arguments& arguments,
                                          DiagnosticsSink* sink = nullptr) {
    auto loader = YGEventLoader::initWithEventConfigPath(
        arguments.events ? *arguments.events : arguments.inRoot("config/events.xml"), sink);
    return loader ? loader : throw std::bad_alloc();
}

Answer dumpEvents(const Session& session) {
    return jsonAnswer(loadEvents(session.arguments));
}

Answer showEvents(const Session& session) {
    UnreadableFiles unreadable;
    const auto loader = loadEvents(session.arguments, &unreadable);
    return {[loader, colour = session.colour](Output& output) {
                EventsView(*loader, colour).events(output);
            },
            ExitCode::answer, unreadable.complaint()};
}

Answer findCommand(const Session& session) {
    const auto loader = loadEvents(session.arguments);
    return jsonAnswer(loader->commandByName(session.arguments.name));
}

Answer findEvent(const Session& session) {
    const Arguments& arguments = session.arguments;
    const auto loader = loadEvents(arguments);
    return jsonAnswer(loader->eventByName(arguments.group, arguments.name));
}

constexpr Command table[] = {
    {"dump events", "all commands, event templates and event groups, as JSON",
     "  ygconfig dump events --root examples/terminal\n"
     "  ygconfig dump events --events draft/events.xml\n",
     "", declareEvents, dumpEvents},

    {"show events", "all event groups, event templates and commands, as trees",
     "  ygconfig show events --root examples/terminal | less\n", eventsLegend, declareEvents,
     showEvents},

    {"command", "one command of the event file, as JSON; null if there is none",
     "  ygconfig command open_index_page --root examples/terminal\n", "", declareCommandName,
     findCommand},

    {"event", "one event of an event group, as JSON; null if there is none",
     "  ygconfig event watch_list select --root examples/terminal\n",
     "Looks in this group only, not in templates or other groups.\n", declareEventName, findEvent},
};

}  // namespace

std::span<const Command> eventCommands() {
    return table;
}

}  // namespace yg::tool
