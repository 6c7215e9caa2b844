// SPDX-License-Identifier: MIT
#include "YGConfigManager/settings/YGReadonlyAppConfigManager.h"

#include "YGConfigManager/host/Guarded.h"

namespace yg {

YGReadonlyAppConfigManager::~YGReadonlyAppConfigManager() = default;

std::shared_ptr<YGReadonlyAppConfigManager> YGReadonlyAppConfigManager::initWithFileName(
    std::optional<std::string_view> fileName, DiagnosticsSink* sink) {
    return guarded("load app config", [&]() -> std::shared_ptr<YGReadonlyAppConfigManager> {
        const auto path = pathToRead(fileName);
        if (!path)
            return nullptr;
        return std::shared_ptr<YGReadonlyAppConfigManager>(
            new YGReadonlyAppConfigManager(*fileName, *path, sink));
    });
}

bool YGReadonlyAppConfigManager::setConfigItem(const std::optional<std::string_view>&,
                                               const std::optional<std::string_view>&,
                                               const std::optional<std::string_view>&,
                                               const std::optional<std::string_view>&) {
    return false;
}

}  // namespace yg
