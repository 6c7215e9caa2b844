// SPDX-License-Identifier: MIT
#include <memory>
#include <new>

#include "YGConfigManager/events/YGEventLoader.h"

#include "ygconfig/commandline/Suggestion.h"
#include "ygconfig/commands/Commands.h"
#include "ygconfig/commands/Names.h"
#include "ygconfig/drawing/EventsView.h"
#include "ygconfig/json/Json.h"

namespace yg::tool {

namespace {

void declareEvents(CLI::App& app, Arguments& arguments) {
    declareText(app, "--events", "PATH", arguments.events,
                "the event file; ROOT/config/events.xml if not given", anyFile);
}

void declareCommandName(CLI::App& app, Arguments& arguments) {
    declareOperand(app, "NAME", arguments.name, "a command's name", named({NameKind::command}));
    declareEvents(app, arguments);
}

void declareEventName(CLI::App& app, Arguments& arguments) {
    declareOperand(app, "GROUP", arguments.group,
                   "the group's name, as in the event attribute of elements",
                   named({NameKind::eventGroup}));
    declareOperand(app, "NAME", arguments.name, "the event's name in its group",
                   named({NameKind::event}));
    declareEvents(app, arguments);
}

/// A loader that has read the file of the root folder, or that of the option; never null.
std::shared_ptr<YGEventLoader> loadEvents(const Session& session) {
    const Arguments& arguments = session.arguments;
    auto loader = YGEventLoader::initWithEventConfigPath(
        arguments.events ? *arguments.events : arguments.inRoot("config/events.xml"),
        session.unreadable);
    return loader ? loader : throw std::bad_alloc();
}

Answer dumpEvents(const Session& session) {
    return jsonAnswer(loadEvents(session));
}

Answer showEvents(const Session& session) {
    return {[loader = loadEvents(session), paint = session.paint()](Output& output) {
        EventsView(*loader, paint).events(output);
    }};
}

Answer findCommand(const Session& session) {
    const std::string& name = session.arguments.name;
    const auto loader = loadEvents(session);
    Answer answer = jsonAnswer(loader->commandByName(name));
    if (answer.exitCode != ExitCode::answer)
        answer.complaint = nothingNamed("command", name, namesIn(loader->commandDatas()));
    return answer;
}

Answer findEvent(const Session& session) {
    const Arguments& arguments = session.arguments;
    const auto loader = loadEvents(session);
    Answer answer = jsonAnswer(loader->eventByName(arguments.group, arguments.name));
    if (answer.exitCode == ExitCode::answer)
        return answer;
    const EventGroupMap& groups = loader->elementEventDatas();
    const EventMap* const group = groups.find(arguments.group);
    answer.complaint = group ? nothingNamed("event", arguments.name, namesIn(*group),
                                            " in group " + inQuotes(arguments.group))
                             : nothingNamed("event group", arguments.group, namesIn(groups));
    return answer;
}

constexpr Command table[] = {
    {"dump events", "all commands, event templates and event groups, as JSON",
     "  ygconfig dump events --root examples/terminal\n"
     "  ygconfig dump events --events draft/events.xml\n",
     "", declareEvents, dumpEvents},

    {"show events", "all event groups, event templates and commands, as trees",
     "  ygconfig show events --root examples/terminal | less\n", eventsLegend, declareEvents,
     showEvents, true, true},

    {"command", "one command of the event file, as JSON; null if there is none",
     "  ygconfig command open_index_page --root examples/terminal\n", "", declareCommandName,
     findCommand},

    {"event", "one event of an event group, as JSON; null if there is none",
     "  ygconfig event watch_list select --root examples/terminal\n",
     "Looks in this group only, not in templates or other groups.\n", declareEventName, findEvent},
};

}  // namespace

NameList eventGroupNames(const Session& session, NameGroups) {
    return namesIn(loadEvents(session)->elementEventDatas());
}

NameList eventNames(const Session& session, NameGroups group) {
    const auto loader = loadEvents(session);
    const EventMap* const events =
        group.empty() ? nullptr : loader->elementEventDatas().find(group.front());
    return events ? namesIn(*events) : NameList();
}

NameList eventTemplateNames(const Session& session, NameGroups) {
    return namesIn(loadEvents(session)->eventTemplateDatas());
}

NameList commandNames(const Session& session, NameGroups) {
    return namesIn(loadEvents(session)->commandDatas());
}

std::span<const Command> eventCommands() {
    return table;
}

}  // namespace yg::tool
