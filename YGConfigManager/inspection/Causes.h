// SPDX-License-Identifier: MIT
//
// Which finding is the cause of which. Internal. Throws std::bad_alloc.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "YGConfigManager/inspection/Suggestions.h"

namespace yg {

/// For each finding the index of its cause; absent for what has none among the findings. A cause
/// may have one itself.
using CauseIndexes = std::vector<std::optional<std::size_t>>;

CauseIndexes causesOf(const std::vector<Found>& found, const Loaded& loaded,
                      Suggestions& suggestions);

}  // namespace yg
