// SPDX-License-Identifier: MIT
#include "YGConfigManager/host/YGFrameComFun.h"

#include "ygconfig/Commands.h"
#include "ygconfig/Servers.h"
#include "ygconfig/Settings.h"
#include "ygconfig/SettingsView.h"

namespace yg::tool {

Answer showRequestUrls(const Session& session) {
    std::string complaint;
    const auto manager = loadRequestUrls(session.arguments, complaint);
    const auto path = withoutRoot(
        session.arguments,
        YGFrameComFun::getStorageFilePath(1, std::nullopt, "request_urls_json.txt", false));
    return {SettingsView(session.colour).requestUrls(manager->urlModel(), path.value_or("")),
            ExitCode::answer, complaint};
}

}  // namespace yg::tool
