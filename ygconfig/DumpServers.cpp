// SPDX-License-Identifier: MIT
#include "ygconfig/Commands.h"
#include "ygconfig/Json.h"
#include "ygconfig/Servers.h"

namespace yg::tool {

Answer dumpServers(const Session& session) {
    const auto loader = loadServers(session.arguments);
    Json json = toJson(loader);
    if (loader)
        json["configPath"] = toJson(withoutRoot(session.arguments, loader->configPath()));
    return jsonAnswer(json);
}

}  // namespace yg::tool
