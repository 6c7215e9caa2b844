// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <atomic>
#include <barrier>
#include <memory>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/host/NotificationCenter.h"

#include "host/RecordingHost.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using yg::Notification;
using Token = yg::NotificationCenter::Token;

class NotificationCenter : public testing::Test {
protected:
    /// Adds an observer that notes its name.
    Token observe(const std::string& name, const void* from, const std::string& note) {
        return center.addObserver(name, from,
                                  [this, note](const Notification&) { received.push_back(note); });
    }

    yg::NotificationCenter center;
    std::shared_ptr<int> sender = std::make_shared<int>(1);
    std::shared_ptr<int> other = std::make_shared<int>(2);
    std::vector<std::string> received;
};

TEST_F(NotificationCenter, ObserversAreToldInTheOrderOfAdding) {
    const Token first = observe("changed", nullptr, "first");
    const Token second = observe("changed", nullptr, "second");
    center.post("changed", sender);
    center.post("changed", nullptr);
    EXPECT_THAT(received, ElementsAre("first", "second", "first", "second"));
}

TEST_F(NotificationCenter, AnObserverIsToldOfItsNameOnly) {
    const Token token = observe("changed", nullptr, "received");
    center.post("Changed", sender);
    center.post("", sender);
    EXPECT_THAT(received, IsEmpty());
}

TEST_F(NotificationCenter, AnObserverOfOneSenderIsNotToldOfOthers) {
    const Token token = observe("changed", sender.get(), "received");
    center.post("changed", other);
    center.post("changed", nullptr);
    EXPECT_THAT(received, IsEmpty());
    center.post("changed", sender);
    EXPECT_THAT(received, ElementsAre("received"));
}

TEST_F(NotificationCenter, TheNotificationNamesItsSender) {
    Notification seen;
    const Token token = center.addObserver(
        "changed", nullptr, [&](const Notification& notification) { seen = notification; });
    center.post("changed", sender);
    EXPECT_EQ(seen.name, "changed");
    EXPECT_EQ(std::static_pointer_cast<int>(seen.sender), sender);
}

TEST_F(NotificationCenter, ObserversRunInsideThePost) {
    std::thread::id ran;
    const Token token = center.addObserver(
        "changed", nullptr, [&](const Notification&) { ran = std::this_thread::get_id(); });
    std::thread::id posted;
    std::thread([&] {
        posted = std::this_thread::get_id();
        center.post("changed", sender);
        EXPECT_EQ(ran, posted);
    }).join();
}

TEST_F(NotificationCenter, TheObserverGoesWithItsToken) {
    { const Token token = observe("changed", nullptr, "received"); }
    center.post("changed", sender);
    EXPECT_THAT(received, IsEmpty());
}

TEST_F(NotificationCenter, AMovedTokenKeepsTheObserver) {
    Token kept;
    {
        Token token = observe("changed", nullptr, "first");
        kept = std::move(token);
    }
    center.post("changed", sender);
    kept = observe("changed", nullptr, "second");
    center.post("changed", sender);
    kept.remove();
    kept.remove();
    center.post("changed", sender);
    EXPECT_THAT(received, ElementsAre("first", "second"));
}

TEST_F(NotificationCenter, ATokenMayOutliveTheCentre) {
    Token token;
    {
        yg::NotificationCenter brief;
        token = brief.addObserver("changed", nullptr, [](const Notification&) {});
    }
    token.remove();
}

TEST_F(NotificationCenter, AnObserverMayRemoveItself) {
    std::optional<Token> token;
    token = center.addObserver("changed", nullptr, [&](const Notification&) {
        received.push_back("once");
        token.reset();
    });
    const Token next = observe("changed", nullptr, "next");
    center.post("changed", sender);
    center.post("changed", sender);
    EXPECT_THAT(received, ElementsAre("once", "next", "next"));
}

TEST_F(NotificationCenter, AnObserverRemovedByAnotherIsNotToldAnyMore) {
    Token second;
    const Token first =
        center.addObserver("changed", nullptr, [&](const Notification&) { second.remove(); });
    second = observe("changed", nullptr, "second");
    center.post("changed", sender);
    EXPECT_THAT(received, IsEmpty());
}

TEST_F(NotificationCenter, AnObserverAddedMeanwhileWaitsForTheNextPost) {
    std::vector<Token> added;
    const Token token = center.addObserver("changed", nullptr, [&](const Notification&) {
        added.push_back(observe("changed", nullptr, "added"));
    });
    center.post("changed", sender);
    EXPECT_THAT(received, IsEmpty());
    center.post("changed", sender);
    EXPECT_THAT(received, ElementsAre("added"));
}

TEST_F(NotificationCenter, AnObserverMayPost) {
    const Token second = observe("second", nullptr, "second");
    const Token first = center.addObserver("first", nullptr, [&](const Notification&) {
        center.post("second", sender);
        received.push_back("first");
    });
    center.post("first", sender);
    EXPECT_THAT(received, ElementsAre("second", "first"));
}

