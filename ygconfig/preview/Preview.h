// SPDX-License-Identifier: MIT
//
// Shows a root in the browser while its files are edited. Throws std::bad_alloc.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "ygconfig/Answer.h"

namespace yg::tool {

class Preview {
public:
    /// Why there is none.
    struct Failure {
        std::string reason;
        ExitCode exitCode;
    };

    /// Reads the root and takes the port, or one of the system's choice if it is 0. From now on
    /// SIGINT and SIGTERM are blocked in this thread. Null when the root cannot be read or the port
    /// not be had.
    static std::unique_ptr<Preview> open(const std::string& root, std::uint16_t port,
                                         Failure& failure);

    ~Preview();
    Preview(const Preview&) = delete;
    Preview& operator=(const Preview&) = delete;

    /// "http://127.0.0.1:PORT/"
    std::string address() const;

    /// Serves until SIGINT or SIGTERM arrives. `complain` gets a line when changes can no longer be
    /// noticed at once, from any thread.
    void serve(const std::function<void(const std::string&)>& complain);

private:
    struct Parts;
    explicit Preview(std::unique_ptr<Parts> parts);

    std::unique_ptr<Parts> parts_;
};

}  // namespace yg::tool
