// SPDX-License-Identifier: MIT
//
// An open file, socket or watch, closed when its holder goes.
#pragma once

#include <sys/eventfd.h>
#include <unistd.h>
#include <utility>

namespace yg::tool {

class Descriptor {
public:
    /// -1 for none.
    explicit Descriptor(int number = -1) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (number_ >= 0)
            ::close(number_);
    }

    int number() const { return number_; }
    explicit operator bool() const { return number_ >= 0; }

private:
    int number_;
};

/// Wakes a thread that polls it. Any thread may ring it.
class Bell {
public:
    Bell() : event_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

    explicit operator bool() const { return static_cast<bool>(event_); }

    /// Readable from `ring` to `clear`.
    int number() const { return event_.number(); }
    void ring() const { ::eventfd_write(event_.number(), 1); }
    void clear() const {
        eventfd_t count = 0;
        ::eventfd_read(event_.number(), &count);
    }

private:
    Descriptor event_;
};

}  // namespace yg::tool
