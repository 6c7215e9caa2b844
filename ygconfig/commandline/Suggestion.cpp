// SPDX-License-Identifier: MIT
#include "ygconfig/commandline/Suggestion.h"

#include "YGConfigManager/text/Nearest.h"

#include "ygconfig/drawing/Display.h"

namespace yg::tool {

std::string suggestion(std::string_view word, std::span<const std::string> known) {
    const std::string meant = text::nearest(word, known);
    return meant.empty() ? "" : "; did you mean '" + printable(meant) + "'?";
}

}  // namespace yg::tool
