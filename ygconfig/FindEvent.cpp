// SPDX-License-Identifier: MIT
#include "ygconfig/Commands.h"
#include "ygconfig/Events.h"
#include "ygconfig/Json.h"

namespace yg::tool {

Answer findEvent(const Session& session) {
    const Arguments& arguments = session.arguments;
    const auto loader = loadEvents(arguments);
    return jsonAnswer(loader->eventByName(arguments.group, arguments.name));
}

}  // namespace yg::tool
