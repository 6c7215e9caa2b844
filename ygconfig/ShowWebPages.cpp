// SPDX-License-Identifier: MIT
#include "YGConfigManager/settings/YGWebPageUrlConfig.h"

#include "ygconfig/Commands.h"
#include "ygconfig/Display.h"
#include "ygconfig/Servers.h"
#include "ygconfig/SettingsView.h"
#include "ygconfig/UnreadableFiles.h"

namespace yg::tool {

Answer showWebPages(const Session& session) {
    UnreadableFiles unreadable;
    const std::string file = session.arguments.key.value_or("web_page_urls.xml");
    const auto table = YGWebPageUrlConfig::initWithFileName(file, &unreadable);
    if (!table)
        return {"", ExitCode::noAnswer, "ygconfig: there is no path for '" + printable(file) + "'"};
    const auto path = withoutRoot(session.arguments, YGWebPageUrlConfig::getFilePath(file, false));
    return {SettingsView(session.colour).webPages(table->docment(), path.value_or("")),
            ExitCode::answer, unreadable.complaint()};
}

}  // namespace yg::tool
