// SPDX-License-Identifier: MIT
//
// The fonts that these tests see, whatever the machine has: the build's own. Included by a source,
// it has its whole program see them.
#pragma once

#include "graphics/TestFonts.h"

namespace yg::testing {

/// Every character is as wide as it is high. It is the system font, too.
inline constexpr const char* squareFace = "YG Test Square";

/// Another face.
inline constexpr const char* latinFace = "YG Test Latin";

inline const bool seesTestFonts = (useTestFonts(), true);

}  // namespace yg::testing
