// SPDX-License-Identifier: MIT
//
// A colour as the palettes hold it. A plain value: any thread may use its own.
#pragma once

#include <optional>

#include "YGConfigManager/export.h"

namespace yg {

/// A colour in the sRGB space, its alpha not multiplied into the others. Made by sRGB(), every
/// component lies between 0 and 1.
struct YG_EXPORT Color {
    double red = 0;    ///< from 0 to 1
    double green = 0;  ///< from 0 to 1
    double blue = 0;   ///< from 0 to 1
    double alpha = 1;  ///< how opaque, from 0 to 1

    /// The colour of these components, each moved into 0 to 1: what lies below becomes 0, what lies
    /// above 1, infinities too, and what is not a number 0. None would mean that the platform has
    /// no such colour; this one has them all, so callers' substitutes are never needed here.
    static std::optional<Color> sRGB(double red, double green, double blue, double alpha);

    /// Pure opaque red, which marks a colour that is missing.
    static Color redColor();

    /// Colours are equal when their components are.
    friend bool operator==(const Color&, const Color&) = default;
};

}  // namespace yg
