// SPDX-License-Identifier: MIT
#include "YGConfigManager/host/Log.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <mutex>
#include <span>
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
    // Ordinary lines take no memory, so that the log can say that there is none.
    std::array<char, 1000> few;
    std::string many;
    std::span<char> line(few);
    if (message.size() >= few.size()) {
        try {
            many.resize(message.size() + 1);
            line = many;
        } catch (...) {
            message = message.substr(0, few.size() - 1);
        }
    }
    line = line.first(message.size() + 1);
    std::replace_copy_if(message.begin(), message.end(), line.begin(), breaksLine, ' ');
    line.back() = '\n';
    {
        const std::lock_guard lock(consoleMutex);
        writeAll({line.data(), line.size()});
    }
    errno = savedErrno;
}

}  // namespace yg
