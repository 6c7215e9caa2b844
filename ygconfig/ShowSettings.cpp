// SPDX-License-Identifier: MIT
#include "YGConfigManager/settings/YGReadonlyAppConfigManager.h"

#include "ygconfig/Commands.h"
#include "ygconfig/Display.h"
#include "ygconfig/Servers.h"
#include "ygconfig/SettingsView.h"
#include "ygconfig/UnreadableFiles.h"

namespace yg::tool {

Answer showSettings(const Session& session) {
    UnreadableFiles unreadable;
    const std::string file = session.arguments.key.value_or("app_config.xml");
    const auto store = YGReadonlyAppConfigManager::initWithFileName(file, &unreadable);
    if (!store)
        return {"", ExitCode::noAnswer, "ygconfig: there is no path for '" + printable(file) + "'"};
    const auto path =
        withoutRoot(session.arguments, YGReadonlyAppConfigManager::getFilePath(file, false));
    return {SettingsView(session.colour).settings(store->docment(), path.value_or("")),
            ExitCode::answer, unreadable.complaint()};
}

}  // namespace yg::tool
