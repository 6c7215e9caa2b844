// SPDX-License-Identifier: MIT
#include "ygconfig/Commands.h"
#include "ygconfig/Servers.h"
#include "ygconfig/ServersView.h"
#include "ygconfig/UnreadableFiles.h"

namespace yg::tool {

Answer showServers(const Session& session) {
    UnreadableFiles unreadable;
    const auto loader = loadServers(session.arguments, &unreadable);
    if (!loader)
        return {"", ExitCode::noAnswer, "ygconfig: there is no path for the server file"};
    const auto shownPath = withoutRoot(session.arguments, loader->configPath());
    return {ServersView(*loader, session.colour).servers(shownPath.value_or("")), ExitCode::answer,
            unreadable.complaint()};
}

}  // namespace yg::tool
