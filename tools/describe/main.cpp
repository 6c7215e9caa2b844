// SPDX-License-Identifier: MIT
//
// Writes the schemas, the pages on the file formats and those on the rules.
//
//   describe FOLDER            writes FOLDER/schemas, FOLDER/docs/formats and FOLDER/docs/rules
//   describe --check FOLDER    changes nothing, names the files that would change, and fails if any
//
// Other files in those folders are removed, but for the schemas that people write.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>

#include "describe/Describe.h"

namespace {

namespace fs = std::filesystem;

std::string contentOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The files that are not as they should be, with what they should be; without a text those that
/// should not be there.
std::map<fs::path, const std::string*> differences(
    const fs::path& folder, const std::vector<yg::describe::GeneratedFile>& files) {
    std::map<fs::path, const std::string*> different;
    for (const std::string_view name : yg::describe::generatedFolders) {
        fs::create_directories(folder / name);
        for (const fs::directory_entry& entry : fs::directory_iterator(folder / name))
            different[entry.path()] = nullptr;
    }
    for (const std::string_view name : yg::describe::writtenSchemas)
        different.erase(folder / name);
    for (const auto& [name, text] : files) {
        const fs::path path = folder / name;
        if (different.erase(path) == 0 || contentOf(path) != text)
            different[path] = &text;
    }
    return different;
}

}  // namespace

int main(int count, char** words) {
    const std::vector<std::string> arguments(words + 1, words + count);
    const bool isCheck = !arguments.empty() && arguments.front() == "--check";
    if (arguments.size() != (isCheck ? 2 : 1)) {
        std::cerr << "usage: describe [--check] FOLDER\n";
        return 2;
    }
    const auto files = yg::describe::describe(yg::formats());
    const auto different = differences(arguments.back(), files);
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
