// SPDX-License-Identifier: MIT
//
// A new list of request URLs from the configuration download server.
#pragma once

#include <memory>

#include "YGConfigManager/settings/YGHttpReqUrlMgr.h"

#include "MainLoop.h"

namespace terminal {

/// Downloads the list and returns when the outcome is known and printed; false when nothing that
/// could be used came. An application with windows starts the download and goes on.
bool refreshUrls(const std::shared_ptr<yg::YGHttpReqUrlMgr>& urls, MainLoop& loop);

}  // namespace terminal
