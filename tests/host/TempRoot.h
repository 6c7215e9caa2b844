// SPDX-License-Identifier: MIT
//
// A folder for one test, removed with everything in it at the end of the scope.
#pragma once

#include <filesystem>
#include <fstream>
#include <stdlib.h>
#include <string>
#include <string_view>
#include <system_error>

#include <gtest/gtest.h>

namespace yg::testing {

class TempRoot {
public:
    TempRoot() {
        path_ = (std::filesystem::temp_directory_path() / "yg-host-XXXXXX").string();
        if (::mkdtemp(path_.data()) == nullptr) {
            ADD_FAILURE() << "no temporary folder " << path_;
        }
    }

    TempRoot(const TempRoot&) = delete;
    TempRoot& operator=(const TempRoot&) = delete;

    ~TempRoot() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    const std::string& path() const { return path_; }

    /// The path of something inside the folder.
    std::string at(std::string_view name) const { return path_ + "/" + std::string(name); }

    /// Writes a file inside the folder, with the folders above it.
    void write(std::string_view name, std::string_view bytes) const {
        const std::filesystem::path file = at(name);
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << bytes;
    }

    void makeFolder(std::string_view name) const { std::filesystem::create_directories(at(name)); }

private:
    std::string path_;
};

}  // namespace yg::testing
