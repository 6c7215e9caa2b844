// SPDX-License-Identifier: MIT
//
// Which signals the network thread takes and how it is scheduled, by itself and in completions.
#pragma once

#include <csignal>
#include <sched.h>

namespace yg::net {

/// The settings that completions have.
struct ThreadSettings {
    /// Those of the calling thread, but never its real-time priority, which is for that thread
    /// alone.
    static ThreadSettings ofThisThread() noexcept;

    sigset_t blocked{};
    int policy = SCHED_OTHER;
};

/// Blocks the signals of the calling thread, and of threads that it starts, until the end of the
/// scope: the application's handlers run on its own threads. Those of a fault stay.
class SignalsBlocked {
public:
    SignalsBlocked() noexcept;
    ~SignalsBlocked();
    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;

private:
    sigset_t before_{};
};

/// Waking a thread scheduled so does not take the processor from the one that wakes it.
void scheduleAsBatch() noexcept;

/// Gives the network thread the settings of the application until the end of the scope, so that
/// threads and programs that are started there have them too.
class AsApplication {
public:
    explicit AsApplication(const ThreadSettings& settings) noexcept;
    ~AsApplication();
    AsApplication(const AsApplication&) = delete;
    AsApplication& operator=(const AsApplication&) = delete;
};

}  // namespace yg::net
