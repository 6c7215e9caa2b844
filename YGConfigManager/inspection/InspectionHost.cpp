// SPDX-License-Identifier: MIT
#include "YGConfigManager/inspection/InspectionHost.h"

#include <filesystem>
#include <new>
#include <system_error>
#include <utility>

#include "YGConfigManager/files/ReadFile.h"
#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/text/Paths.h"

namespace yg {

std::string whyNoRoot(const std::string& folder) {
    std::error_code failure;
    if (folder.find('\0') == std::string::npos && std::filesystem::is_directory(folder, failure))
        return "";
    return "root folder \"" + folder + "\": " +
           (failure ? failure : std::make_error_code(std::errc::not_a_directory)).message();
}

InspectionHost::InspectionHost(std::string root) : root_(std::move(root)) {
    const StandAloneHost::Opened opened = StandAloneHost::open(root_);
    files_ = opened ? opened.host : std::make_shared<StandAloneHost>(root_);
}

void InspectionHost::writeLog(LogChannel /*channel*/, std::string_view message) {
    isOutOfMemory_ = isOutOfMemory_ || message.ends_with(outOfMemory);
}

/// The library takes a host that throws for one that has no answer.
auto InspectionHost::noted(const auto& answer) {
    try {
        return answer();
    } catch (const std::bad_alloc&) {
        isOutOfMemory_ = true;
        throw;
    }
}

/// Nothing is written by an inspection, so there is never a path for that.
std::optional<std::string> InspectionHost::getStorageFilePath(
    std::int64_t area, std::optional<std::string_view> subFolderPath,
    std::optional<std::string_view> fileName, bool isNeedWrite) {
    if (isNeedWrite)
        return std::nullopt;
    return noted([&]() -> std::optional<std::string> {
        auto path = files_->getStorageFilePath(area, subFolderPath, fileName, false);
        if (!path || storage_ == Storage::asUsed)
            return path;
        path = text::joinPath(text::joinPath(root_, storage_ == Storage::user ? "user" : "storage"),
                              *fileName);
        // The user has copies of few files.
        return storage_ == Storage::shipped || files::fileExists(*path) ? path : std::nullopt;
    });
}

std::optional<std::string> InspectionHost::getUserRightDescription() {
    return noted([&] { return userRight_; });
}

std::optional<std::string> InspectionHost::getSoftOptimizeConfigFilePath(
    std::int64_t kind, std::string_view fileName) {
    return noted([&] { return files_->getSoftOptimizeConfigFilePath(kind, fileName); });
}

std::optional<std::string> InspectionHost::getBaseOptimizeConfigFilePath(
    std::int64_t kind, std::string_view fileName) {
    return noted([&] { return files_->getBaseOptimizeConfigFilePath(kind, fileName); });
}

std::shared_ptr<const MappingDic> InspectionHost::getMappingDicForKey(std::string_view key) {
    return noted([&] { return files_->getMappingDicForKey(key); });
}

std::optional<std::string> InspectionHost::getDefualtFolderPath(std::int64_t kind) {
    return noted([&] { return files_->getDefualtFolderPath(kind); });
}

}  // namespace yg
