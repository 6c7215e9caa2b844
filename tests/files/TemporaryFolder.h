// SPDX-License-Identifier: MIT
//
// A folder of its own for one test, removed with everything in it at the end, and short ways to
// look at files and to change them without the code under test.
#pragma once

#include <array>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <stdexcept>
#include <stdlib.h>
#include <string>
#include <string_view>
#include <sys/stat.h>

namespace yg::files {

class TemporaryFolder {
public:
    explicit TemporaryFolder(
        const std::filesystem::path& parent = std::filesystem::temp_directory_path())
        : path_(parent / "yg-test-XXXXXX") {
        if (!::mkdtemp(path_.data()))
            throw std::runtime_error("no temporary folder");
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::string& path() const { return path_; }

    /// The path of something inside the folder.
    std::string at(std::string_view name) const { return path_ + "/" + std::string(name); }
    std::string operator/(std::string_view name) const { return at(name); }

    /// Writes a file inside the folder, with the folders above it.
    void write(std::string_view name, std::string_view bytes) const {
        const std::filesystem::path file = at(name);
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << bytes;
    }

    void makeFolder(std::string_view name) const { std::filesystem::create_directories(at(name)); }

    /// The names in the folder, or in a folder inside it.
    std::set<std::string> names(std::string_view inside = ".") const {
        std::set<std::string> found;
        for (const auto& entry : std::filesystem::directory_iterator(*this / inside))
            found.insert(entry.path().filename().string());
        return found;
    }

private:
    std::string path_;
};

inline void put(const std::string& path, std::string_view bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

inline std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

inline mode_t modeOf(const std::string& path) {
    struct stat state = {};
    ::lstat(path.c_str(), &state);
    return state.st_mode & 07777;
}

/// Sets the last change of the file, or of the link, so many seconds back.
inline void age(const std::string& path, time_t seconds) {
    const timespec when = {std::time(nullptr) - seconds, 0};
    const std::array<timespec, 2> times = {when, when};
    ::utimensat(AT_FDCWD, path.c_str(), times.data(), AT_SYMLINK_NOFOLLOW);
}

/// Makes the hidden files that writes left in the folder some hours old.
inline void ageTempFiles(const std::string& folder) {
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().filename().string().starts_with(".yg-"))
            age(entry.path(), 10'000);
    }
}

}  // namespace yg::files
