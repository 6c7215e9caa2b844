// SPDX-License-Identifier: MIT
//
// A request of a test that waits for what comes.
#pragma once

#include <chrono>
#include <future>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include "YGConfigManager/net/HttpGetService.h"

namespace yg::testing {

using Body = std::optional<std::string>;

/// What the completion is given.
struct Outcome {
    Body body;
    std::optional<HttpResponse> response;
    std::optional<std::string> error;
};

/// Throws when it does not come in time.
inline Outcome outcomeOf(net::HttpGetService& service, const std::string& url) {
    const auto promise = std::make_shared<std::promise<Outcome>>();
    std::future<Outcome> future = promise->get_future();
    service.get(url, [promise](Body body, std::optional<HttpResponse> response,
                               std::optional<std::string> error) {
        promise->set_value({std::move(body), std::move(response), std::move(error)});
    });
    if (future.wait_for(std::chrono::seconds(20)) != std::future_status::ready)
        throw std::runtime_error("no completion of " + url);
    return future.get();
}

inline Body bodyOf(net::HttpGetService& service, const std::string& url) {
    return outcomeOf(service, url).body;
}

/// The same with a service of its own.
inline Body bodyOf(const std::string& url, const net::HttpGetOptions& options = {}) {
    net::HttpGetService service(options);
    return bodyOf(service, url);
}

}  // namespace yg::testing
