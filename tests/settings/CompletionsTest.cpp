// SPDX-License-Identifier: MIT
//
// Each completion comes once, whatever the application's code and the transport throw.
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/settings/YGHttpReqUrlMgr.h"

#include "settings/SettingsFixture.h"

namespace yg {
namespace {

constexpr const char* listFile = "request_urls_json.txt";

/// What throws, if anything does.
enum class Throws { nothing, anError, somethingElse };
constexpr Throws allThrows[] = {Throws::nothing, Throws::anError, Throws::somethingElse};

void maybeThrow(Throws what) {
    if (what == Throws::anError)
        throw std::runtime_error("application");
    if (what == Throws::somethingElse)
        throw 1;
}

class ThrowingSink : public DiagnosticsSink {
public:
    explicit ThrowingSink(Throws what) : what_(what) {}
    void report(const Finding&) override { maybeThrow(what_); }
    void readingFile(std::string_view) override { maybeThrow(what_); }

private:
    Throws what_;
};

class ServerHost : public testing::RecordingHost {
public:
    Throws what = Throws::nothing;
    std::optional<std::string> configServer() override {
        maybeThrow(what);
        return RecordingHost::configServer();
    }
};

/// When a transport calls its completion, and when it throws.
enum class Order { calls, callsLater, callsAndThrows, throws, throwsAndCallsLater, callsTwice };
constexpr Order allOrders[] = {Order::calls,  Order::callsLater,          Order::callsAndThrows,
                               Order::throws, Order::throwsAndCallsLater, Order::callsTwice};

/// A transport of one of these, which answers all requests with one body.
class Transporting : public RequestUrlsOver {
public:
    Transporting(Order order, Throws what, std::optional<std::string> body) {
        transport = [this, order, what, body = std::move(body)](
                        const std::string&, const net::GetCompletion& completion) {
            const auto call = [completion, body] {
                if (completion)
                    completion(body, std::nullopt, std::nullopt);
            };
            if (order == Order::callsLater || order == Order::throwsAndCallsLater)
                later_.emplace_back(call);
            else if (order != Order::throws)
                std::thread(call).join();
            if (order == Order::callsTwice)
                call();
            if (order != Order::calls && order != Order::callsLater && order != Order::callsTwice)
                maybeThrow(what);
        };
    }
    Transporting(const Transporting&) = delete;
    Transporting& operator=(const Transporting&) = delete;

    void callLater() {
        for (const auto& call : std::exchange(later_, {}))
            std::thread(call).join();
    }

private:
    std::vector<std::function<void()>> later_;
};

class Completions : public ::testing::Test {
protected:
    Completions() {
        host->storageReadFolder = folder.path();
        host->storageWriteFolder = folder.path();
    }

    files::TemporaryFolder folder;
    testing::ScopedHost<ServerHost> host;
};

TEST_F(Completions, ADownloadEndsOnceWhateverThrows) {
    const std::string list = R"({"md5Value":"m","urlConfigList":[{"urlKey":"k"},{"urlKey":"k"}]})";
    int rounds = 0;
    for (const std::optional<std::string>& server :
         {std::optional<std::string>(), std::optional<std::string>("127.0.0.1:1")}) {
        for (const std::optional<std::string>& body :
             {std::optional<std::string>(), std::optional<std::string>("no list"),
              std::optional<std::string>(list)}) {
            for (const Order order : allOrders) {
                for (unsigned which = 0; which < 16; ++which) {
                    // Each of the four throws or not; now an exception, now something else.
                    const Throws thrown =
                        ++rounds % 2 == 0 ? Throws::anError : Throws::somethingElse;
                    const auto throwing = [&](unsigned bit) {
                        return (which >> bit & 1) != 0 ? thrown : Throws::nothing;
                    };
                    const Throws ended = throwing(0);
                    const Throws transport = throwing(1);
                    host->what = throwing(2);
                    ThrowingSink sink(throwing(3));
                    host->server = server;
                    files::put(folder / listFile, "{}");
                    Transporting transporting(order, transport, body);
                    const auto manager = transporting.make(&sink);
                    manager->readUrlModelFromFile();
                    ASSERT_NE(manager->urlModel(), nullptr);
                    int calls = 0;
                    manager->updateHttpReqUrls([&] {
                        ++calls;
                        maybeThrow(ended);
                    });
                    transporting.callLater();
                    // A transport may drop a request, as it does at the end of the process.
                    const bool isDropped = server && host->what == Throws::nothing &&
                                           order == Order::throws && transport == Throws::nothing;
                    ASSERT_EQ(calls, isDropped ? 0 : 1) << static_cast<int>(order) << " " << which;
                    const bool isAnswered = server && host->what == Throws::nothing &&
                                            order != Order::throws && body == list;
                    ASSERT_EQ(manager->urlModel()->md5Value().has_value(), isAnswered);
                    ASSERT_EQ(files::contentOf(folder / listFile), isAnswered ? list : "{}");
                }
            }
        }
    }
}

TEST_F(Completions, ARequestFinishesOnceWhateverThrows) {
    for (const Order order : allOrders) {
        for (const Throws transport : allThrows) {
            for (const Throws finish : allThrows) {
                Transporting transporting(order, transport, "body");
                const auto manager = transporting.make();
                std::vector<std::optional<std::string>> bodies;
                std::optional<std::string> cause;
                manager->requestUrl("http://h",
                                    [&](const std::optional<std::string>& body, const auto&,
                                        const std::optional<std::string>& error) {
                                        bodies.push_back(body);
                                        cause = error;
                                        maybeThrow(finish);
                                    });
                transporting.callLater();
                const bool isLost = transport != Throws::nothing &&
                                    (order == Order::throws || order == Order::throwsAndCallsLater);
                if (order == Order::throws && transport == Throws::nothing) {
                    EXPECT_THAT(bodies, ::testing::IsEmpty());  // dropped, as at the process's end
                    continue;
                }
                EXPECT_THAT(bodies,
                            ::testing::ElementsAre(isLost ? std::nullopt
                                                          : std::optional<std::string>("body")));
                EXPECT_EQ(cause.has_value(), isLost);
                if (isLost) {
                    EXPECT_EQ(*cause,
                              transport == Throws::anError ? "application" : "unknown exception");
                }
                manager->requestUrl("http://h", nullptr);
            }
        }
    }
}

using Update = YGHttpReqUrlMgr::Update;

class Updates : public Completions {
protected:
    Updates() {
        runPendingMainTasks();
        host->server = "127.0.0.1:1";
        files::put(folder / listFile, R"({"md5Value":"old"})");
        manager = requests.make();
        manager->readUrlModelFromFile();
    }

