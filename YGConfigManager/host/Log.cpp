// SPDX-License-Identifier: MIT
#include "YGConfigManager/host/Log.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <mutex>
#include <new>
#include <poll.h>
#include <pthread.h>
#include <span>
#include <string>
#include <unistd.h>

#include "YGConfigManager/text/Controls.h"

namespace yg {

namespace {

/// A pipe may split a write longer than its atomic size; this keeps our own lines apart even then.
/// The child of a fork has one of its own, so that no fork waits for a reader.
std::mutex consoleMutex;
const int forks = ::pthread_atfork(nullptr, nullptr,
                                   [] { ::new (static_cast<void*>(&consoleMutex)) std::mutex; });

bool isInLine = false;   ///< a line was cut and has no end yet
bool isStalled = false;  ///< the line before found no room

constexpr std::chrono::seconds longestWait(1);

/// Waits until standard error takes something or the time has come; false then.
bool waitUntil(std::chrono::steady_clock::time_point end) {
    using std::chrono::milliseconds;
    const auto left = std::chrono::ceil<milliseconds>(end - std::chrono::steady_clock::now());
    pollfd console{STDERR_FILENO, POLLOUT, 0};
    return left > milliseconds::zero() &&
           (::poll(&console, 1, static_cast<int>(left.count())) > 0 || errno == EINTR);
}

/// Writes as much as can be written and answers its size. An interruption and a partial write do
/// not end it; any failure but a full pipe does, since there is nobody to report it to.
std::size_t writeAll(std::string_view bytes) {
    const auto end = std::chrono::steady_clock::now() + longestWait;
    std::size_t size = 0;
    while (size < bytes.size()) {
        const ssize_t written = ::write(STDERR_FILENO, bytes.data() + size, bytes.size() - size);
        if (written > 0)
            size += static_cast<std::size_t>(written);
        else if (written == 0 || (errno != EINTR && errno != EAGAIN) ||
                 (errno == EAGAIN && (isStalled || !waitUntil(end))))
            break;
    }
    return size;
}

/// Writes a line with its end.
void writeLine(std::string_view line) {
    const std::lock_guard lock(consoleMutex);
    if (isInLine)
        isInLine = writeAll("\n") == 0;
    const std::size_t written = isInLine ? 0 : writeAll(line);
    isInLine = isInLine || (written > 0 && written < line.size());
    isStalled = written < line.size();
}

}  // namespace

void writeLogMessage(LogChannel channel, LogSeverity severity, std::string_view message) noexcept {
    try {
        currentHost()->writeLogLine(channel, severity, message);
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
    const std::size_t size = text::copyWithoutControls(message, line.data());
    line[size] = '\n';
    writeLine({line.data(), size + 1});
    errno = savedErrno;
}

}  // namespace yg
