// SPDX-License-Identifier: MIT
//
// Writing what the user asked for to a file that the user named.
#pragma once

#include <string>
#include <string_view>

namespace yg::tool {

/// Writes the bytes to the file, which is created or replaced as files/AtomicWrite.h says: it has
/// its old content or all of the new one. A pipe or a character device is written to as it stands
/// and never removed; opening a pipe waits for its reader. So is what this process has open under
/// the number that /dev/stdout, /dev/stderr, /dev/fd/N or /proc/self/fd/N names, a file as well.
/// Devices of other kinds, sockets and folders are refused. Answers why it could not be written,
/// empty if it was. Throws std::bad_alloc.
std::string writeOutput(const std::string& path, std::string_view bytes);

}  // namespace yg::tool
