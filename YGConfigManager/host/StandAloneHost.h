// SPDX-License-Identifier: MIT
//
// A host for programs that have no application around them: everything stands under one root
// folder.
//
//   ROOT/host.json         settings, optional
//   ROOT/soft_optimize/    getSoftOptimizeConfigFilePath
//   ROOT/base_optimize/    getBaseOptimizeConfigFilePath
//   ROOT/storage/          shipped defaults of getStorageFilePath
//   ROOT/user/             the user's own copies: read before storage/, and where every write goes
//   ROOT/images/           getDefualtFolderPath
//
// host.json is one JSON object; every member is optional, null counts as missing, unknown members
// are ignored:
//
//   {
//     "rightLevel": "free",                 the user's right level
//     "configServer": "127.0.0.1:8080",     authority of the configuration download server
//     "mappings": { "KEY": { "NAME": ["TEXT", "TEXT"] } }
//   }
//
// Safe from any thread. Without memory for an answer there is none, which is logged.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "YGConfigManager/export.h"
#include "YGConfigManager/host/Host.h"
#include "YGConfigManager/text/OptionalText.h"
#include "YGConfigManager/text/OwnedText.h"

namespace yg {

struct HostSettings;

class YG_EXPORT StandAloneHost final : public Host {
public:
    /// What open() answers: true with the host, false with one line that says why there is none.
    struct Opened {
        std::shared_ptr<StandAloneHost> host;  ///< null when there is none
        std::string error;                     ///< why there is none, in one line

        /// Whether there is a host.
        explicit operator bool() const { return host != nullptr; }
    };

    /// A host on folder `root` with the settings of its host.json, which is read once, here. No
    /// host when the root is missing or no folder, or when host.json cannot be read, is not one
    /// JSON object or has a member of the wrong type; the error line then names the file, and the
    /// line and column or the member. A missing host.json is not an error. When memory runs out,
    /// the error is "out of memory".
    static Opened open(OptionalText root);

    /// The same, but there is always a host: what open() finds wrong is written to standard error,
    /// once, and no setting is set. The process's default host is made so. Null only when memory
    /// does not suffice.
    static std::shared_ptr<StandAloneHost> openOrDefaults(OptionalText root);

    /// A host on folder `root`, no setting set. Neither the folder nor host.json is looked at. An
    /// empty root is the current folder; a relative one follows the process's current folder.
    explicit StandAloneHost(OptionalText root);

    ~StandAloneHost() override;

    /// Replaces the right level of host.json, with an empty text too; absent: that of host.json
    /// again.
    void overrideUserRight(OwnedText userRight);

    /// The first of user/FILE and storage/FILE that exists and is not a folder, else user/FILE.
    /// With `isNeedWrite` always user/FILE: the folder is created if needed, and the answer is
    /// absent if that fails or the folder's name cannot be synced to the disk. The answer is also
    /// absent for an area other than 1, for a sub-folder that is not empty, and for a file name
    /// that is absent, empty, "." or "..", or that has a slash in it.
    std::optional<std::string> getStorageFilePath(std::int64_t area,
                                                  std::optional<std::string_view> subFolderPath,
                                                  std::optional<std::string_view> fileName,
                                                  bool isNeedWrite) override;

    /// As host.json or overrideUserRight() says.
    std::optional<std::string> getUserRightDescription() override;

    /// soft_optimize/FILE, whether or not it exists. Absent for a kind other than 0 and for a file
    /// name that has no location, as above.
    std::optional<std::string> getSoftOptimizeConfigFilePath(std::int64_t kind,
                                                             std::string_view fileName) override;

    /// base_optimize/FILE, absent in the same cases.
    std::optional<std::string> getBaseOptimizeConfigFilePath(std::int64_t kind,
                                                             std::string_view fileName) override;

    /// As host.json says; null for a key that it does not have.
    std::shared_ptr<const MappingDic> getMappingDicForKey(std::string_view key) override;

    /// The folder images/ for kind 4, whether or not it exists; absent for any other kind.
    std::optional<std::string> getDefualtFolderPath(std::int64_t kind) override;

    /// As host.json says; an empty text counts as missing.
    std::optional<std::string> configServer() override;

    /// Writes the message as one line to standard error, the same for both channels: no time stamp,
    /// control characters turned into blanks.
    void writeLog(LogChannel channel, std::string_view message) override;

private:
    static Opened tryToOpen(std::string_view root);

    /// The settings in file `path`, or null and `error` set.
    static std::shared_ptr<const HostSettings> readSettings(const std::string& path,
                                                            std::string& error);

    const std::string root_;
    /// Set before the host is handed out, never changed; null for none.
    std::shared_ptr<const HostSettings> settings_;
    std::atomic<bool> userFolderIsSafe_ = false;  // made, and its name on the disk
    std::optional<std::string> userRightOverride_;
};

}  // namespace yg
