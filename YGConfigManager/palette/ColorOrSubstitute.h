// SPDX-License-Identifier: MIT
//
// What a palette stores when the platform answers no colour. Internal.
#pragma once

#include <cstdint>
#include <optional>

#include "YGConfigManager/graphics/Color.h"

namespace yg {

/// The colour, or what replaces one that the platform does not have: black in the light style,
/// 0, and white in any other.
inline Color colorOrSubstitute(const std::optional<Color>& color, std::int8_t style) {
    if (color)
        return *color;
    // White has components far above 1 there, which are clamped.
    return style != 0 ? Color::sRGB(255, 255, 255, 1).value_or(Color{1, 1, 1, 1})
                      : Color::sRGB(0, 0, 0, 1).value_or(Color{0, 0, 0, 1});
}

}  // namespace yg
