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

/// The findings, each below its cause where another one is its cause:
/// - a name that does not exist because its definition was dropped, has no name, a slip or blanks
///   in it, or because no file that could define it can be read; a name that nothing uses because
///   the files that could use it cannot be read, or have a slip in it;
/// - what an element or an object lacks because it is there under a name that is not read;
/// - what other files of the kind have, and this one drops;
/// - a page that cannot be built because groups or the wildcards of host.json are not there.
std::vector<Cause> withConsequences(std::vector<Found> found, const Loaded& loaded,
                                    Suggestions& suggestions);

}  // namespace yg
