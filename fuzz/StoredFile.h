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

#include "Target.h"

namespace yg::fuzz {

class StoredFile {
public:
    StoredFile() {
        // In memory where that is possible: each write is brought to the disk.
        std::error_code ignored;
        const std::filesystem::path memory = "/dev/shm";
        folder_ = (std::filesystem::is_directory(memory, ignored)
                       ? memory
                       : std::filesystem::temp_directory_path()) /
                  "yg-fuzz-XXXXXX";
        require(::mkdtemp(folder_.data()) != nullptr, "there is a temporary folder");
    }
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
    std::string folder_;
};

}  // namespace yg::fuzz