    void update() {
        manager->updateHttpReqUrls([this](const Update& update) {
            EXPECT_EQ(std::this_thread::get_id(), mainThread);
            updates.push_back(update);
        });
        EXPECT_TRUE(updates.empty());
    }

    /// The only completion that came since, on the thread that drains the queue.
    Update completed() {
        EXPECT_TRUE(updates.empty());
        runPendingMainTasks();
        EXPECT_EQ(updates.size(), 1u);
        return updates.empty() ? Update() : std::exchange(updates, {}).front();
    }

    const std::thread::id mainThread = std::this_thread::get_id();
    testing::KeptRequests requests;
    std::shared_ptr<YGHttpReqUrlMgr> manager;
    std::vector<Update> updates;
};

TEST_F(Updates, SayThatANewListCame) {
    update();
    requests.answer(R"({"md5Value":"new"})");
    const Update got = completed();
    EXPECT_EQ(got.outcome, Update::Outcome::newList);
    EXPECT_EQ(got.reason, "");
    EXPECT_EQ(manager->urlModel()->md5Value(), "new");
}

TEST_F(Updates, SayThatANewListCouldNotBeWritten) {
    update();
    host->storageWriteFolder = folder / "none";
    requests.answer(R"({"md5Value":"new"})");
    const Update got = completed();
    EXPECT_EQ(got.outcome, Update::Outcome::newList);
    EXPECT_NE(got.reason.find("No such file"), std::string::npos) << got.reason;
    EXPECT_EQ(manager->urlModel()->md5Value(), "new");
}

TEST_F(Updates, SayThatTheDigestIsThatOfTheList) {
    update();
    requests.answer(R"({"md5Value":"old"})");
    EXPECT_EQ(completed().outcome, Update::Outcome::sameDigest);
}

TEST_F(Updates, SayThatWhatBeganLaterCounts) {
    update();
    manager->readUrlModelFromFile();
    requests.answer(R"({"md5Value":"new"})");
    EXPECT_EQ(completed().outcome, Update::Outcome::overtaken);
    EXPECT_EQ(manager->urlModel()->md5Value(), "old");
}

TEST_F(Updates, SayWhyTheyFailed) {
    const auto reasonOf = [&](std::optional<std::string> body,
                              std::optional<std::string> error = std::nullopt) {
        update();
        requests.answer(std::move(body), std::move(error));
        const Update got = completed();
        EXPECT_EQ(got.outcome, Update::Outcome::failed);
        return got.reason;
    };
    EXPECT_EQ(reasonOf(std::nullopt, "connection refused"), "connection refused");
    EXPECT_EQ(reasonOf("no list"), "what came is no JSON object");
    EXPECT_EQ(reasonOf("{}"), "what came has no digest");
    EXPECT_EQ(reasonOf(R"({"md5Value":""})"), "what came has no digest");
    host->paths.insert_or_assign(listFile, "");
    EXPECT_NE(reasonOf(R"({"md5Value":"new"})").find(listFile), std::string::npos);
    host->server = std::nullopt;
    update();
    const Update got = completed();
    EXPECT_EQ(got.outcome, Update::Outcome::failed);
    EXPECT_EQ(got.reason, "the host names no server");
    EXPECT_EQ(manager->urlModel()->md5Value(), "old");
}

TEST_F(Updates, NeedNoCompletion) {
    manager->updateHttpReqUrls(nullptr);
    requests.answer(R"({"md5Value":"new"})");
    manager->updateHttpReqUrls(std::function<void(const Update&)>());
    requests.answer(R"({"md5Value":"newer"})");
    runPendingMainTasks();
    EXPECT_EQ(manager->urlModel()->md5Value(), "newer");
}

}  // namespace
}  // namespace yg
