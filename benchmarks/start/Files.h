// SPDX-License-Identifier: MIT
//
// The files under a root that a terminal reads when it starts, for the peers.
#pragma once

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace yg::benchmarks {

/// Of a folder of the root and those in it, in the order of their names.
inline std::vector<std::string> filesIn(const std::string& folder, const std::string& extension) {
    std::vector<std::string> found;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (entry.path().extension() == extension)
            found.push_back(entry.path());
    }
    std::sort(found.begin(), found.end());
    return found;
}

/// One of the two palettes, and one of the files of servers.
inline std::vector<std::string> startFiles(const std::string& root) {
    std::vector<std::string> found;
    for (const char* folder : {"/config", "/soft_optimize", "/base_optimize"}) {
        for (std::string& path : filesIn(root + folder, ".xml"))
            found.push_back(std::move(path));
    }
    for (const char* name : {"palette_white", "skeleton_v1", "app_config", "web_page_urls"})
        found.push_back(root + "/storage/" + name + ".xml");
    return found;
}

/// The images of one palette.
inline std::vector<std::string> startImages(const std::string& root) {
    std::vector<std::string> found = filesIn(root + "/images/white", ".png");
    for (std::string& path : filesIn(root + "/images/common", ".png"))
        found.push_back(std::move(path));
    return found;
}

}  // namespace yg::benchmarks
