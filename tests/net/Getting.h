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

#include "YGConfigManager/net/HttpGetService.h"

namespace yg::testing {

using Body = std::optional<std::string>;

/// What the completion is given. Throws when it does not come in time.
inline Body bodyOf(net::HttpGetService& service, const std::string& url) {
    const auto promise = std::make_shared<std::promise<Body>>();
    std::future<Body> future = promise->get_future();
    service.get(url, [promise](Body body) { promise->set_value(std::move(body)); });
    if (future.wait_for(std::chrono::seconds(20)) != std::future_status::ready) {
        throw std::runtime_error("no completion of " + url);
    }
    return future.get();
}

/// The same with a service of its own.
inline Body bodyOf(const std::string& url, const net::HttpGetOptions& options = {}) {
    net::HttpGetService service(options);
    return bodyOf(service, url);
}

}  // namespace yg::testing
