// SPDX-License-Identifier: MIT
#include "ygconfig/Events.h"

#include <new>

namespace yg::tool {

void declareEvents(CLI::App& app, Arguments& arguments) {
    declareText(app, "--events", "PATH", arguments.events,
                "the event file; ROOT/config/events.xml if not given");
}

void declareCommandName(CLI::App& app, Arguments& arguments) {
    declareOperand(app, "NAME", arguments.name, "a command's name");
    declareEvents(app, arguments);
}

void declareEventName(CLI::App& app, Arguments& arguments) {
    declareOperand(app, "GROUP", arguments.group, "the group's name, which elements have as event");
    declareOperand(app, "NAME", arguments.name, "the event's name in its group");
    declareEvents(app, arguments);
}

std::shared_ptr<YGEventLoader> loadEvents(const Arguments& arguments, DiagnosticsSink* sink) {
    auto loader = YGEventLoader::initWithEventConfigPath(
        arguments.events ? *arguments.events : arguments.inRoot("config/events.xml"), sink);
    return loader ? loader : throw std::bad_alloc();
}

}  // namespace yg::tool
