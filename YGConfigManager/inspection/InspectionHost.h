// SPDX-License-Identifier: MIT
//
// The host of an inspection: the files of a root, seen as each kind of user sees them. Internal.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "YGConfigManager/host/Host.h"
#include "YGConfigManager/host/StandAloneHost.h"

namespace yg {

/// Why nothing can be loaded from a folder, in one line; "" when it can.
std::string whyNoRoot(const std::string& folder);

class InspectionHost final : public Host {
public:
    /// Takes the settings of host.json if it can be used.
    explicit InspectionHost(std::string root);

    const std::string& root() const { return root_; }

    /// Which files of the storage are seen.
    enum class Storage { asUsed, shipped, user };
    void see(Storage storage) { storage_ = storage; }
    void setUserRight(std::string right) { userRight_ = std::move(right); }

    std::optional<std::string> getStorageFilePath(std::int64_t area,
                                                  std::optional<std::string_view> subFolderPath,
                                                  std::optional<std::string_view> fileName,
                                                  bool isNeedWrite) override;
    std::optional<std::string> getUserRightDescription() override;
    std::optional<std::string> getSoftOptimizeConfigFilePath(std::int64_t kind,
                                                             std::string_view fileName) override;
    std::optional<std::string> getBaseOptimizeConfigFilePath(std::int64_t kind,
                                                             std::string_view fileName) override;
    std::shared_ptr<const MappingDic> getMappingDicForKey(std::string_view key) override;
    std::optional<std::string> getDefualtFolderPath(std::int64_t kind) override;
    /// Everything that is worth saying becomes a finding, but for one thing.
    void writeLog(LogChannel channel, std::string_view message) override;

    /// Whether memory did not suffice, here or in a loader: what that gave lacks something then.
    bool isOutOfMemory() const { return isOutOfMemory_; }

private:
    auto noted(const auto& answer);

    const std::string root_;
    std::shared_ptr<StandAloneHost> files_;
    Storage storage_ = Storage::asUsed;
    std::string userRight_;
    bool isOutOfMemory_ = false;
};

}  // namespace yg
