// SPDX-License-Identifier: MIT
//
// A file of the storage, which a target fills, and which what it tests may replace.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdlib.h>
#include <string>
#include <string_view>
#include <system_error>
#include <unistd.h>

#include "Target.h"

namespace yg::fuzz {

/// A new folder, in memory where that is possible: each write is brought to the disk.
inline std::string makeFolder() {
    const bool hasMemory = ::access("/dev/shm", W_OK | X_OK) == 0;
    std::string folder =
        (hasMemory ? std::filesystem::path("/dev/shm") : std::filesystem::temp_directory_path()) /
        "yg-fuzz-XXXXXX";
    require(::mkdtemp(folder.data()) != nullptr, "there is a temporary folder");
    return folder;
}

class StoredFile {
public:
    StoredFile() = default;
    StoredFile(const StoredFile&) = delete;
    StoredFile& operator=(const StoredFile&) = delete;
    ~StoredFile() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
    std::string path() const { return folder_ + "/file"; }
    void put(std::string_view bytes) const {
        std::ofstream(path(), std::ios::binary | std::ios::trunc) << bytes;
    }
    std::string bytes() const {
        std::ifstream file(path(), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }

private:
    const std::string folder_ = makeFolder();
};

}  // namespace yg::fuzz
