// SPDX-License-Identifier: MIT
#include "growth/Loaders.h"

#include <fstream>
#include <iterator>

#include "YGConfigManager/events/YGEventLoader.h"
#include "YGConfigManager/layout/YGStyleConfigLoad.h"
#include "YGConfigManager/palette/YGPaletteLoad.h"
#include "YGConfigManager/servers/YGServerCfgLoader.h"
#include "YGConfigManager/settings/YGAppConfigManager.h"
#include "YGConfigManager/settings/YGWebPageUrlConfig.h"
#include "YGConfigManager/xml/Document.h"

#include "growth/Constructs.h"

namespace yg::testing {

namespace {

std::string readDocument(const std::string& path) {
    return xml::Document::parseFile(path).error;
}

std::string readDocumentWithPositions(const std::string& path) {
    return xml::Document::parseFile(path, {.positions = true}).error;
}

/// What the log says of a file that is refused.
std::string refusal(const GrowthHost& host) {
    return host.lastLine.find("config fail:") == std::string::npos ? "" : host.lastLine;
}

std::string layout(std::optional<std::string_view> styles, std::optional<std::string_view> tabs,
                   std::optional<std::string_view> magicPanels, const GrowthHost& host,
                   DiagnosticsSink* sink = nullptr) {
    YGStyleConfigLoad loader(sink);
    loader.initWithStyleConfigPath(styles, tabs, magicPanels);
    return refusal(host);
}

std::string softStyles(const std::string& path, DiagnosticsSink* sink) {
    GrowthHost& host = newHost();
    host.softPath = path;
    return layout(path, std::nullopt, std::nullopt, host, sink);
}

std::string events(const std::string& path, DiagnosticsSink* sink) {
    GrowthHost& host = newHost();
    YGEventLoader::initWithEventConfigPath(path, sink);
    return refusal(host);
}

std::string palette(const std::string& path, DiagnosticsSink* sink) {
    GrowthHost& host = newHost();
    host.storagePath = path;
    YGPaletteLoad::initWithPaletteStyle(0, sink);
    return refusal(host);
}

std::string servers(const std::string& path, DiagnosticsSink* sink) {
    GrowthHost& host = newHost();
    host.storagePath = path;
    YGServerCfgLoader::initWithIsGray(false, sink);
    return refusal(host);
}

std::string bytesOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// Settings and web pages do not say why a file is refused.
std::string refusal(const xml::Document& document) {
    return document.root() ? "" : "refused";
}

std::string settings(const std::string& path, DiagnosticsSink* sink) {
    newHost().storagePath = path;
    const auto store = YGAppConfigManager::initWithFileName("file", sink);
    return refusal(store->docment());
}

std::string webPages(const std::string& path, DiagnosticsSink* sink) {
    newHost().storagePath = path;
    return refusal(YGWebPageUrlConfig::initWithFileName("file", sink)->docment());
}

/// What a delivery is written to; it is in memory where that is possible, for each write is brought
/// to the disk.
std::string deliveryPath() {
    return writeFile("delivery", "");
}

CountingSink listener;

constexpr std::string_view magicOpen =
    "<r><magic_panels name='g'><magic_panel name='m'><panel name='p'>";
constexpr std::string_view magicClose = "</panel></magic_panel></magic_panels></r>";

constexpr Loader table[] = {
    {"xml", "<r>", "</r>", readDocument},
    {"xmlWithPositions", "<r>", "</r>", readDocumentWithPositions, true},
    {"styles", "<styles>", "</styles>", loadStyles},
    {"stylesReported", "<styles>", "</styles>", loadStylesReported, true},
    {"panel", "<styles><style name='s'><panel name='p'>", "</panel></style></styles>", loadStyles},
    {"tabStyles", "<styles><style name='s'>", "</style></styles>", loadTabStyles},
    {"magicPanels", magicOpen, magicClose, loadMagicPanels},
    {"reusePanels", "<r><reuse_panel name='p'>", "</reuse_panel></r>", loadReusePanels},
    {"events", "<event_list><element_event name='g'>", "</element_event></event_list>", loadEvents},
    {"eventsReported", "<event_list><event_template name='t'>", "</event_template></event_list>",
     loadEventsReported, true},
    {"palette", "<ROOT><SWPALETTE><COLORES>", "</COLORES></SWPALETTE></ROOT>", loadPalette},
    {"paletteReported", "<ROOT><SWPALETTE><FONTS>", "</FONTS></SWPALETTE></ROOT>",
     loadPaletteReported, true},
    {"servers", "<application><server type='1'>", "</server></application>", loadServers},
    {"serversReported", "<application>", "</application>", loadServersReported, true},
    {"settings", "<config><s>", "</s></config>", loadSettings},
    {"settingsReported", "<config>", "</config>", loadSettingsReported, true},
    {"webPages", "<urls>", "</urls>", loadWebPages},
    {"webPagesReported", "<urls>", "</urls>", loadWebPagesReported, true},
};

}  // namespace

std::optional<std::string> GrowthHost::getDefualtFolderPath(std::int64_t) {
    return runFolder();
}

GrowthHost& newHost() {
    static std::shared_ptr<GrowthHost> host;
    host = std::make_shared<GrowthHost>();
    setHost(host);
    return *host;
}

std::span<const Loader> loaders() {
    return table;
}

MakeWork plainFileWork(std::string (*load)(const std::string& path),
                       std::function<std::string(std::size_t bytes)> make) {
    return [load, make = std::move(make)](std::size_t bytes) {
        const std::string file = make(bytes);
        const std::string path = writeFile("file.xml", file);
        return Work{file.size(), [load, path] { return load(path); }};
    };
}

MakeWork fileWork(std::string (*load)(const std::string& path),
                  std::function<std::string(std::size_t bytes)> make) {
    return plainFileWork(load, [make = std::move(make)](std::size_t bytes) {
        std::string file = make(bytes);
        if (file.starts_with('<') && !file.starts_with("<?"))
            file.insert(0, "<?xml version='1.0'?>");
        return file;
    });
}

const Measured& plainLayoutLoad(bool hasPositions) {
    static const auto measured = [](std::string (*load)(const std::string&)) {
        return measure(fileWork(load,
                                [](std::size_t bytes) {
                                    return "<styles>" + plainLayout(bytes) + "</styles>";
                                }),
                       100'000);
    };
    static const Measured silent = measured(loadStyles);
    static const Measured reported = measured(loadStylesReported);
    return hasPositions ? reported : silent;
}

std::string loadLayout(const std::string& styles, const std::string& magicPanels,
                       const std::string& reusePanels) {
    GrowthHost& host = newHost();
    host.basePath = reusePanels;
    return layout(styles, std::nullopt, magicPanels, host);
}

std::string loadStyles(const std::string& path) {
    return layout(path, std::nullopt, std::nullopt, newHost());
}

std::string loadStylesReported(const std::string& path) {
    return layout(path, std::nullopt, std::nullopt, newHost(), &listener);
}

std::string loadSoftStyles(const std::string& path) {
    return softStyles(path, nullptr);
}

std::string loadSoftStylesReported(const std::string& path) {
    return softStyles(path, &listener);
}

std::string loadTabStyles(const std::string& path) {
    return layout(std::nullopt, path, std::nullopt, newHost());
}

std::string loadMagicPanels(const std::string& path) {
    return layout(std::nullopt, std::nullopt, path, newHost());
}

std::string loadMagicPanelsReported(const std::string& path) {
    return layout(std::nullopt, std::nullopt, path, newHost(), &listener);
}

std::string loadSoftMagicPanelsReported(const std::string& path) {
    GrowthHost& host = newHost();
    host.softPath = path;
    return layout(std::nullopt, std::nullopt, path, host, &listener);
}

std::string loadReusePanels(const std::string& path) {
    GrowthHost& host = newHost();
    host.basePath = path;
    return layout(std::nullopt, std::nullopt, std::nullopt, host);
}

std::string loadEvents(const std::string& path) {
    return events(path, nullptr);
}

std::string loadEventsReported(const std::string& path) {
    return events(path, &listener);
}

std::string loadPalette(const std::string& path) {
    return palette(path, nullptr);
}

std::string loadPaletteReported(const std::string& path) {
    return palette(path, &listener);
}

std::string loadServers(const std::string& path) {
    return servers(path, nullptr);
}

std::string loadServersReported(const std::string& path) {
    return servers(path, &listener);
}

std::string deliverServers(const std::string& path) {
    GrowthHost& host = newHost();
    host.storagePath = deliveryPath();
    const auto loader = YGServerCfgLoader::initWithIsGray(false);
    return loader->reloadServerConfigWithData(bytesOf(path), "digest") ? "" : "refused";
}

std::string loadSettings(const std::string& path) {
    return settings(path, nullptr);
}

std::string loadSettingsReported(const std::string& path) {
    return settings(path, &listener);
}

std::string loadWebPages(const std::string& path) {
    return webPages(path, nullptr);
}

std::string loadWebPagesReported(const std::string& path) {
    return webPages(path, &listener);
}

std::string replaceWebPages(const std::string& path) {
    newHost().storagePath = deliveryPath();
    const auto pages = YGWebPageUrlConfig::initWithFileName("file");
    return pages->replaceDataFromServer(bytesOf(path)) ? "" : "refused";
}

}  // namespace yg::testing
