// SPDX-License-Identifier: MIT
#include "ygconfig/files/Input.h"

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <memory>

namespace yg::tool {

namespace {

/// More than any configuration.
constexpr std::size_t mostBytes = std::size_t{1} << 30;

int readAll(std::FILE* file, std::string& bytes) {
    char buffer[64 * 1024];
    while (const std::size_t count = std::fread(buffer, 1, sizeof buffer, file)) {
        bytes.append(buffer, count);
        if (bytes.size() > mostBytes)
            return EFBIG;
    }
    return std::ferror(file) != 0 ? errno : 0;
}

}  // namespace

int readInput(const std::string& path, std::string& bytes) {
    if (path == "-")
        return readAll(stdin, bytes);
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rbe"),
                                                               std::fclose);
    return file ? readAll(file.get(), bytes) : errno;
}

}  // namespace yg::tool
