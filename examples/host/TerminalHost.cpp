// SPDX-License-Identifier: MIT
#include "TerminalHost.h"

#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

namespace terminal {

TerminalHost::TerminalHost(std::string root, std::optional<std::string> configServer)
    : root_(std::move(root)),
      configServer_(std::move(configServer)),
      wildcards_(std::make_shared<const yg::MappingDic>(yg::MappingDic{
          {"STOCK", {"SH990001", "SH990002", "SZ990101"}},
          {"CONTRACT", {"XA2601", "XC2605"}},
      })) {}

void TerminalHost::setUserRight(std::string right) {
    const std::lock_guard lock(mutex_);
    userRight_ = std::move(right);
}

std::optional<std::string> TerminalHost::getUserRightDescription() {
    const std::lock_guard lock(mutex_);
    return userRight_;
}

// Files that change at run time: a user's own copy goes before the one that was installed. Writes
// always go to the user's folder, so the installed files stay as they are.
std::optional<std::string> TerminalHost::getStorageFilePath(
    std::int64_t /*area*/, std::optional<std::string_view> /*subFolderPath*/,
    std::optional<std::string_view> fileName, bool isNeedWrite) {
    if (!fileName || fileName->empty() || fileName->find('/') != std::string_view::npos)
        return std::nullopt;
    const std::string folder = root_ + "/user";
    const std::string own = folder + "/" + std::string(*fileName);
    std::error_code error;
    if (isNeedWrite) {
        std::filesystem::create_directories(folder, error);
        return error ? std::nullopt : std::optional(own);
    }
    if (std::filesystem::is_regular_file(own, error))
        return own;
    return root_ + "/storage/" + std::string(*fileName);
}

std::optional<std::string> TerminalHost::getSoftOptimizeConfigFilePath(std::int64_t /*kind*/,
                                                                       std::string_view fileName) {
    return root_ + "/soft_optimize/" + std::string(fileName);
}

std::optional<std::string> TerminalHost::getBaseOptimizeConfigFilePath(std::int64_t /*kind*/,
                                                                       std::string_view fileName) {
    return root_ + "/base_optimize/" + std::string(fileName);
}

std::optional<std::string> TerminalHost::getDefualtFolderPath(std::int64_t /*kind*/) {
    return root_ + "/images";
}

// The lists that custom pages take their values from. A real application has them from its data;
// when they change it answers another object.
std::shared_ptr<const yg::MappingDic> TerminalHost::getMappingDicForKey(std::string_view key) {
    return key == "模版通配" ? wildcards_ : nullptr;
}

std::optional<std::string> TerminalHost::configServer() {
    return configServer_;
}

// The library calls writeLogLine alone; writeLog has to be there as well.
void TerminalHost::writeLog(yg::LogChannel channel, std::string_view message) {
    writeLogLine(channel, yg::LogSeverity::info, message);
}

// Never call back into a loader from here: some of them log under a lock.
void TerminalHost::writeLogLine(yg::LogChannel channel, yg::LogSeverity severity,
                                std::string_view message) {
    if (severity == yg::LogSeverity::info)
        return;
    const char* const log = channel == yg::LogChannel::business ? "business" : "runtime";
    const char* const level = severity == yg::LogSeverity::error ? "error" : "warning";
    std::fprintf(stderr, "%s %s: %.*s\n", log, level, static_cast<int>(message.size()),
                 message.data());
}

}  // namespace terminal
