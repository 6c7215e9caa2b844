// SPDX-License-Identifier: MIT
//
// A small application around the library: its own host, all loaders, a main loop, and what such an
// application does while it runs.
//
//   host ROOT [PAGE]                              prints what is under ROOT, or a page
//   host ROOT --login LEVEL                       the servers of another right level
//   host ROOT --switch-theme                      changes the theme and keeps it
//   host ROOT --set SECTION ITEM TEXT             keeps a setting
//   host ROOT --deliver-servers FILE DIGEST       checks and takes new servers
//   host ROOT --deliver-web-pages FILE            checks and takes new web pages
//   host ROOT --refresh-urls HOST:PORT            gets the list of request URLs
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include "YGConfigManager/host/Host.h"
#include "YGConfigManager/version.h"

#include "Configuration.h"
#include "Deliveries.h"
#include "MainLoop.h"
#include "Settings.h"
#include "TerminalHost.h"
#include "Theme.h"
#include "UrlRefresh.h"

namespace {

using Words = std::vector<std::string>;

/// Whether the words are this option with this many values.
bool asks(const Words& words, const std::string& option, std::size_t values) {
    return words.size() == values + 1 && words[0] == option;
}

bool deliverServers(const terminal::Configuration& configuration, const std::string& root,
                    const std::string& path, const std::string& digest) {
    yg::Delivery delivery{.kind = yg::Delivery::Kind::servers, .name = {}, .bytes = {}};
    delivery.right = yg::currentHost()->getUserRightDescription();
    return terminal::readDelivery(path, delivery) && terminal::checkDelivery(delivery, root) &&
           terminal::takeServers(configuration, delivery, digest);
}

bool deliverWebPages(const terminal::Configuration& configuration, const std::string& root,
                     const std::string& path) {
    yg::Delivery delivery{.kind = yg::Delivery::Kind::webPages, .name = {}, .bytes = {}};
    return terminal::readDelivery(path, delivery) && terminal::checkDelivery(delivery, root) &&
           terminal::takeWebPages(configuration, delivery);
}

bool switchTheme(const terminal::Configuration& configuration, terminal::MainLoop& loop) {
    return configuration.palette && terminal::switchTheme(configuration.palette, loop) &&
           terminal::keepSetting(
               *configuration.settings, "appearance", "theme",
               configuration.palette->currentPaletteStyle() == 0 ? "white" : "black");
}

bool logIn(const terminal::Configuration& configuration, terminal::TerminalHost& host,
           const std::string& right) {
    host.setUserRight(right);
    configuration.servers->reloadServerConfigWhenRightChanged();
    for (const auto& server : configuration.servers->serversOfType(1))
        std::cout << server->serverName().value_or("") << '\n';
    return !configuration.servers->serversOfType(1).empty();
}

int usage() {
    std::cerr << "usage: host ROOT [PAGE]\n"
                 "       host ROOT --login LEVEL | --switch-theme | --set SECTION ITEM TEXT |\n"
                 "                 --deliver-servers FILE DIGEST | --deliver-web-pages FILE |\n"
                 "                 --refresh-urls HOST:PORT\n";
    return 2;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2)
        return usage();
    const std::string root = argv[1];
    const Words words(argv + 2, argv + argc);
    std::cout << "YGConfigManager " << YGConfigManagerVersionString << '\n';

    // First of all the host, since loaders ask it for paths, and log through it.
    const bool refreshes = asks(words, "--refresh-urls", 1);
    const auto host = yg::makeHost<terminal::TerminalHost>(
        root, refreshes ? std::optional(words[1]) : std::nullopt);
    yg::setHost(host);

    // The loop comes before whatever may leave a task for it.
    terminal::MainLoop loop;
    const terminal::Configuration configuration = terminal::loadConfiguration(root);

    bool isDone = false;
    if (words.empty()) {
        terminal::printConfiguration(configuration);
        isDone = true;
    } else if (words.size() == 1 && words[0].rfind("--", 0) != 0) {
        isDone = terminal::printPage(*configuration.layout, words[0]);
    } else if (asks(words, "--login", 1)) {
        isDone = logIn(configuration, *host, words[1]);
    } else if (asks(words, "--switch-theme", 0)) {
        isDone = switchTheme(configuration, loop);
    } else if (asks(words, "--set", 3)) {
        isDone = terminal::keepSetting(*configuration.settings, words[1], words[2], words[3]);
        terminal::printSettings(*configuration.settings, words[1]);
    } else if (asks(words, "--deliver-servers", 2)) {
        isDone = deliverServers(configuration, root, words[1], words[2]);
    } else if (asks(words, "--deliver-web-pages", 1)) {
        isDone = deliverWebPages(configuration, root, words[1]);
    } else if (refreshes) {
        isDone = terminal::refreshUrls(configuration.requestUrls, loop);
    } else {
        return usage();
    }
    return isDone ? 0 : 1;
}
