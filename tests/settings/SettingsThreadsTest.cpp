// SPDX-License-Identifier: MIT
//
// Readers, writers, replacements and downloads from eight threads; the thread sanitizer watches.
#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/settings/YGAppConfigManager.h"
#include "YGConfigManager/settings/YGHttpReqUrlMgr.h"
#include "YGConfigManager/settings/YGWebPageUrlConfig.h"

#include "settings/SettingsFixture.h"

namespace yg {
namespace {

using ::testing::AnyOf;

constexpr int threadCount = 8;

/// Calls `work(thread, round)` from all threads at the same time.
void runTogether(int rounds, const std::function<void(int thread, int round)>& work) {
    std::atomic<int> ready = 0;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < threadCount; ++thread) {
        threads.emplace_back([&, thread] {
            for (++ready; ready < threadCount;)
                std::this_thread::yield();
            for (int round = 0; round < rounds; ++round)
                work(thread, round);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}

class SettingsThreads : public yg::testing::StorageTest {};

TEST_F(SettingsThreads, ReadAndWriteItemsAtTheSameTime) {
    put("app.xml", "<config><a><x>0</x></a></config>");
    const auto store = YGAppConfigManager::initWithFileName("app.xml");
    runTogether(25, [&](int thread, int round) {
        const std::string own = "t" + std::to_string(thread);
        const std::string value = std::to_string(round);
        if (thread < 3) {
            EXPECT_TRUE(store->setConfigItem("a", own, "d", value));
            EXPECT_TRUE(store->setConfigItem("a", "x", "", value));
            EXPECT_TRUE(store->setConfigItem(own, "i" + value, "", ""));
            EXPECT_EQ(store->getItemText("a", own), value);
        } else {
            for (int i = 0; i < 20; ++i) {
                EXPECT_TRUE(store->getItemText("a", "x").has_value());
                EXPECT_TRUE(store->getItemText("a", "x[1]").has_value());
                store->getItemText("t0", "i" + value);
            }
            EXPECT_EQ(store->docment().root().name(), "config");
        }
    });
    const auto next = YGAppConfigManager::initWithFileName("app.xml");
    for (const char* own : {"t0", "t1", "t2"}) {
        EXPECT_EQ(next->getItemText("a", own), "24");
        EXPECT_EQ(next->getItemText(own, "i0"), "");
        EXPECT_EQ(next->getItemText(own, "i24"), "");
    }
    EXPECT_EQ(next->getItemText("a", "x"), store->getItemText("a", "x"));
}

TEST_F(SettingsThreads, LookUpAndReplaceWebPagesAtTheSameTime) {
    put("pages.xml", "<urls><url key='k'>0</url></urls>");
    const auto table = YGWebPageUrlConfig::initWithFileName("pages.xml");
    runTogether(25, [&](int thread, int round) {
        if (thread < 3) {
            const std::string address = std::to_string(thread) + "/" + std::to_string(round);
            EXPECT_TRUE(
                table->replaceDataFromServer("<urls><url key='k'>" + address + "</url></urls>"));
        } else {
            for (int i = 0; i < 50; ++i) {
                EXPECT_NE(table->getWebPageUrlByKey("k"), "about:blank");
                EXPECT_EQ(table->getWebPageUrlByKey("it's"), "about:blank");
            }
            EXPECT_EQ(table->docment().root().name(), "urls");
        }
    });
    EXPECT_EQ(YGWebPageUrlConfig::initWithFileName("pages.xml")->getWebPageUrlByKey("k"),
              table->getWebPageUrlByKey("k"));
}

TEST_F(SettingsThreads, LookUpWhileDownloadsReplaceTheList) {
    host->server = "127.0.0.1:1";
    put("request_urls_json.txt", R"({"md5Value":"0","urlConfigList":[]})");
    std::atomic<int> downloads = 0;
    const RequestUrlsOver transport{[&](const std::string&, const net::GetCompletion& completion) {
        const std::string number = std::to_string(++downloads);
        completion(R"({"md5Value":")" + number +
                       R"(","urlConfigList":[{"urlKey":"k","urlValue":")" + number +
                       R"("},{"urlKey":"l","urlValue":")" + number + R"("}]})",
                   std::nullopt, std::nullopt);
    }};
    const auto manager = transport.init();
    runTogether(50, [&](int thread, int) {
        if (thread < 2) {
            manager->updateHttpReqUrls();
        } else if (thread == 2) {
            manager->readUrlModelFromFile();
        } else {
            for (int i = 0; i < 50; ++i) {
                const auto model = manager->urlModel();
                const auto& entries = *model->urlConfigs();
                EXPECT_EQ(entries.front()->urlValue(), entries.back()->urlValue());
                EXPECT_TRUE(manager->httpReqUrlStringWithUrlKey("k").has_value());
            }
        }
    });
    EXPECT_EQ(downloads, 101);
}

TEST_F(SettingsThreads, TheSharedManagerIsMadeOnceByConcurrentFirstCalls) {
    put("request_urls_json.txt", R"({"urlConfigList":[{"urlKey":"k","urlValue":"v"}]})");
    std::vector<const YGHttpReqUrlMgr*> found(threadCount);
    runTogether(1, [&](int thread, int) {
        const auto& manager = YGHttpReqUrlMgr::shared();
        found[static_cast<std::size_t>(thread)] = manager.get();
        EXPECT_EQ(manager->httpReqUrlStringWithUrlKey("k"), "v");
    });
    EXPECT_EQ(std::set<const YGHttpReqUrlMgr*>(found.begin(), found.end()).size(), 1u);
    EXPECT_EQ(host->businessLog().size(), 2u);
}

}  // namespace
}  // namespace yg
