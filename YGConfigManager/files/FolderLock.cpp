// SPDX-License-Identifier: MIT
#include "YGConfigManager/files/FolderLock.h"

#include <cerrno>
#include <fcntl.h>
#include <new>
#include <optional>

#include "YGConfigManager/files/Place.h"
#include "YGConfigManager/files/ReadFile.h"

namespace yg::files {

namespace {

using namespace std::chrono_literals;

/// Between two attempts. flock() itself waits without end, and only a signal could stop it.
constexpr auto pauseOfWaiter = 2ms;

/// Whoever comes while others wait lets each of them try first. Else one who writes in a loop would
/// hold the lock nearly all the time, and the others find it free by chance only.
constexpr auto pauseOfNewcomer = 2 * pauseOfWaiter;

/// Another writer had the lock all the time; no error number of flock().
constexpr int heldTooLong = ETIMEDOUT;

/// Takes the lock of the open folder. 0, or an error number.
int lockFolder(int folder, std::chrono::steady_clock::time_point end, FileLayer& layer) {
    if (layer.hasWaiters(folder))
        layer.pause(pauseOfNewcomer);
    bool waits = false;
    while (uninterrupted([&] { return layer.lock(folder); }) != 0) {
        if (errno != EWOULDBLOCK)
            return errno;
        if (layer.now() >= end)
            return heldTooLong;
        if (!waits) {
            layer.beginWaiting(folder);
            waits = true;
        }
        layer.pause(pauseOfWaiter);
    }
    if (waits)
        layer.endWaiting(folder);
    return 0;
}

/// Whether the path leads to the open folder; none, with `errno`, if that cannot be found out.
std::optional<bool> leadsTo(int folder, std::string_view path, FileLayer& layer) {
    const std::optional<Place> place = finalPlace(std::string(path), layer);
    struct stat open;
    struct stat named;
    if (!place || layer.status(folder, "", open) != 0 ||
        layer.status(AT_FDCWD, place->folder.c_str(), named) != 0)
        return std::nullopt;
    return open.st_dev == named.st_dev && open.st_ino == named.st_ino;
}

}  // namespace

FolderLock::FolderLock(std::string_view path, std::chrono::milliseconds longest, FileLayer& layer)
    : layer_(layer) {
    try {
        if (const std::string_view fault = faultOfPath(path); !fault.empty()) {
            error_ = describeFailure(path, fault);
        } else if (const int error = take(path, longest); error != 0) {
            release();
            error_ = error == heldTooLong
                         ? describeFailure(path, "another writer holds the lock of its folder")
                         : describeFailure(path, error);
        }
    } catch (const std::bad_alloc&) {
        release();
        error_ = "out of memory";
    }
}

FolderLock::~FolderLock() {
    release();
}

int FolderLock::take(std::string_view path, std::chrono::milliseconds longest) {
    const auto end = layer_.now() + longest;
    while (true) {
        const std::optional<Place> place = finalPlace(std::string(path), layer_);
        if (!place)
            return errno;
        number_ = uninterrupted([&] { return layer_.openFolder(place->folder.c_str()); });
        if (number_ < 0)
            return errno;
        if (const int error = lockFolder(number_, end, layer_); error != 0)
            return error;
        // A link may lead elsewhere by now, or another folder have the name.
        const std::optional<bool> isThere = leadsTo(number_, path, layer_);
        if (!isThere || *isThere)
            return isThere ? 0 : errno;
        if (layer_.now() >= end)
            return heldTooLong;
        release();
    }
}

void FolderLock::release() {
    if (number_ >= 0) {
        // Closing alone would leave the lock to a process that was forked meanwhile.
        layer_.unlock(number_);
        layer_.close(number_);
        number_ = -1;
    }
}

}  // namespace yg::files
