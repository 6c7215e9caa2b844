// SPDX-License-Identifier: MIT
//
// Fonts by name, and a font shrunk until a text fits a width.
#include <limits>

#include "YGConfigManager/graphics/FontServices.h"
#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/palette/YGPaletteLoad.h"

namespace yg {

namespace {

/// How much wider than its text a width has to be.
constexpr double slack = 1;

/// The number without its fraction, the nearest bound when it is too large.
std::int32_t truncated(double size) {
    using Limits = std::numeric_limits<std::int32_t>;
    return size < Limits::max() ? static_cast<std::int32_t>(size) : Limits::max();
}

/// As fontWithName, but throws std::bad_alloc.
Font fontOrSystem(OptionalText face, double size) {
    FontServices& services = FontServices::shared();
    if (auto font = face ? services.named(*face, size) : std::nullopt)
        return *std::move(font);
    return services.system(size);
}

Font fixed(const Font& font, OptionalText stringValue, double width) {
    const std::int32_t size = truncated(font.pointSize());
    if (size <= 0)
        return font;
    const auto candidate = [&](std::int32_t points) {
        return fontOrSystem(font.faceName(), points);
    };
    const auto fits = [&](const Font& tried) {
        return width > FontServices::widthOf(tried, stringValue) + slack;
    };
    Font whole = candidate(size);
    if (size == 1 || fits(whole))
        return whole;

    // A text only gets wider with the size, so halving the range finds the size at which counting
    // down point by point would stop. `small` fits, or is 1; `large` does not fit.
    std::int32_t small = 1;
    std::int32_t large = size;
    while (large - small > 1) {
        const std::int32_t middle = small + (large - small) / 2;
        (fits(candidate(middle)) ? small : large) = middle;
    }
    return candidate(small);
}

}  // namespace

Font YGPaletteLoad::fontWithName(OptionalText face, double size) {
    if (auto font = face ? Font::named(*face, size) : std::nullopt)
        return *std::move(font);
    return Font::system(size);
}

Font YGPaletteLoad::fixFontWithFont(const Font& font, OptionalText stringValue, double width) {
    return guarded(
        "fit font", [&] { return fixed(font, stringValue, width); }, font);
}

}  // namespace yg
