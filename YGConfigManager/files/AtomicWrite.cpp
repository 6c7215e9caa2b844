// SPDX-License-Identifier: MIT
#include "YGConfigManager/files/AtomicWrite.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <climits>
#include <new>
#include <optional>
#include <string>
#include <unistd.h>

#include "YGConfigManager/files/FileLayer.h"
#include "YGConfigManager/files/ReadFile.h"
#include "YGConfigManager/text/Format.h"

namespace yg::files {

namespace {

/// As the kernel allows in one path.
constexpr int mostLinks = 40;

/// Names are unique but for leftovers, so a few attempts are plenty.
constexpr int mostNameAttempts = 100;

constexpr mode_t accessRights = 0777;
constexpr mode_t ownerReadWrite = 0600;
constexpr mode_t everyoneReadWrite = 0666;

/// Repeats a call for as long as signals interrupt it.
template <class Call>
auto uninterrupted(Call call) {
    auto answer = call();
    while (answer < 0 && errno == EINTR) {
        answer = call();
    }
    return answer;
}

/// A path in two parts: the folder, for opening, and the name inside it, empty after a slash.
struct Place {
    std::string folder;
    std::string name;
};

Place placeOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) {
        return {"./", path};
    }
    return {path.substr(0, slash + 1), path.substr(slash + 1)};
}

/// The place that the path names once all links at its end are followed; whether something is there
/// does not matter. Links of folders on the way are left to the system.
std::optional<Place> finalPlace(std::string path, FileLayer& layer) {
    for (int links = 0; links <= mostLinks; ++links) {
        std::array<char, PATH_MAX> target;
        Place place = placeOf(path);
        if (place.name.empty()) {
            errno = EISDIR;
            return std::nullopt;
        }
        const ssize_t size = layer.readLink(path.c_str(), target.data(), target.size());
        if (size < 0) {
            return errno == EINVAL || errno == ENOENT ? std::optional(std::move(place))
                                                      : std::nullopt;
        }
        const std::string_view named(target.data(), static_cast<std::size_t>(size));
        path = named.starts_with('/') ? std::string(named) : place.folder.append(named);
    }
    errno = ELOOP;
    return std::nullopt;
}

class OpenFolder {
public:
    OpenFolder(const std::string& path, FileLayer& layer)
        : layer_(layer), number_(uninterrupted([&] { return layer.openFolder(path.c_str()); })) {}
    ~OpenFolder() {
        if (number_ >= 0) {
            layer_.close(number_);
        }
    }
    OpenFolder(const OpenFolder&) = delete;
    OpenFolder& operator=(const OpenFolder&) = delete;

    int number() const { return number_; }

    bool sync() const {
        // Some file systems have nothing to bring to the disk for a folder and say so.
        return uninterrupted([this] { return layer_.sync(number_); }) == 0 || errno == EINVAL ||
               errno == ENOTSUP;
    }

private:
    FileLayer& layer_;
    int number_;
};

/// The new file beside the target; removed again unless it took the target's place.
class Neighbour {
public:
    Neighbour(int folder, FileLayer& layer) : folder_(folder), layer_(layer) {}
    ~Neighbour() {
        if (number_ >= 0) {
            layer_.close(number_);
        }
        if (exists_) {
            layer_.unlink(folder_, name_.c_str());
        }
    }
    Neighbour(const Neighbour&) = delete;
    Neighbour& operator=(const Neighbour&) = delete;

    bool create(mode_t mode) {
        for (int attempt = 0; attempt < mostNameAttempts; ++attempt) {
            name_ = nextName();
            number_ = uninterrupted([&] { return layer_.openNew(folder_, name_.c_str(), mode); });
            if (number_ >= 0) {
                exists_ = true;
                return true;
            }
            if (errno != EEXIST) {
                return false;
            }
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

    bool changeMode(mode_t mode) { return layer_.changeMode(number_, mode) == 0; }

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
        if (layer_.rename(folder_, name_.c_str(), target.c_str()) != 0) {
            return false;
        }
        exists_ = false;
        return true;
    }

private:
    /// Differs between processes, threads and moments.
    static std::string nextName() {
        static std::atomic<unsigned> counter = 0;
        const auto now = std::chrono::system_clock::now().time_since_epoch();
        return text::format(".yg-%d-%d-%d.tmp", ::getpid(), now.count(), ++counter);
    }

    int folder_;
    FileLayer& layer_;
    std::string name_;
    int number_ = -1;
    bool exists_ = false;
};

/// The mode of the file to replace, none if there is nothing yet. False if it cannot be replaced.
bool lookAtTarget(int folder, const std::string& name, FileLayer& layer,
                  std::optional<mode_t>& mode) {
    struct stat state;
    if (layer.status(folder, name.c_str(), state) != 0) {
        return errno == ENOENT;
    }
    mode = state.st_mode & accessRights;
    errno = S_ISDIR(state.st_mode) ? EISDIR : 0;
    return S_ISREG(state.st_mode);
}

FileWriting failure(std::string_view path, int cause) {
    return {false, cause == 0 ? describeFailure(path, "not a regular file")
                              : describeFailure(path, cause)};
}

FileWriting write(std::string_view path, std::string_view bytes, FileLayer& layer) {
    if (path.empty()) {
        return {false, describeFailure(path, "the path is empty")};
    }
    if (path.find('\0') != std::string_view::npos) {
        return {false, describeFailure(path, "the path holds a NUL byte")};
    }
    const std::optional<Place> place = finalPlace(std::string(path), layer);
    if (!place) {
        return failure(path, errno);
    }
    // Opened before anything is written, so that a folder that cannot be synced changes nothing.
    const OpenFolder folder(place->folder, layer);
    std::optional<mode_t> mode;
    if (folder.number() < 0 || !lookAtTarget(folder.number(), place->name, layer, mode)) {
        return failure(path, errno);
    }
    Neighbour neighbour(folder.number(), layer);
    // A new file gets its mode from the system, which takes off the umask. For a replaced one the
    // umask must not count, so its mode comes with a call of its own, before the sync so that it is
    // on the disk with the bytes.
    if (neighbour.create(mode ? *mode & ownerReadWrite : everyoneReadWrite) &&
        neighbour.write(bytes) && (!mode || neighbour.changeMode(*mode)) && neighbour.sync() &&
        neighbour.close() && neighbour.takePlaceOf(place->name) && folder.sync()) {
        return {true};
    }
    return failure(path, errno);
}

}  // namespace

FileWriting writeFileAtomically(std::string_view path, std::string_view bytes) {
    return writeFileAtomically(path, bytes, systemFileLayer());
}

FileWriting writeFileAtomically(std::string_view path, std::string_view bytes, FileLayer& layer) {
    try {
        return write(path, bytes, layer);
    } catch (const std::bad_alloc&) {
        // The new file takes the target's place after all that takes memory but a failure's text.
        return {false, "out of memory"};
    }
}

}  // namespace yg::files
