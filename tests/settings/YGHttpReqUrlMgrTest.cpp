// SPDX-License-Identifier: MIT
#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <thread>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/settings/YGHttpReqUrlMgr.h"

#include "Proof.h"
#include "settings/SettingsFixture.h"

namespace yg {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using yg::testing::KeptRequests;
using yg::testing::ScopedFileLayer;

constexpr std::string_view name = "request_urls_json.txt";
constexpr std::string_view stored =
    R"({"md5Value":"one","urlConfigList":[{"urlKey":"k","urlValue":"old"}]})";
constexpr std::string_view downloaded =
    "{ \"md5Value\" : \"two\",\n \"urlConfigList\" : [ {\"urlKey\":\"k\", \"urlValue\":\"new\"} ],"
    " \"more\": 1 }\r\n";

class RequestUrls : public yg::testing::StorageTest {
protected:
    RequestUrls() { host->server = "127.0.0.1:8080"; }

    std::shared_ptr<YGHttpReqUrlMgr> open(std::string_view json) {
        put(name, json);
        return transport.init();
    }

    /// A line that reading the file logs.
    static std::string readLine(int line, const std::string& text) {
        return "-[YGHttpReqUrlMgr readUrlModelFromFile] L" + std::to_string(line) + " " + text;
    }

    std::string path() const { return folder / name; }

    /// The first manager has the stored list; the answer changes nothing.
    void expectUnchangedBy(const std::optional<std::string>& body, const auto&...) {
        const auto manager = open(stored);
        const auto model = manager->urlModel();
        host->clear();
        transport.answer(body);
        EXPECT_EQ(manager->urlModel(), model) << body.value_or("none");
        EXPECT_EQ(contentOf(name), stored);
        EXPECT_THAT(host->log(), IsEmpty());
    }

