// SPDX-License-Identifier: MIT
#include "YGConfigManager/host/Log.h"

#include <algorithm>
#include <cerrno>
#include <mutex>
#include <string>
#include <unistd.h>

namespace yg {

namespace {

// A pipe may split a write longer than its atomic size; this keeps our own lines apart even then.
std::mutex consoleMutex;

bool breaksLine(char character) {
    const auto byte = static_cast<unsigned char>(character);
    return (byte < 0x20 && character != '\t') || byte == 0x7f;
}

/// Writes everything, on after an interruption or a partial write; any other failure ends it, since
/// there is no one to tell.
void writeAll(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(STDERR_FILENO, bytes.data(), bytes.size());
        if (written > 0) {
            bytes.remove_prefix(static_cast<std::size_t>(written));
        } else if (written == 0 || errno != EINTR) {
            return;
        }
    }
}

}  // namespace

void writeLogMessage(LogChannel channel, std::string_view message) noexcept {
    try {
        currentHost()->writeLog(channel, message);
    } catch (...) {
        // A log that fails must not disturb what is being logged.
    }
}

void writeConsoleLine(std::string_view message) noexcept {
    const int savedErrno = errno;
    try {
        std::string line(message);
        std::replace_if(line.begin(), line.end(), breaksLine, ' ');
        line += '\n';
        const std::lock_guard lock(consoleMutex);
        writeAll(line);
    } catch (...) {
        // Out of memory: the line is lost.
    }
    errno = savedErrno;
}

}  // namespace yg
