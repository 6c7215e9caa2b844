// SPDX-License-Identifier: MIT
//
// Colours for people who read on a terminal.
#pragma once

#include <string>
#include <string_view>

namespace yg::tool {

/// Whether output may have colours: on a terminal that is not "dumb", unless the environment
/// variable NO_COLOR has a value. The texts are those of NO_COLOR and TERM, null when not set.
bool wantsColour(bool isTerminal, const char* noColour, const char* term);

/// What a piece of text is, from which its colour follows.
enum class Tone { plain, heading, page, element, slot, reuse, mark, quiet };

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
