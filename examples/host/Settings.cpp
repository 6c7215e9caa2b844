// SPDX-License-Identifier: MIT
#include "Settings.h"

#include <iostream>

namespace terminal {

std::shared_ptr<yg::YGAppConfigManager> openSettings() {
    // `merged`: a save keeps what other programs have written meanwhile, `ygconfig settings set`
    // for one. Without it a save writes what this store holds, and undoes their changes.
    return yg::YGAppConfigManager::initWithFileName("app_config.xml", nullptr,
                                                    yg::OtherWriters::merged);
}

std::int8_t themeOf(const yg::YGAppConfigManager& settings) {
    // An item that was never written is absent, and the theme of a new user is the light one.
    return settings.getItemText("appearance", "theme") == "black" ? 1 : 0;
}

bool keepSetting(yg::YGAppConfigManager& settings, const std::string& section,
                 const std::string& item, const std::string& text) {
    // The file is written before the call returns. The description goes with a new item only.
    if (settings.setConfigItem(section, item, std::nullopt, text))
        return true;
    std::cerr << section << '/' << item << " cannot be kept.\n";
    return false;
}

void printSettings(const yg::YGAppConfigManager& settings, const std::string& section) {
    for (const std::string& item : settings.itemNames(section))
        std::cout << item << ": " << settings.getItemText(section, item).value_or("") << '\n';
}

}  // namespace terminal
