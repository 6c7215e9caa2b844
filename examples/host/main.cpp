// SPDX-License-Identifier: MIT
//
// The smallest host application: it installs a host, loads the layout and looks styles up by name.
// A real application replaces the stand-alone host by a class of its own that derives from
// yg::Host, and keeps the rest.
//
//   host ROOT [PAGE]
//
// prints the panels of the default style under ROOT and of the page named PAGE.
#include <iostream>
#include <memory>
#include <string>

#include "YGConfigManager/host/Host.h"
#include "YGConfigManager/host/StandAloneHost.h"
#include "YGConfigManager/layout/YGStyleConfigLoad.h"
#include "YGConfigManager/version.h"

namespace {

void printPanels(const yg::PanelList& panels, const std::string& indent) {
    for (const std::shared_ptr<yg::PanelConfigInfo>& panel : panels) {
        // Absent is not empty: a panel without a name has no text at all.
        std::cout << indent << panel->panelName().value_or("(no name)") << '\n';
        printPanels(*panel->panePanes(), indent + "    ");
    }
}

bool printStyle(const yg::YGStyleConfigLoad& loader, const std::string& name) {
    // The record is the loader's own; an application copies it before it changes anything.
    const std::shared_ptr<yg::StyleConfigInfo> style = loader.loadStyleConfigInfoWithName(name);
    if (!style) {
        std::cerr << "There is no style " << name << ".\n";
        return false;
    }
    std::cout << style->styleName().value_or("(no name)") << '\n';
    printPanels(*style->stylePanes(), "    ");
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2 && argc != 3) {
        std::cerr << "usage: host ROOT [PAGE]\n";
        return 2;
    }
    const std::string root = argv[1];
    std::cout << "YGConfigManager " << YGConfigManagerVersionString << '\n';

    // First of all the host, since loaders ask it for paths, and log through it.
    const auto opened = yg::StandAloneHost::open(root);
    if (!opened) {
        std::cerr << opened.error << '\n';
        return 2;
    }
    yg::setHost(opened.host);

    // One loader serves the whole application. It is filled once, before the first lookup; files
    // that are missing or broken are logged and contribute nothing.
    const auto loader = std::make_shared<yg::YGStyleConfigLoad>();
    loader->initWithStyleConfigPath(root + "/config/custompage_template.xml",
                                    root + "/config/tab_styles.xml",
                                    root + "/config/magic_panels.xml");

    // The page that opens first.
    bool found = true;
    if (const auto name = loader->defaultStyleName())
        found = printStyle(*loader, *name);

    // A name that no file holds is built from a template: "quote-kline" is the style "quote" with
    // the panel "kline" in its magic slot.
    if (argc == 3)
        found = printStyle(*loader, argv[2]) && found;
    return found ? 0 : 1;
}