    KeptRequests transport;
};

// ---- Reading ---------------------------------------------------------------------------------

TEST_F(RequestUrls, AreReadFromTheStoredFile) {
    const auto manager =
        open(R"({"urlConfigList":[{"urlKey":"a","urlValue":"1"},{"urlKey":"空","urlValue":""}],)"
             R"("md5Value":"m","other":[]})");
    EXPECT_EQ(manager->httpReqUrlStringWithUrlKey("a"), "1");
    EXPECT_EQ(manager->httpReqUrlStringWithUrlKey("空"), "");
    EXPECT_EQ(manager->httpReqUrlStringWithUrlKey("A"), std::nullopt);
    EXPECT_EQ(manager->httpReqUrlStringWithUrlKey(""), std::nullopt);
    EXPECT_EQ(manager->httpReqUrlStringWithUrlKey(std::nullopt), std::nullopt);
    EXPECT_THAT(host->businessLog(),
                ElementsAre(readLine(71, "filePath: " + path()), readLine(91, "_urlModel.Md5: m")));
    EXPECT_EQ(host->questions()[0], "getStorageFilePath(1, (null), request_urls_json.txt, 0)");
}

TEST_F(RequestUrls, TheFirstEntryOfAKeyWins) {
    const auto manager =
        open(R"({"urlConfigList":[{"urlKey":"a","urlValue":"1"},{"urlKey":"a","urlValue":"2"},)"
             R"({"urlKey":"b"},{"urlKey":"b","urlValue":"3"}]})");
    EXPECT_EQ(manager->httpReqUrlStringWithUrlKey("a"), "1");
    EXPECT_EQ(manager->httpReqUrlStringWithUrlKey("b"), std::nullopt);
}

TEST_F(RequestUrls, AnEntryWithoutAKeyIsNeverMeant) {
    const auto manager =
        open(R"({"urlConfigList":[{"urlValue":"1"},7,{"urlKey":1,"urlValue":2}]})");
    EXPECT_EQ(manager->httpReqUrlStringWithUrlKey(std::nullopt), std::nullopt);
    EXPECT_EQ(manager->httpReqUrlStringWithUrlKey(""), std::nullopt);
    EXPECT_EQ(manager->httpReqUrlStringWithUrlKey("1"), "2");
    EXPECT_EQ(manager->urlModel()->urlConfigs()->size(), 2u);
}

TEST_F(RequestUrls, AMissingFileIsLoggedAndLeavesNoList) {
    const auto manager = transport.init();
    EXPECT_EQ(manager->urlModel(), nullptr);
    EXPECT_EQ(manager->httpReqUrlStringWithUrlKey("k"), std::nullopt);
    EXPECT_THAT(host->businessLog(), ElementsAre(readLine(71, "filePath: " + path()),
                                                 readLine(75, "[" + path() + "]文件不存在")));
}

TEST_F(RequestUrls, WithoutAPathThereIsNoFile) {
    for (const auto& none : {std::optional<std::string>(), std::optional<std::string>("")}) {
        host->paths.insert_or_assign(std::string(name), none);
        host->clear();
        transport.make()->readUrlModelFromFile();
        const std::string shown = none ? "" : "(null)";
        EXPECT_THAT(host->businessLog(), ElementsAre(readLine(71, "filePath: " + shown),
                                                     readLine(75, "[" + shown + "]文件不存在")));
    }
}

TEST_F(RequestUrls, AFileThatCannotBeReadIsLoggedAndTheListStays) {
    const auto manager = open(stored);
    ASSERT_EQ(::unlink(path().c_str()), 0);
    ASSERT_EQ(::mkdir(path().c_str(), 0700), 0);
    host->clear();
    manager->readUrlModelFromFile();
    EXPECT_THAT(host->businessLog(),
                ElementsAre(readLine(71, "filePath: " + path()), readLine(84, "读不到数据")));
    EXPECT_EQ(manager->httpReqUrlStringWithUrlKey("k"), "old");
}

TEST_F(RequestUrls, AFileThatIsNoJsonObjectLeavesNoList) {
    for (const std::string_view json : {"", "[]", "null", "{", "{}x", "\"md5Value\"", "\xff"}) {
        const auto manager = open(stored);
        put(name, json);
        host->clear();
        manager->readUrlModelFromFile();
        EXPECT_EQ(manager->urlModel(), nullptr) << json;
        EXPECT_EQ(host->businessLog()[1], readLine(91, "_urlModel.Md5: (null)"));
    }
}

TEST_F(RequestUrls, AnEmptyListKeepsItsDigest) {
    constexpr std::string_view empty = R"({"md5Value":"one","urlConfigList":[]})";
    const auto manager = open(empty);
    EXPECT_EQ(manager->httpReqUrlStringWithUrlKey("k"), std::nullopt);
    transport.answer(std::string(stored));
    EXPECT_EQ(manager->httpReqUrlStringWithUrlKey("k"), std::nullopt);
    EXPECT_EQ(contentOf(name), empty);
    transport.answer(std::nullopt);
}

TEST_F(RequestUrls, AnAbsentListIsNoEmptyOne) {
    EXPECT_TRUE(open(R"({"md5Value":"m"})")->urlModel()->urlConfigList().isAbsent());
    EXPECT_TRUE(open(R"({"urlConfigList":{}})")->urlModel()->urlConfigList().isAbsent());
    EXPECT_FALSE(open(R"({"urlConfigList":[]})")->urlModel()->urlConfigList().isAbsent());
}

TEST_F(RequestUrls, DescribeThemselvesAsJson) {
    EXPECT_EQ(open(stored)->urlModel()->description(), stored);
    EXPECT_EQ(open("{}")->urlModel()->description(), "{}");
}

// ---- Downloading -----------------------------------------------------------------------------

TEST_F(RequestUrls, AreDownloadedFromTheConfigurationServer) {
    open(stored);
    EXPECT_THAT(transport.urls(),
                ElementsAre("http://127.0.0.1:8080/mac/mac_free_free_request_urls_json.txt"));
}

TEST_F(RequestUrls, AreNotDownloadedWithoutAServer) {
    for (const auto& none : {std::optional<std::string>(), std::optional<std::string>("")}) {
        host->server = none;
        int ended = 0;
        open(stored)->updateHttpReqUrls([&] { ++ended; });
        EXPECT_EQ(ended, 1);
    }
    EXPECT_THAT(transport.urls(), IsEmpty());
}

TEST_F(RequestUrls, ADownloadWithAnotherDigestTakesTheirPlace) {
    const auto manager = open(stored);
    const auto before = manager->urlModel();
    host->clear();
    transport.answer(std::string(downloaded));
    EXPECT_EQ(manager->httpReqUrlStringWithUrlKey("k"), "new");
    EXPECT_EQ(contentOf(name), downloaded);
    EXPECT_THAT(host->businessLog(),
                ElementsAre("-[YGHttpReqUrlMgr updateHttpReqUrls]_block_invoke L110 newMd5Value : "
                            "[two]; oldMd5Value : [one]"));
    EXPECT_THAT(host->questions(),
                ElementsAre("getStorageFilePath(1, (null), request_urls_json.txt, 1)"));
    EXPECT_EQ(before->urlConfigs()->front()->urlValue(), "old");
    EXPECT_EQ(transport.init()->httpReqUrlStringWithUrlKey("k"), "new");
}

TEST_F(RequestUrls, ADownloadCountsWhenThereWasNoList) {
    const auto manager = transport.init();
    host->clear();
    transport.answer(std::string(downloaded));
    EXPECT_EQ(manager->httpReqUrlStringWithUrlKey("k"), "new");
    EXPECT_THAT(host->businessLog(),
                ElementsAre("-[YGHttpReqUrlMgr updateHttpReqUrls]_block_invoke L110 newMd5Value : "
                            "[two]; oldMd5Value : [(null)]"));
}

TEST_F(RequestUrls, ADownloadWithTheSameDigestIsNotWritten) {
    expectUnchangedBy(R"({"md5Value":"one","urlConfigList":[{"urlKey":"k","urlValue":"new"}]})");
}

TEST_F(RequestUrls, ADownloadThatIsNoJsonChangesNothingAndLogsNothing) {
    for (const char* body : {"", "<html>404</html>", "[]", "null", "{\"md5Value\":\"two\"", "\xff"})
        expectUnchangedBy(body);
}

TEST_F(RequestUrls, ADownloadWithoutADigestOrABodyChangesNothing) {
    expectUnchangedBy(std::nullopt);
    for (const char* body : {"{}", R"({"md5Value":""})", R"({"md5Value":null})",
                             R"({"md5Value":["two"]})", R"({"Md5Value":"two"})"})
        expectUnchangedBy(body);
}

// The page of a 404 for one: its status is not looked at.
TEST_F(RequestUrls, AnErrorPageThatIsAListWithANewDigestTakesTheirPlace) {
    const auto manager = open(stored);
    constexpr std::string_view page = R"({"error":404,"md5Value":"e"})";
    transport.answer(std::string(page));
    EXPECT_EQ(manager->urlModel()->md5Value(), "e");
    EXPECT_EQ(manager->httpReqUrlStringWithUrlKey("k"), std::nullopt);
    EXPECT_EQ(contentOf(name), page);
}

TEST_F(RequestUrls, WithoutAPathToWriteADownloadIsDropped) {
    const auto manager = open(stored);
    for (const auto& none : {std::optional<std::string>(), std::optional<std::string>("")}) {
        manager->updateHttpReqUrls();
        host->paths.insert_or_assign(std::string(name), none);
        host->clear();
        transport.answer(std::string(downloaded));
        EXPECT_EQ(manager->httpReqUrlStringWithUrlKey("k"), "old");
        EXPECT_THAT(host->log(), IsEmpty());
    }
}

TEST_F(RequestUrls, ADownloadThatCannotBeWrittenCountsAllTheSame) {
    const auto manager = open(stored);
    ScopedFileLayer disk;
    disk->errorOf = [](std::string_view call) { return call == "sync" ? EIO : 0; };
    transport.answer(std::string(downloaded));
    EXPECT_EQ(manager->httpReqUrlStringWithUrlKey("k"), "new");
    EXPECT_EQ(contentOf(name), stored);
    EXPECT_THAT(folder.names(), ElementsAre(name));
}

TEST_F(RequestUrls, SayWhenADownloadHasEnded) {
    const auto manager = open(stored);
    for (const std::optional<std::string>& body :
         {std::optional<std::string>(), std::optional<std::string>("{}"),
          std::optional<std::string>(downloaded)}) {
        std::vector<std::string> found;
        manager->updateHttpReqUrls(
            [&] { found.push_back(*manager->httpReqUrlStringWithUrlKey("k")); });
        EXPECT_THAT(found, IsEmpty());
        transport.answer(body);
        EXPECT_THAT(found, ElementsAre(body == downloaded ? "new" : "old"));
    }
}

TEST_F(RequestUrls, ADownloadHoldsItsManager) {
    std::weak_ptr<YGHttpReqUrlMgr> manager = open(stored);
    EXPECT_FALSE(manager.expired());
    transport.answer(std::string(downloaded));
    EXPECT_TRUE(manager.expired());
    EXPECT_EQ(contentOf(name), downloaded);
}

TEST_F(RequestUrls, AHostThatThrowsHasNoServer) {
    class ThrowingHost : public yg::testing::RecordingHost {
    public:
        std::optional<std::string> configServer() override { throw std::runtime_error("no"); }
    };
    const yg::testing::ScopedHost<ThrowingHost> throwing;
    transport.init();
    EXPECT_THAT(transport.urls(), IsEmpty());
}

// ---- Several at once ---------------------------------------------------------------------------

/// A list whose digest and whose address of "k" are `digest`.
std::string listOf(const std::string& digest) {
    return R"({"md5Value":")" + digest + R"(","urlConfigList":[{"urlKey":"k","urlValue":")" +
           digest + R"("}]})";
}

