// SPDX-License-Identifier: MIT
//
// A host for one thread, so that a root can be loaded beside the application's own. Internal.
#pragma once

#include <memory>

#include "YGConfigManager/host/Host.h"

namespace yg {

/// While it lives, currentHost() answers this host on this thread, and what the library writes past
/// the host, to the system console, is not written. Scopes end in the reverse order
/// of their beginning.
class HostOfThread {
public:
    explicit HostOfThread(std::shared_ptr<Host> host) noexcept;
    ~HostOfThread();
    HostOfThread(const HostOfThread&) = delete;
    HostOfThread& operator=(const HostOfThread&) = delete;

    /// Whether this thread has one now.
    static bool isThere() noexcept;

private:
    const std::shared_ptr<Host>* outer_;
    const std::shared_ptr<Host> host_;
};

}  // namespace yg
