// SPDX-License-Identifier: MIT
#include "ygconfig/Commands.h"
#include "ygconfig/Events.h"
#include "ygconfig/EventsView.h"

namespace yg::tool {

Answer showEvents(const Session& session) {
    const auto loader = loadEvents(session.arguments);
    return {EventsView(*loader, session.colour).events()};
}

}  // namespace yg::tool
