// SPDX-License-Identifier: MIT
#include "ygconfig/commandline/Suggestion.h"

#include "YGConfigManager/text/Nearest.h"

#include "ygconfig/drawing/Display.h"

namespace yg::tool {

std::string suggestion(std::string_view word, std::span<const std::string> known) {
    const std::string meant(text::nearest(word, known));
    return meant.empty() ? "" : "; did you mean " + inQuotes(meant) + '?';
}

std::string inQuotes(std::string_view name) {
    return std::string("'").append(printable(name)).append("'");
}

std::string nearestOf(std::string_view name, std::span<const std::string> known) {
    const std::string meant(text::nearest(name, known));
    return meant.empty() ? "" : "; nearest: " + inQuotes(meant);
}

std::string nothingNamed(std::string_view kind, std::string_view name,
                         std::span<const std::string> known, std::string_view where) {
    std::string line = "ygconfig: no ";
    line.append(kind).append(" ").append(inQuotes(name)).append(where);
    return line.append(nearestOf(name, known));
}

}  // namespace yg::tool
