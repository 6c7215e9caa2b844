// SPDX-License-Identifier: MIT
#include "YGConfigManager/settings/YGReadonlyAppConfigManager.h"

#include "ygconfig/Commands.h"
#include "ygconfig/Json.h"

namespace yg::tool {

Answer getSetting(const Session& session) {
    const Arguments& arguments = session.arguments;
    const auto store = YGReadonlyAppConfigManager::initWithFileName(arguments.file);
    if (!store)
        return jsonAnswer(nullptr);
    return jsonAnswer(store->getItemText(arguments.section, arguments.item));
}

}  // namespace yg::tool