/// Downloads that are answered in another order than they were begun in.
class RequestUrlsAtOnce : public RequestUrls {
protected:
    RequestUrlsAtOnce() {
        transport.transport = [this](const std::string&, net::GetCompletion completion) {
            completions.push_back(std::move(completion));
        };
    }

    /// Ends a download, numbered from 0.
    void answer(std::size_t download, const std::optional<std::string>& body) {
        completions.at(download)(body, std::nullopt, std::nullopt);
    }
    void expectListAndFile(const YGHttpReqUrlMgr& manager, const std::string& digest) {
        EXPECT_EQ(manager.httpReqUrlStringWithUrlKey("k"), digest);
        EXPECT_EQ(contentOf(name), listOf(digest));
    }

    std::vector<net::GetCompletion> completions;
};

TEST_F(RequestUrlsAtOnce, TheDownloadBegunLastWinsInWhateverOrderTheyEnd) {
    std::vector<std::size_t> order{0, 1, 2};
    do {
        completions.clear();
        const auto manager = open(listOf("stored"));  // begins the first
        manager->updateHttpReqUrls();
        manager->updateHttpReqUrls();
        for (const std::size_t download : order)
            answer(download, listOf(std::to_string(download)));
        expectListAndFile(*manager, "2");
    } while (std::next_permutation(order.begin(), order.end()));
}

