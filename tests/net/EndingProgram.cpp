// SPDX-License-Identifier: MIT
//
// A process that ends while requests are under way, in the way that its first argument names:
//
//   main URL COUNT MICROSECONDS [CERTIFICATES]   leaves main() a while after starting requests
//   busy URL COUNT MICROSECONDS [CERTIFICATES]   the same; each completion starts another request
//   completion URL                               calls exit() in a completion
//   static URL                                   makes a request after the end of the service
//   fork URL                                     makes requests in children of a fork
//   forks COUNT URL TLS-URL CERTIFICATES         the same in many, while much is under way
//   threadless URL                               makes requests where the system gives no thread
//   files URL TLS-URL                            starts this program in a completion, where it ...
//   listing                                      ... ends with the number of its open files
//
// One that waits for an answer or a name waits until an alarm ends it, which is a bad end. The
// look-up of a name that ends in ".hanging" never ends; one that ends in ".local" is this machine.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <filesystem>
#include <functional>
#include <future>
#include <netdb.h>
#include <string>
#include <string_view>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "YGConfigManager/net/HttpGet.h"
#include "YGConfigManager/net/HttpGetService.h"

extern "C" __attribute__((visibility("default"))) int getaddrinfo(const char* name,
                                                                  const char* service,
                                                                  const addrinfo* hints,
                                                                  addrinfo** found) {
    if (name && std::string_view(name).ends_with(".hanging")) {
        while (true)
            ::pause();
    }
    const bool isLocal = name && std::string_view(name).ends_with(".local");
    static const auto real =
        reinterpret_cast<decltype(&getaddrinfo)>(dlsym(RTLD_NEXT, "getaddrinfo"));
    return real(isLocal ? "localhost" : name, service, hints, found);
}

namespace {

using namespace std::chrono_literals;
using Body = std::optional<std::string>;

std::atomic<bool> isOver = false;

/// Ends this process badly should it wait for ever; a child of a fork needs its own.
void limitWaiting() {
    ::alarm(60);
}

/// Made before the first request, so destroyed after the service: no completion may come then.
struct Early {
    std::string url;
    ~Early() {
        isOver = true;
        if (!url.empty()) {
            yg::net::get(url, [](const Body&, const auto&...) { std::abort(); });
            std::this_thread::sleep_for(50ms);
        }
    }
};

void request(const std::string& url, bool isRepeated) {
    yg::net::get(url, [url, isRepeated](const Body&, const auto&...) {
        if (isOver)
            std::abort();
        if (isRepeated)
            request(url, true);
    });
}

/// The body, or "none".
std::string bodyOf(const std::string& url) {
    const auto promise = std::make_shared<std::promise<Body>>();
    yg::net::get(url, [promise](const Body& body, const auto&...) { promise->set_value(body); });
    return promise->get_future().get().value_or("none");
}

/// Whether a child that does this ends well.
bool childDoes(const std::function<bool()>& work) {
    const pid_t child = ::fork();
    if (child == 0) {
        limitWaiting();
        std::exit(work() ? 0 : 1);
    }
    int state = 0;
    ::waitpid(child, &state, 0);
    return state == 0;
}

bool forks(const std::string& url) {
    const auto asks = [url] { return bodyOf(url) == "hello"; };
    // The first with nothing of the parent's under way, the others while much is.
    bool ok = asks() && childDoes(asks);
    for (int i = 0; i < 100; ++i)
        request(url, false);
    ok = ok && childDoes([] { return true; });
    ok = ok && childDoes([&] { return asks() && childDoes(asks) && asks(); });
    return ok && asks();
}

/// The same address by a name, which is looked up unless that was done a moment ago.
std::string byName(std::string url, const std::string& name) {
    return url.replace(url.find("127.0.0.1"), 9, name);
}

/// Looks up one name after the other.
void requestByNames(const std::string& url) {
    static std::atomic<int> count = 0;
    yg::net::get(byName(url, std::to_string(++count) + ".local"),
                 [url](const Body&, const auto&...) { requestByNames(url); });
}

/// How many of the children that fork at once and make a request each do not get its answer.
int lostForks(int count, const std::string& url, const std::string& tlsUrl) {
    constexpr int atATime = 8;
    for (int i = 0; i < 8; ++i) {
        request(url, true);
        request(tlsUrl, true);
        requestByNames(url);
    }
    int lost = 0;
    const auto wait = [&lost] {
        int state = 0;
        const pid_t child = ::wait(&state);
        if (state != 0) {
            ++lost;
            std::fprintf(stderr, "child %d: %s %d\n", child, WIFSIGNALED(state) ? "signal" : "exit",
                         WIFSIGNALED(state) ? WTERMSIG(state) : WEXITSTATUS(state));
        }
    };
    for (int i = 0; i < count; ++i) {
        if (i >= atATime)
            wait();
        if (::fork() == 0) {
            limitWaiting();
            std::promise<bool> isRight;
            yg::net::get(i % 8 == 0 ? tlsUrl : url, [&](const Body& body, const auto&...) {
                isRight.set_value(body == "hello");
            });
            ::_exit(isRight.get_future().get() ? 0 : 1);
        }
    }
    for (int i = std::min(count, atATime); i > 0; --i)
        wait();
    return lost;
}

void limitThreads(rlim_t count) {
    rlimit limit{};
    ::getrlimit(RLIMIT_NPROC, &limit);
    limit.rlim_cur = count;
    ::setrlimit(RLIMIT_NPROC, &limit);
}

bool asksWithoutThreads(const std::string& url) {
    // There is no limit for the administrator.
    if (::geteuid() == 0 && ::setresuid(65534, 65534, 65534) != 0)
        return false;
    rlimit limit{};
    ::getrlimit(RLIMIT_NPROC, &limit);
    bool ok = true;
    for (int i = 0; i < 3; ++i) {
        limitThreads(0);
        int calls = 0;
        const auto caller = std::this_thread::get_id();
        yg::net::get(url, [&](const Body& body, const auto& response, const auto& error) {
            ++calls;
            ok = ok && !body && !response && error == "the system gives no thread" &&
                 std::this_thread::get_id() == caller;
        });
        ok = ok && calls == 1;
        yg::net::get(url, nullptr);
    }
    limitThreads(limit.rlim_max);
    ok = ok && bodyOf(url) == "hello" && bodyOf(byName(url, "a.local")) == "hello";
    // The look-up of a name takes a thread too.
    limitThreads(0);
    ok = ok && bodyOf(byName(url, "b.local")) == "none" && bodyOf(url) == "hello";
    limitThreads(limit.rlim_max);
    return ok && bodyOf(byName(url, "c.local")) == "hello";
}

int openFiles() {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        static_cast<void>(entry);
        ++count;
    }
    return count - 1;  // that of the folder itself
}

