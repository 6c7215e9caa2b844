// SPDX-License-Identifier: MIT
#include "ygconfig/Commands.h"
#include "ygconfig/Json.h"
#include "ygconfig/Settings.h"

namespace yg::tool {

Answer dumpRequestUrls(const Session& session) {
    std::string complaint;
    const auto manager = loadRequestUrls(session.arguments, complaint);
    return jsonAnswer(manager->urlModel());
}

}  // namespace yg::tool
