// SPDX-License-Identifier: MIT
#include "YGConfigManager/host/YGFrameComFun.h"

#include "ygconfig/Commands.h"
#include "ygconfig/Servers.h"
#include "ygconfig/Settings.h"
#include "ygconfig/SettingsView.h"
#include "ygconfig/UnreadableFiles.h"

namespace yg::tool {

Answer showRequestUrls(const Session& session) {
    UnreadableFiles unreadable;
    const auto manager = loadRequestUrls(&unreadable);
    std::string complaint = refreshRequestUrls(*manager, session.arguments);
    if (complaint.empty())
        complaint = unreadable.complaint();
    const auto path = withoutRoot(
        session.arguments,
        YGFrameComFun::getStorageFilePath(1, std::nullopt, "request_urls_json.txt", false));
    return {SettingsView(session.colour).requestUrls(manager->urlModel(), path.value_or("")),
            ExitCode::answer, complaint};
}

}  // namespace yg::tool