/// How many files this program has open when it is started in a completion.
int filesOfPrograms(const std::string& program, const std::string& url, const std::string& tlsUrl) {
    ::close_range(STDERR_FILENO + 1, ~0U, 0);
    request("http://name.hanging/", false);
    request(tlsUrl + "hanging", false);
    request(url + "hanging", false);
    std::promise<int> promise;
    std::function<void(int)> next = [&](int left) {
        yg::net::get(byName(url, std::to_string(left) + ".local"),
                     [&, left](const Body&, const auto&...) {
                         if (left > 0)
                             return next(left - 1);
                         const pid_t child = ::fork();
                         if (child == 0) {
                             ::execl(program.c_str(), program.c_str(), "listing", nullptr);
                             ::_exit(127);
                         }
                         int state = 0;
                         ::waitpid(child, &state, 0);
                         promise.set_value(WIFEXITED(state) ? WEXITSTATUS(state) : -1);
                     });
    };
    next(20);
    return promise.get_future().get();
}

}  // namespace

int main(int count, char** arguments) {
    if (count == 2 && arguments[1] == std::string_view("listing"))
        return openFiles();
    const std::string way = count > 2 ? arguments[1] : "";
    if (way == "forks" && count == 6) {
        yg::net::setProcessOptions({.trustedCertificates = arguments[5]});
        return std::min(lostForks(std::atoi(arguments[2]), arguments[3], arguments[4]), 100);
    }
    limitWaiting();
    if (way == "files" && count == 4)
        return filesOfPrograms(arguments[0], arguments[2], arguments[3]) - (STDERR_FILENO + 1);
    const std::string url = count > 2 ? arguments[2] : "";
    static Early early;
    if (way == "completion") {
        yg::net::get(url, [](const Body&, const auto&...) { std::exit(0); });
        while (true)
            ::pause();
    }
    if (way == "static") {
        early.url = url;
        return bodyOf(url) == "hello" ? 0 : 1;
    }
    if (way == "fork")
        return forks(url) ? 0 : 1;
    if (way == "threadless")
        return asksWithoutThreads(url) ? 0 : 1;
    if (count < 5)
        return 2;
    yg::net::setProcessOptions(
        {.idleTime = 1h, .trustedCertificates = count > 5 ? arguments[5] : ""});
    for (int i = std::atoi(arguments[3]); i > 0; --i)
        request(url, way == "busy");
    std::this_thread::sleep_for(std::chrono::microseconds(std::atoi(arguments[4])));
    return 0;
}
