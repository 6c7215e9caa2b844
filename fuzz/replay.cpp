// SPDX-License-Identifier: MIT
//
// Runs a fuzz target on the files given as arguments, and on all files in the folders given. Each
// is also cut short at several places, and the empty input is tried.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <vector>

#include "Target.h"

namespace {

namespace fs = std::filesystem;

void run(const std::string& bytes) {
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

bool replay(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        std::fprintf(stderr, "%s cannot be read\n", path.c_str());
        return false;
    }
    const std::string bytes((std::istreambuf_iterator<char>(file)),
                            std::istreambuf_iterator<char>());
    std::printf("%s\n", path.c_str());
    std::fflush(stdout);
    run(bytes);
    constexpr std::size_t cuts = 16;
    for (std::size_t i = 0; i < cuts; ++i)
        run(bytes.substr(0, bytes.size() * i / cuts));
    return true;
}

}  // namespace

int main(int argumentCount, char** arguments) {
    std::vector<fs::path> paths;
    for (int i = 1; i < argumentCount; ++i) {
        std::error_code error;
        const fs::path path = arguments[i];
        if (!fs::is_directory(path, error)) {
            paths.push_back(path);
            continue;
        }
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(path, error)) {
            if (entry.is_regular_file(error))
                paths.push_back(entry.path());
        }
    }
    std::sort(paths.begin(), paths.end());
    run({});
    const bool allRead = std::all_of(paths.begin(), paths.end(), replay);
    if (paths.empty())
        std::fprintf(stderr, "no input to replay\n");
    return allRead && !paths.empty() ? 0 : 1;
}
