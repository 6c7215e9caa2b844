// SPDX-License-Identifier: MIT
//
// What an application does with the library, through the interface alone, on a copy of the sample
// terminal. Each use answers whether it found what is there.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/events/YGEventLoader.h"
#include "YGConfigManager/graphics/Font.h"
#include "YGConfigManager/host/Host.h"
#include "YGConfigManager/host/MainQueue.h"
#include "YGConfigManager/host/NotificationCenter.h"
#include "YGConfigManager/host/StandAloneHost.h"
#include "YGConfigManager/host/YGFrameComFun.h"
#include "YGConfigManager/layout/YGStyleConfigLoad.h"
#include "YGConfigManager/palette/YGPaletteLoad.h"
#include "YGConfigManager/servers/YGServerAddrListTag.h"
#include "YGConfigManager/servers/YGServerCfgLoader.h"
#include "YGConfigManager/settings/YGAppConfigManager.h"
#include "YGConfigManager/settings/YGHttpReqUrlMgr.h"
#include "YGConfigManager/settings/YGWebPageUrlConfig.h"
#include "YGConfigManager/xml/Document.h"

namespace yg::testing {

inline void useHost(const std::string& root) {
    setHost(StandAloneHost::open(root).host);
}

inline bool loadLayout(YGStyleConfigLoad& loader, const std::string& root) {
    loader.initWithStyleConfigPath(root + "/config/custompage_template.xml",
                                   root + "/config/tab_styles.xml",
                                   root + "/config/magic_panels.xml");
    return loader.styleInfos() != nullptr;
}

/// A page, a custom page, and the panels' texts of both.
inline bool looksUp(const YGStyleConfigLoad& loader) {
    bool hasPanels = true;
    for (const char* name : {"市场总览", "quote-kline-depth"}) {
        const auto style = loader.loadStyleConfigInfoWithName(name);
        hasPanels = hasPanels && style && !style->stylePanes()->empty() &&
                    !style->stylePanes()->front()->foldPosition();
    }
    return hasPanels && !loader.loadStyleConfigInfoWithName("no such page");
}

inline bool loadsLayout(const std::string& root) {
    YGStyleConfigLoad loader;
    return loadLayout(loader, root) && looksUp(loader);
}

inline bool loadsEvents(const std::string& root) {
    const auto loader = YGEventLoader::initWithEventConfigPath(root + "/config/events.xml");
    return loader && loader->commandByName("show_overview") &&
           loader->eventByName("watch_list", "select");
}

inline bool measures() {
    return Font::system(12).widthOf("AW 市场") > 0 && !Font::named("no such face", 12) &&
           !Font::system(12).faceName().empty();
}

inline bool loadsPalette() {
    const auto palette = YGPaletteLoad::initWithPaletteStyle(0);
    return palette && !palette->customColors().empty() && measures() &&
           palette->getCustomFont("no such key").pointSize() > 0;
}

inline bool loadsServers() {
    const auto loader = YGServerCfgLoader::initWithIsGray(false);
    return loader && loader->listTagWithServerType(1) != nullptr;
}

inline bool reads(const YGAppConfigManager& store) {
    return store.getItemText("appearance", "theme") == "black";
}

inline bool opensSettings() {
    const auto store = YGAppConfigManager::initWithFileName("app_config.xml");
    return store && reads(*store);
}

inline bool opensWebPages() {
    const auto table = YGWebPageUrlConfig::initWithFileName("web_page_urls.xml");
    return table && table->getWebPageUrlByKey("help_center").starts_with("https://help.");
}

inline bool findsUrl(const YGHttpReqUrlMgr& manager) {
    return manager.httpReqUrlStringWithUrlKey("quote_snapshot").has_value();
}

inline bool readsUrls() {
    const auto manager = YGHttpReqUrlMgr::make();
    manager->readUrlModelFromFile();
    return findsUrl(*manager);
}

/// In an encoding that takes a converter of the C library, and with a declaration that libxml2
/// judges.
inline bool parsesAnotherEncoding() {
    const auto parsed =
        xml::Document::parseBytes("<?xml version='1.0' encoding='gbk'?><a b='\xca\xd0'/>");
    return parsed && parsed.document.root().attribute("b") == "市";
}

inline bool isWrong() {
    return !xml::Document::parseBytes("<a><b></a>");
}

inline bool asksTheHost() {
    return YGFrameComFun::getUserRightDescription() == "free" && currentHost() != nullptr;
}

inline bool notifies() {
    bool isCalled = false;
    const auto token = NotificationCenter::standard().addObserver(
        "used", &isCalled, [&isCalled](const Notification&) { isCalled = true; });
    NotificationCenter::standard().post("used",
                                        std::shared_ptr<void>(std::shared_ptr<void>(), &isCalled));
    return isCalled;
}

inline bool posts() {
    const bool isPosted = postToMainQueue([] {});
    runPendingMainTasks();
    return isPosted;
}

inline bool logs() {
    currentHost()->writeLog(LogChannel::runtime, "used");
    return true;
}

/// Everything that needs no object that another thread uses too.
inline std::vector<std::function<bool()>> allUses(const std::string& root) {
    return {[root] { return loadsLayout(root); },
            [root] { return loadsEvents(root); },
            loadsPalette,
            loadsServers,
            opensSettings,
            opensWebPages,
            readsUrls,
            parsesAnotherEncoding,
            isWrong,
            asksTheHost,
            notifies,
            posts,
            logs,
            [] { return looksUp(*YGStyleConfigLoad::getShareInstance()); }};
}

/// Does them all; the number of the first that fails, counted from 1, and 0 if none does.
inline int firstFailing(const std::vector<std::function<bool()>>& uses) {
    for (std::size_t i = 0; i < uses.size(); ++i) {
        if (!uses[i]())
            return static_cast<int>(i) + 1;
    }
    return 0;
}

}  // namespace yg::testing
