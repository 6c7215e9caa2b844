// SPDX-License-Identifier: MIT
#include "YGConfigManager/net/CloseOnExec.h"

#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/un.h>

#include "YGConfigManager/net/Libcurl.h"

namespace yg::net {

namespace {

/// How often a handle is woken to see which socket it wakes. No other has just so many bytes.
constexpr int wakeUps = 61;

void mark(int file) {
    ::fcntl(file, F_SETFD, FD_CLOEXEC);
}

/// Gives the numbers of open files to `see` until it answers true.
template <class See>
void forEachFile(See see) {
    const std::unique_ptr<DIR, int (*)(DIR*)> folder(::opendir("/proc/self/fd"), &::closedir);
    while (const dirent* const entry = folder ? ::readdir(folder.get()) : nullptr) {
        const int file = std::atoi(entry->d_name);
        if (entry->d_name[0] != '.' && see(file))
            return;
    }
}

/// Whether the file is a local socket that just so many bytes wait in.
bool holdsBytes(int file, int count) {
    int domain = 0;
    socklen_t size = sizeof domain;
    int waiting = -1;
    return ::getsockopt(file, SOL_SOCKET, SO_DOMAIN, &domain, &size) == 0 && domain == AF_UNIX &&
           ::ioctl(file, FIONREAD, &waiting) == 0 && waiting == count;
}

struct Name {
    explicit Name(decltype(&::getsockname) ask, int socket) {
        isKnown = ask(socket, reinterpret_cast<sockaddr*>(&address), &size) == 0 &&
                  size > sizeof address.sun_family;
    }
    bool operator==(const Name& other) const {
        return isKnown && other.isKnown && size == other.size &&
               std::memcmp(&address, &other.address, size) == 0;
    }

    sockaddr_un address{};
    socklen_t size = sizeof address;
    bool isKnown = false;
};

}  // namespace

bool isClosedOnExec(int file) noexcept {
    const int flags = ::fcntl(file, F_GETFD);
    return flags < 0 || (flags & FD_CLOEXEC) != 0;
}

void closePairOnExec(int socket) noexcept {
    mark(socket);
    // The system gives the socket a name of its own, by which its peer is found.
    sockaddr_un unnamed{};
    unnamed.sun_family = AF_UNIX;
    if (::bind(socket, reinterpret_cast<const sockaddr*>(&unnamed), sizeof unnamed.sun_family) != 0)
        return;
    const Name name(&::getsockname, socket);
    const auto markPeer = [&](int file) {
        const bool isPeer = Name(&::getpeername, file) == name;
        if (isPeer)
            mark(file);
        return isPeer;
    };
    // Mostly it was opened next.
    if (!markPeer(socket + 1))
        forEachFile(markPeer);
}

void closeWakeUpOnExec(CURLM* multi) noexcept {
    int count = 0;
    for (; count < wakeUps && libcurl().multiWakeUp(multi) == CURLM_OK; ++count) {
    }
    int woken = -1;
    forEachFile([&](int file) {
        const bool isOne = !isClosedOnExec(file) && holdsBytes(file, count);
        woken = isOne ? file : woken;
        return isOne;
    });
    libcurl().multiPoll(multi, nullptr, 0, 0, nullptr);
    if (count > 0 && woken >= 0 && holdsBytes(woken, 0))
        closePairOnExec(woken);
}

}  // namespace yg::net
