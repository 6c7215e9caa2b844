// SPDX-License-Identifier: MIT
//
// What forks find when other threads are at work.
#include <atomic>
#include <mutex>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

#include "YGConfigManager/process/ForkMutex.h"

#include "Proof.h"

namespace yg::testing {
namespace {

struct Guarded {
    ForkMutex mutex;
    int first = 0;
    int second = 0;

    void change() {
        const std::lock_guard lock(mutex);
        ++first;
        ++second;
    }
    bool isWhole() {
        const std::lock_guard lock(mutex);
        return first == second;
    }
};

constinit Guarded one;
constinit Guarded other;
constinit Guarded untouched;

bool areWhole() {
    return one.isWhole() && other.isWhole() && untouched.isWhole();
}

bool childFinds(bool (*work)()) {
    const pid_t child = ::fork();
    if (child == 0) {
        // The end of one that waits for ever.
        ::alarm(60);
        ::_exit(work() ? 0 : 1);
    }
    int state = -1;
    ::waitpid(child, &state, 0);
    return state == 0;
}

TEST(ForkMutexProof, IsFreeInTheChildAndWhatItGuardsWhole) {
    std::atomic<bool> isOver = false;
    std::vector<std::thread> threads;
    for (Guarded* const guarded : {&one, &one, &other}) {
        threads.emplace_back([&isOver, guarded] {
            while (!isOver)
                guarded->change();
        });
    }
    std::atomic<int> lost = 0;
    for (int forker = 0; forker < 2; ++forker) {
        threads.emplace_back([&lost] {
            for (int i = repeats(200, 10'000); i > 0; --i)
                lost += childFinds(&areWhole) ? 0 : 1;
        });
    }
    for (; threads.size() > 3; threads.pop_back())
        threads.back().join();
    isOver = true;
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(lost, 0);
    EXPECT_TRUE(areWhole());
    EXPECT_TRUE(childFinds([] { return childFinds(&areWhole) && areWhole(); }));
}

}  // namespace
}  // namespace yg::testing
