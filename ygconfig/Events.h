// SPDX-License-Identifier: MIT
//
// The event loader as the commands use it, and the words that say what is read and looked up.
#pragma once

#include <memory>

#include "YGConfigManager/events/YGEventLoader.h"

#include "ygconfig/Arguments.h"

namespace yg::tool {

/// Declares --events.
void declareEvents(CLI::App& app, Arguments& arguments);

/// The same and NAME, a command's name.
void declareCommandName(CLI::App& app, Arguments& arguments);

/// The same and GROUP and NAME, those of an event.
void declareEventName(CLI::App& app, Arguments& arguments);

/// A loader that has read the file of the root folder, or that of the option; never null. The host
/// of the root folder must be installed.
std::shared_ptr<YGEventLoader> loadEvents(const Arguments& arguments,
                                          DiagnosticsSink* sink = nullptr);

}  // namespace yg::tool
