// SPDX-License-Identifier: MIT
//
// Settings that the application may read but never changes.
#pragma once

#include <memory>
#include <optional>
#include <string_view>

#include "YGConfigManager/settings/YGAppConfigManager.h"
#include "YGConfigManager/text/OptionalText.h"

namespace yg {

class YG_EXPORT YGReadonlyAppConfigManager : public YGAppConfigManager {
public:
    /// A store that reads like YGAppConfigManager, and null when that is.
    static std::shared_ptr<YGReadonlyAppConfigManager> initWithFileName(
        OptionalText fileName, DiagnosticsSink* sink = nullptr);

    /// Always null: a store needs a file name.
    [[deprecated("answers null always: call initWithFileName")]] static std::shared_ptr<
        YGReadonlyAppConfigManager>
    init() {
        return nullptr;
    }

    ~YGReadonlyAppConfigManager() override;

    /// Always false; store and file stay as they are.
    bool setConfigItem(OptionalText section, OptionalText itemName, OptionalText itemDescription,
                       OptionalText itemText) override;

private:
    using YGAppConfigManager::YGAppConfigManager;
};

}  // namespace yg
