// SPDX-License-Identifier: MIT
//
// A mutex for what a fork must not find half done. fork() waits until it is free and holds it
// meanwhile, so that the child finds it free and what it guards whole. For objects of the whole
// process, which are never destroyed. Internal. Any thread may call.
#pragma once

#include <atomic>
#include <mutex>
#include <pthread.h>

namespace yg {

/// Held for moments only, since each fork of the application waits for it; a thread that forks
/// waits for one other thread at most. Who holds it neither takes another ForkMutex nor forks nor
/// runs code of the application. vfork, posix_spawn and _Fork do not wait.
class ForkMutex {
public:
    constexpr ForkMutex() = default;
    ForkMutex(const ForkMutex&) = delete;
    ForkMutex& operator=(const ForkMutex&) = delete;

    void lock() {
        // Nobody holds a mutex that forks do not wait for.
        if (!isKnown_.load(std::memory_order_acquire))
            makeKnown();
        const std::lock_guard turn(turn_);
        use_.lock();
    }

    void unlock() { use_.unlock(); }

private:
    void makeKnown() {
        const std::lock_guard lock(listing);
        if (!isKnown_) {
            next_ = first;
            first = this;
            isKnown_.store(true, std::memory_order_release);
        }
    }

    static void lockAll() {
        listing.lock();
        for (ForkMutex* one = first; one; one = one->next_) {
            one->turn_.lock();
            one->use_.lock();
        }
    }

    /// In the parent and in the child.
    static void unlockAll() {
        for (ForkMutex* one = first; one; one = one->next_) {
            one->use_.unlock();
            one->turn_.unlock();
        }
        listing.unlock();
    }

    /// Taken before `use_`, so that who waits for `use_` gets it next.
    std::mutex turn_;
    std::mutex use_;
    ForkMutex* next_ = nullptr;  // of those that forks wait for
    std::atomic<bool> isKnown_ = false;

    static inline std::mutex listing;
    static inline ForkMutex* first = nullptr;
    [[maybe_unused]] static inline const int registered =
        ::pthread_atfork(&lockAll, &unlockAll, &unlockAll);
};

}  // namespace yg
