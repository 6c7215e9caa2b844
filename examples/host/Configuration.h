// SPDX-License-Identifier: MIT
//
// Everything that the application reads at its start, held for as long as it runs.
#pragma once

#include <memory>
#include <string>

#include "YGConfigManager/events/YGEventLoader.h"
#include "YGConfigManager/layout/YGStyleConfigLoad.h"
#include "YGConfigManager/palette/YGPaletteLoad.h"
#include "YGConfigManager/servers/YGServerCfgLoader.h"
#include "YGConfigManager/settings/YGAppConfigManager.h"
#include "YGConfigManager/settings/YGHttpReqUrlMgr.h"
#include "YGConfigManager/settings/YGWebPageUrlConfig.h"

namespace terminal {

/// Only `palette` is null without its file: there is no theme to draw with. The others are there
/// and have nothing to answer.
struct Configuration {
    std::shared_ptr<yg::YGStyleConfigLoad> layout;
    std::shared_ptr<yg::YGEventLoader> events;
    std::shared_ptr<yg::YGAppConfigManager> settings;
    std::shared_ptr<yg::YGPaletteLoad> palette;
    std::shared_ptr<yg::YGServerCfgLoader> servers;
    std::shared_ptr<yg::YGWebPageUrlConfig> webPages;
    std::shared_ptr<yg::YGHttpReqUrlMgr> requestUrls;
};

/// Reads all files. The host has been installed before, since the loaders ask it for their paths.
Configuration loadConfiguration(const std::string& root);

/// Prints what was loaded, one line each, and the panels of the page that opens first.
void printConfiguration(const Configuration& configuration);

/// Prints the panels of a page; false when there is no page of this name.
bool printPage(const yg::YGStyleConfigLoad& layout, const std::string& name);

}  // namespace terminal
