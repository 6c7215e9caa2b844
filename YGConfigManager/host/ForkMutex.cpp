// SPDX-License-Identifier: MIT
#include "YGConfigManager/host/ForkMutex.h"

#include <pthread.h>

namespace yg {

/// All that were ever locked.
class ForkMutexes {
public:
    static void add(ForkMutex& mutex) {
        const std::lock_guard lock(listing);
        if (!mutex.isKnown_) {
            mutex.next_ = first;
            first = &mutex;
            mutex.isKnown_.store(true, std::memory_order_release);
        }
    }

private:
    static void lockAll() {
        listing.lock();
        for (ForkMutex* one = first; one != nullptr; one = one->next_) {
            one->turn_.lock();
            one->use_.lock();
        }
    }

    /// In the parent and in the child.
    static void unlockAll() {
        for (ForkMutex* one = first; one != nullptr; one = one->next_) {
            one->use_.unlock();
            one->turn_.unlock();
        }
        listing.unlock();
    }

    static inline constinit std::mutex listing;
    static inline constinit ForkMutex* first = nullptr;
    [[maybe_unused]] static inline const int registered =
        ::pthread_atfork(&lockAll, &unlockAll, &unlockAll);
};

void ForkMutex::lock() {
    // Nobody holds a mutex that forks do not wait for.
    if (!isKnown_.load(std::memory_order_acquire)) {
        ForkMutexes::add(*this);
    }
    const std::lock_guard turn(turn_);
    use_.lock();
}

void ForkMutex::unlock() {
    use_.unlock();
}

}  // namespace yg
