// SPDX-License-Identifier: MIT
//
// A process that uses the library until its very end, in the way that its first argument names:
//
//   objects ROOT            in the destructor of a static object older than any use
//   unused ROOT             the same, without any use before
//   threads ROOT ROUNDS     on threads that nobody waits for, so many rounds of work before it ends
//   parsing ROOT ROUNDS     the same with nothing but parsing, and a slow end of libxml2
//   completions ROOT ROUNDS on the network's thread, begun before the first loader
//   completion ROOT         calls exit() on the network's thread, with threads at work
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <functional>
#include <pthread.h>
#include <string>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

#include "process/Uses.h"

namespace {

using namespace yg;
using namespace yg::testing;

std::atomic<bool> isEndingSlowly = false;
std::atomic<int> failed = 0;
std::atomic<int> rounds = 0;

/// Made before anything of the library, so destroyed after anything that it would register.
struct Oldest {
    std::string root;
    ~Oldest() {
        if (root.empty())
            return;
        useHost(root);
        loadLayout(*YGStyleConfigLoad::getShareInstance(), root);
        if (const int use = firstFailing(allUses(root)); use != 0 || failed != 0) {
            std::printf("use %d fails at the end\n", use);
            std::fflush(stdout);
            ::_exit(1);
        }
        std::printf("all at the end\n");
    }
};

/// Works without end, on a thread that nobody waits for.
void startThread(std::size_t first, std::vector<std::function<bool()>> work) {
    std::thread([first, uses = std::move(work)] {
        for (std::size_t i = first;; ++i) {
            if (!uses[i % uses.size()]()) {
                // What was there before is there to the end.
                failed = 1;
                std::abort();
            }
            ++rounds;
        }
    }).detach();
}

void waitForRounds(int wanted) {
    while (rounds < wanted)
        std::this_thread::yield();
}

/// A request that fails at once, whose completion looks up and begins the next.
void request(const YGHttpReqUrlMgr& manager, const std::function<void()>& work) {
    manager.requestUrl("http://127.0.0.1:1/", [&manager, work](const auto&...) {
        work();
        request(manager, work);
    });
}

}  // namespace

/// libxml2 calls it in the middle of cleaning up at the end of the process.
extern "C" __attribute__((visibility("default"))) int pthread_key_delete(
    pthread_key_t key) noexcept {
    static const auto real =
        reinterpret_cast<decltype(&pthread_key_delete)>(dlsym(RTLD_NEXT, "pthread_key_delete"));
    if (isEndingSlowly)
        ::usleep(20'000);
    const int result = real(key);
    if (isEndingSlowly)
        ::usleep(20'000);
    return result;
}

int main(int count, char** arguments) {
    static Oldest oldest;
    const std::string way = count > 2 ? arguments[1] : "";
    const std::string root = count > 2 ? arguments[2] : "";
    const int wanted = count > 3 ? std::atoi(arguments[3]) : 20;
    if (way == "unused") {
        oldest.root = root;
        return 0;
    }
    useHost(root);
    static const auto& manager = *new std::shared_ptr(YGHttpReqUrlMgr::make());
    if (way == "objects") {
        oldest.root = root;
        loadLayout(*YGStyleConfigLoad::getShareInstance(), root);
        return firstFailing(allUses(root));
    }
    if (way == "threads") {
        loadLayout(*YGStyleConfigLoad::getShareInstance(), root);
        for (std::size_t i = 0; i < 3; ++i)
            startThread(i * 5, allUses(root));
        waitForRounds(wanted);
        return 0;
    }
    if (way == "parsing") {
        for (std::size_t i = 0; i < 3; ++i)
            startThread(i, {isWrong, parsesAnotherEncoding});
        waitForRounds(wanted);
        isEndingSlowly = true;
        return 0;
    }
    if (way == "completions") {
        static std::atomic<bool> isLoaded = false;
        request(*manager, [root] {
            const auto& loader = *YGStyleConfigLoad::getShareInstance();
            if (isLoaded && !(looksUp(loader) && loadsEvents(root) && measures()))
                std::abort();
            ++rounds;
        });
        loadLayout(*YGStyleConfigLoad::getShareInstance(), root);
        isLoaded = true;
        waitForRounds(wanted);
        return 0;
    }
    if (way == "completion") {
        loadLayout(*YGStyleConfigLoad::getShareInstance(), root);
        startThread(0, allUses(root));
        request(*manager, [] { std::exit(0); });
        while (true)
            ::pause();
    }
    return 2;
}
