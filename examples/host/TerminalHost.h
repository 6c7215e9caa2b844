// SPDX-License-Identifier: MIT
//
// What this application tells the library: where its files are, who is logged in, which server has
// new lists, and where log lines go.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "YGConfigManager/host/Host.h"

namespace terminal {

/// The library calls a host from any thread, several at a time. What never changes needs no lock;
/// the right level changes with each login and has one.
class TerminalHost final : public yg::Host {
public:
    /// `root` is the folder that was installed with the application. `configServer` is "HOST:PORT"
    /// of the server that has the list of request URLs; without one nothing is downloaded.
    TerminalHost(std::string root, std::optional<std::string> configServer);

    /// Called at each login. Load the servers again afterwards.
    void setUserRight(std::string right);

    std::optional<std::string> getStorageFilePath(std::int64_t area,
                                                  std::optional<std::string_view> subFolderPath,
                                                  std::optional<std::string_view> fileName,
                                                  bool isNeedWrite) override;
    std::optional<std::string> getUserRightDescription() override;
    std::optional<std::string> getSoftOptimizeConfigFilePath(std::int64_t kind,
                                                             std::string_view fileName) override;
    std::optional<std::string> getBaseOptimizeConfigFilePath(std::int64_t kind,
                                                             std::string_view fileName) override;
    std::shared_ptr<const yg::MappingDic> getMappingDicForKey(std::string_view key) override;
    std::optional<std::string> getDefualtFolderPath(std::int64_t kind) override;
    std::optional<std::string> configServer() override;
    void writeLog(yg::LogChannel channel, std::string_view message) override;
    void writeLogLine(yg::LogChannel channel, yg::LogSeverity severity,
                      std::string_view message) override;

private:
    const std::string root_;
    const std::optional<std::string> configServer_;
    const std::shared_ptr<const yg::MappingDic> wildcards_;
    std::mutex mutex_;
    std::string userRight_ = "free";  // guarded by mutex_
};

}  // namespace terminal
