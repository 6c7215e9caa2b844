// SPDX-License-Identifier: MIT
#include "YGConfigManager/net/HttpGetService.h"

#include <csignal>
#include <deque>
#include <iterator>
#include <pthread.h>
#include <sched.h>
#include <utility>

#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/net/Transfers.h"

namespace yg::net {

namespace {

/// Blocks the signals of the calling thread, and of threads that it starts, until the end of the
/// scope: the application's handlers run on its own threads. Those of a fault stay.
class SignalsBlocked {
public:
    SignalsBlocked() {
        sigset_t all;
        sigfillset(&all);
        for (const int fault : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGTRAP, SIGSYS}) {
            sigdelset(&all, fault);
        }
        pthread_sigmask(SIG_SETMASK, &all, &before_);
    }
    ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;

private:
    sigset_t before_;
};

}  // namespace

HttpGetService::HttpGetService(HttpGetOptions options)
    : options_(std::move(options)),
      transfers_(std::make_unique<Transfers>(options_, isStopping_)) {}

HttpGetService::~HttpGetService() {
    stop();
}

void HttpGetService::get(std::string url, GetCompletion completion) noexcept {
    try {
        bool isFirst = false;
        {
            const std::lock_guard lock(mutex_);
            if (isStopping_) {
                return;
            }
            isFirst = incoming_.empty();
            incoming_.emplace_back() = {std::move(url), std::exchange(completion, nullptr)};
            if (!thread_.joinable()) {
                startThread();
            }
        }
        // The thread takes all that has come, so one nudge is enough for those that follow.
        if (isFirst) {
            transfers_->wake();
        }
    } catch (...) {
        refuse(completion);
    }
}

void refuse(const GetCompletion& completion) noexcept {
    logException("network request");
    guarded("request completion", [&] {
        if (completion) {
            completion(std::nullopt, std::nullopt, std::string(outOfMemory));
        }
    });
}

void HttpGetService::stop() noexcept {
    {
        const std::lock_guard lock(mutex_);
        isStopping_ = true;
    }
    if (!thread_.joinable()) {
        return;
    }
    if (thread_.get_id() == std::this_thread::get_id()) {
        thread_.detach();
        return;
    }
    transfers_->wake();
    thread_.join();
}

void HttpGetService::startThread() {
    const SignalsBlocked blocked;
    thread_ = std::thread([this] { run(); });
}

void HttpGetService::run() noexcept {
    pthread_setname_np(pthread_self(), "yg-net");
    // Waking this thread must not take the processor from the one that starts a request.
    const sched_param ordinary{};
    pthread_setschedparam(pthread_self(), SCHED_BATCH, &ordinary);
    std::deque<Request> waiting;
    while (!isStopping_) {
        try {
            takeIncoming(waiting);
            if (isStopping_) {
                break;
            }
            while (!waiting.empty() && transfers_->count() < options_.mostTransfers) {
                transfers_->add(waiting.front());
                waiting.pop_front();
            }
            for (Ended& ended : transfers_->step()) {
                complete(std::move(ended));
            }
            if (waiting.empty() || transfers_->count() == options_.mostTransfers) {
                transfers_->wait();
            }
        } catch (...) {
            logException("network thread");
            // Memory may be there again in a moment.
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
    }
    transfers_->clear();
}

void HttpGetService::takeIncoming(std::deque<Request>& waiting) {
    const std::lock_guard lock(mutex_);
    waiting.insert(waiting.end(), std::move_iterator(incoming_.begin()),
                   std::move_iterator(incoming_.end()));
    incoming_.clear();
}

void HttpGetService::complete(Ended ended) const noexcept {
    if (isStopping_ || !ended.request.completion) {
        return;
    }
    guarded("request completion", [&] {
        ended.request.completion(std::move(ended.body), std::move(ended.response),
                                 std::move(ended.error));
    });
}

}  // namespace yg::net
