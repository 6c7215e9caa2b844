// SPDX-License-Identifier: MIT
//
// Settings, web pages and request URLs as the commands use them: the words that name them, and what
// several commands do.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "YGConfigManager/settings/YGHttpReqUrlMgr.h"

#include "ygconfig/Answer.h"
#include "ygconfig/Arguments.h"

namespace yg::tool {

/// Declares FILE, SECTION and ITEM.
void declareItem(CLI::App& app, Arguments& arguments);

/// The same and TEXT, --description and --readonly.
void declareItemText(CLI::App& app, Arguments& arguments);

/// Declares FILE, KEY, which may be missing, and --replace.
void declareWebPage(CLI::App& app, Arguments& arguments);

/// Declares KEY and --refresh.
void declareRequestUrl(CLI::App& app, Arguments& arguments);

/// Declares FILE for `show`, which may be missing.
void declareSettingsFile(CLI::App& app, Arguments& arguments);
void declareWebPageFile(CLI::App& app, Arguments& arguments);

/// Declares --refresh.
void declareRefresh(CLI::App& app, Arguments& arguments);

/// What a command that stores answers when there is no path for a file of this name.
Answer withoutStore(std::string_view fileName);

/// A manager that has read the stored list. The host of the root folder must be installed.
std::shared_ptr<YGHttpReqUrlMgr> loadRequestUrls(DiagnosticsSink* sink = nullptr);

/// With --refresh, waits for a download to end, and says so on standard error when that takes
/// longer than a second. Answers a line on why there can be no download; "" otherwise.
std::string refreshRequestUrls(YGHttpReqUrlMgr& manager, const Arguments& arguments);

}  // namespace yg::tool
