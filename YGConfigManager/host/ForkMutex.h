// SPDX-License-Identifier: MIT
//
// A mutex for what a fork must not find half done. fork() waits until it is free and holds it
// meanwhile, so that the child finds it free and what it guards whole. For objects of the whole
// process, which are never destroyed. Internal. Any thread may call.
#pragma once

#include <atomic>
#include <mutex>

namespace yg {

/// Held for moments only, since each fork of the application waits for it; a thread that forks
/// waits for one other thread at most. Who holds it neither takes another ForkMutex nor forks nor
/// runs code of the application. vfork, posix_spawn and _Fork do not wait.
class ForkMutex {
public:
    constexpr ForkMutex() = default;
    ForkMutex(const ForkMutex&) = delete;
    ForkMutex& operator=(const ForkMutex&) = delete;

    void lock();
    void unlock();

private:
    friend class ForkMutexes;

    /// Taken before `use_`, so that who waits for `use_` gets it next.
    std::mutex turn_;
    std::mutex use_;
    ForkMutex* next_ = nullptr;  // of those that forks wait for
    std::atomic<bool> isKnown_ = false;
};

}  // namespace yg
