// SPDX-License-Identifier: MIT
#include "ygconfig/drawing/Paint.h"

namespace yg::tool {

namespace {

/// The terminal's code for a tone; empty for none.
std::string_view codeOf(Tone tone) {
    switch (tone) {
        case Tone::plain:
            return "";
        case Tone::heading:
            return "1;4";  // bold, underlined
        case Tone::page:
            return "1";  // bold
        case Tone::element:
            return "32";  // green
        case Tone::slot:
            return "35";  // magenta
        case Tone::reuse:
            return "36";  // cyan
        case Tone::mark:
            return "33";  // yellow
        case Tone::quiet:
            return "2";  // dim
    }
    return "";
}

}  // namespace

bool wantsColour(std::string_view when, bool isTerminal, const ColourVariables& variables) {
    if (when != "auto")
        return when == "always";
    const auto textOf = [](const char* value) { return std::string_view(value ? value : ""); };
    if (!textOf(variables.noColour).empty())
        return false;
    const std::string_view force = textOf(variables.forceColour);
    return (!force.empty() && force != "0") || (isTerminal && textOf(variables.term) != "dumb");
}

std::string Paint::operator()(Tone tone, std::string_view text) const {
    const std::string_view code = codeOf(tone);
    if (!colour_ || code.empty() || text.empty())
        return std::string(text);
    std::string painted = "\x1b[";
    painted += code;
    painted += 'm';
    painted += text;
    painted += "\x1b[0m";
    return painted;
}

std::string Paint::swatch(int red, int green, int blue) const {
    if (!colour_)
        return "";
    return "\x1b[48;2;" + std::to_string(red) + ';' + std::to_string(green) + ';' +
           std::to_string(blue) + "m    \x1b[0m";
}

}  // namespace yg::tool
