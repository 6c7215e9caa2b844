// SPDX-License-Identifier: MIT
//
// The palette loader as the commands use it, and the words that say what is read and written.
#pragma once

#include <memory>

#include "YGConfigManager/palette/YGPaletteLoad.h"

#include "ygconfig/Arguments.h"

namespace yg::tool {

/// For commands that take nothing of their own.
void declareNothing(CLI::App& app, Arguments& arguments);

/// Declares --palette-style.
void declarePalette(CLI::App& app, Arguments& arguments);

/// The same and KEY, an application key.
void declarePaletteKey(CLI::App& app, Arguments& arguments);

/// The same and NAME, an image's name, with the options that say what becomes of it.
void declareImage(CLI::App& app, Arguments& arguments);

/// A loader of the theme asked for; null when its palette cannot be loaded. The host of the root
/// folder must be installed.
std::shared_ptr<YGPaletteLoad> loadPalette(const Arguments& arguments);

}  // namespace yg::tool
