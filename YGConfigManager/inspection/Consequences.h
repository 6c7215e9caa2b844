// SPDX-License-Identifier: MIT
//
// One cause is one finding: what only follows from another finding is counted with that one.
// Internal. Throws std::bad_alloc.
#pragma once

#include <cstddef>
#include <vector>

#include "YGConfigManager/inspection/Gathering.h"
#include "YGConfigManager/inspection/Loaded.h"

namespace yg {

/// Takes out of the list what follows from others in it; the answer has the number of those for
/// each finding that is left.
std::vector<std::size_t> countConsequences(std::vector<Found>& found, const Loaded& loaded);

}  // namespace yg
