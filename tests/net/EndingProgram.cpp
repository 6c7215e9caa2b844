// SPDX-License-Identifier: MIT
//
// A process that ends while requests are under way, in the way that its first argument names:
//
//   main URL COUNT MICROSECONDS [CERTIFICATES]   leaves main() a while after starting requests
//   busy URL COUNT MICROSECONDS [CERTIFICATES]   the same; each completion starts another request
//   completion URL                               calls exit() in a completion
//   static URL                                   makes a request after the end of the service
//   fork URL                                     makes requests in children of a fork
//
// Right before it ends it prints the time of the steady clock in nanoseconds. A name that ends in
// ".hanging" takes half a minute to look up.
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <functional>
#include <future>
#include <netdb.h>
#include <string>
#include <string_view>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "YGConfigManager/net/HttpGet.h"
#include "YGConfigManager/net/HttpGetService.h"

extern "C" __attribute__((visibility("default"))) int getaddrinfo(const char* name,
                                                                  const char* service,
                                                                  const addrinfo* hints,
                                                                  addrinfo** found) {
    if (name != nullptr && std::string_view(name).ends_with(".hanging")) {
        std::this_thread::sleep_for(std::chrono::seconds(30));
        return EAI_AGAIN;
    }
    static const auto real =
        reinterpret_cast<decltype(&getaddrinfo)>(dlsym(RTLD_NEXT, "getaddrinfo"));
    return real(name, service, hints, found);
}

namespace {

using namespace std::chrono_literals;
using Body = std::optional<std::string>;

std::atomic<bool> isOver = false;

void printTime() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    std::printf("%lld\n", static_cast<long long>(std::chrono::nanoseconds(now).count()));
    std::fflush(stdout);
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
        if (isOver) {
            std::abort();
        }
        if (isRepeated) {
            request(url, true);
        }
    });
}

/// The body, or "none", or "late".
std::string bodyOf(const std::string& url) {
    const auto promise = std::make_shared<std::promise<Body>>();
    yg::net::get(url, [promise](const Body& body, const auto&...) { promise->set_value(body); });
    auto future = promise->get_future();
    return future.wait_for(10s) == std::future_status::ready ? future.get().value_or("none")
                                                             : "late";
}

/// Whether a child that does this ends well.
bool childDoes(const std::function<bool()>& work) {
    const pid_t child = ::fork();
    if (child == 0) {
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
    for (int i = 0; i < 100; ++i) {
        request(url, false);
    }
    ok = ok && childDoes([] { return true; });
    ok = ok && childDoes([&] { return asks() && childDoes(asks) && asks(); });
    return ok && asks();
}

}  // namespace

int main(int count, char** arguments) {
    const std::string way = count > 2 ? arguments[1] : "";
    const std::string url = count > 2 ? arguments[2] : "";
    static Early early;
    if (way == "completion") {
        yg::net::get(url, [](const Body&, const auto&...) {
            printTime();
            std::exit(0);
        });
        std::this_thread::sleep_for(30s);
        return 1;
    }
    if (way == "static") {
        early.url = url;
        const bool ok = bodyOf(url) == "hello";
        printTime();
        return ok ? 0 : 1;
    }
    if (way == "fork") {
        const bool ok = forks(url);
        printTime();
        return ok ? 0 : 1;
    }
    if (count < 5) {
        return 2;
    }
    yg::net::setProcessOptions({.trustedCertificates = count > 5 ? arguments[5] : ""});
    for (int i = std::atoi(arguments[3]); i > 0; --i) {
        request(url, way == "busy");
    }
    std::this_thread::sleep_for(std::chrono::microseconds(std::atoi(arguments[4])));
    printTime();
    return 0;
}
