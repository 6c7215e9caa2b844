// SPDX-License-Identifier: MIT
//
// Shows one page to browsers of this computer and tells it of changes, by HTTP on 127.0.0.1:
//
//   GET /         the page with the model in it
//   GET /model    the model alone, JSON
//   GET /changes  server-sent events, one at the beginning and one after each change
//
// Everything else is 404, another method 405. A request whose Host is not this server, or whose
// Origin is another one, is 403: other pages in the browser, also under a name that leads here, get
// nothing.
//
// A request has a thread while it is read and answered, at most 16 at a time; beyond that the
// oldest one is broken off. Its head has 5 seconds and 16 KiB, its answer 30 seconds. A page that
// waits for changes costs a socket, at most 64 at a time; beyond that the oldest one has to ask
// again.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace yg::tool {

/// The page as it is now; never changes.
struct ShownPage {
    std::string_view before;  ///< of the page around the model, texts that stay
    std::string_view behind;
    std::string model;
};

class LocalServer {
public:
    /// Takes the port, or one of the system's choice if it is 0. Null with the reason in `error`
    /// when it cannot be had.
    static std::unique_ptr<LocalServer> open(std::uint16_t port, std::string& error);

    ~LocalServer();
    LocalServer(const LocalServer&) = delete;
    LocalServer& operator=(const LocalServer&) = delete;

    std::uint16_t port() const;

    /// Replaces the page, before the first request or while it serves. Any thread may call.
    void show(std::shared_ptr<const ShownPage> page);

    /// Answers requests until `ending` is readable; then all its connections are closed and all
    /// its threads have ended.
    void serve(int ending);

private:
    struct State;
    explicit LocalServer(std::unique_ptr<State> state);

    std::unique_ptr<State> state_;
};

}  // namespace yg::tool
