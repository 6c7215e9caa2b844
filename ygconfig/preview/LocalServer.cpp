// SPDX-License-Identifier: MIT
#include "ygconfig/preview/LocalServer.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstring>
#include <httplib.h>
#include <list>
#include <mutex>
#include <netinet/in.h>
#include <poll.h>
#include <span>
#include <sys/socket.h>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "ygconfig/preview/Descriptor.h"

namespace yg::tool {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr std::size_t maxExchanges = 16;
constexpr std::size_t maxListeners = 64;
constexpr std::size_t maxHead = std::size_t{16} * 1024;
constexpr seconds timeOfHead{5};
constexpr seconds timeOfAnswer{30};
constexpr milliseconds timeOfGoodbye{500};

/// Waits until the socket is ready or broken.
bool waitFor(int socket, short events, Clock::time_point end) {
    const auto left = std::chrono::ceil<milliseconds>(end - Clock::now());
    pollfd file{socket, events, 0};
    return left.count() > 0 && ::poll(&file, 1, static_cast<int>(left.count())) == 1;
}

/// What the server reads a request from and writes its answer to.
class Connection final : public httplib::Stream {
public:
    explicit Connection(int socket) : socket_(socket), end_(Clock::now() + timeOfHead) {}

    bool is_readable() const override { return true; }
    bool is_writable() const override { return true; }
    socket_t socket() const override { return socket_; }
    // Nobody asks.
    void get_remote_ip_and_port(std::string&, int&) const override {}
    void get_local_ip_and_port(std::string&, int&) const override {}

    ssize_t read(char* bytes, std::size_t size) override {
        if (begin_ == read_.size() && !readMore())
            return -1;
        const std::size_t count = std::min(size, read_.size() - begin_);
        std::memcpy(bytes, read_.data() + begin_, count);
        begin_ += count;
        return static_cast<ssize_t>(count);
    }

    ssize_t write(const char* bytes, std::size_t size) override {
        if (!isAnswering_) {
            isAnswering_ = true;
            end_ = Clock::now() + timeOfAnswer;
        }
        for (std::size_t written = 0; written < size;) {
            const ssize_t count =
                ::send(socket_, bytes + written, size - written, MSG_DONTWAIT | MSG_NOSIGNAL);
            if (count >= 0)
                written += static_cast<std::size_t>(count);
            else if (errno != EAGAIN || !waitFor(socket_, POLLOUT, end_))
                return -1;
        }
        return static_cast<ssize_t>(size);
    }

    /// Closing with something unread would break off the answer on its way.
    void sayGoodbye() const {
        ::shutdown(socket_, SHUT_WR);
        const Clock::time_point end = Clock::now() + timeOfGoodbye;
        std::array<char, 4096> rest{};
        for (std::size_t count = 0; count < maxHead && waitFor(socket_, POLLIN, end);) {
            const ssize_t size = ::recv(socket_, rest.data(), rest.size(), MSG_DONTWAIT);
            if (size <= 0)
                return;
            count += static_cast<std::size_t>(size);
        }
    }

private:
    bool readMore() {
        std::array<char, 4096> piece{};
        if (read_.size() >= maxHead || !waitFor(socket_, POLLIN, end_))
            return false;
        const ssize_t count = ::recv(socket_, piece.data(), piece.size(), MSG_DONTWAIT);
        if (count <= 0)
            return false;
        read_.append(piece.data(), static_cast<std::size_t>(count));
        return true;
    }

    const int socket_;
    Clock::time_point end_;
    bool isAnswering_ = false;
    std::string read_;
    std::size_t begin_ = 0;
};

/// One request and its answer.
class Exchange final : public httplib::Server {
public:
    Exchange(int socket, std::span<const std::string> hosts, std::shared_ptr<const ShownPage> page)
        : connection_(socket), hosts_(hosts), page_(std::move(page)) {
        svr_sock_ = socket;  // without one it takes itself for stopped
        set_default_headers({{"Cache-Control", "no-store"},
                             // The page's own policy has the rest.
                             {"Content-Security-Policy", "frame-ancestors 'none'"},
                             {"Cross-Origin-Opener-Policy", "same-origin"},
                             {"Cross-Origin-Resource-Policy", "same-origin"},
                             {"Referrer-Policy", "no-referrer"},
                             {"X-Content-Type-Options", "nosniff"},
                             {"X-Frame-Options", "DENY"}});
        set_pre_routing_handler(
            [this](const httplib::Request& request, httplib::Response& response) {
                answer(request, response);
                return HandlerResponse::Handled;
            });
        set_exception_handler([](const httplib::Request&, httplib::Response& response,
                                 const std::exception_ptr&) { response.status = 500; });
    }

    /// Does it; true when the client goes on to wait for changes.
    bool run() {
        bool isClosed = false;
        const bool isAnswered =
            process_request(connection_, true, isClosed, [](httplib::Request& request) {
                // Nothing is worth packing on its way to the same computer, and parts of an answer
                // can be asked for so often that they are more than all of it.
                request.headers.erase("Accept-Encoding");
                request.ranges.clear();
            });
        if (isAnswered && isListener_)
            return true;
        connection_.sayGoodbye();
        return false;
    }

private:
    void answer(const httplib::Request& request, httplib::Response& response) {
        if (!isFromHere(request)) {
            refuse(response, 403, "This is for pages of this address alone.\n");
        } else if (request.method != "GET") {
            response.set_header("Allow", "GET");
            refuse(response, 405, "Only GET is answered.\n");
        } else if (request.path == "/") {
            give(response, "text/html; charset=utf-8",
                 {page_->before, page_->model, page_->behind});
        } else if (request.path == "/model") {
            give(response, "application/json", {page_->model, {}, {}});
        } else if (request.path == "/changes") {
            isListener_ = true;
            response.status = 200;
            response.set_content_provider("text/event-stream",
                                          [](std::size_t, httplib::DataSink& sink) {
                                              constexpr std::string_view begin = "retry: 500\n\n";
                                              sink.write(begin.data(), begin.size());
                                              sink.done();
                                              return true;
                                          });
        } else {
            refuse(response, 404, "There is nothing here.\n");
        }
    }

    bool isFromHere(const httplib::Request& request) const {
        const std::string host = request.get_header_value("Host");
        const std::size_t origins = request.get_header_value_count("Origin");
        return request.get_header_value_count("Host") == 1 &&
               std::ranges::find(hosts_, host) != hosts_.end() &&
               (origins == 0 ||
                (origins == 1 && request.get_header_value("Origin") == "http://" + host));
    }

    static void refuse(httplib::Response& response, int status, const char* why) {
        response.status = status;
        response.set_content(why, "text/plain; charset=utf-8");
    }

    /// Answers the texts as one, without a copy.
    void give(httplib::Response& response, const char* type,
              const std::array<std::string_view, 3>& texts) const {
        std::size_t size = 0;
        for (const std::string_view text : texts)
            size += text.size();
        response.status = 200;
        response.set_content_provider(
            size, type, [texts](std::size_t offset, std::size_t length, httplib::DataSink& sink) {
                for (std::string_view text : texts) {
                    if (offset >= text.size()) {
                        offset -= text.size();
                        continue;
                    }
                    text = text.substr(offset, length);
                    return sink.write(text.data(), text.size());
                }
                return false;
            });
    }

    Connection connection_;
    const std::span<const std::string> hosts_;
    const std::shared_ptr<const ShownPage> page_;
    bool isListener_ = false;
};

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
                made.isListener = Exchange(made.socket.number(), hosts, std::move(shown)).run();
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
