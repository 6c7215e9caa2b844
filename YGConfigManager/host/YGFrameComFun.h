// SPDX-License-Identifier: MIT
//
// The class operations by which the library asks its host. Each forwards to the current host
// (Host.h), which documents arguments and answers, and answers nothing when that one throws. Safe
// from any thread.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "YGConfigManager/export.h"
#include "YGConfigManager/host/Host.h"
#include "YGConfigManager/text/OptionalText.h"

namespace yg {

class YG_EXPORT YGFrameComFun {
public:
    YGFrameComFun() = delete;

    /// The path of a file in the user's storage, see Host::getStorageFilePath.
    static std::optional<std::string> getStorageFilePath(std::int64_t area,
                                                         OptionalText subFolderPath,
                                                         OptionalText fileName,
                                                         bool isNeedWrite) noexcept;

    /// The user's right level, see Host::getUserRightDescription.
    static std::optional<std::string> getUserRightDescription() noexcept;

    /// The path of a file in the software's configuration folder, see
    /// Host::getSoftOptimizeConfigFilePath.
    static std::optional<std::string> getSoftOptimizeConfigFilePath(std::int64_t kind,
                                                                    OptionalText fileName) noexcept;

    /// The path of a file in the base configuration folder, see
    /// Host::getBaseOptimizeConfigFilePath.
    static std::optional<std::string> getBaseOptimizeConfigFilePath(std::int64_t kind,
                                                                    OptionalText fileName) noexcept;

    /// The mapping table `key`, null when there is none, see Host::getMappingDicForKey.
    static std::shared_ptr<const MappingDic> getMappingDicForKey(OptionalText key) noexcept;

    /// The path of a folder, see Host::getDefualtFolderPath (the name is spelt so in the
    /// interface).
    static std::optional<std::string> getDefualtFolderPath(std::int64_t kind) noexcept;
};

}  // namespace yg
