// SPDX-License-Identifier: MIT
//
// How text looks to people who read on a terminal: its colours and its width.
#pragma once

#include <cstddef>
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
