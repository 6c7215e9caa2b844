// SPDX-License-Identifier: MIT
#include "net/FaultServer.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <memory>
#include <netinet/in.h>
#include <pthread.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>

namespace yg::testing {

namespace {

constexpr int waitingConnections = 1024;

void require(bool holds, const char* what) {
    if (!holds)
        throw std::runtime_error(what);
}

/// A client that goes while it is written to must not end the tests.
void blockPipeSignal() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

}  // namespace

bool Connection::readRequest() {
    request_.clear();
    std::array<char, 4096> piece{};
    while (request_.find("\r\n\r\n") == std::string::npos) {
        const ssize_t count = tls_ ? SSL_read(tls_, piece.data(), static_cast<int>(piece.size()))
                                   : ::recv(socket_, piece.data(), piece.size(), 0);
        if (count <= 0)
            return false;
        request_.append(piece.data(), static_cast<std::size_t>(count));
    }
    return true;
}

std::string Connection::path() const {
    const std::size_t begin = request_.find(' ') + 1;
    return request_.substr(begin, request_.find(' ', begin) - begin);
}

bool Connection::send(std::string_view bytes) {
    while (!bytes.empty()) {
        const std::size_t most = std::min<std::size_t>(bytes.size(), 1 << 20);
        const ssize_t count = tls_ ? SSL_write(tls_, bytes.data(), static_cast<int>(most))
                                   : ::send(socket_, bytes.data(), most, MSG_NOSIGNAL);
        if (count <= 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

bool Connection::answer(std::string_view statusAndHeaders, std::string_view body) {
    return send("HTTP/1.1 " + std::string(statusAndHeaders) + "\r\nContent-Length: " +
                std::to_string(body.size()) + "\r\n\r\n" + std::string(body));
}

bool Connection::pause(std::chrono::milliseconds time) {
    std::unique_lock lock(server_.mutex_);
    return !server_.ending_.wait_for(lock, time, [this] { return server_.isEnding_; });
}

void Connection::hang() {
    std::array<char, 4096> piece{};
    while (::recv(socket_, piece.data(), piece.size(), 0) > 0) {
    }
}

void Connection::reset() {
    // A lingering time of nothing makes the close a reset; the number stays taken.
    const linger atOnce{1, 0};
    ::setsockopt(socket_, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    const int nothing = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    ::dup2(nothing, socket_);
    ::close(nothing);
}

void Connection::cutTls() {
    SSL_set_quiet_shutdown(tls_, 1);
}

HeldPort holdPort() {
    const int number = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    auto* const general = reinterpret_cast<sockaddr*>(&address);
    socklen_t size = sizeof address;
    require(::bind(number, general, size) == 0, "no free port");
    require(::getsockname(number, general, &size) == 0, "no port");
    return {number, ntohs(address.sin_port)};
}

FaultServer::FaultServer(Treatment treatment, const std::string& identity)
    : treatment_(std::move(treatment)) {
    if (!identity.empty()) {
        tls_ = SSL_CTX_new(TLS_server_method());
        require(SSL_CTX_use_certificate_chain_file(tls_, identity.c_str()) == 1 &&
                    SSL_CTX_use_PrivateKey_file(tls_, identity.c_str(), SSL_FILETYPE_PEM) == 1,
                "no identity");
    }
    const HeldPort held = holdPort();
    socket_ = held.socket;
    port_ = held.port;
    require(::listen(socket_, waitingConnections) == 0, "the server cannot listen");
    thread_ = std::thread([this] { accept(); });
}

FaultServer::~FaultServer() {
    {
        const std::lock_guard lock(mutex_);
        isEnding_ = true;
        for (const Client& client : clients_)
            ::shutdown(client.socket, SHUT_RDWR);
    }
    ending_.notify_all();
    ::shutdown(socket_, SHUT_RDWR);
    thread_.join();
    for (Client& client : clients_) {
        client.thread.join();
        ::close(client.socket);
    }
    ::close(socket_);
    SSL_CTX_free(tls_);
}

std::string FaultServer::url(std::string_view path) const {
    return (tls_ ? "https://127.0.0.1:" : "http://127.0.0.1:") + std::to_string(port_) +
           std::string(path);
}

void FaultServer::accept() {
    for (;;) {
        const int number = ::accept4(socket_, nullptr, nullptr, SOCK_CLOEXEC);
        const std::lock_guard lock(mutex_);
        if (number < 0 || isEnding_) {
            ::close(number);
            return;
        }
        removeDone();
        ++connections_;
        Client& client = clients_.emplace_back();
        client.socket = number;
        client.thread = std::thread([this, &client] { treat(client); });
    }
}

void FaultServer::treat(Client& client) {
    blockPipeSignal();
    const std::unique_ptr<SSL, void (*)(SSL*)> tls(tls_ ? SSL_new(tls_) : nullptr, &SSL_free);
    const bool isReady =
        !tls || (SSL_set_fd(tls.get(), client.socket) == 1 && SSL_accept(tls.get()) == 1);
    Connection connection(*this, client.socket, tls.get());
    if (isReady && connection.readRequest()) {
        treatment_(connection);
        if (tls)
            SSL_shutdown(tls.get());
    }
    // The number stays taken until the thread is joined, so that the server's end never shuts a
    // stranger's socket.
    ::shutdown(client.socket, SHUT_RDWR);
    client.isDone = true;
}

void FaultServer::removeDone() {
    clients_.remove_if([](Client& client) {
        if (!client.isDone)
            return false;
        client.thread.join();
        ::close(client.socket);
        return true;
    });
}

void writeIdentity(const std::string& path) {
    const std::unique_ptr<EVP_PKEY, void (*)(EVP_PKEY*)> key(
        EVP_PKEY_Q_keygen(nullptr, nullptr, "EC", "P-256"), &EVP_PKEY_free);
    const std::unique_ptr<X509, void (*)(X509*)> certificate(X509_new(), &X509_free);
    X509* const one = certificate.get();
    X509_set_version(one, X509_VERSION_3);
    ASN1_INTEGER_set(X509_get_serialNumber(one), 1);
    X509_gmtime_adj(X509_getm_notBefore(one), -24L * 3600);
    X509_gmtime_adj(X509_getm_notAfter(one), 24L * 3600);
    X509_set_pubkey(one, key.get());
    X509_NAME* const name = X509_get_subject_name(one);
    static constexpr std::array<unsigned char, 5> text{"test"};
    X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC, text.data(), 4, -1, 0);
    X509_set_issuer_name(one, name);
    const std::unique_ptr<X509_EXTENSION, void (*)(X509_EXTENSION*)> address(
        X509V3_EXT_conf_nid(nullptr, nullptr, NID_subject_alt_name, "IP:127.0.0.1"),
        &X509_EXTENSION_free);
    X509_add_ext(one, address.get(), -1);
    require(X509_sign(one, key.get(), EVP_sha256()) > 0, "no certificate");
    const std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(path.c_str(), "w"), &std::fclose);
    require(
        file && PEM_write_X509(file.get(), one) == 1 &&
            PEM_write_PrivateKey(file.get(), key.get(), nullptr, nullptr, 0, nullptr, nullptr) == 1,
        "no identity");
}

}  // namespace yg::testing
