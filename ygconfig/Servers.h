// SPDX-License-Identifier: MIT
//
// The server loader as the commands use it, and the words that say what is read and delivered.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "YGConfigManager/servers/YGServerCfgLoader.h"

#include "ygconfig/Arguments.h"

namespace yg::tool {

/// Declares --gray.
void declareServers(CLI::App& app, Arguments& arguments);

/// The same and DATA and MD5, what is delivered.
void declareDelivery(CLI::App& app, Arguments& arguments);

/// A loader that has read the file for the user's right level; null when the host has no path for
/// it. The host of the root folder must be installed.
std::shared_ptr<YGServerCfgLoader> loadServers(const Arguments& arguments,
                                               DiagnosticsSink* sink = nullptr);

/// A path as it is below the root folder; as it stands when it is elsewhere.
std::optional<std::string> withoutRoot(const Arguments& arguments,
                                       const std::optional<std::string>& path);

}  // namespace yg::tool
