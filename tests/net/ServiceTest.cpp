// SPDX-License-Identifier: MIT
//
// The thread of the requests, their completions, and what they ask.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <mutex>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/RecordingHost.h"
#include "net/FaultServer.h"
#include "net/Getting.h"

namespace yg::testing {
namespace {

using namespace std::chrono_literals;
using net::HttpGetService;
using ::testing::HasSubstr;

void hello(Connection& client) {
    client.answer("200 OK", "hello");
}

/// Waits for a count that other threads bring up.
bool reaches(const std::atomic<int>& count, int goal) {
    for (int i = 0; i < 1500 && count < goal; ++i)
        std::this_thread::sleep_for(10ms);
    return count == goal;
}

/// How many clients are waiting for an answer at one time.
class Crowd {
public:
    /// Answers with the path that was asked for.
    void answer(Connection& client, std::chrono::milliseconds time) {
        {
            const std::lock_guard lock(mutex_);
            most_ = std::max(most_, ++count_);
        }
        client.pause(time);
        {
            const std::lock_guard lock(mutex_);
            --count_;
        }
        client.answer("200 OK", client.path());
    }
    int most() const {
        const std::lock_guard lock(mutex_);
        return most_;
    }

private:
    mutable std::mutex mutex_;
    int count_ = 0;
    int most_ = 0;
};

TEST(Service, AsksForWhatTheAddressSays) {
    std::string request;
    int port = 0;
    {
        FaultServer server([&](Connection& client) {
            request = client.request();
            hello(client);
        });
        port = server.port();
        EXPECT_EQ(bodyOf(server.url("/a/b%20c?d=1&e=2#f")), "hello");
    }
    EXPECT_THAT(request, ::testing::StartsWith("GET /a/b%20c?d=1&e=2 HTTP/1.1\r\n"));
    EXPECT_THAT(request, HasSubstr("\r\nHost: 127.0.0.1:" + std::to_string(port) + "\r\n"));
    EXPECT_THAT(request, HasSubstr("\r\nContent-Type: application/json; charset=utf-8\r\n"));
    EXPECT_THAT(request, HasSubstr("gzip"));
    EXPECT_THAT(request, ::testing::Not(HasSubstr("ookie")));
    EXPECT_THAT(request, ::testing::Not(HasSubstr("uthorization")));
}

TEST(Service, KeepsNothingFromOneRequestToTheNext) {
    std::string second;
    {
        FaultServer server([&](Connection& client) {
            if (client.path() == "/1") {
                client.answer("200 OK\r\nSet-Cookie: a=b\r\nETag: \"c\"", "hello");
                // A second request on this connection would be one too many.
                if (client.readRequest())
                    client.answer("200 OK", "reused");
            } else {
                second = client.request();
                hello(client);
            }
        });
        HttpGetService service;
        EXPECT_EQ(bodyOf(service, server.url("/1")), "hello");
        EXPECT_EQ(bodyOf(service, server.url("/2")), "hello");
        EXPECT_EQ(server.connections(), 2);
    }
    EXPECT_THAT(second, ::testing::StartsWith("GET /2"));
    EXPECT_THAT(second, ::testing::Not(HasSubstr("ookie")));
    EXPECT_THAT(second, ::testing::Not(HasSubstr("If-None")));
}

TEST(Service, ReadsNoProxyFromTheEnvironment) {
    FaultServer proxy([](Connection& client) { client.answer("200 OK", "proxy"); });
    FaultServer server(hello);
    const std::vector<const char*> names{"http_proxy", "HTTP_PROXY", "https_proxy", "all_proxy",
                                         "ALL_PROXY"};
    for (const char* name : names)
        ::setenv(name, proxy.url().c_str(), 1);
    EXPECT_EQ(bodyOf(server.url()), "hello");
    for (const char* name : names)
        ::unsetenv(name);
    EXPECT_EQ(proxy.connections(), 0);
}

TEST(Service, CompletesEachOfAThousandRequestsOnceAndOnOneThread) {
    constexpr int requests = 1000;
    Crowd crowd;
    FaultServer server([&](Connection& client) { crowd.answer(client, 0ms); });
    std::vector<std::atomic<int>> calls(requests);
    std::atomic<int> right = 0;
    std::atomic<int> all = 0;
    std::mutex mutex;
    std::set<std::thread::id> threads;
    HttpGetService service;
    std::vector<std::thread> callers;
    for (int caller = 0; caller < 4; ++caller) {
        callers.emplace_back([&, caller] {
            for (int i = caller; i < requests; i += 4) {
                const std::string path = "/" + std::to_string(i);
                service.get(server.url(path), [&, i, path](const Body& body, const auto&...) {
                    right += body == path ? 1 : 0;
                    ++calls[static_cast<std::size_t>(i)];
                    {
                        const std::lock_guard lock(mutex);
                        threads.insert(std::this_thread::get_id());
                    }
                    ++all;
                });
            }
        });
    }
    for (std::thread& caller : callers)
        caller.join();
    EXPECT_TRUE(reaches(all, requests)) << all;
    service.stop();
    EXPECT_EQ(right, requests);
    for (const std::atomic<int>& count : calls) {
        EXPECT_EQ(count, 1);
    }
    EXPECT_EQ(threads.size(), 1U);
    EXPECT_FALSE(threads.contains(std::this_thread::get_id()));
    EXPECT_EQ(server.connections(), requests);
    EXPECT_LE(crowd.most(), 64);
}

TEST(Service, CompletesBadAddressesOnTheThreadToo) {
    HttpGetService service;
    std::mutex held;
    std::atomic<int> all = 0;
    {
        // A caller may hold a lock that its completion takes.
        const std::lock_guard lock(held);
        for (int i = 0; i < 200; ++i) {
            service.get("no address", [&](const Body& body, const auto&...) {
                const std::lock_guard inner(held);
                EXPECT_EQ(body, std::nullopt);
                ++all;
            });
        }
        std::this_thread::sleep_for(20ms);
        EXPECT_EQ(all, 0);
    }
    EXPECT_TRUE(reaches(all, 200));
}

TEST(Service, LetsACompletionStartARequest) {
    FaultServer server(hello);
    HttpGetService service;
    std::atomic<int> all = 0;
    net::GetCompletion next = [&](const Body& body, const auto&...) {
        EXPECT_EQ(body, "hello");
        if (++all < 50)
            service.get(server.url(), next);
    };
    service.get(server.url(), next);
    EXPECT_TRUE(reaches(all, 50));
}

TEST(Service, NeedsNoCompletion) {
    std::atomic<int> asked = 0;
    FaultServer server([&](Connection& client) {
        ++asked;
        hello(client);
    });
    HttpGetService service;
    service.get(server.url(), nullptr);
    EXPECT_TRUE(reaches(asked, 1));
    EXPECT_EQ(bodyOf(service, server.url()), "hello");
}

TEST(Service, LogsWhatACompletionThrowsAndGoesOn) {
    FaultServer server(hello);
    ScopedHost host;
    HttpGetService service;
    service.get(server.url(),
                [](const Body&, const auto&...) { throw std::runtime_error("no room"); });
    service.get(server.url(), [](const Body&, const auto&...) { throw 7; });
    while (host->runtimeLog().size() < 2)
        std::this_thread::sleep_for(1ms);
    EXPECT_EQ(bodyOf(service, server.url()), "hello");
    EXPECT_THAT(host->runtimeLog(),
                ::testing::UnorderedElementsAre("request completion fail:no room",
                                                "request completion fail:unknown exception"));
}

TEST(Service, RunsNoMoreTransfersThanToldAndTheOthersAfterThem) {
    std::atomic<int> all = 0;
    Crowd crowd;
    FaultServer server([&](Connection& client) { crowd.answer(client, 100ms); });
    HttpGetService service({.idleTime = 1s, .maxTransfers = 2});
    // The last ones wait for longer than the idle time, which begins with their own transfers.
    for (int i = 0; i < 30; ++i) {
        service.get(server.url(),
                    [&](const Body& body, const auto&...) { all += body == "/" ? 1 : 0; });
    }
    EXPECT_TRUE(reaches(all, 30));
    EXPECT_EQ(crowd.most(), 2);
}

TEST(Service, DropsWhatIsUnderWayWhenItStops) {
    FaultServer server([](Connection& client) { client.hang(); });
    const auto kept = std::make_shared<int>();
    std::atomic<int> calls = 0;
    HttpGetService service;
    for (int i = 0; i < 100; ++i)
        service.get(server.url(), [&, kept](const Body&, const auto&...) { ++calls; });
    while (server.connections() < 64)
        std::this_thread::sleep_for(1ms);
    const auto begin = std::chrono::steady_clock::now();
    service.stop();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 2s);
    service.get(server.url(), [&, kept](const Body&, const auto&...) { ++calls; });
    service.stop();
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(kept.use_count(), 1);
}

TEST(Service, StopsWithoutARequest) {
    HttpGetService service;
    service.stop();
    service.get("http://127.0.0.1/", [](const Body&, const auto&...) { ADD_FAILURE(); });
}

/// The state of a thread of this process as the system reports it, by the thread's name.
std::map<std::string, std::string> threadStates() {
    std::map<std::string, std::string> states;
    for (const auto& thread : std::filesystem::directory_iterator("/proc/self/task")) {
        std::ifstream file(thread.path() / "status");
        std::string name;
        for (std::string line; std::getline(file, line);) {
            if (line.starts_with("Name:\t"))
                name = line.substr(6);
            else if (line.starts_with("SigBlk:\t"))
                states[name] = line.substr(8);
        }
    }
    return states;
}

TEST(Service, StartsItsThreadWithTheFirstRequestAndWithSignalsBlocked) {
    FaultServer server(hello);
    HttpGetService service;
    EXPECT_FALSE(threadStates().contains("yg-net"));
    EXPECT_EQ(bodyOf(service, server.url()), "hello");
    // They are open while the completion runs.
    unsigned long long blocked = 0;
    for (int i = 0; i < 1500 && (blocked & (1ULL << (SIGTERM - 1))) == 0; ++i) {
        const auto states = threadStates();
        ASSERT_TRUE(states.contains("yg-net"));
        blocked = std::stoull(states.at("yg-net"), nullptr, 16);
        std::this_thread::sleep_for(10ms);
    }
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGCHLD, SIGPIPE, SIGALRM, SIGUSR1, SIGIO}) {
        EXPECT_NE(blocked & (1ULL << (number - 1)), 0U) << number;
    }
    EXPECT_EQ(blocked & (1ULL << (SIGSEGV - 1)), 0U);
    sigset_t mine;
    pthread_sigmask(SIG_SETMASK, nullptr, &mine);
    EXPECT_EQ(sigismember(&mine, SIGTERM), 0);
}

TEST(Service, OfTheProcessAnswers) {
    FaultServer server(hello);
    std::atomic<int> all = 0;
    net::get(server.url(),
             [&](const Body& body, const auto&...) { all += body == "hello" ? 1 : 0; });
    net::get("", [&](const Body& body, const auto&...) { all += body ? 0 : 1; });
    net::get("", nullptr);
    EXPECT_TRUE(reaches(all, 2));
}

}  // namespace
}  // namespace yg::testing
