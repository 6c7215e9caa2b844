// SPDX-License-Identifier: MIT
//
// Locks of the process in the child of a fork. Internal.
#pragma once

#include <pthread.h>

namespace yg {

/// Has each fork take `mutex` before and release it after, so that in the child it is free and what
/// it guards is whole. For locks that a thread holds for a moment only; while it does, it takes no
/// other lock of this kind, calls nothing of the application, and so does not fork.
///
///     std::mutex places;
///     const int forks = holdForForks<places>();
template <auto& mutex>
int holdForForks() noexcept {
    return ::pthread_atfork([] { mutex.lock(); }, [] { mutex.unlock(); }, [] { mutex.unlock(); });
}

}  // namespace yg
