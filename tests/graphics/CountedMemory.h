// SPDX-License-Identifier: MIT
//
// Counts what a thread takes from operator new. The thread sanitizer lets nobody else define the
// allocation functions; what needs the count is left out there.
#pragma once

#if defined(__SANITIZE_THREAD__)
#define YG_NO_COUNTED_MEMORY
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define YG_NO_COUNTED_MEMORY
#endif
#endif

#include <cstddef>

namespace yg::testing {

/// The bytes that this thread has taken so far, given back or not.
std::size_t bytesTaken();

}  // namespace yg::testing