TEST_F(RequestUrlsAtOnce, ADownloadThatFailsLetsAnOlderOneWin) {
    for (const std::optional<std::string>& failed :
         {std::optional<std::string>(), std::optional<std::string>("{}"),
          std::optional<std::string>("no JSON")}) {
        completions.clear();
        const auto manager = open(listOf("stored"));
        manager->updateHttpReqUrls();
        answer(1, failed);
        answer(0, listOf("older"));
        expectListAndFile(*manager, "older");
    }
}

TEST_F(RequestUrlsAtOnce, ADownloadWithTheDigestOfTheListWinsToo) {
    const auto manager = open(listOf("stored"));
    manager->updateHttpReqUrls();
    answer(1, listOf("stored"));
    host->clear();
    answer(0, listOf("older"));
    expectListAndFile(*manager, "stored");
    EXPECT_THAT(host->log(), IsEmpty());
}

TEST_F(RequestUrlsAtOnce, AFileReadAfterADownloadWasBegunWins) {
    const auto manager = open(listOf("stored"));
    put(name, listOf("put"));
    manager->readUrlModelFromFile();
    answer(0, listOf("older"));
    expectListAndFile(*manager, "put");
    manager->updateHttpReqUrls();
    answer(1, listOf("newer"));
    expectListAndFile(*manager, "newer");
}

