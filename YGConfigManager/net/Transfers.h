// SPDX-License-Identifier: MIT
//
// The transfers that run at one time: the one place that knows how a request is made with libcurl.
// One thread owns it; only wake() may be called from others.
#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <poll.h>
#include <string>
#include <vector>

#include <curl/curl.h>

#include "YGConfigManager/net/HttpGetService.h"

namespace yg::net {

class Transfer;

class Transfers {
public:
    /// Once `isStopping` is true a step does hardly anything any more: TLS with many servers takes
    /// its time, and the end of a process should not.
    Transfers(const HttpGetOptions& options, const std::atomic<bool>& isStopping);
    ~Transfers();
    Transfers(const Transfers&) = delete;
    Transfers& operator=(const Transfers&) = delete;

    std::size_t count() const { return running_.size(); }

    /// One line if libcurl is missing, so that each request ends with that error.
    void logWhatIsMissing() const;

    /// Takes a request and starts its transfer; one that cannot start ends with the next step.
    /// Without memory it throws and leaves the request with the caller.
    void add(Request& request);

    /// Does what can be done without waiting and answers what has ended.
    std::vector<Ended> step();

    /// Waits until there is something to do, or someone to call it.
    void wait();

    /// Ends a wait, the next one if none is under way. Any thread.
    void wake() const;

    /// Cuts all transfers and drops their completions.
    void clear();

private:
    using Clock = std::chrono::steady_clock;

    static int onSocket(CURL*, curl_socket_t socket, int what, void* self, void*);
    static int onTimer(CURLM*, long milliseconds, void* self);

    struct Socket {
        curl_socket_t number;
        short events;            // to wait for, as poll names them
        CURL* handle;            // whose connection it is; null for what libcurl wakes itself with
        std::uint64_t received;  // bytes so far
    };

    struct Message {
        CURL* handle;
        CURLcode result;
    };

    bool begin(const Transfer& transfer);
    void noteArrival(curl_socket_t socket);
    void act(curl_socket_t socket, int events);
    std::optional<Message> nextMessage();
    std::unique_ptr<Transfer> remove(std::size_t index);
    std::vector<std::unique_ptr<Transfer>>::iterator find(const CURL* handle);

    const HttpGetOptions& options_;
    const std::atomic<bool>& isStopping_;
    std::optional<std::string> missing_;  // why libcurl cannot be used
    CURLM* multi_ = nullptr;
    curl_slist* headers_ = nullptr;
    const int wakeUp_;  // -1 if the system has none
    std::vector<Socket> sockets_;
    std::vector<pollfd> ready_;  // after a wait
    std::optional<Clock::time_point> timer_;
    std::vector<std::unique_ptr<Transfer>> running_;
    std::vector<Ended> unstarted_;
};

}  // namespace yg::net
