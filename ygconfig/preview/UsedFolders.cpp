// SPDX-License-Identifier: MIT
#include "ygconfig/preview/UsedFolders.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <deque>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "YGConfigManager/text/Paths.h"

namespace yg::tool {

namespace {

using text::joinPath;

constexpr int maxLinks = 40;
constexpr int maxLevels = 8;
constexpr std::size_t maxWholeFolders = 1'000;
constexpr std::size_t maxEntries = 20'000;

/// Calls `take` with each name in the folder until it answers false.
template <class Take>
void forEachName(const std::string& folder, Take take) {
    const auto close = [](DIR* opened) { ::closedir(opened); };
    const std::unique_ptr<DIR, decltype(close)> opened(::opendir(folder.c_str()), close);
    if (!opened)
        return;
    while (const dirent* const entry = ::readdir(opened.get())) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != ".." && !take(name, entry->d_type))
            return;
    }
}

/// An editor's backup, lock, or file on its way to another name.
bool isEditors(std::string_view name) {
    return name.starts_with('.') || name.starts_with('#') || name.ends_with('~') ||
           name.ends_with(".tmp") || name.ends_with(".swp");
}

bool isFolder(const std::string& path) {
    struct stat state {};
    return ::stat(path.c_str(), &state) == 0 && S_ISDIR(state.st_mode);
}

class Search {
public:
    explicit Search(const std::string& root) {
        const auto base = follow(root);
        if (!base || !isFolder(*base))
            return;
        for (const char* const file : {"host.json", "contrast.json"})
            follow(joinPath(*base, file));
        for (const char* const name :
             {"config", "base_optimize", "soft_optimize", "storage", "user"})
            addWhole(follow(joinPath(*base, name)), 1);
        addWhole(follow(joinPath(*base, "images")), maxLevels);
    }

    UsedFolders take() { return std::move(folders_); }

private:
    /// The path without symbolic links; absent while something on it is missing. Each name on the
    /// way counts.
    std::optional<std::string> follow(const std::string& path) {
        std::deque<std::string> names;
        std::string at = startOf(path, names);
        for (int links = 0; !names.empty();) {
            const std::string name = std::move(names.front());
            names.pop_front();
            std::string next = joinPath(at, name);
            struct stat state {};
            if (name != "..")
                folders_[at].names.insert(name);
            if (::lstat(next.c_str(), &state) != 0)
                return std::nullopt;
            if (!S_ISLNK(state.st_mode)) {
                at = std::move(next);
                continue;
            }
            char target[PATH_MAX];
            const ssize_t size = ::readlink(next.c_str(), target, sizeof target);
            if (size <= 0 || ++links > maxLinks)
                return std::nullopt;
            const std::string_view other(target, static_cast<std::size_t>(size));
            std::string start = startOf(other, names);
            if (other.starts_with('/'))
                at = std::move(start);
        }
        return at;
    }

    /// Where a path begins; its names are put in front of the others.
    static std::string startOf(std::string_view path, std::deque<std::string>& names) {
        std::deque<std::string> own;
        std::string start = path.starts_with('/') ? "/" : ".";
        while (!path.empty()) {
            const std::string_view name = path.substr(0, path.find('/'));
            path.remove_prefix(std::min(name.size() + 1, path.size()));
            if (!name.empty() && name != ".")
                own.emplace_back(name);
        }
        names.insert(names.begin(), own.begin(), own.end());
        return start;
    }

    /// A folder with those below it, so many levels in all.
    void addWhole(const std::optional<std::string>& folder, int levels) {
        struct stat state {};
        if (!folder || levels == 0 || whole_.size() == maxWholeFolders ||
            ::stat(folder->c_str(), &state) != 0 || !S_ISDIR(state.st_mode) ||
            !whole_.emplace(state.st_dev, state.st_ino).second)
            return;
        folders_[*folder].isWhole = true;
        forEachName(*folder, [&](std::string_view name, unsigned char type) {
            const bool mayBeFolder = type == DT_DIR && levels > 1;
            if (mayBeFolder || type == DT_LNK || type == DT_UNKNOWN)
                addWhole(follow(joinPath(*folder, name)), levels - 1);
            return ++entries_ < maxEntries;
        });
    }

    UsedFolders folders_;
    std::set<std::pair<dev_t, ino_t>> whole_;
    std::size_t entries_ = 0;
};

template <class Value>
void append(std::string& state, const Value& value) {
    state.append(std::to_string(value)).append(1, ' ');
}

/// Of a link also what it leads to.
void appendState(std::string& text, const std::string& path) {
    text += path;
    for (const int flag : {AT_SYMLINK_NOFOLLOW, 0}) {
        struct stat state {};
        if (::fstatat(AT_FDCWD, path.c_str(), &state, flag) != 0) {
            text += " none";
            continue;
        }
        text += ' ';
        append(text, state.st_dev);
        append(text, state.st_ino);
        append(text, state.st_mode);
        if (S_ISDIR(state.st_mode))
            continue;
        append(text, state.st_size);
        for (const timespec& time : {state.st_mtim, state.st_ctim}) {
            append(text, time.tv_sec);
            append(text, time.tv_nsec);
        }
    }
    text += '\n';
}

}  // namespace

UsedFolders usedFolders(const std::string& root) {
    return Search(root).take();
}

bool isUsed(const UsedFolder& folder, std::string_view name) {
    return folder.names.contains(name) || (folder.isWhole && !isEditors(name));
}

std::string stateOf(const UsedFolders& folders) {
    std::string state;
    for (const auto& [path, folder] : folders) {
        const UsedFolder& used = folder;
        std::set<std::string> names(used.names.begin(), used.names.end());
        if (used.isWhole) {
            forEachName(path, [&](std::string_view name, unsigned char) {
                if (isUsed(used, name))
                    names.emplace(name);
                return names.size() < maxEntries;
            });
        }
        for (const std::string& name : names)
            appendState(state, joinPath(path, name));
    }
    return state;
}

}  // namespace yg::tool