TEST_F(RequestUrlsAtOnce, AFileWithoutAListLetsAnOlderDownloadWin) {
    const auto manager = open(listOf("stored"));
    put(name, "no JSON");
    manager->readUrlModelFromFile();
    EXPECT_EQ(manager->urlModel(), nullptr);
    answer(0, listOf("older"));
    expectListAndFile(*manager, "older");
}

/// Downloads and readings of the file that end at the same time, on threads of their own.
class RequestUrlsProof : public RequestUrlsAtOnce {};

TEST_F(RequestUrlsProof, ListAndFileAgreeWhateverEndsAtTheSameTime) {
    const int rounds = yg::testing::repeats(200, 20'000);
    for (int round = 0; round < rounds; ++round) {
        completions.clear();
        const auto manager = open(listOf("stored"));
        manager->updateHttpReqUrls();
        manager->updateHttpReqUrls();
        std::atomic<int> ready = 0;
        std::vector<std::thread> threads;
        for (std::size_t thread = 0; thread < 4; ++thread) {
            threads.emplace_back([&, thread] {
                for (++ready; ready < 4;)
                    std::this_thread::yield();
                if (thread < 3)
                    answer(thread, listOf(std::to_string(thread)));
                else
                    manager->readUrlModelFromFile();
            });
        }
        for (std::thread& thread : threads)
            thread.join();
        const std::optional<std::string> digest = manager->httpReqUrlStringWithUrlKey("k");
        ASSERT_TRUE(digest);
        ASSERT_EQ(contentOf(name), listOf(*digest));
    }
}

// ---- Requests --------------------------------------------------------------------------------

TEST_F(RequestUrls, RequestsReachTheTransportUnchanged) {
    const auto manager = transport.make();
    std::vector<std::optional<std::string>> bodies;
    const auto keep = [&](const std::optional<std::string>& body, const auto&...) {
        bodies.push_back(body);
    };
    manager->requestUrl("https://h/p?q=1", keep);
    transport.answer("body");
    manager->requestUrl("no url", keep);
    transport.answer(std::nullopt);
    manager->requestUrl("", nullptr);
    EXPECT_FALSE(transport.hasCompletion());
    EXPECT_THAT(transport.urls(), ElementsAre("https://h/p?q=1", "no url", ""));
    EXPECT_THAT(bodies, ElementsAre("body", std::nullopt));
    EXPECT_THAT(host->log(), IsEmpty());
}

TEST_F(RequestUrls, ACompletionMayStartAnotherRequest) {
    const auto manager = transport.make();
    int ended = 0;
    manager->requestUrl("first", [&](const std::optional<std::string>&, const auto&...) {
        manager->requestUrl("second",
                            [&](const std::optional<std::string>&, const auto&...) { ++ended; });
    });
    transport.answer("");
    transport.answer("");
    EXPECT_EQ(ended, 1);
    EXPECT_THAT(transport.urls(), ElementsAre("first", "second"));
}

}  // namespace
}  // namespace yg
