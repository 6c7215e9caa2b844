// SPDX-License-Identifier: MIT
//
// The contrast of colours by WCAG 2: relative luminance and contrast ratio. Internal. Any thread
// may call.
#pragma once

#include "YGConfigManager/graphics/Color.h"

namespace yg {

/// A colour drawn over another one. The alpha of the answer is 1 when that of the lower one is.
Color drawnOver(const Color& upper, const Color& lower);

/// From 0 for black to 1 for white. The alpha has no say.
double relativeLuminance(const Color& color);

/// From 1 for colours of the same luminance to 21 for black and white, in whatever order. The
/// alphas have no say.
double contrastRatio(const Color& one, const Color& other);

}  // namespace yg
