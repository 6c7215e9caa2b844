// SPDX-License-Identifier: MIT
#include "YGConfigManager/host/StandAloneHost.h"

#include <cerrno>
#include <mutex>
#include <sys/stat.h>
#include <system_error>
#include <utility>

#include "YGConfigManager/files/MakeFolder.h"
#include "YGConfigManager/files/ReadFile.h"
#include "YGConfigManager/files/UnsavedTexts.h"
#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/host/HostSettings.h"
#include "YGConfigManager/host/JsonValue.h"
#include "YGConfigManager/host/Log.h"
#include "YGConfigManager/process/ForkMutex.h"
#include "YGConfigManager/text/Format.h"
#include "YGConfigManager/text/Paths.h"

namespace yg {

namespace {

constexpr std::int64_t storageArea = 1;
constexpr std::int64_t configKind = 0;
constexpr std::int64_t imagesKind = 4;

/// Guards the replaced right levels of all hosts.
constinit ForkMutex overriding;

std::string systemError(int code) {
    return std::generic_category().message(code);
}

/// Whether something is at the path that can be read as a file.
bool isFile(const std::string& path) {
    struct stat state {};
    return files::unsavedText(path) ||
           (::stat(path.c_str(), &state) == 0 && !S_ISDIR(state.st_mode));
}

bool isFolder(const std::string& path) {
    struct stat state {};
    return ::stat(path.c_str(), &state) == 0 && S_ISDIR(state.st_mode);
}

/// The file's path in the folder of the root, if the name cannot lead out of it.
std::optional<std::string> pathInFolder(const std::string& root, std::string_view folder,
                                        std::string_view fileName) {
    if (!text::isPlainFileName(fileName))
        return std::nullopt;
    return text::joinPath(text::joinPath(root, folder), fileName);
}

/// The host's answer to a question; absent when memory does not suffice.
template <class Find>
std::optional<std::string> answer(Find find) noexcept {
    return guarded("host answer", find);
}

}  // namespace

std::shared_ptr<const HostSettings> StandAloneHost::readSettings(const std::string& path,
                                                                 std::string& error) {
    const std::optional<files::FileReading> file = readHostFile(path);
    if (!file)
        return std::make_shared<HostSettings>();
    if (!*file) {
        error = file->error;
        return nullptr;
    }
    const auto failed = [&](std::string_view what) {
        error = text::format("%@: %@", path, what);
        return nullptr;
    };
    const JsonValue::Parsed parsed = orOutOfMemory(JsonValue::parse(file->bytes));
    if (!parsed)
        return failed(parsed.error);
    const auto object = parsed.value->object();
    if (!object)
        return failed("line 1, column 1: not a JSON object");
    std::vector<WrongHostSetting> wrong;
    auto settings = std::make_shared<HostSettings>(readHostSettings(*object, wrong));
    return wrong.empty() ? settings : failed(wrong.front().error);
}

// Neither of these two logs what is thrown: the log's own host is made here.
StandAloneHost::Opened StandAloneHost::open(OptionalText root) {
    try {
        return tryToOpen(*root);
    } catch (const std::bad_alloc&) {
        return {nullptr, std::string(outOfMemory)};
    }
}

StandAloneHost::Opened StandAloneHost::tryToOpen(std::string_view root) {
    const std::string folder(root);
    struct stat state {};
    // A NUL byte would cut the path short, and another folder be meant.
    const bool isPath = folder.find('\0') == std::string::npos;
    if (!isPath || ::stat(folder.c_str(), &state) != 0) {
        return {nullptr, text::format(R"(root folder "%@": %@)", folder,
                                      systemError(isPath ? errno : EINVAL))};
    }
    if (!S_ISDIR(state.st_mode))
        return {nullptr, text::format(R"(root folder "%@": %@)", folder, systemError(ENOTDIR))};
    std::string error;
    std::shared_ptr<const HostSettings> settings =
        readSettings(text::joinPath(folder, "host.json"), error);
    if (!settings)
        return {nullptr, error};
    Opened opened{std::make_shared<StandAloneHost>(root), {}};
    opened.host->settings_ = std::move(settings);
    return opened;
}

std::shared_ptr<StandAloneHost> StandAloneHost::openOrDefaults(OptionalText root) {
    Opened opened = open(root);
    if (opened)
        return opened.host;
    writeSystemConsole("%@", opened.error);
    try {
        return opened.error == outOfMemory ? nullptr : std::make_shared<StandAloneHost>(root);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

StandAloneHost::StandAloneHost(OptionalText root) : root_(*root) {}

StandAloneHost::~StandAloneHost() = default;

void StandAloneHost::overrideUserRight(OwnedText userRight) {
    const std::lock_guard lock(overriding);
    userRightOverride_ = std::move(userRight);
}

std::optional<std::string> StandAloneHost::getStorageFilePath(
    std::int64_t area, std::optional<std::string_view> subFolderPath,
    std::optional<std::string_view> fileName, bool isNeedWrite) {
    if (area != storageArea || !subFolderPath.value_or("").empty())
        return std::nullopt;
    return answer([&]() -> std::optional<std::string> {
        std::optional<std::string> userCopy = pathInFolder(root_, "user", fileName.value_or(""));
        if (!userCopy)
            return std::nullopt;
        if (isNeedWrite) {
            const std::string folder = text::joinPath(root_, "user");
            if (!userFolderIsSafe_ || !isFolder(folder))
                userFolderIsSafe_ = files::makeFolder(folder);
            return userFolderIsSafe_ ? userCopy : std::nullopt;
        }
        if (isFile(*userCopy))
            return userCopy;
        std::optional<std::string> shipped = pathInFolder(root_, "storage", *fileName);
        return isFile(*shipped) ? shipped : userCopy;
    });
}

std::optional<std::string> StandAloneHost::getUserRightDescription() {
    return answer([&] {
        const std::lock_guard lock(overriding);
        return userRightOverride_ || !settings_ ? userRightOverride_ : settings_->rightLevel;
    });
}

std::optional<std::string> StandAloneHost::getSoftOptimizeConfigFilePath(
    std::int64_t kind, std::string_view fileName) {
    return answer([&] {
        return kind == configKind ? pathInFolder(root_, "soft_optimize", fileName) : std::nullopt;
    });
}

std::optional<std::string> StandAloneHost::getBaseOptimizeConfigFilePath(
    std::int64_t kind, std::string_view fileName) {
    return answer([&] {
        return kind == configKind ? pathInFolder(root_, "base_optimize", fileName) : std::nullopt;
    });
}

std::shared_ptr<const MappingDic> StandAloneHost::getMappingDicForKey(std::string_view key) {
    if (!settings_)
        return nullptr;
    const auto found = settings_->mappings.find(key);
    return found == settings_->mappings.end() ? nullptr : found->second;
}

std::optional<std::string> StandAloneHost::getDefualtFolderPath(std::int64_t kind) {
    return answer([&] {
        return kind == imagesKind ? std::optional(text::joinPath(root_, "images")) : std::nullopt;
    });
}

std::optional<std::string> StandAloneHost::configServer() {
    return answer([&] { return settings_ ? settings_->configServer : std::nullopt; });
}

void StandAloneHost::writeLog(LogChannel /*channel*/, std::string_view message) {
    writeConsoleLine(message);
}

}  // namespace yg
