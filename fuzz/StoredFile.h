// SPDX-License-Identifier: MIT
//
// A file of the storage, which a target fills, and which what it tests may replace.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <unistd.h>

#include "Target.h"
#include "files/TemporaryFolder.h"

namespace yg::fuzz {

/// Where to make folders: in memory if possible, because each write is brought to the disk.
inline std::filesystem::path quickParent() {
    return ::access("/dev/shm", W_OK | X_OK) == 0 ? std::filesystem::path("/dev/shm")
                                                  : std::filesystem::temp_directory_path();
}

class StoredFile {
public:
    std::string path() const { return folder_.at("file"); }
    void put(std::string_view bytes) const { files::put(path(), bytes); }
    std::string bytes() const { return files::contentOf(path()); }

private:
    const files::TemporaryFolder folder_{quickParent()};
};

}  // namespace yg::fuzz
