// SPDX-License-Identifier: MIT
//
// A switch of the theme while the application runs.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "YGConfigManager/palette/YGPaletteLoad.h"

#include "MainLoop.h"

namespace terminal {

/// "light" or "dark".
std::string_view themeName(std::int8_t style);

/// Changes to the other theme, and returns when everything that observes the theme has been drawn
/// again. False when the other palette cannot be read; the theme stays then.
bool switchTheme(const std::shared_ptr<yg::YGPaletteLoad>& palette, MainLoop& loop);

}  // namespace terminal