TEST_F(NotificationCenter, AnObserverThatThrowsIsLoggedAndTheOthersAreTold) {
    const yg::testing::ScopedHost<> host;
    const Token broken = center.addObserver(
        "changed", nullptr, [](const Notification&) { throw std::runtime_error("no view"); });
    const Token odd = center.addObserver("changed", nullptr, [](const Notification&) { throw 1; });
    const Token last = observe("changed", nullptr, "last");
    center.post("changed", sender);
    EXPECT_THAT(received, ElementsAre("last"));
    EXPECT_THAT(host->runtimeLog(), ElementsAre("notification changed fail:no view",
                                                "notification changed fail:unknown exception"));
}

TEST_F(NotificationCenter, AnEmptyObserverIsNeverCalled) {
    const yg::testing::ScopedHost<> host;
    const Token token = center.addObserver("changed", nullptr, {});
    center.post("changed", sender);
    EXPECT_THAT(host->log(), IsEmpty());
}

TEST_F(NotificationCenter, WhatARemovedObserverHeldMayComeBackToTheCentre) {
    std::shared_ptr<void> held(nullptr, [this](void*) { center.post("gone", nullptr); });
    const Token watch = observe("gone", nullptr, "gone");
    Token token = center.addObserver("changed", nullptr, [held](const Notification&) {});
    held.reset();
    token.remove();
    EXPECT_THAT(received, ElementsAre("gone"));
}

TEST_F(NotificationCenter, TheObserverKeepsNoSenderAlive) {
    const std::weak_ptr<int> watch = sender;
    const Token token = observe("changed", sender.get(), "received");
    sender.reset();
    EXPECT_TRUE(watch.expired());
}

TEST_F(NotificationCenter, ThreadsAddPostAndRemoveAtOnce) {
    std::atomic<int> count = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < 200; ++round) {
                const Token token =
                    center.addObserver("changed", nullptr, [&](const Notification&) { ++count; });
                center.post("changed", sender);
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_GE(count, 800);
}

TEST_F(NotificationCenter, AnAssignmentMayDestroyTheTokensHolder) {
    struct Holder {
        Token token;
    };
    // Memory that shows what is written after the holder has gone.
    alignas(Holder) std::array<unsigned char, sizeof(Holder)> memory{};
    const auto fill = [&memory] { memory.fill(0x5a); };
    const auto isAsFilled = [&memory] {
        return std::all_of(memory.begin(), memory.end(), [](auto byte) { return byte == 0x5a; });
    };
    for (const bool isRemoved : {false, true}) {
        std::shared_ptr<Holder> holder(::new (memory.data()) Holder, [&](Holder* gone) {
            std::destroy_at(gone);
            fill();
        });
        Token& token = holder->token;
        token = center.addObserver("changed", nullptr, [holder](const Notification&) {});
        holder.reset();
        ASSERT_FALSE(isAsFilled());
        if (isRemoved)
            token.remove();
        else
            token = observe("changed", nullptr, "goes with the holder");
        EXPECT_TRUE(isAsFilled());
    }
    center.post("changed", sender);
    EXPECT_THAT(received, IsEmpty());
}

TEST_F(NotificationCenter, ATokenAssignedToItselfKeepsItsObserver) {
    Token token = observe("changed", nullptr, "received");
    Token& same = token;
    token = std::move(same);
    center.post("changed", sender);
    EXPECT_THAT(received, ElementsAre("received"));
}

// Each round all threads work on the same token at once.
TEST_F(NotificationCenter, OneTokenMayBeRemovedAndAssignedByAllThreads) {
    constexpr int rounds = 3000;
    Token token;
    std::atomic<int> called = 0;
    const auto add = [&] {
        return center.addObserver("changed", nullptr, [&called](const Notification&) { ++called; });
    };
    std::barrier start(4, [&]() noexcept { token = add(); });
    const auto work = [&](const auto& step) {
        return std::thread([&start, step] {
            for (int round = 0; round < rounds; ++round) {
                start.arrive_and_wait();
                step();
            }
        });
    };
    std::vector<std::thread> threads;
    const auto remove = [&] { token.remove(); };
    threads.push_back(work(remove));
    threads.push_back(work(remove));
    threads.push_back(work([&] { token = add(); }));
    threads.push_back(work([&] {
        const Token moved = std::move(token);
        center.post("changed", sender);
    }));
    for (std::thread& thread : threads)
        thread.join();
    token.remove();
    called = 0;
    center.post("changed", sender);
    EXPECT_EQ(called, 0);
}

// What one thread begins to remove is removed for the other one as well when its call is over.
TEST_F(NotificationCenter, AfterRemovingNothingIsCalledWhoeverRemoved) {
    constexpr int rounds = 3000;
    Token token;
    std::atomic<int> called = 0;
    std::atomic<int> late = 0;
    std::barrier start(2, [&]() noexcept {
        token = center.addObserver("changed", nullptr, [&](const Notification&) { ++called; });
    });
    const auto work = [&] {
        for (int round = 0; round < rounds; ++round) {
            start.arrive_and_wait();
            token.remove();
            const int before = called;
            center.post("changed", sender);
            late += called - before;
        }
    };
    std::thread second(work);
    work();
    second.join();
    EXPECT_EQ(late, 0);
}

TEST_F(NotificationCenter, TheStandardOneIsOneForTheProcess) {
    EXPECT_EQ(&yg::NotificationCenter::standard(), &yg::NotificationCenter::standard());
}

}  // namespace
