// SPDX-License-Identifier: MIT
//
// What a caller of the network service waits for, and a thousand requests from a server on this
// machine.
#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <netinet/in.h>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "YGConfigManager/net/HttpGetService.h"

#include "benchmarks/Comparison.h"

namespace yg::benchmarks {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int requests = 1000;
constexpr std::size_t bodySize = 9000;

/// Answers each connection in turn, on a thread of its own.
class LocalServer {
public:
    LocalServer() : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        auto* const general = reinterpret_cast<sockaddr*>(&address);
        socklen_t size = sizeof address;
        require(::bind(socket_, general, size) == 0 && ::listen(socket_, requests) == 0 &&
                    ::getsockname(socket_, general, &size) == 0,
                "no server");
        url_ = "http://127.0.0.1:" + std::to_string(ntohs(address.sin_port)) + "/";
        thread_ = std::thread([this] { serve(); });
    }
    ~LocalServer() {
        ::shutdown(socket_, SHUT_RDWR);
        thread_.join();
        ::close(socket_);
    }
    LocalServer(const LocalServer&) = delete;
    LocalServer& operator=(const LocalServer&) = delete;

    const std::string& url() const { return url_; }

private:
    void serve() const {
        const std::string answer =
            "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(bodySize) + "\r\n\r\n" +
            std::string(bodySize, 'x');
        for (;;) {
            const int client = ::accept(socket_, nullptr, nullptr);
            if (client < 0)
                return;
            std::array<char, 1024> request{};
            std::string_view asked;
            do {
                const ssize_t count = ::recv(client, request.data(), request.size(), 0);
                asked = {request.data(), count > 0 ? static_cast<std::size_t>(count) : 0};
            } while (!asked.empty() && !asked.ends_with("\r\n\r\n"));
            ::send(client, answer.data(), answer.size(), MSG_NOSIGNAL);
            ::close(client);
        }
    }

    int socket_;
    std::string url_;
    std::thread thread_;
};

double microseconds(Clock::duration time) {
    return std::chrono::duration<double, std::micro>(time).count();
}

double medianOf(std::vector<double>& times) {
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

}  // namespace

void registerNet() {
    const LocalServer server;
    std::atomic<int> ended = 0;
    std::atomic<int> whole = 0;
    net::HttpGetService service;
    const auto complete = [&](const std::optional<std::string>& body, const auto&...) {
        whole += body && body->size() == bodySize ? 1 : 0;
        ++ended;
        ended.notify_one();
    };
    const auto waitFor = [&](int goal) {
        for (int count = ended; count < goal; count = ended)
            ended.wait(count);
    };
    const auto start = [&] {
        const Clock::time_point before = Clock::now();
        service.get(server.url(), complete);
        return microseconds(Clock::now() - before);
    };

    note("net/start the first request, µs", start(), 0);
    waitFor(1);
    // One after the other: each has to wake the thread.
    std::vector<double> starts;
    for (int i = 0; i < requests; ++i) {
        starts.push_back(start());
        waitFor(i + 2);
    }
    note("net/start a request, median, µs", medianOf(starts), 5.0);

    starts.clear();
    const int before = ended;
    const Clock::time_point begin = Clock::now();
    for (int i = 0; i < requests; ++i)
        starts.push_back(start());
    waitFor(before + requests);
    note("net/1000 requests of 9 kB at once, ms", microseconds(Clock::now() - begin) / 1000, 0);
    note("net/start each of them, median, µs", medianOf(starts), 5.0);
    service.stop();
    require(whole == before + requests, "requests without an answer");
}

}  // namespace yg::benchmarks
