// SPDX-License-Identifier: MIT
#include "YGConfigManager/host/MainQueue.h"

#include <cstdint>
#include <exception>
#include <list>
#include <mutex>
#include <utility>

#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/host/Host.h"
#include "YGConfigManager/host/Immortal.h"
#include "YGConfigManager/host/Log.h"
#include "YGConfigManager/process/ForkMutex.h"

namespace yg {

namespace {

/// Guards the default queue.
constinit ForkMutex queueing;

/// Runs `function`; what it throws is logged under `what`.
void runAndLog(const std::function<void()>& function, std::string_view what) noexcept {
    try {
        function();
    } catch (const std::exception& error) {
        writeRuntimeError("%@ fail:%@", what, error.what());
    } catch (...) {
        writeRuntimeError("%@ fail:%@", what, "unknown exception");
    }
}

class DefaultMainQueue final : public MainQueue {
public:
    void post(std::function<void()> task) override {
        if (!task)
            return;
        std::shared_ptr<const std::function<void()>> wakeUp;
        {
            const std::lock_guard lock(queueing);
            tasks_.push_back(std::move(task));
            ++posted_;
            if (!std::exchange(isAnnounced_, true))
                wakeUp = wakeUp_;
        }
        wake(wakeUp);
    }

    std::size_t runPending() {
        std::unique_lock lock(queueing);
        // Whatever is posted from here on belongs to the next call and is announced again, even
        // while this one still has tasks before it.
        isAnnounced_ = false;
        const std::uint64_t end = posted_;
        std::size_t count = 0;
        while (taken_ < end) {
            {
                const std::function<void()> task = std::move(tasks_.front());
                tasks_.pop_front();
                ++taken_;
                lock.unlock();
                runAndLog(task, "main task");
            }
            ++count;
            lock.lock();
        }
        return count;
    }

    void setWakeUp(std::function<void()> wakeUp) {
        auto shared = wakeUp ? std::make_shared<const std::function<void()>>(std::move(wakeUp))
                             : std::shared_ptr<const std::function<void()>>();
        std::shared_ptr<const std::function<void()>> wakeNow;
        {
            const std::lock_guard lock(queueing);
            wakeUp_.swap(shared);
            if (!tasks_.empty()) {
                isAnnounced_ = true;
                wakeNow = wakeUp_;
            }
        }
        wake(wakeNow);
    }

private:
    static void wake(const std::shared_ptr<const std::function<void()>>& wakeUp) {
        if (wakeUp)
            runAndLog(*wakeUp, "main queue wake-up");
    }

    std::list<std::function<void()>> tasks_;  // without tasks it takes no memory
    std::uint64_t posted_ = 0;
    std::uint64_t taken_ = 0;
    bool isAnnounced_ = false;
    std::shared_ptr<const std::function<void()>> wakeUp_;
};

DefaultMainQueue& standardQueue() {
    static Immortal<DefaultMainQueue> queue;
    return *queue;
}

/// Made when the library is loaded: the child of a fork could not wait for another thread to do it.
[[maybe_unused]] const DefaultMainQueue& made = standardQueue();

/// The queue that the current host names, or the default one.
std::shared_ptr<MainQueue> queueOfHost() {
    try {
        if (std::shared_ptr<MainQueue> queue = currentHost()->mainQueue())
            return queue;
    } catch (...) {
        // As if the host named none.
    }
    return defaultMainQueue();
}

}  // namespace

MainQueue::~MainQueue() = default;

std::shared_ptr<MainQueue> defaultMainQueue() noexcept {
    // It is never destroyed, so nobody owns it.
    return {std::shared_ptr<void>(), &standardQueue()};
}

std::size_t runPendingMainTasks() noexcept {
    return standardQueue().runPending();
}

void setMainQueueWakeUp(std::function<void()> wakeUp) noexcept {
    guarded("main queue wake-up", [&] { standardQueue().setWakeUp(std::move(wakeUp)); });
}

bool postToMainQueue(std::function<void()> task) noexcept {
    return task && guarded("main queue post", [&task] {
               queueOfHost()->post(std::move(task));
               return true;
           });
}

}  // namespace yg
