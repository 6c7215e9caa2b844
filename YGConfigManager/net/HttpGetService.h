// SPDX-License-Identifier: MIT
//
// A network thread with its queue of requests. The process has one (HttpGet.h); tests make their
// own, with less patience.
#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "YGConfigManager/net/HttpGet.h"
#include "YGConfigManager/net/ThreadSettings.h"

namespace yg::net {

/// What bounds a request. Only tests change it.
struct HttpGetOptions {
    /// A transfer ends when nothing has arrived for so long, from its start on. Requests that wait
    /// for their turn have not started.
    std::chrono::milliseconds idleTime = std::chrono::seconds(10);
    /// In bytes, as they arrive and decoded.
    std::size_t largestBody = std::size_t{64} * 1024 * 1024;
    /// In bytes, of all headers of a request, those of redirects included.
    std::size_t largestHeaders = std::size_t{1024} * 1024;
    /// Transfers at a time, one connection each; more requests wait for their turn.
    std::size_t maxTransfers = 64;
    /// A PEM file with the certificates to trust; empty for those of the system.
    std::string trustedCertificates = {};
};

struct Request {
    std::string url;
    GetCompletion completion;
};

/// A request that is over, with what its completion receives.
struct Ended {
    Request request;
    std::optional<std::string> body;
    std::optional<HttpResponse> response;
    std::optional<std::string> error;
};

/// Within a handler: logs the exception and ends a request that cannot begin.
void refuse(const GetCompletion& completion) noexcept;

class Transfers;

class HttpGetService {
public:
    explicit HttpGetService(HttpGetOptions options = {});
    /// Stops; no other call may be under way.
    ~HttpGetService();
    HttpGetService(const HttpGetService&) = delete;
    HttpGetService& operator=(const HttpGetService&) = delete;

    /// As net::get. Any thread. A stopped service drops the request. When memory runs out or the
    /// system gives no thread, that is logged and the request ends inside the call.
    void get(std::string url, GetCompletion completion) noexcept;

    /// Cuts all transfers, drops their completions and those that wait, and waits for the thread,
    /// which takes as long as the completion that is running. From within a completion it does not
    /// wait: it is for the end of the process, which never returns there.
    void stop() noexcept;

private:
    void startThread();
    void run() noexcept;
    void takeIncoming(std::deque<Request>& waiting);
    void complete(std::vector<Ended> all) const noexcept;

    const HttpGetOptions options_;
    std::mutex mutex_;
    std::vector<Request> incoming_;
    std::atomic<bool> isStopping_ = false;
    std::unique_ptr<Transfers> transfers_;
    std::thread thread_;
    ThreadSettings applicationSettings_;  // of the thread that made the first request
};

/// Options of the process's own service; heeded before the first request only.
void setProcessOptions(HttpGetOptions options);

}  // namespace yg::net
