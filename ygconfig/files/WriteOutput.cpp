// SPDX-License-Identifier: MIT
#include "ygconfig/files/WriteOutput.h"

#include <cerrno>
#include <charconv>
#include <cstddef>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "YGConfigManager/files/AtomicWrite.h"
#include "YGConfigManager/files/ReadFile.h"

namespace yg::tool {

namespace {

bool isStream(const struct stat& file) {
    return S_ISFIFO(file.st_mode) || S_ISCHR(file.st_mode);
}

/// 0 once all bytes went to the open file, or the error number.
int writeAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(file, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR)
            return errno;
        bytes.remove_prefix(count < 0 ? 0 : static_cast<std::size_t>(count));
    }
    return 0;
}

/// The number of the open file that the path names.
std::optional<int> openNumber(std::string_view path) {
    if (path == "/dev/stdout")
        return STDOUT_FILENO;
    if (path == "/dev/stderr")
        return STDERR_FILENO;
    for (const std::string_view folder : {"/dev/fd/", "/proc/self/fd/"}) {
        int number = -1;
        if (!path.starts_with(folder))
            continue;
        const char* const end = path.data() + path.size();
        const auto read = std::from_chars(path.data() + folder.size(), end, number);
        if (read.ec == std::errc() && read.ptr == end && number >= 0)
            return number;
    }
    return std::nullopt;
}

int writeToStream(const char* path, std::string_view bytes) {
    int file = -1;
    do {
        file = ::open(path, O_WRONLY | O_NOCTTY | O_CLOEXEC);
    } while (file < 0 && errno == EINTR);
    if (file < 0)
        return errno;
    struct stat state {};
    // Something else may have taken its place, which must not be written over.
    int error = ::fstat(file, &state) == 0 ? 0 : errno;
    if (error == 0)
        error = isStream(state) ? writeAll(file, bytes) : EEXIST;
    if (::close(file) != 0 && error == 0 && errno != EINTR)
        error = errno;
    return error;
}

}  // namespace

std::string writeOutput(const std::string& path, std::string_view bytes) {
    const auto describe = [](int error) {
        return std::string(error == 0 ? "" : std::strerror(error));
    };
    // Opening that path would begin at the start of a file, and replacing it miss the open one.
    if (const std::optional<int> number = openNumber(path))
        return describe(writeAll(*number, bytes));
    struct stat state {};
    if (::stat(path.c_str(), &state) == 0 && isStream(state))
        return describe(writeToStream(path.c_str(), bytes));
    const files::FileWriting writing = files::writeFileAtomically(path, bytes);
    const std::string prefix = files::describeFailure(path, "");
    return writing.error.starts_with(prefix) ? writing.error.substr(prefix.size()) : writing.error;
}

}  // namespace yg::tool
