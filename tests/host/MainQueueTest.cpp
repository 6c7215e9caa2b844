// SPDX-License-Identifier: MIT
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/host/MainQueue.h"

#include "host/RecordingHost.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using yg::defaultMainQueue;
using yg::postToMainQueue;
using yg::runPendingMainTasks;
using yg::setMainQueueWakeUp;
using yg::testing::ScopedHost;

/// Keeps tasks, or refuses them.
class KeepingQueue : public yg::MainQueue {
public:
    explicit KeepingQueue(bool refuses = false) : refuses_(refuses) {}

    void post(std::function<void()> task) override {
        if (refuses_)
            throw std::runtime_error("no loop yet");
        tasks.push_back(std::move(task));
    }

    std::vector<std::function<void()>> tasks;

private:
    bool refuses_;
};

class MainQueue : public testing::Test {
protected:
    void SetUp() override { runPendingMainTasks(); }
    void TearDown() override {
        setMainQueueWakeUp({});
        while (runPendingMainTasks() > 0) {
        }
    }

    /// Posts a task that notes its name.
    void post(const std::string& name) {
        defaultMainQueue()->post([this, name] { ran.push_back(name); });
    }

    ScopedHost<> host;
    std::vector<std::string> ran;
};

TEST_F(MainQueue, NothingRunsUnlessItIsDrained) {
    post("a");
    EXPECT_THAT(ran, IsEmpty());
    EXPECT_EQ(runPendingMainTasks(), 1U);
    EXPECT_THAT(ran, ElementsAre("a"));
}

TEST_F(MainQueue, TasksRunOnceInTheOrderOfPosting) {
    post("a");
    post("b");
    post("c");
    EXPECT_EQ(runPendingMainTasks(), 3U);
    EXPECT_EQ(runPendingMainTasks(), 0U);
    EXPECT_THAT(ran, ElementsAre("a", "b", "c"));
}

TEST_F(MainQueue, ATaskPostedByATaskWaitsForTheNextDrain) {
    defaultMainQueue()->post([this] {
        ran.push_back("a");
        post("c");
    });
    post("b");
    EXPECT_EQ(runPendingMainTasks(), 2U);
    EXPECT_THAT(ran, ElementsAre("a", "b"));
    EXPECT_EQ(runPendingMainTasks(), 1U);
    EXPECT_THAT(ran, ElementsAre("a", "b", "c"));
}

TEST_F(MainQueue, ANestedDrainGoesOnWhereTheOuterOneStands) {
    defaultMainQueue()->post([this] {
        ran.push_back("a");
        post("c");
        EXPECT_EQ(runPendingMainTasks(), 2U);
        ran.push_back("end of a");
    });
    post("b");
    EXPECT_EQ(runPendingMainTasks(), 1U);
    EXPECT_THAT(ran, ElementsAre("a", "b", "c", "end of a"));
}

TEST_F(MainQueue, ATaskThatThrowsIsLoggedAndTheOthersRun) {
    defaultMainQueue()->post([] { throw std::runtime_error("broken view"); });
    defaultMainQueue()->post([] { throw 1; });
    post("a");
    EXPECT_EQ(runPendingMainTasks(), 3U);
    EXPECT_THAT(ran, ElementsAre("a"));
    EXPECT_THAT(host->runtimeLog(),
                ElementsAre("main task fail:broken view", "main task fail:unknown exception"));
}

TEST_F(MainQueue, AnEmptyTaskIsIgnored) {
    defaultMainQueue()->post({});
    postToMainQueue({});
    EXPECT_EQ(runPendingMainTasks(), 0U);
    EXPECT_THAT(host->log(), IsEmpty());
}

TEST_F(MainQueue, ATaskIsDestroyedBeforeTheNextRunsAndMayPostThen) {
    std::shared_ptr<void> held(nullptr, [this](void*) {
        ran.push_back("destroyed");
        post("posted");
    });
    defaultMainQueue()->post([held] {});
    held.reset();
    post("next");
    EXPECT_EQ(runPendingMainTasks(), 2U);
    EXPECT_THAT(ran, ElementsAre("destroyed", "next"));
    EXPECT_EQ(runPendingMainTasks(), 1U);
}

TEST_F(MainQueue, TheWakeUpComesOnceUntilTheNextDrain) {
    int calls = 0;
    setMainQueueWakeUp([&calls] { ++calls; });
    EXPECT_EQ(calls, 0);
    post("a");
    post("b");
    EXPECT_EQ(calls, 1);
    runPendingMainTasks();
    EXPECT_EQ(calls, 1);
    post("c");
    EXPECT_EQ(calls, 2);
}

TEST_F(MainQueue, TheWakeUpComesOnThePostingThread) {
    std::thread::id woken;
    setMainQueueWakeUp([&woken] { woken = std::this_thread::get_id(); });
    std::thread::id poster;
    std::thread([&] {
        poster = std::this_thread::get_id();
        post("a");
    }).join();
    EXPECT_EQ(woken, poster);
}

TEST_F(MainQueue, TheWakeUpComesForWhatATaskPostsWhileOthersWait) {
    int calls = 0;
    setMainQueueWakeUp([&calls] { ++calls; });
    defaultMainQueue()->post([this] { post("b"); });
    post("a");
    runPendingMainTasks();
    EXPECT_EQ(calls, 2);
}

TEST_F(MainQueue, TheWakeUpComesAtOnceWhenTasksWaitAlready) {
    post("a");
    int calls = 0;
    setMainQueueWakeUp([&calls] { ++calls; });
    EXPECT_EQ(calls, 1);
}

TEST_F(MainQueue, TheWakeUpCanBeTakenAway) {
    int calls = 0;
    setMainQueueWakeUp([&calls] { ++calls; });
    setMainQueueWakeUp({});
    post("a");
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(runPendingMainTasks(), 1U);
}

TEST_F(MainQueue, AWakeUpThatThrowsIsLoggedAndTheTaskKept) {
    setMainQueueWakeUp([] { throw std::runtime_error("pipe closed"); });
    post("a");
    EXPECT_THAT(host->runtimeLog(), ElementsAre("main queue wake-up fail:pipe closed"));
    EXPECT_EQ(runPendingMainTasks(), 1U);
}

TEST_F(MainQueue, AHostsOwnQueueTakesTheTasks) {
    const auto queue = std::make_shared<KeepingQueue>();
    host->queue = queue;
    postToMainQueue([this] { ran.push_back("a"); });
    EXPECT_EQ(runPendingMainTasks(), 0U);
    ASSERT_EQ(queue->tasks.size(), 1U);
    queue->tasks[0]();
    EXPECT_THAT(ran, ElementsAre("a"));
}

TEST_F(MainQueue, AHostWithoutAQueueHasTheDefaultOne) {
    host->queue = nullptr;
    postToMainQueue([this] { ran.push_back("a"); });
    EXPECT_EQ(runPendingMainTasks(), 1U);
    EXPECT_THAT(ran, ElementsAre("a"));
}

TEST_F(MainQueue, AQueueThatThrowsCostsTheTask) {
    host->queue = std::make_shared<KeepingQueue>(true);
    postToMainQueue([this] { ran.push_back("a"); });
    EXPECT_THAT(host->runtimeLog(), ElementsAre("main queue post fail:no loop yet"));
    EXPECT_EQ(runPendingMainTasks(), 0U);
    EXPECT_THAT(ran, IsEmpty());
}

}  // namespace
