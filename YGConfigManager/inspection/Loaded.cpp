// SPDX-License-Identifier: MIT
#include "YGConfigManager/inspection/Loaded.h"

#include <utility>

#include "YGConfigManager/inspection/Pages.h"
#include "YGConfigManager/settings/YGAppConfigManager.h"
#include "YGConfigManager/settings/YGHttpReqUrlMgr.h"
#include "YGConfigManager/settings/YGWebPageUrlConfig.h"

namespace yg {

namespace {

using Storage = InspectionHost::Storage;

constexpr std::string_view webPageFile = "web_page_urls.xml";
constexpr std::string_view settingsFile = "app_config.xml";

void loadLayout(Loaded& loaded, Gathering& findings) {
    loaded.layout = std::make_shared<YGStyleConfigLoad>(&findings);
    loaded.layout->initWithStyleConfigPath(loaded.files.pathOf("config/custompage_template.xml"),
                                           loaded.files.pathOf("config/tab_styles.xml"),
                                           loaded.files.pathOf("config/magic_panels.xml"));
    const auto add = [&](const auto& styles, Page::Source source) {
        if (!styles)
            return;
        for (const auto& [name, style] : *styles)
            loaded.pages.push_back({name, source, style});
    };
    add(loaded.layout->styleInfos(), Page::Source::style);
    add(loaded.layout->tabStyleInfos(), Page::Source::tab);
    addCustomPages(loaded, findings);
}

void loadPalettes(Loaded& loaded, Gathering& findings) {
    for (const std::int8_t style : {std::int8_t{0}, std::int8_t{1}}) {
        if (auto palette = YGPaletteLoad::initWithPaletteStyle(style, &findings))
            loaded.palettes.push_back(
                {loaded.files.nameOf(findings.lastRead()), style, std::move(palette)});
    }
}

void loadServers(Loaded& loaded, Gathering& findings) {
    for (const char* right : {"free", "l2"}) {
        loaded.host->setUserRight(right);
        for (const bool isGray : {false, true}) {
            auto servers = YGServerCfgLoader::initWithIsGray(isGray, &findings);
            if (servers && servers->configPath())
                loaded.servers.push_back(
                    {loaded.files.nameOf(*servers->configPath()), std::move(servers)});
        }
    }
}

/// The application chooses the names of settings files and web page tables, so they are told apart
/// by their roots.
void loadTables(Loaded& loaded, Gathering& findings, const std::string& folder) {
    for (const std::string& file : loaded.files.namesIn(folder)) {
        const std::string name = file.substr(folder.size() + 1);
        if (!name.ends_with(".xml") || name.starts_with("palette_") ||
            name.starts_with("skeleton_"))
            continue;
        const std::string_view root = loaded.files.file(file).document().document.root().name();
        if (name == webPageFile || (root == "urls" && name != settingsFile)) {
            YGWebPageUrlConfig::initWithFileName(name, &findings);
            loaded.webPageFiles.push_back(file);
        } else {
            YGAppConfigManager::initWithFileName(name, &findings);
            loaded.settingsFiles.push_back(file);
        }
    }
}

void loadRequestUrls(Loaded& loaded, Gathering& findings) {
    // Without a server in the host it only reads the file.
    if (YGHttpReqUrlMgr::init(&findings) && findings.lastRead().ends_with(".txt"))
        loaded.requestUrlFiles.push_back(loaded.files.nameOf(findings.lastRead()));
}

}  // namespace

Loaded load(std::shared_ptr<InspectionHost> host, Gathering& findings) {
    Loaded loaded(std::move(host));
    loadLayout(loaded, findings);
    loaded.events =
        YGEventLoader::initWithEventConfigPath(loaded.files.pathOf("config/events.xml"), &findings);
    for (const Storage storage : {Storage::shipped, Storage::user}) {
        loaded.host->see(storage);
        loadPalettes(loaded, findings);
        loadServers(loaded, findings);
        loadTables(loaded, findings, storage == Storage::user ? "user" : "storage");
        loadRequestUrls(loaded, findings);
    }
    loaded.host->see(Storage::asUsed);
    return loaded;
}

}  // namespace yg
