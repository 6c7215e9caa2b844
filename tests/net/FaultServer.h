// SPDX-License-Identifier: MIT
//
// A server on the loopback interface that does to each connection what a test says, faults above
// all. It has a free port of its own; each connection has a thread.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <list>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

using SSL = struct ssl_st;
using SSL_CTX = struct ssl_ctx_st;

namespace yg::testing {

class FaultServer;

/// A client that has connected and, for as long as it stays, what it has asked.
class Connection {
public:
    Connection(FaultServer& server, int socket, SSL* tls)
        : server_(server), socket_(socket), tls_(tls) {}

    /// Reads a request up to its empty line; false when the client goes first.
    bool readRequest();
    const std::string& request() const { return request_; }
    /// The path that was asked for, "/a?b".
    std::string path() const;

    /// False once the client is gone or the server ends.
    bool send(std::string_view bytes);
    /// A whole answer with the body.
    bool answer(std::string_view statusAndHeaders, std::string_view body);
    /// Nothing for so long, or until the server ends; false then.
    bool pause(std::chrono::milliseconds time);
    /// Nothing until the client goes or the server ends.
    void hang();
    /// Lets the connection end as a crash would, not in order.
    void reset();
    /// Lets TLS end without its last message, as somebody on the way would.
    void cutTls();

private:
    FaultServer& server_;
    int socket_;
    SSL* tls_;
    std::string request_;
};

/// What happens to a connection, which is closed afterwards.
using Treatment = std::function<void(Connection&)>;

class FaultServer {
public:
    /// Reads the request of each connection and treats it. `identity`: a PEM file with a key and
    /// its certificate, for TLS.
    explicit FaultServer(Treatment treatment, const std::string& identity = {});
    ~FaultServer();
    FaultServer(const FaultServer&) = delete;
    FaultServer& operator=(const FaultServer&) = delete;

    std::string url(std::string_view path = "/") const;
    int port() const { return port_; }
    /// Connections so far.
    int connections() const { return connections_; }

private:
    friend class Connection;

    struct Client {
        int socket = -1;
        std::thread thread;
        std::atomic<bool> isDone = false;
    };

    void accept();
    void treat(Client& client);
    void removeDone();

    const Treatment treatment_;
    SSL_CTX* tls_ = nullptr;
    int socket_ = -1;
    int port_ = 0;
    std::atomic<int> connections_ = 0;
    std::mutex mutex_;
    std::condition_variable ending_;
    bool isEnding_ = false;
    std::list<Client> clients_;
    std::thread thread_;
};

/// A socket on the loopback interface with a free port that it holds.
struct HeldPort {
    int socket;
    int port;
};
HeldPort holdPort();

/// Writes a new key and its certificate for 127.0.0.1, signed by itself, as PEM.
void writeIdentity(const std::string& path);

}  // namespace yg::testing
