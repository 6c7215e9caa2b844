// SPDX-License-Identifier: MIT
//
// The library's log. A message is a printf-like format in which "%@" stands for a text; an absent
// text prints "(null)". Formats are checked when they are compiled (text/Format.h). Safe from any
// thread; nothing is thrown, and a message that the host throws on is lost without a word.
#pragma once

#include <string_view>
#include <type_traits>

#include "YGConfigManager/host/Host.h"
#include "YGConfigManager/host/HostOfThread.h"
#include "YGConfigManager/text/Format.h"

namespace yg {

/// Hands a finished message to the current host.
void writeLogMessage(LogChannel channel, LogSeverity severity, std::string_view message) noexcept;

/// Writes `message` and a line end to standard error with a single write, whole among those of
/// other threads. Line breaks and other control characters inside it (text/Controls.h) become
/// blanks, tabs stay.
///
/// Where standard error does not block, a line waits for its reader for a second in all. What then
/// has no room is lost: the whole line, or its rest, after which the next line begins on a line of
/// its own. The lines that follow do not wait until one has been written.
void writeConsoleLine(std::string_view message) noexcept;

/// Hands the message that a format makes to the current host.
template <class... Args>
void writeFormatted(LogChannel channel, LogSeverity severity,
                    text::FormatString<std::type_identity_t<Args>...> format,
                    const Args&... args) noexcept {
    try {
        writeLogMessage(channel, severity, text::format(format, args...));
    } catch (...) {
        // Out of memory: the message is lost, the caller goes on.
    }
}

/// Logs what a loader does as it runs: writeRuntimeLog("server config path:%@", path).
template <class... Args>
void writeRuntimeLog(text::FormatString<std::type_identity_t<Args>...> format,
                     const Args&... args) noexcept {
    writeFormatted<Args...>(LogChannel::runtime, LogSeverity::info, format, args...);
}

/// Logs what a loader could not do: writeRuntimeError("load style config fail:%@", error).
template <class... Args>
void writeRuntimeError(text::FormatString<std::type_identity_t<Args>...> format,
                       const Args&... args) noexcept {
    writeFormatted<Args...>(LogChannel::runtime, LogSeverity::error, format, args...);
}

/// Logs to the business log. The messages begin with "%s L%d ", the name of the operation and the
/// line: writeBusCommonLogInside("%s L%d filePath: %@", "-[Class operation]", 71, path).
template <class... Args>
void writeBusCommonLogInside(text::FormatString<std::type_identity_t<Args>...> format,
                             const Args&... args) noexcept {
    writeFormatted<Args...>(LogChannel::business, LogSeverity::info, format, args...);
}

/// The same about what is missing.
template <class... Args>
void writeBusCommonWarning(text::FormatString<std::type_identity_t<Args>...> format,
                           const Args&... args) noexcept {
    writeFormatted<Args...>(LogChannel::business, LogSeverity::warning, format, args...);
}

/// Writes a line straight to standard error, past the host; nothing on a thread with a
/// HostOfThread.
template <class... Args>
void writeSystemConsole(text::FormatString<std::type_identity_t<Args>...> format,
                        const Args&... args) noexcept {
    try {
        if (!HostOfThread::isThere())
            writeConsoleLine(text::format(format, args...));
    } catch (...) {
        // Out of memory: the message is lost, the caller goes on.
    }
}

}  // namespace yg
