// SPDX-License-Identifier: MIT
//
// The palettes of both themes as text for people: tables of colours, fonts, images and keys, with
// a column for each theme.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/palette/YGPaletteLoad.h"

#include "ygconfig/drawing/Paint.h"

namespace yg::tool {

/// Explains the words and signs of the tables; lines, each with its line feed.
inline constexpr std::string_view paletteLegend =
    "What the tables say, for the light theme and beside it for the dark one:\n"
    "  #RRGGBB 18%            a colour and how opaque it is, unless wholly\n"
    "  red: no colour NAME    the key names a colour that the palette does not have\n"
    "  system font: …         the same for a font; the key shows the system font of 12 points\n"
    "  no such key            the key is in the other palette only, with the same effect\n"
    "  80×20                  an image in points, with its pixels where they are others\n"
    "  none                   the name is in the other palette only, or cannot be loaded\n";

class PaletteView {
public:
    /// A palette that cannot be loaded is null. The loaders must outlive the view.
    PaletteView(const YGPaletteLoad* light, const YGPaletteLoad* dark, const Paint& paint)
        : palettes_{light, dark}, paint_(paint) {}

    /// Everything.
    std::string palettes() const;

private:
    static constexpr std::size_t themes = 2;
    using Columns = std::array<std::string, themes>;
    struct Row {
        std::string label;  ///< may have colours, as the cells may
        Columns cells;
    };

    template <class Value, class CellOf>
    std::string table(std::string_view title, const RecordMap<Value>& (YGPaletteLoad::*map)() const,
                      CellOf cellOf) const;
    std::string lines(std::string_view title, const std::vector<Row>& rows) const;
    std::string swatch(const Color& color, std::size_t theme) const;
    std::string missing(std::string_view what) const;

    const std::array<const YGPaletteLoad*, themes> palettes_;
    const Paint paint_;
};

}  // namespace yg::tool
