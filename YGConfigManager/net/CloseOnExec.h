// SPDX-License-Identifier: MIT
//
// Programs that the application starts do not inherit the sockets by which libcurl wakes itself. It
// makes them without that mark and does not give their numbers.
#pragma once

#include <curl/curl.h>

namespace yg::net {

bool isClosedOnExec(int file) noexcept;

/// Marks the pair by which a transfer is woken when it is given one end of it.
void closePairOnExec(int socket) noexcept;

/// Marks the pair by which a new multi handle is woken; does nothing where it cannot be
/// distinguished from other sockets.
void closeWakeUpOnExec(CURLM* multi) noexcept;

}  // namespace yg::net
