// SPDX-License-Identifier: MIT
//
// The real system calls under the control of a test, which can let any of them fail and look around
// after each of them.
#pragma once

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <functional>
#include <limits>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/files/FileLayer.h"

namespace yg::files {

class ScriptedFileLayer final : public FileLayer {
public:
    ~ScriptedFileLayer() override {
        for (const int number : open_)
            system_.close(number);
    }

    /// Asked before each call, by its name: 0 lets it happen, else it does not and fails with that
    /// error. By default everything happens.
    std::function<int(std::string_view call)> errorOf = [](std::string_view) { return 0; };

    /// Called after each call that happened, whatever came of it.
    std::function<void(std::string_view call)> after = [](std::string_view) {};

    /// May change what is seen of a file.
    std::function<void(struct stat& state)> changeStatus = [](struct stat&) {};

    /// A write moves no more bytes than this.
    std::size_t largestWrite = std::numeric_limits<std::size_t>::max();

    /// The calls made so far, and those of them that happened.
    std::vector<std::string> made;
    std::vector<std::string> happened;

    /// The time that was paused: a pause only adds to it.
    std::chrono::milliseconds paused{0};

    ssize_t readLink(int folder, const char* name, char* buffer, std::size_t size) override {
        return perform("readLink", [&] { return system_.readLink(folder, name, buffer, size); });
    }
    int openLink(const char* path) override {
        return keptOpen(perform("openLink", [&] { return system_.openLink(path); }));
    }
    int openFolder(const char* path) override {
        return keptOpen(perform("openFolder", [&] { return system_.openFolder(path); }));
    }
    int status(int folder, const char* name, struct stat& state) override {
        return perform("status", [&] {
            const int answer = system_.status(folder, name, state);
            changeStatus(state);
            return answer;
        });
    }
    int openOld(int folder, const char* name) override {
        return keptOpen(perform("openOld", [&] { return system_.openOld(folder, name); }));
    }
    int openNew(int folder, const char* name, mode_t mode) override {
        return keptOpen(perform("openNew", [&] { return system_.openNew(folder, name, mode); }));
    }
    ssize_t write(int file, const void* bytes, std::size_t size) override {
        return perform("write", [&] {
            return system_.write(file, bytes, size < largestWrite ? size : largestWrite);
        });
    }
    int changeMode(int file, mode_t mode) override {
        return perform("changeMode", [&] { return system_.changeMode(file, mode); });
    }
    int changeOwner(int file, uid_t user, gid_t group) override {
        return perform("changeOwner", [&] { return system_.changeOwner(file, user, group); });
    }
    ssize_t readAccessList(const char* path, void* buffer, std::size_t size) override {
        return perform("readAccessList",
                       [&] { return system_.readAccessList(path, buffer, size); });
    }
    int setAccessList(int file, const void* bytes, std::size_t size) override {
        return perform("setAccessList", [&] { return system_.setAccessList(file, bytes, size); });
    }
    int removeAccessList(int file) override {
        return perform("removeAccessList", [&] { return system_.removeAccessList(file); });
    }
    int sync(int fileOrFolder) override {
        return perform("sync", [&] { return system_.sync(fileOrFolder); });
    }
    int close(int fileOrFolder) override {
        return perform("close", [&] {
            open_.erase(fileOrFolder);
            return system_.close(fileOrFolder);
        });
    }
    int rename(int folder, const char* from, const char* to) override {
        return perform("rename", [&] { return system_.rename(folder, from, to); });
    }
    int unlink(int folder, const char* name) override {
        return perform("unlink", [&] { return system_.unlink(folder, name); });
    }
    int eachName(int folder, std::size_t most,
                 const std::function<void(const char* name)>& take) override {
        return perform("eachName", [&] { return system_.eachName(folder, most, take); });
    }
    int makeFolder(const char* path) override {
        return perform("makeFolder", [&] { return system_.makeFolder(path); });
    }
    int removeFolder(const char* path) override {
        return perform("removeFolder", [&] { return system_.removeFolder(path); });
    }
    int lock(int fileOrFolder) override {
        return perform("lock", [&] { return system_.lock(fileOrFolder); });
    }
    int unlock(int fileOrFolder) override {
        return perform("unlock", [&] { return system_.unlock(fileOrFolder); });
    }
    void beginWaiting(int folder) override { system_.beginWaiting(folder); }
    void endWaiting(int folder) override { system_.endWaiting(folder); }
    bool hasWaiters(int folder) override { return system_.hasWaiters(folder); }
    std::chrono::steady_clock::time_point now() override { return begin_ + paused; }
    void pause(std::chrono::milliseconds time) override { paused += time; }

private:
    template <class Call>
    auto perform(const char* name, Call call) -> decltype(call()) {
        made.emplace_back(name);
        if (const int error = errorOf(name); error != 0) {
            errno = error;
            return -1;
        }
        const auto answer = call();
        const int error = errno;
        happened.emplace_back(name);
        after(name);
        errno = error;
        return answer;
    }

    int keptOpen(int number) {
        if (number >= 0)
            open_.insert(number);
        return number;
    }

    /// Each layer lives some hours later than the one before, so that a write through it looks for
    /// what others left behind, whatever number the folder has.
    static std::chrono::steady_clock::time_point nextBegin() {
        static std::atomic<int> count = 0;
        return systemFileLayer().now() + std::chrono::hours(2) * ++count;
    }

    FileLayer& system_ = systemFileLayer();
    const std::chrono::steady_clock::time_point begin_ = nextBegin();

    // What a test leaves unclosed is closed at the end, as when a process dies.
    std::set<int> open_;
};

}  // namespace yg::files
