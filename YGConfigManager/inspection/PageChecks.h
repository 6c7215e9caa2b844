// SPDX-License-Identifier: MIT
//
// The parts of checkLayout(). Internal. Throws std::bad_alloc.
#pragma once

#include "YGConfigManager/inspection/Gathering.h"
#include "YGConfigManager/inspection/Loaded.h"

namespace yg {

/// References within a page, and what may stand once on it.
void checkPages(const Loaded& loaded, Gathering& findings);

/// Sizes and shares of panels.
void checkPanelSizes(const Loaded& loaded, Gathering& findings);

/// Names of pages, templates, groups, members, reuse panels and wildcards.
void checkLayoutNames(const Loaded& loaded, Gathering& findings);

}  // namespace yg
