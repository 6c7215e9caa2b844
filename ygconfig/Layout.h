// SPDX-License-Identifier: MIT
//
// The style loader as the commands use it, and the options that say what it reads.
#pragma once

#include <memory>

#include "YGConfigManager/layout/YGStyleConfigLoad.h"

#include "ygconfig/Arguments.h"

namespace yg::tool {

/// Declares --style, --tab and --magic.
void declareLayout(CLI::App& app, Arguments& arguments);

/// The same and NAME, a style's name.
void declareStyle(CLI::App& app, Arguments& arguments);

/// A loader that has read the files of the root folder, or those of the options; never null. The
/// host of the root folder must be installed.
std::unique_ptr<YGStyleConfigLoad> loadLayout(const Arguments& arguments,
                                              DiagnosticsSink* sink = nullptr);

}  // namespace yg::tool
