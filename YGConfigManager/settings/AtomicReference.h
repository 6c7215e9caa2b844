// SPDX-License-Identifier: MIT
//
// A shared pointer that one thread may replace while others read it, as one step each. The
// standard's own, std::atomic<std::shared_ptr>, is missing from some C++20 libraries and races with
// itself in others.
#pragma once

#include <atomic>
#include <memory>
#include <thread>
#include <utility>

namespace yg {

template <class T>
class AtomicReference {
public:
    /// The pointer stored last. The object stays as long as the answer is held.
    std::shared_ptr<T> load() const {
        const Hold hold(busy_);
        return pointer_;
    }

    /// Replaces the pointer. The object before goes when nobody holds it any more.
    void store(std::shared_ptr<T> pointer) {
        const Hold hold(busy_);
        pointer_.swap(pointer);
    }

private:
    /// Copying or swapping a pointer takes a few nanoseconds, too few to put a thread to sleep for.
    class Hold {
    public:
        explicit Hold(std::atomic_flag& busy) : busy_(busy) {
            while (busy_.test_and_set(std::memory_order_acquire))
                std::this_thread::yield();
        }
        ~Hold() { busy_.clear(std::memory_order_release); }
        Hold(const Hold&) = delete;
        Hold& operator=(const Hold&) = delete;

    private:
        std::atomic_flag& busy_;
    };

    mutable std::atomic_flag busy_;
    std::shared_ptr<T> pointer_;
};

}  // namespace yg
