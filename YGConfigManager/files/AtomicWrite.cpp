// SPDX-License-Identifier: MIT
#include "YGConfigManager/files/AtomicWrite.h"

#include <cerrno>
#include <new>
#include <optional>
#include <string>
#include <unistd.h>

#include "YGConfigManager/files/FileLayer.h"
#include "YGConfigManager/files/FileRights.h"
#include "YGConfigManager/files/Leftovers.h"
#include "YGConfigManager/files/Place.h"
#include "YGConfigManager/files/ReadFile.h"

namespace yg::files {

namespace {

/// Names are unique but for leftovers, so a few attempts are plenty.
constexpr int maxNameAttempts = 100;

constexpr mode_t accessRights = S_IRWXU | S_IRWXG | S_IRWXO;
constexpr mode_t ownerReadWrite = 0600;
constexpr mode_t everyoneReadWrite = 0666;

/// The new file beside the target; removed again unless it took the target's place.
class TempFile {
public:
    TempFile(int folder, FileLayer& layer) : folder_(folder), layer_(layer) {}
    ~TempFile() {
        if (number_ >= 0)
            layer_.close(number_);
        if (exists_)
            layer_.unlink(folder_, name_.c_str());
    }
    TempFile(const TempFile&) = delete;
    TempFile& operator=(const TempFile&) = delete;

    bool create(mode_t mode) {
        for (int attempt = 0; attempt < maxNameAttempts; ++attempt) {
            name_ = nextTempName();
            number_ = uninterrupted([&] { return layer_.openNew(folder_, name_.c_str(), mode); });
            if (number_ >= 0) {
                exists_ = true;
                // Shows others that it is not left over; where nothing can be locked they know
                // none.
                layer_.lock(number_);
                return true;
            }
            if (errno != EEXIST)
                return false;
        }
        return false;
    }

    bool write(std::string_view bytes) {
        while (!bytes.empty()) {
            const ssize_t count =
                uninterrupted([&] { return layer_.write(number_, bytes.data(), bytes.size()); });
            if (count <= 0) {
                errno = count == 0 ? EIO : errno;
                return false;
            }
            bytes.remove_prefix(static_cast<std::size_t>(count));
        }
        return true;
    }

    bool giveRights(const FileRights& rights) { return files::giveRights(number_, rights, layer_); }

    void clearLeftovers(const std::optional<FileRights>& target) const {
        files::clearLeftovers(folder_, number_, target ? target->user : ::geteuid(), layer_);
    }

    bool sync() {
        return uninterrupted([this] { return layer_.sync(number_); }) == 0;
    }

    bool close() {
        const int number = number_;
        number_ = -1;
        // Interrupted or not, the file is closed, and its bytes were brought to the disk before.
        return layer_.close(number) == 0 || errno == EINTR;
    }

    bool takePlaceOf(const std::string& target) {
        if (layer_.rename(folder_, name_.c_str(), target.c_str()) != 0)
            return false;
        exists_ = false;
        return true;
    }

private:
    int folder_;
    FileLayer& layer_;
    std::string name_;
    int number_ = -1;
    bool exists_ = false;
};

/// The rights of the file to replace, none if there is nothing yet. False if it cannot be replaced.
bool lookAtTarget(int folder, const Place& place, FileLayer& layer,
                  std::optional<FileRights>& rights) {
    struct stat state;
    if (layer.status(folder, place.name.c_str(), state) != 0)
        return errno == ENOENT;
    if (!S_ISREG(state.st_mode)) {
        errno = S_ISDIR(state.st_mode) ? EISDIR : 0;
        return false;
    }
    rights = FileRights{state.st_uid, state.st_gid, state.st_mode & accessRights};
    return readAccessList(place.folder + place.name, *rights, layer);
}

FileWriting failure(std::string_view path, int cause) {
    return {false, cause == 0 ? describeFailure(path, "not a regular file")
                              : describeFailure(path, cause)};
}

FileWriting write(std::string_view path, std::string_view bytes, FileLayer& layer) {
    if (const std::string_view fault = faultOfPath(path); !fault.empty())
        return {false, describeFailure(path, fault)};
    const std::optional<Place> place = finalPlace(std::string(path), layer);
    if (!place)
        return failure(path, errno);
    // Opened before anything is written, so that a folder that cannot be synced changes nothing.
    const OpenFolder folder(place->folder, layer);
    std::optional<FileRights> target;
    if (folder.number() < 0 || !lookAtTarget(folder.number(), *place, layer, target))
        return failure(path, errno);
    TempFile file(folder.number(), layer);
    // A new file gets its mode from the system, which takes off the umask. One that replaces
    // another is for its owner alone until it is written; its rights come before the sync, so that
    // they are on the disk with the bytes.
    if (!file.create(target ? target->mode & ownerReadWrite : everyoneReadWrite))
        return failure(path, errno);
    // Before the bytes, for which leftovers may have taken all the place.
    file.clearLeftovers(target);
    if (file.write(bytes) && (!target || file.giveRights(*target)) && file.sync() && file.close() &&
        file.takePlaceOf(place->name) && folder.sync())
        return {true};
    return failure(path, errno);
}

}  // namespace

FileWriting writeFileAtomically(std::string_view path, std::string_view bytes, FileLayer& layer) {
    try {
        return write(path, bytes, layer);
    } catch (const std::bad_alloc&) {
        // The new file takes the target's place after all that takes memory but a failure's text.
        return {false, "out of memory"};
    }
}

}  // namespace yg::files
