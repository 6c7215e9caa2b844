// SPDX-License-Identifier: MIT
#include <cstring>
#include <string>

#include "ygconfig/Commands.h"
#include "ygconfig/Display.h"
#include "ygconfig/Input.h"
#include "ygconfig/Json.h"
#include "ygconfig/Servers.h"

namespace yg::tool {

Answer deliverServers(const Session& session) {
    const Arguments& arguments = session.arguments;
    std::string bytes;
    if (const int error = readInput(arguments.data, bytes); error != 0)
        return {"", ExitCode::unusable,
                "ygconfig servers deliver: \"" + printable(arguments.data) +
                    "\": " + std::strerror(error)};
    const auto loader = loadServers(arguments);
    if (!loader)
        return jsonAnswer(nullptr);
    return jsonAnswer(loader->reloadServerConfigWithData(bytes, arguments.md5));
}

}  // namespace yg::tool
