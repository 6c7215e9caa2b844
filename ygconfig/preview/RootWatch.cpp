// SPDX-License-Identifier: MIT
#include "ygconfig/preview/RootWatch.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <poll.h>
#include <sys/inotify.h>
#include <utility>

namespace yg::tool {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds quiet{40};
constexpr milliseconds longest{150};
constexpr milliseconds betweenLooks{200};

constexpr std::uint32_t changes = IN_ATTRIB | IN_CLOSE_WRITE | IN_CREATE | IN_DELETE |
                                  IN_DELETE_SELF | IN_MODIFY | IN_MOVED_FROM | IN_MOVED_TO |
                                  IN_MOVE_SELF;

enum class Woken { ending, ready, late };

/// Waits for either; `file` may be -1.
Woken pollFor(int ending, int file, int time) {
    pollfd files[] = {{ending, POLLIN, 0}, {file, POLLIN, 0}};
    if (::poll(files, 2, time) <= 0)
        return Woken::late;
    return files[0].revents ? Woken::ending : Woken::ready;
}

}  // namespace

RootWatch::RootWatch(std::string root, Means means) : root_(std::move(root)) {
    if (means == Means::looks) {
        isLooking_ = true;
        return;
    }
    inotify_ = Descriptor(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
    if (!inotify_)
        look("inotify_init1", errno);
}

void RootWatch::look(const char* call, int error) {
    isLooking_ = true;
    complaint_ = std::string("the system gives no notice of changes (") + call + ": " +
                 std::strerror(error) +
                 "), so the files are looked at five times a second; "
                 "/proc/sys/fs/inotify/max_user_watches and max_user_instances are the limits";
}

void RootWatch::renew() {
    folders_ = usedFolders(root_);
    if (!isLooking_)
        renewWatches();
    if (isLooking_)
        state_ = stateOf(folders_);
}

void RootWatch::renewWatches() {
    std::map<int, UsedFolder> renewed;
    for (const auto& [path, folder] : folders_) {
        const int watch = ::inotify_add_watch(inotify_.number(), path.c_str(), changes);
        if (watch < 0) {
            // What is not there or not to be read now is noticed in the folder above.
            if (errno != ENOSPC && errno != ENOMEM)
                continue;
            look("inotify_add_watch", errno);
            inotify_ = Descriptor();
            watches_.clear();
            return;
        }
        // Two paths may lead to one folder.
        UsedFolder& known = renewed[watch];
        known.isWhole = known.isWhole || folder.isWhole;
        known.names.insert(folder.names.begin(), folder.names.end());
    }
    for (const auto& [watch, folder] : watches_) {
        if (!renewed.contains(watch))
            ::inotify_rm_watch(inotify_.number(), watch);
    }
    watches_ = std::move(renewed);
}

bool RootWatch::wait(int ending) {
    return isLooking_ ? waitForLook(ending) : waitForNotice(ending);
}

bool RootWatch::waitForNotice(int ending) {
    for (bool isChanged = false; !isChanged; isChanged = takeEvents()) {
        if (pollFor(ending, inotify_.number(), -1) == Woken::ending)
            return false;
    }
    const Clock::time_point end = Clock::now() + longest;
    for (Clock::time_point until = Clock::now() + quiet; Clock::now() < until;) {
        const auto left = std::chrono::ceil<milliseconds>(until - Clock::now());
        switch (pollFor(ending, inotify_.number(), static_cast<int>(left.count()))) {
            case Woken::ending:
                return false;
            case Woken::late:
                return true;
            case Woken::ready:
                if (takeEvents())
                    until = std::min(end, Clock::now() + quiet);
        }
    }
    return true;
}

bool RootWatch::waitForLook(int ending) {
    const auto isSameAfter = [&](milliseconds time, bool& isEnding) {
        isEnding = pollFor(ending, -1, static_cast<int>(time.count())) == Woken::ending;
        std::string before = stateOf(usedFolders(root_));
        std::swap(before, state_);
        return state_ == before;
    };
    bool isEnding = false;
    while (!isEnding && isSameAfter(betweenLooks, isEnding)) {
    }
    for (int looks = 0; !isEnding && looks < 3 && !isSameAfter(quiet, isEnding); ++looks) {
    }
    return !isEnding;
}

bool RootWatch::takeEvents() {
    bool isChanged = false;
    alignas(inotify_event) char bytes[16 * 1024];
    for (;;) {
        const ssize_t size = ::read(inotify_.number(), bytes, sizeof bytes);
        if (size <= 0)
            return isChanged;
        for (ssize_t at = 0; at < size;) {
            const auto* const event = reinterpret_cast<const inotify_event*>(bytes + at);
            isChanged = isChanged || counts(*event);
            at += static_cast<ssize_t>(sizeof *event + event->len);
        }
    }
}

bool RootWatch::counts(const inotify_event& event) const {
    // Notices were lost.
    if (event.mask & IN_Q_OVERFLOW)
        return true;
    const auto folder = watches_.find(event.wd);
    if (folder == watches_.end() || (event.mask & IN_IGNORED))
        return false;
    // Without a name it is about the folder itself.
    return event.len == 0 || isUsed(folder->second, static_cast<const char*>(event.name));
}

}  // namespace yg::tool
