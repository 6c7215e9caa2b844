// SPDX-License-Identifier: MIT
//
// What completions may start: threads and programs with the settings of the application.
#include <atomic>
#include <chrono>
#include <csignal>
#include <future>
#include <memory>
#include <pthread.h>
#include <sched.h>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>

#include <gtest/gtest.h>

#include "net/FaultServer.h"
#include "net/Getting.h"

namespace yg::testing {
namespace {

using namespace std::chrono_literals;
using net::HttpGetService;

void hello(Connection& client) {
    client.answer("200 OK", "hello");
}

struct Settings {
    bool blocksTerm = true;
    bool blocksUser = false;
    int policy = -1;
};

Settings settingsOfThread() {
    sigset_t blocked;
    pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
    return {sigismember(&blocked, SIGTERM) == 1, sigismember(&blocked, SIGUSR2) == 1,
            ::sched_getscheduler(0)};
}

/// What the work answers in a completion.
template <class Work>
auto inCompletion(HttpGetService& service, const std::string& url, Work work) {
    const auto promise = std::make_shared<std::promise<decltype(work())>>();
    service.get(url, [promise, work](const auto&...) { promise->set_value(work()); });
    auto future = promise->get_future();
    if (future.wait_for(20s) != std::future_status::ready)
        throw std::runtime_error("no completion");
    return future.get();
}

TEST(Completion, HasTheSignalsAndThePolicyOfTheThreadThatAskedFirst) {
    FaultServer server(hello);
    HttpGetService service;
    std::thread([&] {
        sigset_t user;
        sigemptyset(&user);
        sigaddset(&user, SIGUSR2);
        pthread_sigmask(SIG_SETMASK, &user, nullptr);
        bodyOf(service, server.url());
    }).join();
    // That of this thread has no part in it.
    const auto started = [] {
        Settings settings;
        std::thread([&] { settings = settingsOfThread(); }).join();
        return settings;
    };
    for (const Settings& one : {inCompletion(service, server.url(), &settingsOfThread),
                                inCompletion(service, server.url(), started)}) {
        EXPECT_FALSE(one.blocksTerm);
        EXPECT_TRUE(one.blocksUser);
        EXPECT_EQ(one.policy, SCHED_OTHER);
    }
}

TEST(Completion, HasNoRealTimePriority) {
    FaultServer server(hello);
    HttpGetService service;
    bool isPermitted = false;
    std::thread([&] {
        const sched_param priority{.sched_priority = 1};
        isPermitted = pthread_setschedparam(pthread_self(), SCHED_FIFO, &priority) == 0;
        service.get(server.url(), nullptr);
    }).join();
    EXPECT_EQ(inCompletion(service, server.url(), &settingsOfThread).policy, SCHED_OTHER);
    if (!isPermitted)
        GTEST_SKIP() << "real-time priority is not permitted here";
}

TEST(Completion, StartsProgramsThatEndOnASignal) {
    FaultServer server(hello);
    HttpGetService service;
    const pid_t child = inCompletion(service, server.url(), [] {
        const pid_t started = ::fork();
        if (started == 0) {
            ::execlp("sleep", "sleep", "60", nullptr);
            ::_exit(127);
        }
        return started;
    });
    EXPECT_EQ(::sched_getscheduler(child), SCHED_OTHER);
    ::kill(child, SIGTERM);
    int state = 0;
    for (int i = 0; i < 2000 && ::waitpid(child, &state, WNOHANG) == 0; ++i)
        std::this_thread::sleep_for(10ms);
    ::kill(child, SIGKILL);
    EXPECT_TRUE(WIFSIGNALED(state) && WTERMSIG(state) == SIGTERM) << state;
}

TEST(Completion, GetsNoBrokenPipeOfTheNetwork) {
    static std::atomic<int> signals;
    signals = 0;
    struct sigaction counting {};
    struct sigaction before {};
    counting.sa_handler = [](int) { ++signals; };
    ::sigaction(SIGPIPE, &counting, &before);
    FaultServer server(hello);
    HttpGetService service;
    const pthread_t thread = inCompletion(service, server.url(), &pthread_self);
    // As TLS does when it writes to a server that has gone: while the thread is at its own work.
    FaultServer sending([thread](Connection& client) {
        ::pthread_kill(thread, SIGPIPE);
        hello(client);
    });
    EXPECT_EQ(bodyOf(service, sending.url()), "hello");
    EXPECT_EQ(bodyOf(service, server.url()), "hello");
    service.stop();
    ::sigaction(SIGPIPE, &before, nullptr);
    EXPECT_EQ(signals, 0);
}

TEST(Completion, GoesWithTheSettingsThatItHad) {
    FaultServer server(hello);
    HttpGetService service;
    const auto promise = std::make_shared<std::promise<Settings>>();
    auto future = promise->get_future();
    std::shared_ptr<void> held(nullptr,
                               [promise](const void*) { promise->set_value(settingsOfThread()); });
    service.get(server.url(), [held = std::move(held)](const auto&...) {});
    const Settings settings = future.get();
    EXPECT_FALSE(settings.blocksTerm);
    EXPECT_EQ(settings.policy, SCHED_OTHER);
}

}  // namespace
}  // namespace yg::testing
