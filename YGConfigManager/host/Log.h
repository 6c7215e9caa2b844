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
void writeLogMessage(LogChannel channel, std::string_view message) noexcept;

/// Writes `message` and a line end to standard error with a single write, whole among those of
/// other threads. Line breaks and other control characters inside it (text/Controls.h) become
/// blanks, tabs stay.
///
/// Where standard error does not block, a line waits for its reader for a second in all. What then
/// has no room is lost: the whole line, or its rest, after which the next line begins on a line of
/// its own. The lines that follow do not wait until one has been written.
void writeConsoleLine(std::string_view message) noexcept;

/// Logs what a loader does as it runs: writeRuntimeLog("load style config fail:%@", error).
template <class... Args>
void writeRuntimeLog(text::FormatString<std::type_identity_t<Args>...> format,
                     const Args&... args) noexcept {
    try {
        writeLogMessage(LogChannel::runtime, text::format(format, args...));
    } catch (...) {
        // Out of memory: the message is lost, the caller goes on.
    }
}

/// Logs to the business log. The messages begin with "%s L%d ", the name of the operation and the
/// line: writeBusCommonLogInside("%s L%d filePath: %@", "-[Class operation]", 71, path).
template <class... Args>
void writeBusCommonLogInside(text::FormatString<std::type_identity_t<Args>...> format,
                             const Args&... args) noexcept {
    try {
        writeLogMessage(LogChannel::business, text::format(format, args...));
    } catch (...) {
        // Out of memory: the message is lost, the caller goes on.
    }
}

/// Writes a line straight to standard error, past the host; not on a thread that has its own
/// (HostOfThread.h).
template <class... Args>
void writeSystemConsole(text::FormatString<std::type_identity_t<Args>...> format,
                        const Args&... args) noexcept {
    try {
        if (!HostOfThread::isSet())
            writeConsoleLine(text::format(format, args...));
    } catch (...) {
        // Out of memory: the message is lost, the caller goes on.
    }
}

}  // namespace yg
