// SPDX-License-Identifier: MIT
//
// Colours for people who read on a terminal.
#pragma once

#include <string>
#include <string_view>

namespace yg::tool {

/// What decides on colours. The texts are those of environment variables, null when not set.
struct ColourSetting {
    std::string_view choice = "auto";  ///< "always", "never" or "auto"
    bool isTerminal = false;
    const char* noColour = nullptr;     ///< NO_COLOR
    const char* forceColour = nullptr;  ///< CLICOLOR_FORCE
    const char* term = nullptr;         ///< TERM
};

/// Whether output may have colours. With "auto" NO_COLOR refuses them when it has a value, then
/// CLICOLOR_FORCE asks for them when it has one other than "0"; otherwise a terminal that is not
/// "dumb" has them.
bool wantsColour(const ColourSetting& setting);

/// What a piece of text is, from which its colour follows.
enum class Tone { plain, heading, page, element, slot, reuse, mark, quiet, error, warning, info };

class Paint {
public:
    explicit Paint(bool colour) : colour_(colour) {}

    /// The text in the colour of its tone; as it stands without colours, and when it is empty.
    std::string operator()(Tone tone, std::string_view text) const;

    /// Four blanks on a ground of this colour, each component from 0 to 255, on terminals of 24-bit
    /// colour; "" without colours.
    std::string swatch(int red, int green, int blue) const;

private:
    bool colour_;
};

}  // namespace yg::tool
