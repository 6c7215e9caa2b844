// SPDX-License-Identifier: MIT
//
// What an inspection measures in palettes. Plain values.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "YGConfigManager/export.h"
#include "YGConfigManager/graphics/Image.h"
#include "YGConfigManager/inspection/RootFinding.h"

namespace yg {

/// The contrast of a pair of contrast.json in one palette. Colours are named by their keys.
struct ContrastPair {
    std::string palette;              ///< the file below the root
    std::string text;                 ///< in front
    std::string ground;               ///< what the text stands on
    std::optional<std::string> over;  ///< below the ground
    double minimum = 1;               ///< the least ratio that is enough
    double ratio = 1;                 ///< by WCAG 2, from 1 to 21
    std::string ratioText;            ///< "4.52:1", rounded down
    bool isEnough = false;            ///< not below the minimum
    RootPlace place;                  ///< of the pair, without a message
};

/// How many square pieces an image seems to have side by side; 1 unless its width in pixels is a
/// multiple of its height.
YG_EXPORT std::size_t squarePieces(const Image& image);

}  // namespace yg
