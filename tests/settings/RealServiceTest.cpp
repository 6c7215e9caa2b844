// SPDX-License-Identifier: MIT
//
// The request URLs through the real network service, from a server of the test on the loopback.
#include <condition_variable>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/settings/YGHttpReqUrlMgr.h"

#include "settings/LoopbackServer.h"
#include "settings/SettingsFixture.h"

namespace yg {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;
using yg::testing::LoopbackServer;

constexpr std::string_view name = "request_urls_json.txt";
constexpr std::string_view list =
    "{\"md5Value\":\"two\", \"urlConfigList\":[{\"urlKey\":\"k\",\"urlValue\":\"new\"}]}\n";

class RealService : public yg::testing::StorageTest {
protected:
    /// Starts a download and waits for its end.
    static void refresh(YGHttpReqUrlMgr& manager) {
        std::mutex mutex;
        std::condition_variable changed;
        bool hasEnded = false;
        manager.updateHttpReqUrls([&] {
            EXPECT_NE(std::this_thread::get_id(), caller);
            const std::lock_guard lock(mutex);
            hasEnded = true;
            changed.notify_one();
        });
        std::unique_lock lock(mutex);
        changed.wait(lock, [&] { return hasEnded; });
    }

    static inline const std::thread::id caller = std::this_thread::get_id();
};

TEST_F(RealService, BringsTheListOfTheConfigurationServer) {
    const LoopbackServer server("404 Not Found", list);
    host->server = server.authority();
    put(name, R"({"md5Value":"one"})");
    const auto manager = YGHttpReqUrlMgr::make();
    manager->readUrlModelFromFile();
    refresh(*manager);
    EXPECT_EQ(manager->httpReqUrlStringWithUrlKey("k"), "new");
    EXPECT_EQ(contentOf(name), list);
    const auto requests = server.requests();
    ASSERT_EQ(requests.size(), 1u);
    EXPECT_THAT(requests[0], StartsWith("GET /mac/mac_free_free_request_urls_json.txt HTTP/1.1"));
    EXPECT_THAT(requests[0], HasSubstr("Content-Type: application/json; charset=utf-8\r\n"));
}

TEST_F(RealService, LeavesTheListWhenNobodyAnswers) {
    {
        const LoopbackServer server("200 OK", list);
        host->server = server.authority();
    }
    put(name, R"({"md5Value":"one"})");
    const auto manager = YGHttpReqUrlMgr::make();
    manager->readUrlModelFromFile();
    refresh(*manager);
    EXPECT_EQ(manager->urlModel()->md5Value(), "one");
}

}  // namespace
}  // namespace yg
