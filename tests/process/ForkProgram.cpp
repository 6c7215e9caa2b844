// SPDX-License-Identifier: MIT
//
// A process that forks children while its threads use the library:
//
//   ROOT COUNT
//
// Each child uses the library as well. Prints how many of them hang or fail.
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "process/Uses.h"

namespace {

using namespace yg;
using namespace yg::testing;

std::atomic<bool> isOver = false;
std::atomic<int> failed = 0;

std::thread repeat(std::function<bool()> use) {
    return std::thread([use = std::move(use)] {
        while (!isOver)
            failed += use() ? 0 : 1;
    });
}

/// The threads of the parent. What they use alone, a child does not touch.
std::vector<std::thread> startThreads(const std::string& root, const YGHttpReqUrlMgr& urls) {
    std::vector<std::thread> threads;
    threads.push_back(repeat([&urls] {
        return looksUp(*YGStyleConfigLoad::getShareInstance()) && findsUrl(urls) && measures() &&
               notifies() && posts() && logs();
    }));
    threads.push_back(repeat([root, uses = allUses(root)] { return firstFailing(uses) == 0; }));
    threads.push_back(repeat([root] {
        const auto host = StandAloneHost::open(root).host;
        setHost(host);
        host->overrideUserRight("free");
        return asksTheHost();
    }));
    // Threads that begin, for what a thread does at its first use.
    threads.push_back(repeat([] {
        std::thread([] { failed += parsesAnotherEncoding() && isWrong() ? 0 : 1; }).join();
        return true;
    }));
    const auto store = YGAppConfigManager::initWithFileName("app_config.xml");
    threads.push_back(repeat([store, count = 0]() mutable {
        return store->setConfigItem("counting", "value", std::nullopt, std::to_string(++count)) &&
               store->getItemText("counting", "value") == std::to_string(count);
    }));
    return threads;
}

/// Does what a child does: all that is small, and one of the uses. Answers whether all went well.
bool worksInChild(int number, const std::vector<std::function<bool()>>& uses,
                  const YGHttpReqUrlMgr& urls) {
    return looksUp(*YGStyleConfigLoad::getShareInstance()) && findsUrl(urls) && asksTheHost() &&
           notifies() && posts() && logs() &&
           uses[static_cast<std::size_t>(number) % uses.size()]();
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 3)
        return 2;
    const std::string root = arguments[1];
    const int children = std::atoi(arguments[2]);
    useHost(root);
    loadLayout(*YGStyleConfigLoad::getShareInstance(), root);
    const auto urls = YGHttpReqUrlMgr::make();
    urls->readUrlModelFromFile();
    const auto uses = allUses(root);
    std::vector<std::thread> threads = startThreads(root, *urls);
    int hang = 0;
    for (int i = 0; i < children; ++i) {
        const pid_t child = ::fork();
        if (child == 0) {
            // A child that hangs is ended by the alarm.
            ::alarm(30);
            const int state = worksInChild(i, uses, *urls) ? 0 : 1;
            i % 4 == 0 ? std::exit(state) : ::_exit(state);
        }
        int state = 0;
        while (::waitpid(child, &state, 0) < 0 && errno == EINTR) {
        }
        if (WIFSIGNALED(state) && WTERMSIG(state) == SIGALRM) {
            std::fprintf(stderr, "hangs: %d\n", i);
            ++hang;
        } else if (state != 0) {
            std::fprintf(stderr, "fails with state %d: %d\n", state, i);
            ++failed;
        }
    }
    isOver = true;
    for (std::thread& thread : threads)
        thread.join();
    std::printf("%d children, %d hang, %d fail\n", children, hang, failed.load());
    return 0;
}
