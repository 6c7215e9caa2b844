// SPDX-License-Identifier: MIT
#include "ygconfig/Commands.h"
#include "ygconfig/Events.h"
#include "ygconfig/Json.h"

namespace yg::tool {

Answer dumpEvents(const Session& session) {
    return jsonAnswer(loadEvents(session.arguments));
}

}  // namespace yg::tool
