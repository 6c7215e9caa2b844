// SPDX-License-Identifier: MIT
#include <cstring>
#include <string>

#include "ygconfig/Commands.h"
#include "ygconfig/Display.h"
#include "ygconfig/Input.h"
#include "ygconfig/Json.h"
#include "ygconfig/NothingStored.h"
#include "ygconfig/Servers.h"

namespace yg::tool {

Answer deliverServers(const Session& session) {
    const Arguments& arguments = session.arguments;
    std::string bytes;
    if (const int error = readInput(arguments.data, bytes); error != 0)
        return {"", ExitCode::unusable,
                "ygconfig servers deliver: \"" + printable(arguments.data) +
                    "\": " + std::strerror(error)};
    NothingStored nothing(arguments.data == "-" ? "standard input" : arguments.data);
    const auto loader = loadServers(arguments, &nothing);
    if (!loader)
        return jsonAnswer(nullptr);
    Answer answer = jsonAnswer(loader->reloadServerConfigWithData(bytes, arguments.md5));
    answer.complaint = nothing.complaint();
    return answer;
}

}  // namespace yg::tool
