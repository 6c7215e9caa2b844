// SPDX-License-Identifier: MIT
//
// What no loader can see by itself: names between files, values that count but are not meant,
// files that are not what they should be. Each check reports to `findings`. Internal. Throws
// std::bad_alloc.
#pragma once

#include "YGConfigManager/inspection/Gathering.h"
#include "YGConfigManager/inspection/Loaded.h"
#include "YGConfigManager/inspection/StoredNames.h"

namespace yg {

void checkFiles(const Loaded& loaded, Gathering& findings);
void checkLayout(const Loaded& loaded, Gathering& findings);
void checkEvents(const Loaded& loaded, Gathering& findings);
void checkPalettes(const Loaded& loaded, Gathering& findings);
void checkServers(const Loaded& loaded, Gathering& findings);
void checkSettings(const Loaded& loaded, Gathering& findings);
void checkValues(const Loaded& loaded, Gathering& findings);

// What is checked of a delivery, too.

/// The addresses of all server entries that were loaded.
void checkServerAddresses(Gathering& findings);

/// The addresses of web pages or request URLs.
void checkAddresses(const StoredNames& names, Gathering& findings);

}  // namespace yg
