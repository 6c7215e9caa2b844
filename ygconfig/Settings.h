// SPDX-License-Identifier: MIT
//
// Settings, web pages and request URLs as the commands use them: the words that name them, and what
// several commands do.
#pragma once

#include <memory>
#include <string>

#include "YGConfigManager/settings/YGHttpReqUrlMgr.h"

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

/// A manager that has read the stored list. With --refresh it waits for a download to end, and says
/// so on standard error when that takes longer than a second. `complaint` gets what speaks against
/// a download. The host of the root folder must be installed.
std::shared_ptr<YGHttpReqUrlMgr> loadRequestUrls(const Arguments& arguments, std::string& complaint,
                                                 DiagnosticsSink* sink = nullptr);

}  // namespace yg::tool
