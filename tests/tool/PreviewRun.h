// SPDX-License-Identifier: MIT
//
// `ygconfig preview` beside the test, and browsers of it that say just what the test wants.
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <netinet/in.h>
#include <poll.h>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

#include "Program.h"

namespace yg::testing {

/// No wait takes longer unless something is broken.
inline constexpr std::chrono::seconds patience{100};

/// Looks again and again whether something has become true.
template <class Condition>
bool becomesTrue(Condition condition) {
    const auto end = std::chrono::steady_clock::now() + patience;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

/// A connection to a port of this computer.
class Client {
public:
    explicit Client(std::uint16_t port, std::uint32_t address = INADDR_LOOPBACK)
        : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in to{};
        to.sin_family = AF_INET;
        to.sin_port = htons(port);
        to.sin_addr.s_addr = htonl(address);
        isConnected_ = ::connect(socket_, reinterpret_cast<const sockaddr*>(&to), sizeof to) == 0;
    }
    Client(Client&& other) noexcept
        : socket_(std::exchange(other.socket_, -1)),
          isConnected_(other.isConnected_),
          read_(std::move(other.read_)) {}
    Client& operator=(Client&& other) noexcept {
        std::swap(socket_, other.socket_);
        std::swap(read_, other.read_);
        isConnected_ = other.isConnected_;
        return *this;
    }
    ~Client() {
        if (socket_ >= 0)
            ::close(socket_);
    }

    bool isConnected() const { return isConnected_; }

    /// False when the other side takes no more.
    bool send(std::string_view text) const {
        while (!text.empty()) {
            const ssize_t count = ::send(socket_, text.data(), text.size(), MSG_NOSIGNAL);
            if (count <= 0)
                return false;
            text.remove_prefix(static_cast<std::size_t>(count));
        }
        return true;
    }

    /// Everything until the end.
    std::string all() {
        while (readMore()) {
        }
        return std::exchange(read_, {});
    }

    /// Everything through the text; what there was without it when that does not come.
    std::string through(std::string_view text) {
        std::size_t found = 0;
        while ((found = read_.find(text)) == std::string::npos) {
            if (!readMore())
                return std::exchange(read_, {});
        }
        std::string taken = read_.substr(0, found + text.size());
        read_.erase(0, found + text.size());
        return taken;
    }

private:
    bool readMore() {
        pollfd file{socket_, POLLIN, 0};
        const auto time = std::chrono::milliseconds(patience).count();
        std::array<char, 64 * 1024> piece{};
        if (::poll(&file, 1, static_cast<int>(time)) != 1)
            throw std::runtime_error("nothing arrives");
        const ssize_t count = ::recv(socket_, piece.data(), piece.size(), 0);
        if (count > 0)
            read_.append(piece.data(), static_cast<std::size_t>(count));
        return count > 0;
    }

    int socket_;
    bool isConnected_ = false;
    std::string read_;
};

class PreviewRun {
public:
    /// Waits until it serves.
    explicit PreviewRun(const std::string& root, std::vector<std::string> more = {})
        : program_(wordsOf(root, std::move(more))), address_(program_.line().value_or("")) {
        const std::size_t colon = address_.rfind(':');
        if (address_.ends_with("/") && colon != std::string::npos)
            port_ = static_cast<std::uint16_t>(std::stoul(address_.substr(colon + 1)));
    }

    /// "http://127.0.0.1:PORT/"
    const std::string& address() const { return address_; }
    std::uint16_t port() const { return port_; }
    std::string host() const { return "127.0.0.1:" + std::to_string(port_); }
    pid_t id() const { return program_.id(); }

    Client connect() const { return Client(port_); }

    /// The whole answer to a request line, such as "GET /", with further lines of its head.
    std::string ask(const std::string& request, const std::string& lines = {}) const {
        return askFor(request, "Host: " + host() + "\r\n" + lines);
    }
    std::string askFor(const std::string& request, const std::string& lines) const {
        Client client = connect();
        client.send(request + " HTTP/1.1\r\n" + lines + "\r\n");
        return client.all();
    }

    std::string model() const {
        const std::string answer = ask("GET /model");
        return answer.substr(answer.find("\r\n\r\n") + 4);
    }

    /// A page that waits for changes.
    Client listen() const {
        Client client = connect();
        client.send("GET /changes HTTP/1.1\r\nHost: " + host() + "\r\n\r\n");
        nextEvent(client);  // the first one comes by itself
        return client;
    }
    static std::string nextEvent(Client& client) {
        client.through("data: ");
        return client.through("\n\n");
    }

    /// The model once it has the text in it, or has it no more.
    std::string modelWith(Client& listener, std::string_view text, bool isWanted = true) const {
        for (;;) {
            std::string now = model();
            if ((now.find(text) != std::string::npos) == isWanted || nextEvent(listener).empty())
                return now;
        }
    }

    void signal(int number) const { program_.signal(number); }
    /// The state as waitpid gives it.
    int wait() { return program_.wait(); }
    int end(int signalNumber) {
        signal(signalNumber);
        return wait();
    }

private:
    static std::vector<std::string> wordsOf(const std::string& root,
                                            std::vector<std::string> more) {
        ::setenv("TSAN_OPTIONS",
                 "suppressions=" YG_PROJECT_FOLDER "/tests/tool/uninstrumented.supp", 0);
        std::vector<std::string> words{YG_TOOL, "preview", "--root", root};
        words.insert(words.end(), more.begin(), more.end());
        return words;
    }

    Program program_;
    std::string address_;
    std::uint16_t port_ = 0;
};

}  // namespace yg::testing
