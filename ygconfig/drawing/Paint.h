// SPDX-License-Identifier: MIT
//
// How text looks to people who read on a terminal: its colours and its width.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace yg::tool {

/// Environment variables that say something about colours; null when not set.
struct ColourVariables {
    const char* noColour = nullptr;     ///< NO_COLOR
    const char* forceColour = nullptr;  ///< CLICOLOR_FORCE
    const char* term = nullptr;         ///< TERM
};

/// Whether output has colours. `when` is the word of --color: "always", "never" or "auto". With
/// "auto", none when NO_COLOR has a value; otherwise when CLICOLOR_FORCE has one other than "0",
/// and on a terminal that is not "dumb".
bool wantsColour(std::string_view when, bool isTerminal, const ColourVariables& variables);

/// What a piece of text is, from which its colour follows.
enum class Tone { plain, heading, page, element, slot, reuse, mark, quiet };

/// How wide text is where nothing else is known.
inline constexpr std::size_t usualColumns = 80;

class Paint {
public:
    Paint(bool colour, std::size_t columns = usualColumns) : colour_(colour), columns_(columns) {}

    /// How wide lines may be.
    std::size_t columns() const { return columns_; }

    /// The text in the colour of its tone; as it stands without colours, and when it is empty.
    std::string operator()(Tone tone, std::string_view text) const;

    /// Four blanks on a ground of this colour, each component from 0 to 255, on terminals of 24-bit
    /// colour; "" without colours.
    std::string swatch(int red, int green, int blue) const;

private:
    bool colour_;
    std::size_t columns_;
};

}  // namespace yg::tool
