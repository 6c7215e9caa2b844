// SPDX-License-Identifier: MIT
//
// A host for tests: it answers what its fields say and records every question and every log
// message. Set the fields before other threads ask; everything else is safe from any thread.
//
//   yg::testing::ScopedHost host;                       // installed until the end of the scope
//   host->storageReadFolder = folder;
//   …
//   EXPECT_THAT(host->runtimeLog(), ElementsAre("load style config fail:…"));
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "YGConfigManager/host/Host.h"
#include "YGConfigManager/text/Format.h"
#include "YGConfigManager/text/Paths.h"

namespace yg::testing {

struct LogLine {
    LogChannel channel;
    std::string message;

    friend bool operator==(const LogLine&, const LogLine&) = default;
};

class RecordingHost : public Host {
public:
    // Folders in which files are placed; an absent one answers no path for any file.
    std::optional<std::string> storageReadFolder;
    std::optional<std::string> storageWriteFolder;
    std::optional<std::string> softOptimizeFolder;
    std::optional<std::string> baseOptimizeFolder;

    /// Whole paths by file name; they go before the folders, an absent one means no location.
    std::map<std::string, std::optional<std::string>, std::less<>> paths;

    /// Folder paths by kind.
    std::map<std::int64_t, std::string> defualtFolders;

    std::optional<std::string> userRight;
    std::optional<std::string> server;

    /// Mapping tables by key.
    std::map<std::string, MappingDic, std::less<>> mappings;

    /// The main queue; null for the process's one.
    std::shared_ptr<MainQueue> queue;

    /// Every message in the order in which it came.
    std::vector<LogLine> log() const {
        const std::lock_guard lock(mutex_);
        return log_;
    }

    std::vector<std::string> runtimeLog() const { return messagesOf(LogChannel::runtime); }
    std::vector<std::string> businessLog() const { return messagesOf(LogChannel::business); }

    /// Every question in the order in which it came, as "getStorageFilePath(1, (null), a.xml, 0)".
    std::vector<std::string> questions() const {
        const std::lock_guard lock(mutex_);
        return questions_;
    }

    /// Forgets what was recorded, not what is answered.
    void clear() {
        const std::lock_guard lock(mutex_);
        log_.clear();
        questions_.clear();
    }

    std::optional<std::string> getStorageFilePath(std::int64_t area,
                                                  std::optional<std::string_view> subFolderPath,
                                                  std::optional<std::string_view> fileName,
                                                  bool isNeedWrite) override {
        record(text::format("getStorageFilePath(%ld, %@, %@, %d)", area, subFolderPath, fileName,
                            isNeedWrite));
        return pathOf(isNeedWrite ? storageWriteFolder : storageReadFolder, fileName.value_or(""));
    }

    std::optional<std::string> getUserRightDescription() override {
        record("getUserRightDescription()");
        return userRight;
    }

    std::optional<std::string> getSoftOptimizeConfigFilePath(std::int64_t kind,
                                                             std::string_view fileName) override {
        record(text::format("getSoftOptimizeConfigFilePath(%ld, %@)", kind, fileName));
        return pathOf(softOptimizeFolder, fileName);
    }

    std::optional<std::string> getBaseOptimizeConfigFilePath(std::int64_t kind,
                                                             std::string_view fileName) override {
        record(text::format("getBaseOptimizeConfigFilePath(%ld, %@)", kind, fileName));
        return pathOf(baseOptimizeFolder, fileName);
    }

    std::shared_ptr<const MappingDic> getMappingDicForKey(std::string_view key) override {
        record(text::format("getMappingDicForKey(%@)", key));
        const auto found = mappings.find(key);
        return found == mappings.end() ? nullptr : std::make_shared<MappingDic>(found->second);
    }

    std::optional<std::string> getDefualtFolderPath(std::int64_t kind) override {
        record(text::format("getDefualtFolderPath(%ld)", kind));
        const auto found = defualtFolders.find(kind);
        return found == defualtFolders.end() ? std::nullopt : std::optional(found->second);
    }

    std::optional<std::string> configServer() override {
        record("configServer()");
        return server;
    }

    void writeLog(LogChannel channel, std::string_view message) override {
        const std::lock_guard lock(mutex_);
        log_.push_back({channel, std::string(message)});
    }

    std::shared_ptr<MainQueue> mainQueue() override {
        record("mainQueue()");
        return queue;
    }

private:
    void record(std::string question) {
        const std::lock_guard lock(mutex_);
        questions_.push_back(std::move(question));
    }

    std::optional<std::string> pathOf(const std::optional<std::string>& folder,
                                      std::string_view fileName) const {
        if (const auto found = paths.find(fileName); found != paths.end())
            return found->second;
        if (!folder || fileName.empty())
            return std::nullopt;
        return text::joinPath(*folder, fileName);
    }

    std::vector<std::string> messagesOf(LogChannel channel) const {
        const std::lock_guard lock(mutex_);
        std::vector<std::string> messages;
        for (const LogLine& line : log_) {
            if (line.channel == channel)
                messages.push_back(line.message);
        }
        return messages;
    }

    mutable std::mutex mutex_;
    std::vector<LogLine> log_;
    std::vector<std::string> questions_;
};

/// Makes a host, installs it, and brings the host before it back at the end of the scope.
template <class HostType = RecordingHost>
class ScopedHost {
public:
    template <class... Args>
    explicit ScopedHost(Args&&... args)
        : host_(std::make_shared<HostType>(std::forward<Args>(args)...)),
          previous_(setHost(host_)) {}

    ScopedHost(const ScopedHost&) = delete;
    ScopedHost& operator=(const ScopedHost&) = delete;
    ~ScopedHost() { setHost(previous_); }

    HostType* operator->() const { return host_.get(); }
    HostType& operator*() const { return *host_; }
    const std::shared_ptr<HostType>& get() const { return host_; }

private:
    std::shared_ptr<HostType> host_;
    std::shared_ptr<Host> previous_;
};

}  // namespace yg::testing
