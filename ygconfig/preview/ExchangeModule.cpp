// SPDX-License-Identifier: MIT
//
// The module that Exchange.h speaks of: the only source that includes cpp-httplib.
#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstring>
#include <httplib.h>
#include <memory>
#include <poll.h>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <utility>
#include <vector>

#include "ygconfig/preview/Exchange.h"
#include "ygconfig/preview/LocalServer.h"

namespace yg::tool {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;
using std::chrono::seconds;

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
    Exchange(int socket, const std::vector<std::string>& hosts,
             std::shared_ptr<const ShownPage> page)
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
        const bool isAnswered = process(connection_, [](httplib::Request& request) {
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
    /// Newer versions of cpp-httplib also take the addresses, which nobody asks for here.
    template <class Stream, class Prepare>
    bool process(Stream& stream, const Prepare& prepare) {
        bool isClosed = false;
        if constexpr (requires { process_request(stream, true, isClosed, prepare); })
            return process_request(stream, true, isClosed, prepare);
        else
            return process_request(stream, "", 0, "", 0, true, isClosed, prepare);
    }

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
    const std::vector<std::string>& hosts_;
    const std::shared_ptr<const ShownPage> page_;
    bool isListener_ = false;
};

}  // namespace

}  // namespace yg::tool

extern "C" __attribute__((visibility("default"))) bool ygconfigExchange(
    int socket, const std::vector<std::string>& hosts,
    std::shared_ptr<const yg::tool::ShownPage> page) {
    return yg::tool::Exchange(socket, hosts, std::move(page)).run();
}
