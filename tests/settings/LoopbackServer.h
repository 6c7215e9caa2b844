// SPDX-License-Identifier: MIT
//
// A small HTTP server on the loopback, which gives every request the same answer.
#pragma once

#include <arpa/inet.h>
#include <mutex>
#include <netinet/in.h>
#include <poll.h>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace yg::testing {

class LoopbackServer {
public:
    /// Answers with this status, "200 OK", and body, each after this time.
    LoopbackServer(std::string_view status, std::string_view body, int milliseconds = 0)
        : answer_("HTTP/1.1 " + std::string(status) +
                  "\r\nContent-Length: " + std::to_string(body.size()) +
                  "\r\nConnection: close\r\n\r\n" + std::string(body)),
          milliseconds_(milliseconds),
          listener_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in address = {};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = ::htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        if (::bind(listener_, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
            ::listen(listener_, 16) != 0 ||
            ::getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size) != 0 ||
            ::pipe(end_) != 0)
            throw std::runtime_error("no loopback server");
        authority_ = "127.0.0.1:" + std::to_string(::ntohs(address.sin_port));
        thread_ = std::thread([this] { serve(); });
    }
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;
    ~LoopbackServer() {
        ::close(end_[1]);
        thread_.join();
        ::close(end_[0]);
        ::close(listener_);
    }

    /// Host and port.
    const std::string& authority() const { return authority_; }

    /// The heads of the requests so far.
    std::vector<std::string> requests() const {
        const std::lock_guard lock(mutex_);
        return requests_;
    }

private:
    /// False once the server is to end.
    bool waitFor(int file, int milliseconds) const {
        pollfd files[] = {{end_[0], POLLIN, 0}, {file, POLLIN, 0}};
        ::poll(files, file < 0 ? 1 : 2, milliseconds);
        return files[0].revents == 0;
    }

    void serve() {
        while (waitFor(listener_, -1)) {
            const int connection = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
            std::string head;
            char piece[4096];
            while (head.find("\r\n\r\n") == std::string::npos && waitFor(connection, -1)) {
                const ssize_t count = ::recv(connection, piece, sizeof piece, 0);
                if (count <= 0)
                    break;
                head.append(piece, static_cast<std::size_t>(count));
            }
            {
                const std::lock_guard lock(mutex_);
                requests_.push_back(std::move(head));
            }
            if (milliseconds_ == 0 || waitFor(-1, milliseconds_))
                ::send(connection, answer_.data(), answer_.size(), MSG_NOSIGNAL);
            ::close(connection);
        }
    }

    const std::string answer_;
    const int milliseconds_;
    const int listener_;
    int end_[2] = {-1, -1};
    std::string authority_;
    mutable std::mutex mutex_;
    std::vector<std::string> requests_;
    std::thread thread_;
};

}  // namespace yg::testing
