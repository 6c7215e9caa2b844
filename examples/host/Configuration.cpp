// SPDX-License-Identifier: MIT
#include "Configuration.h"

#include <iostream>

#include "Settings.h"
#include "Theme.h"

namespace terminal {

namespace {

void printPanels(const yg::PanelList& panels, const std::string& indent) {
    for (const std::shared_ptr<yg::PanelConfigInfo>& panel : panels) {
        // Absent is not empty: a panel without a name has no text at all.
        std::cout << indent << panel->panelName().value_or("(no name)") << '\n';
        printPanels(*panel->panePanes(), indent + "    ");
    }
}

}  // namespace

Configuration loadConfiguration(const std::string& root) {
    Configuration loaded;

    // The pages. The files of the soft-optimize and base-optimize folders are found by the host.
    loaded.layout = std::make_shared<yg::YGStyleConfigLoad>();
    loaded.layout->initWithStyleConfigPath(root + "/config/custompage_template.xml",
                                           root + "/config/tab_styles.xml",
                                           root + "/config/magic_panels.xml");

    // What the elements of the pages do.
    loaded.events = yg::YGEventLoader::initWithEventConfigPath(root + "/config/events.xml");

    // The settings come before the palette, because the theme is one of them.
    loaded.settings = openSettings();
    loaded.palette = yg::YGPaletteLoad::initWithPaletteStyle(themeOf(*loaded.settings));

    // The servers of the user's right level; false: not in the group of the grey release.
    loaded.servers = yg::YGServerCfgLoader::initWithIsGray(false);

    loaded.webPages = yg::YGWebPageUrlConfig::initWithFileName("web_page_urls.xml");

    // The stored list of request URLs. make() downloads nothing; UrlRefresh.h does when asked.
    loaded.requestUrls = yg::YGHttpReqUrlMgr::make();
    loaded.requestUrls->readUrlModelFromFile();
    return loaded;
}

bool printPage(const yg::YGStyleConfigLoad& layout, const std::string& name) {
    // A name that no file holds is built from a template: "quote-kline-depth" is the style "quote"
    // with the panels "kline" and "depth" in its two slots. A page from a file is the loader's own
    // record; copy it before you change anything.
    const std::shared_ptr<yg::StyleConfigInfo> page = layout.loadStyleConfigInfoWithName(name);
    if (!page) {
        std::cerr << "No page is named " << name << ".\n";
        return false;
    }
    std::cout << page->styleName().value_or("(no name)") << '\n';
    printPanels(*page->stylePanes(), "    ");
    return true;
}

void printConfiguration(const Configuration& configuration) {
    const auto& pages = configuration.layout->styleInfos();
    std::cout << "pages: " << (pages ? pages->size() : 0) << '\n'
              << "commands: " << configuration.events->commandDatas().size() << '\n';
    if (configuration.palette) {
        std::cout << "theme: " << themeName(configuration.palette->currentPaletteStyle()) << '\n'
                  << "colours: " << configuration.palette->customColors().size() << '\n';
    }
    // Type 1 has the quote servers. Each has one address, chosen of those in the file.
    std::cout << "quote servers: " << configuration.servers->serversOfType(1).size() << '\n'
              << "web pages: " << configuration.webPages->keys().size() << '\n';
    const auto urls = configuration.requestUrls->urlModel();
    const auto entries = urls ? urls->urlConfigs() : nullptr;
    std::cout << "request URLs: " << (entries ? entries->size() : 0) << '\n';
    if (const auto& name = configuration.layout->defaultStyleName())
        printPage(*configuration.layout, *name);
}

}  // namespace terminal
