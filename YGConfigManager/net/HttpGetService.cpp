// SPDX-License-Identifier: MIT
#include "YGConfigManager/net/HttpGetService.h"

#include <deque>
#include <iterator>
#include <pthread.h>
#include <system_error>
#include <utility>

#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/net/Transfers.h"

namespace yg::net {

namespace {

constexpr std::string_view noThread = "the system gives no thread";

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
            if (isStopping_)
                return;
            if (!thread_.joinable())
                startThread();
            isFirst = incoming_.empty();
            Request& request = incoming_.emplace_back();
            request.url = std::move(url);
            request.completion = std::exchange(completion, nullptr);
        }
        // The thread takes all that has come, so one nudge is enough for those that follow.
        if (isFirst)
            transfers_->wake();
    } catch (...) {
        refuse(completion);
    }
}

void refuse(const GetCompletion& completion) noexcept {
    std::string_view error = outOfMemory;
    try {
        throw;
    } catch (const std::system_error&) {
        error = noThread;
    } catch (...) {
    }
    logException("network request");
    guarded("request completion", [&] {
        if (completion)
            completion(std::nullopt, std::nullopt, std::string(error));
    });
}

void HttpGetService::stop() noexcept {
    {
        const std::lock_guard lock(mutex_);
        isStopping_ = true;
    }
    if (!thread_.joinable())
        return;
    if (thread_.get_id() == std::this_thread::get_id()) {
        thread_.detach();
        return;
    }
    transfers_->wake();
    thread_.join();
}

void HttpGetService::startThread() {
    applicationSettings_ = ThreadSettings::ofThisThread();
    const SignalsBlocked blocked;
    thread_ = std::thread([this] { run(); });
}

void HttpGetService::run() noexcept {
    pthread_setname_np(pthread_self(), "yg-net");
    scheduleAsBatch();
    std::deque<Request> waiting;
    transfers_->logWhatIsMissing();
    while (!isStopping_) {
        try {
            takeIncoming(waiting);
            if (isStopping_)
                break;
            while (!waiting.empty() && transfers_->count() < options_.maxTransfers) {
                transfers_->add(waiting.front());
                waiting.pop_front();
            }
            complete(transfers_->step());
            if (waiting.empty() || transfers_->count() == options_.maxTransfers)
                transfers_->wait();
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

void HttpGetService::complete(std::vector<Ended> all) const noexcept {
    if (all.empty())
        return;
    const AsApplication scope(applicationSettings_);
    for (Ended& ended : all) {
        // What it holds goes here too.
        const GetCompletion completion = std::exchange(ended.request.completion, nullptr);
        if (!isStopping_ && completion) {
            guarded("request completion", [&] {
                completion(std::move(ended.body), std::move(ended.response),
                           std::move(ended.error));
            });
        }
    }
}

}  // namespace yg::net
