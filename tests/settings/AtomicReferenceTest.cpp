// SPDX-License-Identifier: MIT
#include <array>
#include <atomic>
#include <csignal>
#include <cstdint>
#include <memory>
#include <pthread.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "YGConfigManager/settings/AtomicReference.h"
#include "YGConfigManager/settings/YGHttpReqUrlMgr.h"

#include "Proof.h"
#include "settings/SettingsFixture.h"

namespace yg {
namespace {

using Reference = AtomicReference<const int>;

void store(Reference& reference, int value) {
    reference.store(Reference::Next(std::make_shared<const int>(value)));
}

TEST(AtomicReference, HoldsNullAtFirst) {
    const Reference reference;
    EXPECT_EQ(reference.load(), nullptr);
}

TEST(AtomicReference, AnswersWhatWasStoredLast) {
    Reference reference;
    store(reference, 1);
    EXPECT_EQ(*reference.load(), 1);
    store(reference, 2);
    EXPECT_EQ(*reference.load(), 2);
    EXPECT_EQ(*reference.load(), 2);
    reference.store(Reference::Next(nullptr));
    EXPECT_EQ(reference.load(), nullptr);
}

TEST(AtomicReference, AnObjectGoesWhenItIsReplacedAndNobodyHoldsIt) {
    auto object = std::make_shared<const int>(1);
    const std::weak_ptr<const int> one = object;
    auto reference = std::make_unique<Reference>();
    reference->store(Reference::Next(std::move(object)));
    auto held = reference->load();
    store(*reference, 2);
    EXPECT_FALSE(one.expired());
    held.reset();
    EXPECT_TRUE(one.expired());
    const std::weak_ptr<const int> two = reference->load();
    reference.reset();
    EXPECT_TRUE(two.expired());
}

TEST(AtomicReference, StoringTakesNoMemory) {
    EXPECT_TRUE(noexcept(std::declval<Reference&>().store(std::declval<Reference::Next>())));
    EXPECT_TRUE(noexcept(std::declval<Reference&>().load()));
    EXPECT_TRUE(std::atomic<std::uint64_t>::is_always_lock_free);
}

/// An object that counts those of its kind and knows whether it is whole.
struct Counted {
    explicit Counted(std::atomic<int>& alive) : alive_(alive) { ++alive_; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;
    ~Counted() {
        first = 0;
        --alive_;
    }
    int first = 7;

private:
    std::atomic<int>& alive_;
};

TEST(AtomicReferenceProof, ReadersAndWritersLeaveNothingBehind) {
    const int rounds = testing::repeats(20'000, 5'000'000);
    std::atomic<int> alive = 0;
    {
        AtomicReference<const Counted> reference;
        std::atomic<int> ready = 0;
        std::vector<std::thread> threads;
        for (int thread = 0; thread < 6; ++thread) {
            threads.emplace_back([&, thread] {
                for (++ready; ready < 6;)
                    std::this_thread::yield();
                for (int round = 0; round < rounds; ++round) {
                    if (thread < 2)
                        reference.store(AtomicReference<const Counted>::Next(
                            std::make_shared<const Counted>(alive)));
                    else if (const auto object = reference.load(); object && object->first != 7)
                        ADD_FAILURE() << "an object that is gone";
                }
            });
        }
        for (std::thread& thread : threads)
            thread.join();
        EXPECT_EQ(alive, 1);
    }
    EXPECT_EQ(alive, 0);
}

// ---- A thread that stops -----------------------------------------------------------------------

/// Pipes by which the handler of a signal says that its thread has stopped, and waits to go on: at
/// any moment of what the thread does.
std::array<int, 2> stoppedPipe;
std::array<int, 2> goOnPipe;

void stop(int) {
    char byte = 0;
    while (::write(stoppedPipe[1], &byte, 1) != 1) {
    }
    while (::read(goOnPipe[0], &byte, 1) != 1) {
    }
}

/// Stops a thread while it reads, and reads. Before each time `replace(round)` answers what is to
/// be read then.
template <class Read, class Replace>
void readWhileAReaderIsStopped(const Read& read, const Replace& replace) {
    ASSERT_EQ(::pipe(stoppedPipe.data()), 0);
    ASSERT_EQ(::pipe(goOnPipe.data()), 0);
    struct sigaction action {};
    struct sigaction usual {};
    action.sa_handler = stop;
    ASSERT_EQ(::sigaction(SIGUSR1, &action, &usual), 0);
    std::atomic<bool> isOver = false;
    std::atomic<int> reads = 0;
    std::thread reader([&] {
        for (; !isOver; ++reads)
            read();
    });
    const int rounds = testing::repeats(400, 200'000);
    for (int round = 0; round < rounds; ++round) {
        const auto expected = replace(round);
        // Else it stops where it stopped before.
        for (const int before = reads; reads - before < 10;)
            std::this_thread::yield();
        ASSERT_EQ(::pthread_kill(reader.native_handle(), SIGUSR1), 0);
        char byte = 0;
        ASSERT_EQ(::read(stoppedPipe[0], &byte, 1), 1);
        // Takes no memory, whose locks the other may hold. Whoever waits here never comes back.
        const auto found = read();
        ASSERT_EQ(::write(goOnPipe[1], &byte, 1), 1);
        ASSERT_EQ(found, expected);
    }
    isOver = true;
    reader.join();
    ::sigaction(SIGUSR1, &usual, nullptr);
    for (const int end : {stoppedPipe[0], stoppedPipe[1], goOnPipe[0], goOnPipe[1]})
        ::close(end);
}

TEST(AtomicReferenceProof, NobodyWaitsForAReaderThatStops) {
    Reference reference;
    readWhileAReaderIsStopped([&] { return reference.load(); },
                              [&](int round) {
                                  store(reference, round);
                                  return reference.load();
                              });
}

using RequestUrlListProof = testing::StorageTest;

TEST_F(RequestUrlListProof, NoReaderOfTheListWaitsForOneThatStops) {
    put("request_urls_json.txt", R"({"md5Value":"m","urlConfigList":[]})");
    const testing::KeptRequests transport;
    const auto manager = transport.make();
    manager->readUrlModelFromFile();
    const auto list = manager->urlModel();
    ASSERT_NE(list, nullptr);
    readWhileAReaderIsStopped([&] { return manager->urlModel(); }, [&](int) { return list; });
}

}  // namespace
}  // namespace yg
