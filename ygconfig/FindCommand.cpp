// SPDX-License-Identifier: MIT
#include "ygconfig/Commands.h"
#include "ygconfig/Events.h"
#include "ygconfig/Json.h"

namespace yg::tool {

Answer findCommand(const Session& session) {
    const auto loader = loadEvents(session.arguments);
    return jsonAnswer(loader->commandByName(session.arguments.name));
}

}  // namespace yg::tool
