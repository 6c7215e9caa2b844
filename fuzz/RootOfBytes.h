// SPDX-License-Identifier: MIT
//
// Bytes as a root of several small files. Each begins with a line that names it, and a line "====="
// stands between two files.
#pragma once

#include <filesystem>
#include <stdlib.h>
#include <string>
#include <string_view>

#include "YGConfigManager/inspection/Inspection.h"

#include "Target.h"

namespace yg::fuzz {

/// An empty folder for as long as the process lives; all files are texts that are not saved.
class EmptyFolder {
public:
    EmptyFolder() : path_((std::filesystem::temp_directory_path() / "yg-fuzz-XXXXXX").string()) {
        require(::mkdtemp(path_.data()) != nullptr, "there is a folder");
    }
    ~EmptyFolder() { std::filesystem::remove(path_); }
    EmptyFolder(const EmptyFolder&) = delete;
    EmptyFolder& operator=(const EmptyFolder&) = delete;

    const std::string& path() const { return path_; }

private:
    std::string path_;
};

inline InspectionOptions filesIn(std::string_view text) {
    InspectionOptions options;
    while (!text.empty()) {
        std::string_view file = takeUntil(text, "\n=====\n");
        const std::string name(takeUntil(file, "\n"));
        options.unsaved[name] = file;
    }
    return options;
}

}  // namespace yg::fuzz
