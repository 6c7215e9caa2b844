// SPDX-License-Identifier: MIT
//
// A terminal's start: loads all files under the root that is its argument, as a host does, with the
// light palette.
#include <cstdlib>
#include <memory>
#include <string>

#include "YGConfigManager/events/YGEventLoader.h"
#include "YGConfigManager/host/StandAloneHost.h"
#include "YGConfigManager/layout/YGStyleConfigLoad.h"
#include "YGConfigManager/palette/YGPaletteLoad.h"
#include "YGConfigManager/servers/YGServerCfgLoader.h"
#include "YGConfigManager/settings/YGAppConfigManager.h"
#include "YGConfigManager/settings/YGHttpReqUrlMgr.h"
#include "YGConfigManager/settings/YGWebPageUrlConfig.h"

int main(int count, char** arguments) {
    if (count != 2)
        return EXIT_FAILURE;
    const std::string root = arguments[1];
    yg::setHost(yg::StandAloneHost::open(root).host);
    const auto& layout = yg::YGStyleConfigLoad::getShareInstance();
    layout->initWithStyleConfigPath(root + "/config/custompage_template.xml",
                                    root + "/config/tab_styles.xml",
                                    root + "/config/magic_panels.xml");
    const auto events = yg::YGEventLoader::initWithEventConfigPath(root + "/config/events.xml");
    const auto palette = yg::YGPaletteLoad::initWithPaletteStyle(0);
    const auto servers = yg::YGServerCfgLoader::initWithIsGray(false);
    const auto settings = yg::YGAppConfigManager::initWithFileName("app_config.xml");
    const auto pages = yg::YGWebPageUrlConfig::initWithFileName("web_page_urls.xml");
    const auto urls = yg::YGHttpReqUrlMgr::make();
    urls->readUrlModelFromFile();
    const bool isThere = layout->styleInfos() && events && palette && servers && settings &&
                         pages && urls->urlModel();
    return isThere ? EXIT_SUCCESS : EXIT_FAILURE;
}
