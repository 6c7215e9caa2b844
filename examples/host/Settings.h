// SPDX-License-Identifier: MIT
//
// The application's settings, which another program may write at the same time.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "YGConfigManager/settings/YGAppConfigManager.h"

namespace terminal {

/// The one store of the application; share it, do not open a second one.
std::shared_ptr<yg::YGAppConfigManager> openSettings();

/// The theme that the user has chosen, as the palette loader takes it: 0 light, 1 dark.
std::int8_t themeOf(const yg::YGAppConfigManager& settings);

/// Keeps a setting for the next start; false, with a line on standard error, when it cannot be one.
bool keepSetting(yg::YGAppConfigManager& settings, const std::string& section,
                 const std::string& item, const std::string& text);

/// Prints all settings of a section.
void printSettings(const yg::YGAppConfigManager& settings, const std::string& section);

}  // namespace terminal
