// SPDX-License-Identifier: MIT
#include "YGConfigManager/files/Place.h"

#include <array>
#include <climits>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace yg::files {

namespace {

/// As the kernel allows in one path.
constexpr int maxLinks = 40;

/// Whether a link in the folder may be followed; `errno` says why not.
bool mayFollow(const struct stat& link, const std::string& folder, FileLayer& layer) {
    if (link.st_uid == ::geteuid())
        return true;
    struct stat state;
    // The slash at its end has a folder that is a link itself followed.
    if (layer.status(AT_FDCWD, folder.c_str(), state) != 0)
        return false;
    constexpr mode_t shared = S_ISVTX | S_IWOTH;
    errno = EACCES;
    return (state.st_mode & shared) != shared || state.st_uid == link.st_uid;
}

using LinkText = std::array<char, PATH_MAX>;

/// What the link at the path names; -1 and `errno` as readlink() has them, EACCES if it may not be
/// followed.
ssize_t readLink(const std::string& path, const std::string& folder, LinkText& text,
                 FileLayer& layer) {
    ssize_t size = layer.readLink(AT_FDCWD, path.c_str(), text.data(), text.size());
    if (size < 0)
        return size;
    // Held open, so that the link that is read is the one whose owner was looked at.
    const int link = uninterrupted([&] { return layer.openLink(path.c_str()); });
    if (link < 0)
        return -1;
    struct stat state;
    size = -1;
    if (layer.status(link, "", state) == 0) {
        // Another file may have taken the link's place; it is where the path ends.
        errno = EINVAL;
        if (S_ISLNK(state.st_mode) && mayFollow(state, folder, layer))
            size = layer.readLink(link, "", text.data(), text.size());
    }
    const int error = errno;
    layer.close(link);
    errno = error;
    return size;
}

}  // namespace

Place placeOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos)
        return {"./", path};
    return {path.substr(0, slash + 1), path.substr(slash + 1)};
}

std::optional<Place> finalPlace(std::string path, FileLayer& layer) {
    for (int links = 0; links <= maxLinks; ++links) {
        LinkText target;
        Place place = placeOf(path);
        if (place.name.empty()) {
            errno = EISDIR;
            return std::nullopt;
        }
        const ssize_t size = readLink(path, place.folder, target, layer);
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

std::string_view faultOfPath(std::string_view path) {
    if (path.empty())
        return "the path is empty";
    return path.find('\0') == std::string_view::npos ? "" : "the path holds a NUL byte";
}

}  // namespace yg::files
