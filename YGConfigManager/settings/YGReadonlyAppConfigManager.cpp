// SPDX-License-Identifier: MIT
#include "YGConfigManager/settings/YGReadonlyAppConfigManager.h"

#include "YGConfigManager/host/Guarded.h"

namespace yg {

YGReadonlyAppConfigManager::~YGReadonlyAppConfigManager() = default;

std::shared_ptr<YGReadonlyAppConfigManager> YGReadonlyAppConfigManager::initWithFileName(
    OptionalText fileName, DiagnosticsSink* sink) {
    return guarded("load app config", [&]() -> std::shared_ptr<YGReadonlyAppConfigManager> {
        const auto path = pathToRead(fileName);
        if (!path)
            return nullptr;
        return std::shared_ptr<YGReadonlyAppConfigManager>(
            new YGReadonlyAppConfigManager(*fileName, *path, sink));
    });
}

bool YGReadonlyAppConfigManager::setConfigItem(OptionalText, OptionalText, OptionalText,
                                               OptionalText) {
    return false;
}

}  // namespace yg
