// SPDX-License-Identifier: MIT
#include <memory>

#include "YGConfigManager/settings/YGAppConfigManager.h"
#include "YGConfigManager/settings/YGReadonlyAppConfigManager.h"

#include "ygconfig/Commands.h"
#include "ygconfig/Json.h"
#include "ygconfig/NothingStored.h"
#include "ygconfig/Settings.h"

namespace yg::tool {

Answer setSetting(const Session& session) {
    const Arguments& arguments = session.arguments;
    NothingStored nothing;
    std::shared_ptr<YGAppConfigManager> store;
    if (arguments.readonly)
        store = YGReadonlyAppConfigManager::initWithFileName(arguments.file);
    else
        store =
            YGAppConfigManager::initWithFileName(arguments.file, &nothing, OtherWriters::merged);
    if (!store)
        return withoutStore(arguments.file);
    Answer answer = jsonAnswer(store->setConfigItem(arguments.section, arguments.item,
                                                    arguments.description, arguments.text));
    answer.complaint = arguments.readonly ? "ygconfig: nothing was stored: --readonly was given"
                                          : nothing.complaint();
    return answer;
}

}  // namespace yg::tool
