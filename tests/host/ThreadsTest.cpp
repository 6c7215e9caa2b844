// SPDX-License-Identifier: MIT
//
// Everything at once from several threads; the thread sanitizer watches.
#include <algorithm>
#include <atomic>
#include <functional>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/host/Host.h"
#include "YGConfigManager/host/JsonValue.h"
#include "YGConfigManager/host/Log.h"
#include "YGConfigManager/host/StandAloneHost.h"
#include "YGConfigManager/host/YGFrameComFun.h"

#include "files/TemporaryFolder.h"
#include "host/RecordingHost.h"

namespace {

using yg::YGFrameComFun;
using yg::files::TemporaryFolder;
using yg::testing::RecordingHost;

constexpr int rounds = 300;

/// Runs each function on a thread of its own, `rounds` times, all at the same time.
void runTogether(const std::vector<std::function<void(int)>>& functions) {
    std::atomic<std::size_t> ready = 0;
    std::vector<std::thread> threads;
    for (const auto& function : functions) {
        threads.emplace_back([&] {
            for (++ready; ready < functions.size();)
                std::this_thread::yield();
            for (int round = 0; round < rounds; ++round)
                function(round);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}

TEST(Threads, MayReplaceTheHostWhileOthersAskAndLog) {
    const TemporaryFolder root;
    const auto alone = std::make_shared<yg::StandAloneHost>(root.path());
    const auto recording = std::make_shared<RecordingHost>();
    recording->userRight = "l2";
    recording->storageReadFolder = recording->storageWriteFolder = "/a";
    recording->mappings["k"] = {{"n", {"t"}}};
    const auto before = yg::setHost(recording);
    std::atomic<int> tasks = 0;

    const auto ask = [&](int) {
        const auto right = YGFrameComFun::getUserRightDescription();
        EXPECT_TRUE(!right || *right == "l2" || *right == "free");
        YGFrameComFun::getStorageFilePath(1, std::nullopt, "a.xml", true);
        YGFrameComFun::getSoftOptimizeConfigFilePath(0, "a.xml");
        YGFrameComFun::getBaseOptimizeConfigFilePath(0, "a.xml");
        YGFrameComFun::getMappingDicForKey("k");
        YGFrameComFun::getDefualtFolderPath(4);
    };
    testing::internal::CaptureStderr();
    runTogether({
        [&](int round) { yg::setHost(round % 2 == 0 ? alone : nullptr); },
        [&](int) { yg::setHost(recording); },
        [&](int round) { alone->overrideUserRight(round % 2 == 0 ? "l2" : "free"); },
        ask,
        ask,
        [](int round) { yg::writeRuntimeLog("round %d", round); },
        [](int round) { yg::writeBusCommonLogInside("%s L%d", "round", round); },
        [&](int) { yg::postToMainQueue([&tasks] { ++tasks; }); },
        [](int) { yg::runPendingMainTasks(); },
        [](int round) {
            yg::setMainQueueWakeUp(round % 2 == 0 ? std::function<void()>([] {}) : nullptr);
        },
    });
    testing::internal::GetCapturedStderr();
    yg::setMainQueueWakeUp({});
    yg::setHost(before);
    yg::runPendingMainTasks();
    EXPECT_EQ(tasks, rounds);
}

TEST(Threads, LosePostedTasksNeverAndKeepTheOrderOfEach) {
    std::vector<int> first;
    std::vector<int> second;
    std::atomic<bool> isDone = false;
    std::atomic<int> wakeUps = 0;
    yg::setMainQueueWakeUp([&wakeUps] { ++wakeUps; });
    std::thread drain([&] {
        while (!isDone)
            yg::runPendingMainTasks();
        yg::runPendingMainTasks();
    });
    runTogether({
        [&](int round) {
            yg::defaultMainQueue()->post([&first, round] { first.push_back(round); });
        },
        [&](int round) {
            yg::defaultMainQueue()->post([&second, round] { second.push_back(round); });
        },
    });
    isDone = true;
    drain.join();
    yg::setMainQueueWakeUp({});
    for (const std::vector<int>* order : {&first, &second}) {
        ASSERT_EQ(order->size(), static_cast<std::size_t>(rounds));
        EXPECT_TRUE(std::is_sorted(order->begin(), order->end()));
    }
    EXPECT_GE(wakeUps, 1);
}

TEST(Threads, NeverMixTheirConsoleLines) {
    const std::string shortLine(20, 's');
    const std::string longLine(9000, 'l');
    testing::internal::CaptureStderr();
    runTogether({[&](int) { yg::writeConsoleLine(shortLine); },
                 [&](int) { yg::writeConsoleLine(longLine); },
                 [&](int) { yg::writeConsoleLine(longLine); }});
    std::istringstream lines(testing::internal::GetCapturedStderr());
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        ASSERT_TRUE(line == shortLine || line == longLine) << line;
    }
    EXPECT_EQ(count, 3 * rounds);
}

TEST(Threads, ShareJsonValues) {
    const yg::JsonValue value = *yg::JsonValue::parse(R"({"a":["b",{"c":1}]})").value;
    const auto read = [&value](int) {
        const yg::JsonValue copy = value;
        std::string out;
        copy.object()->at("a").appendTo(out);
        EXPECT_EQ(out, R"(["b",{"c":1}])");
    };
    runTogether({read, read, read});
}

}  // namespace
