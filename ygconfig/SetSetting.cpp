// SPDX-License-Identifier: MIT
#include <memory>

#include "YGConfigManager/settings/YGAppConfigManager.h"
#include "YGConfigManager/settings/YGReadonlyAppConfigManager.h"

#include "ygconfig/Commands.h"
#include "ygconfig/Json.h"

namespace yg::tool {

Answer setSetting(const Session& session) {
    const Arguments& arguments = session.arguments;
    std::shared_ptr<YGAppConfigManager> store;
    if (arguments.readonly)
        store = YGReadonlyAppConfigManager::initWithFileName(arguments.file);
    else
        store = YGAppConfigManager::initWithFileName(arguments.file);
    if (!store)
        return jsonAnswer(nullptr);
    return jsonAnswer(store->setConfigItem(arguments.section, arguments.item, arguments.description,
                                           arguments.text));
}

}  // namespace yg::tool
