// SPDX-License-Identifier: MIT
//
// Slips in definitions. Internal. Throws std::bad_alloc.
#pragma once

#include <vector>

#include "YGConfigManager/inspection/Causes.h"

namespace yg {

/// Of a definition that nothing uses, while a name that is nearly its own does not exist: one slip,
/// in the definition where that name is used several times. Adds a finding there, which is the
/// cause of the others.
void joinSlips(std::vector<Found>& found, CauseIndexes& causes, Suggestions& suggestions);

}  // namespace yg
