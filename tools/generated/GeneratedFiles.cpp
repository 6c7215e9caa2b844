// SPDX-License-Identifier: MIT
#include "generated/GeneratedFiles.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>

namespace yg {

namespace {

namespace fs = std::filesystem;

std::string contentOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The files that are not as they should be, with what they should be; without a text those that
/// should not be there.
std::map<fs::path, const std::string*> differences(const fs::path& folder,
                                                   const std::vector<GeneratedFile>& files,
                                                   std::span<const std::string_view> folders,
                                                   std::span<const std::string_view> kept) {
    std::map<fs::path, const std::string*> different;
    for (const std::string_view name : folders) {
        fs::create_directories(folder / name);
        for (const fs::directory_entry& entry : fs::directory_iterator(folder / name))
            different[entry.path()] = nullptr;
    }
    for (const std::string_view name : kept)
        different.erase(folder / name);
    for (const auto& [name, text] : files) {
        const fs::path path = folder / name;
        if (different.erase(path) == 0 || contentOf(path) != text)
            different[path] = &text;
    }
    return different;
}

}  // namespace

int writeGenerated(std::span<char* const> words, const std::vector<GeneratedFile>& files,
                   std::span<const std::string_view> folders,
                   std::span<const std::string_view> kept) {
    const std::vector<std::string> arguments(words.begin() + 1, words.end());
    const bool isCheck = !arguments.empty() && arguments.front() == "--check";
    if (arguments.size() != (isCheck ? 2 : 1)) {
        std::cerr << "usage: " << fs::path(words.front()).filename().string()
                  << " [--check] FOLDER\n";
        return 2;
    }
    const auto different = differences(arguments.back(), files, folders, kept);
    for (const auto& [path, text] : different) {
        std::cout << path.string() << '\n';
        if (isCheck)
            continue;
        if (!text)
            fs::remove(path);
        else if (!(std::ofstream(path, std::ios::binary) << *text).flush())
            return 1;
    }
    return isCheck && !different.empty() ? 1 : 0;
}

}  // namespace yg
