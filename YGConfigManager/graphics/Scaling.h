// SPDX-License-Identifier: MIT
//
// Bilinear scaling of pixels whose colours are not multiplied with their alpha.
#pragma once

#include "YGConfigManager/graphics/ImageFormats.h"
#include "YGConfigManager/graphics/PixelBuffer.h"

namespace yg {

/// Fills `target` with all of `source`. Each pixel is made of the four whose centres surround its
/// own, the edge ones standing for what lies outside. Alpha is their weighted mean; colour is their
/// mean weighted by alpha too, so that transparent pixels lend it nothing and pixels of one colour
/// keep it exactly. Below half the size, pixels between are skipped: it is meant to be quick.
/// Takes no memory of its own.
void scaleBilinear(const PixelView& source, PixelBuffer& target);

}  // namespace yg
