// SPDX-License-Identifier: MIT
//
// Which file a write to a path replaces, and the folder that it lies in. Internal to files/.
#pragma once

#include <cerrno>
#include <optional>
#include <string>
#include <string_view>

#include "YGConfigManager/files/FileLayer.h"

namespace yg::files {

/// Repeats a call for as long as signals interrupt it.
template <class Call>
auto uninterrupted(Call call) {
    auto answer = call();
    while (answer < 0 && errno == EINTR)
        answer = call();
    return answer;
}

/// A path in two parts: the folder, for opening, and the name inside it, empty after a slash.
struct Place {
    std::string folder;
    std::string name;
};

/// The place as the path has it, links and all. Throws std::bad_alloc.
Place placeOf(const std::string& path);

/// The place that the path names once all links at its end are followed; whether something is there
/// does not matter. Links of folders on the way are left to the system. None, and `errno`, if links
/// go in a circle, cannot be read, or one of them may not be followed: in a folder that everyone
/// may write to and whose files only their owners may remove, links are followed if they belong to
/// the user of this process or to the owner of the folder, and no others. The kernel has the same
/// rule, but can be set not to apply it. Throws std::bad_alloc.
std::optional<Place> finalPlace(std::string path, FileLayer& layer);

/// What is wrong with the path as a text, empty for nothing.
std::string_view faultOfPath(std::string_view path);

/// A folder that is open until the end of the scope.
class OpenFolder {
public:
    OpenFolder(const std::string& path, FileLayer& layer)
        : layer_(layer), number_(uninterrupted([&] { return layer.openFolder(path.c_str()); })) {}
    ~OpenFolder() {
        if (number_ >= 0)
            layer_.close(number_);
    }
    OpenFolder(const OpenFolder&) = delete;
    OpenFolder& operator=(const OpenFolder&) = delete;

    /// Negative, with `errno`, if it could not be opened.
    int number() const { return number_; }

    /// Brings the names in it to the disk.
    bool sync() const {
        // Some file systems have nothing to bring to the disk for a folder and say so.
        return uninterrupted([this] { return layer_.sync(number_); }) == 0 || errno == EINVAL ||
               errno == ENOTSUP;
    }

private:
    FileLayer& layer_;
    int number_;
};

}  // namespace yg::files
