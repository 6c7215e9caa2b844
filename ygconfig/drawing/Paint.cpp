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
        case Tone::error:
            return "1;31";  // bold red
        case Tone::warning:
            return "1;33";  // bold yellow
        case Tone::info:
            return "1;36";  // bold cyan
    }
    return "";
}

}  // namespace

bool wantsColour(const ColourSetting& setting) {
    const auto text = [](const char* variable) {
        return std::string_view(variable ? variable : "");
    };
    if (setting.choice != "auto")
        return setting.choice == "always";
    if (!text(setting.noColour).empty())
        return false;
    const std::string_view force = text(setting.forceColour);
    if (!force.empty() && force != "0")
        return true;
    return setting.isTerminal && text(setting.term) != "dumb";
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
