// SPDX-License-Identifier: MIT
//
// One cause is one finding: what only follows from another finding is counted with that one.
// Internal. Throws std::bad_alloc.
#pragma once

#include <vector>

#include "YGConfigManager/inspection/Gathering.h"
#include "YGConfigManager/inspection/Loaded.h"
#include "YGConfigManager/inspection/Suggestions.h"

namespace yg {

/// A finding with those that follow from it.
struct Cause {
    Found found;
    std::vector<Found> consequences = {};
};

/// The findings, each below its cause where another one is its cause: a name that does not exist
/// because its definition was dropped, has no name or a slip in it, or because no file that could
/// define it can be read; and a name that nothing uses because the files that could use it cannot
/// be read, or have a slip in it.
std::vector<Cause> withConsequences(std::vector<Found> found, const Loaded& loaded,
                                    Suggestions& suggestions);

}  // namespace yg
