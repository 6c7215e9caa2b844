// SPDX-License-Identifier: MIT
//
// What the loader of a format reports of a text.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/events/YGEventLoader.h"
#include "YGConfigManager/layout/YGStyleConfigLoad.h"
#include "YGConfigManager/palette/YGPaletteLoad.h"
#include "YGConfigManager/servers/YGServerCfgLoader.h"
#include "YGConfigManager/settings/YGAppConfigManager.h"
#include "YGConfigManager/settings/YGHttpReqUrlMgr.h"
#include "YGConfigManager/settings/YGWebPageUrlConfig.h"

#include "diagnostics/RecordingSink.h"
#include "files/TemporaryFolder.h"
#include "formats/Documents.h"
#include "host/RecordingHost.h"

namespace yg::testing {

/// The names of the rules of all findings.
using Findings = std::vector<std::string>;

/// A host with one file, while it lives.
class RootWith {
public:
    RootWith(std::string_view file, std::string_view text) {
        folder.write(file, text);
        host->storageReadFolder = folder.path();
        host->baseOptimizeFolder = folder.path();
        host->defualtFolders[4] = folder.path();
    }

    files::TemporaryFolder folder;
    ScopedHost<> host;
    RecordingSink sink;
};

/// What a layout loader reports of a text that knows a group and a reuse panel of every name that
/// documents give. `load` loads the file of a path.
template <class Load>
Findings findingsOfLayout(std::string_view text, Load load) {
    RootWith root("test.xml", text);
    std::string groups;
    std::string panels;
    for (const std::string& name : Documents::allValues()) {
        groups += "<magic_panels name=\"" + name + "\"><magic_panel name=\"a\"><panel/>" +
                  "</magic_panel></magic_panels>";
        panels += "<reuse_panel name=\"" + name + "\"/>";
    }
    root.folder.write("magic_panels.xml", "<groups>" + groups + "</groups>");
    root.folder.write("reuse_panels.xml", "<panels>" + panels + "</panels>");
    YGStyleConfigLoad loader(&root.sink);
    loader.initWithStyleConfigPath({}, {}, root.folder.at("magic_panels.xml"));
    root.sink.found.clear();
    load(loader, root.folder.at("test.xml"));
    return root.sink.rules();
}

inline Findings findingsOfStyles(std::string_view text) {
    return findingsOfLayout(text,
                            [](auto& loader, const auto& path) { loader.loadConfig(path, true); });
}

inline Findings findingsOfMagicPanels(std::string_view text) {
    return findingsOfLayout(text,
                            [](auto& loader, const auto& path) { loader.loadMagicPanel(path); });
}

inline Findings findingsOfReusePanels(std::string_view text) {
    return findingsOfLayout(text,
                            [](auto& loader, const auto& path) { loader.loadReusePanel(path); });
}

inline Findings findingsOfEvents(std::string_view text) {
    RootWith root("events.xml", text);
    YGEventLoader::initWithEventConfigPath(root.folder.at("events.xml"), &root.sink);
    return root.sink.rules();
}

inline Findings findingsOfPalette(std::string_view text) {
    RootWith root("palette_white.xml", text);
    YGPaletteLoad::initWithPaletteStyle(0, &root.sink);
    return root.sink.rules();
}

inline Findings findingsOfServers(std::string_view text) {
    RootWith root("skeleton_v1.xml", text);
    YGServerCfgLoader::initWithIsGray(false, &root.sink);
    return root.sink.rules();
}

inline Findings findingsOfSettings(std::string_view text) {
    RootWith root("settings.xml", text);
    YGAppConfigManager::initWithFileName("settings.xml", &root.sink);
    return root.sink.rules();
}

inline Findings findingsOfWebPages(std::string_view text) {
    RootWith root("pages.xml", text);
    YGWebPageUrlConfig::initWithFileName("pages.xml", &root.sink);
    return root.sink.rules();
}

inline Findings findingsOfRequestUrls(std::string_view text) {
    RootWith root("request_urls_json.txt", text);
    YGHttpReqUrlMgr::make(&root.sink)->readUrlModelFromFile();
    return root.sink.rules();
}

/// The loaders of the formats in XML by the formats' ids.
inline const std::map<std::string, Findings (*)(std::string_view), std::less<>> loaders{
    {"styles", findingsOfStyles},
    {"magic_panels", findingsOfMagicPanels},
    {"reuse_panels", findingsOfReusePanels},
    {"events", findingsOfEvents},
    {"palette", findingsOfPalette},
    {"servers", findingsOfServers},
    {"settings", findingsOfSettings},
    {"web_pages", findingsOfWebPages},
};

}  // namespace yg::testing
