// SPDX-License-Identifier: MIT
//
// Managers of request URLs whose requests go another way than over the network: for tests, and to
// try a download. Internal.
#pragma once

#include <memory>
#include <utility>

#include "YGConfigManager/settings/YGHttpReqUrlMgr.h"

namespace yg {

struct RequestUrlsOver {
    /// As YGHttpReqUrlMgr::init and make, over this transport.
    std::shared_ptr<YGHttpReqUrlMgr> init(DiagnosticsSink* sink = nullptr) const {
        return YGHttpReqUrlMgr::init(sink, transport);
    }
    std::shared_ptr<YGHttpReqUrlMgr> make(DiagnosticsSink* sink = nullptr) const {
        return YGHttpReqUrlMgr::make(sink, transport);
    }

    YGHttpReqUrlMgr::Transport transport;
};

}  // namespace yg
