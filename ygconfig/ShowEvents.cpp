// SPDX-License-Identifier: MIT
#include "ygconfig/Commands.h"
#include "ygconfig/Events.h"
#include "ygconfig/EventsView.h"
#include "ygconfig/UnreadableFiles.h"

namespace yg::tool {

Answer showEvents(const Session& session) {
    UnreadableFiles unreadable;
    const auto loader = loadEvents(session.arguments, &unreadable);
    return {[loader, colour = session.colour](Output& output) {
                EventsView(*loader, colour).events(output);
            },
            ExitCode::answer, unreadable.complaint()};
}

}  // namespace yg::tool
