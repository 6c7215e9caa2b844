// SPDX-License-Identifier: MIT
#include "ygconfig/preview/LocalServer.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <list>
#include <mutex>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "ygconfig/preview/Descriptor.h"
#include "ygconfig/preview/Exchange.h"

namespace yg::tool {

namespace {

constexpr std::size_t maxExchanges = 16;
constexpr std::size_t maxListeners = 64;

/// A listening socket on 127.0.0.1; none with errno set.
Descriptor listeningOn(std::uint16_t port) {
    Descriptor listening(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const int yes = 1;
    // A port whose last connections are still ending may be taken, one that is listened on not.
    if (!listening ||
        ::setsockopt(listening.number(), SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes) != 0 ||
        ::bind(listening.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) !=
            0 ||
        ::listen(listening.number(), SOMAXCONN) != 0)
        return Descriptor();
    return listening;
}

std::uint16_t portOf(const Descriptor& socket) {
    sockaddr_in address{};
    socklen_t size = sizeof address;
    ::getsockname(socket.number(), reinterpret_cast<sockaddr*>(&address), &size);
    return ntohs(address.sin_port);
}

}  // namespace

struct LocalServer::State {
    ~State() { close(); }

    ExchangeFunction* exchange = nullptr;
    Descriptor listening;
    Bell bell;  ///< an exchange has ended, or the page is another one
    std::vector<std::string> hosts;

    std::mutex changing;
    std::shared_ptr<const ShownPage> page;  ///< under the lock
    std::uint64_t version = 0;              ///< of the page, under the lock

    // Of the thread that serves.

    struct Running {
        Descriptor socket;
        bool isBrokenOff = false;
        bool isListener = false;  ///< once it has ended
        std::atomic<bool> hasEnded = false;
        std::thread thread = {};
    };
    struct Listener {
        Descriptor socket;
        std::uint64_t version = 0;  ///< that it knows
    };
    std::list<Running> running;
    std::list<Listener> listeners;

    void accept();
    void breakOffOldest();
    void takeEnded();
    void tellListeners();
    void close();
};

void LocalServer::State::accept() {
    if (running.size() == maxExchanges)
        return breakOffOldest();
    Descriptor socket(
        ::accept4(listening.number(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    if (!socket) {
        // For want of descriptors or memory: the next round finds it again, with one less in use.
        if (errno == EMFILE || errno == ENFILE || errno == ENOBUFS || errno == ENOMEM)
            breakOffOldest();
        ::poll(nullptr, 0, 20);
        return;
    }
    std::shared_ptr<const ShownPage> shown;
    {
        const std::lock_guard lock(changing);
        shown = page;
    }
    Running& made = running.emplace_back();
    made.socket = std::move(socket);
    try {
        made.thread = std::thread([this, &made, shown = std::move(shown)]() mutable {
            try {
                made.isListener = exchange(made.socket.number(), hosts, std::move(shown));
            } catch (const std::exception&) {
                // Without memory nothing is answered.
            }
            made.hasEnded = true;
            bell.ring();
        });
    } catch (const std::system_error&) {
        running.pop_back();
    }
}

void LocalServer::State::breakOffOldest() {
    const auto oldest =
        std::ranges::find_if(running, [](const Running& each) { return !each.isBrokenOff; });
    if (oldest != running.end()) {
        oldest->isBrokenOff = true;
        ::shutdown(oldest->socket.number(), SHUT_RDWR);
    } else if (running.empty() && !listeners.empty()) {
        listeners.pop_front();
    }
}

void LocalServer::State::takeEnded() {
    for (auto each = running.begin(); each != running.end();) {
        if (!each->hasEnded) {
            ++each;
            continue;
        }
        each->thread.join();
        if (each->isListener)
            listeners.push_back({std::move(each->socket)});
        each = running.erase(each);
    }
    while (listeners.size() > maxListeners)
        listeners.pop_front();
}

void LocalServer::State::tellListeners() {
    std::uint64_t now = 0;
    {
        const std::lock_guard lock(changing);
        now = version;
    }
    const std::string event = "data: " + std::to_string(now) + "\n\n";
    std::erase_if(listeners, [&](Listener& each) {
        // One that takes no more has its page ask again.
        return std::exchange(each.version, now) != now &&
               ::send(each.socket.number(), event.data(), event.size(),
                      MSG_DONTWAIT | MSG_NOSIGNAL) != static_cast<ssize_t>(event.size());
    });
}

void LocalServer::State::close() {
    listening = Descriptor();
    for (const Running& each : running)
        ::shutdown(each.socket.number(), SHUT_RDWR);
    for (Running& each : running)
        each.thread.join();
    running.clear();
    listeners.clear();
}

std::unique_ptr<LocalServer> LocalServer::open(std::uint16_t port, std::string& error) {
    auto state = std::make_unique<State>();
    state->exchange = openExchange(error);
    if (!state->exchange)
        return nullptr;
    state->listening = listeningOn(port);
    if (!state->listening || !state->bell) {
        error = "127.0.0.1:" + std::to_string(port) + ": " + std::strerror(errno);
        return nullptr;
    }
    const std::uint16_t taken = portOf(state->listening);
    for (const char* const name : {"127.0.0.1", "localhost"}) {
        state->hosts.push_back(std::string(name).append(":").append(std::to_string(taken)));
        // Browsers leave out the usual port.
        if (taken == 80)
            state->hosts.emplace_back(name);
    }
    return std::unique_ptr<LocalServer>(new LocalServer(std::move(state)));
}

LocalServer::LocalServer(std::unique_ptr<State> state) : state_(std::move(state)) {}

LocalServer::~LocalServer() = default;

std::uint16_t LocalServer::port() const {
    return portOf(state_->listening);
}

void LocalServer::show(std::shared_ptr<const ShownPage> page) {
    {
        const std::lock_guard lock(state_->changing);
        state_->page.swap(page);
        ++state_->version;
    }
    state_->bell.ring();
}

void LocalServer::serve(int ending) {
    State& state = *state_;
    for (;;) {
        // Beyond the limit one is broken off, and no other is taken until it is gone.
        const bool hasRoom = state.running.size() < maxExchanges ||
                             std::ranges::none_of(state.running, &State::Running::isBrokenOff);
        std::vector<pollfd> files = {{ending, POLLIN, 0},
                                     {state.bell.number(), POLLIN, 0},
                                     {hasRoom ? state.listening.number() : -1, POLLIN, 0}};
        for (const State::Listener& each : state.listeners)
            files.push_back({each.socket.number(), POLLIN | POLLRDHUP, 0});
        if (::poll(files.data(), files.size(), -1) < 0)
            continue;
        if (files[0].revents)
            return state.close();
        // Nothing is expected from a listener but its end.
        auto polled = files.begin() + 3;
        std::erase_if(state.listeners, [&](const auto&) { return (polled++)->revents != 0; });
        if (files[2].revents)
            state.accept();
        if (files[1].revents)
            state.bell.clear();
        state.takeEnded();
        state.tellListeners();
    }
}

}  // namespace yg::tool
