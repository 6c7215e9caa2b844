// SPDX-License-Identifier: MIT
#include "YGConfigManager/inspection/Loaded.h"

#include <algorithm>
#include <new>
#include <utility>

#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/inspection/Pages.h"
#include "YGConfigManager/settings/YGAppConfigManager.h"
#include "YGConfigManager/settings/YGHttpReqUrlMgr.h"
#include "YGConfigManager/settings/YGWebPageUrlConfig.h"
#include "YGConfigManager/text/Paths.h"

namespace yg {

namespace {

using Storage = InspectionHost::Storage;

constexpr std::string_view webPageFile = "web_page_urls.xml";
constexpr std::string_view settingsFile = "app_config.xml";
constexpr std::string_view requestUrlFile = "request_urls_json.txt";

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
    loaded.templates = loaded.layout->templates();
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
                loaded.servers.push_back({loaded.files.nameOf(*servers->configPath()),
                                          std::move(servers), right, isGray});
        }
    }
}

enum class TableKind { unknown, settings, webPages };

/// The application chooses the names of settings files and web page tables, so they are told apart
/// by their roots.
TableKind kindOf(const SourceFile& file, std::string_view name) {
    if (name == webPageFile)
        return TableKind::webPages;
    if (name == settingsFile)
        return TableKind::settings;
    const std::string_view root = file.document().document.root().name();
    return root == "urls"     ? TableKind::webPages
           : root == "config" ? TableKind::settings
                              : TableKind::unknown;
}

/// A user's copy is read as the shipped file of its name is. Another file of the user's may be
/// anything, so it counts only if it is one of them by itself.
void loadTables(Loaded& loaded, Gathering& findings, std::string_view folder) {
    for (const std::string& file : loaded.files.namesIn(folder)) {
        const std::string name = file.substr(folder.size() + 1);
        if (!name.ends_with(".xml") || name.starts_with("palette_") ||
            name.starts_with("skeleton_"))
            continue;
        const SourceFile& shipped = loaded.files.file(text::joinPath(shippedFolder, name));
        const TableKind kind = kindOf(shipped.isRead() ? shipped : loaded.files.file(file), name);
        if (kind == TableKind::webPages) {
            YGWebPageUrlConfig::initWithFileName(name, &findings);
            loaded.webPageFiles.push_back(file);
        } else if (kind == TableKind::settings || shipped.isRead()) {
            YGAppConfigManager::initWithFileName(name, &findings);
            loaded.settingsFiles.push_back(file);
        }
    }
}

/// The user may have no list of their own; the shipped one is reported when it is missing.
void loadRequestUrls(Loaded& loaded, Gathering& findings, std::string_view folder) {
    const std::string file = text::joinPath(folder, requestUrlFile);
    const bool isThere = loaded.files.file(file).isRead();
    if (!isThere && folder == userFolder)
        return;
    if (const auto manager = YGHttpReqUrlMgr::make(&findings))
        manager->readUrlModelFromFile();
    if (isThere)
        loaded.requestUrlFiles.push_back(file);
}

bool isIn(const std::vector<std::string>& files, std::string_view file) {
    return std::ranges::find(files, file) != files.end();
}

}  // namespace

const FormatInfo* formatOf(const Loaded& loaded, std::string_view file) {
    const std::string_view name = file.substr(file.rfind('/') + 1);
    const std::string_view folder = file.substr(0, file.size() - name.size());
    if (file == "host.json")
        return formatNamed("host");
    if (folder == "config/" && name == "events.xml")
        return formatNamed("events");
    if (name == "magic_panels.xml" && folder != "base_optimize/")
        return formatNamed("magic_panels");
    if (folder == "base_optimize/")
        return formatNamed("reuse_panels");
    if (folder == "config/" || folder == "soft_optimize/")
        return formatNamed("styles");
    if (isIn(loaded.settingsFiles, file))
        return formatNamed("settings");
    if (isIn(loaded.webPageFiles, file))
        return formatNamed("web_pages");
    if (name.starts_with("palette_"))
        return formatNamed("palette");
    if (name.starts_with("skeleton_"))
        return formatNamed("servers");
    return name == "request_urls_json.txt" ? formatNamed("request_urls") : nullptr;
}

const ElementInfo* infoIn(const ElementInfo& info, std::string_view name) {
    const auto isOfName = [&](const ElementInfo* each) {
        return each->name == name ||
               (each->name.empty() &&
                std::ranges::find(each->otherThan, name) == each->otherThan.end());
    };
    const auto found = std::ranges::find_if(info.content, isOfName);
    return found == info.content.end() ? nullptr : *found;
}

const ElementInfo* infoOf(const FormatInfo& format, std::span<const xml::Element> elements) {
    if (elements.empty())
        return nullptr;
    const ElementInfo* info = &format.root;
    for (const xml::Element& element : elements.subspan(1)) {
        info = infoIn(*info, element.name());
        if (!info)
            return nullptr;
    }
    return info;
}

void throwIfOutOfMemory(const InspectionHost& host, const Gathering& findings) {
    const auto isAbout = [](const Found& found) { return found.finding.value == outOfMemory; };
    if (host.isOutOfMemory() || std::ranges::any_of(findings.found(), isAbout))
        throw std::bad_alloc();
}

Loaded load(std::shared_ptr<InspectionHost> host, Gathering& findings) {
    Loaded loaded(std::move(host));
    loadLayout(loaded, findings);
    loaded.events =
        YGEventLoader::initWithEventConfigPath(loaded.files.pathOf("config/events.xml"), &findings);
    for (const Storage storage : {Storage::shipped, Storage::user}) {
        loaded.host->see(storage);
        loadPalettes(loaded, findings);
        loadServers(loaded, findings);
        const std::string_view folder = storage == Storage::user ? userFolder : shippedFolder;
        loadTables(loaded, findings, folder);
        loadRequestUrls(loaded, findings, folder);
    }
    loaded.host->see(Storage::asUsed);
    throwIfOutOfMemory(*loaded.host, findings);
    for (auto& [path, parsed] : findings.takeParsed())
        loaded.files.setDocument(path, std::move(parsed));
    return loaded;
}

}  // namespace yg
