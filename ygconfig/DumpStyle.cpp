// SPDX-License-Identifier: MIT
#include "ygconfig/Commands.h"
#include "ygconfig/Json.h"
#include "ygconfig/Layout.h"

namespace yg::tool {

Answer dumpStyle(const Session& session) {
    const auto loader = loadLayout(session.arguments);
    return jsonAnswer(loader->loadStyleConfigInfoWithName(session.arguments.name));
}

}  // namespace yg::tool
