// SPDX-License-Identifier: MIT
#include "YGConfigManager/graphics/Color.h"

namespace yg {

namespace {

double clamped(double component) {
    // Written so that what is not a number ends at 0.
    if (!(component > 0))
        return 0;
    return component < 1 ? component : 1;
}

}  // namespace

std::optional<Color> Color::sRGB(double red, double green, double blue, double alpha) {
    return Color{clamped(red), clamped(green), clamped(blue), clamped(alpha)};
}

Color Color::redColor() {
    return {1, 0, 0, 1};
}

}  // namespace yg
