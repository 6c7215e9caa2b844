// SPDX-License-Identifier: MIT
#include "ygconfig/drawing/PaletteView.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>

#include "ygconfig/drawing/Details.h"
#include "ygconfig/drawing/Display.h"

namespace yg::tool {

namespace {

constexpr std::string_view themeNames[] = {"light", "dark"};
/// A label that is wider pushes its cells to the right.
constexpr std::size_t widestLabel = 40;
/// A cell that is wider pushes the one beside it.
constexpr std::size_t widestCell = 80;
constexpr std::size_t gap = 2;

int levelOf(double component) {
    return static_cast<int>(std::lround(component * 255));
}

std::string numberText(double number) {
    char digits[32];
    const auto end = std::to_chars(digits, digits + sizeof digits, number);
    return {digits, end.ptr};
}

std::string hexText(const Color& color) {
    char text[32];
    std::snprintf(text, sizeof text, "#%02X%02X%02X", levelOf(color.red), levelOf(color.green),
                  levelOf(color.blue));
    std::string shown = text;
    if (color.alpha < 1) {
        std::snprintf(text, sizeof text, " %.3g%%", color.alpha * 100);
        shown += text;
    }
    return shown;
}

std::string fontText(const Font& font) {
    return printable(font.faceName()) + ' ' + numberText(font.pointSize());
}

std::string imageText(const Image& image) {
    const std::string points = numberText(image.width()) + "×" + numberText(image.height());
    const std::string pixels =
        std::to_string(image.pixelWidth()) + "×" + std::to_string(image.pixelHeight());
    return points == pixels ? points : points + " of " + pixels + " pixels";
}

/// The columns that a text takes on a terminal, what switches its colours not counted.
std::size_t shownWidth(std::string_view text) {
    std::string plain;
    while (!text.empty()) {
        const std::size_t escape = std::min(text.find('\x1b'), text.size());
        plain += text.substr(0, escape);
        text.remove_prefix(escape);
        text.remove_prefix(std::min(text.find('m'), text.size()));
        if (!text.empty())
            text.remove_prefix(1);
    }
    return displayWidth(plain);
}

void pad(std::string& line, std::size_t taken, std::size_t width) {
    line.append(std::max(width, taken) - taken + gap, ' ');
}

}  // namespace

std::string PaletteView::palettes() const {
    std::string text =
        table("Colours", &YGPaletteLoad::customColors,
              [&](std::size_t theme, const std::string&, const Color* color) {
                  return color ? swatch(*color, theme) + hexText(*color) : missing("none");
              });
    text += '\n' + table("Colour keys", &YGPaletteLoad::keyColorNames,
                         [&](std::size_t theme, const std::string& key, const std::string* name) {
                             const YGPaletteLoad& palette = *palettes_[theme];
                             const std::string shown = swatch(palette.getCustomColor(key), theme);
                             if (!name)
                                 return shown + missing("red: no such key");
                             if (name->empty() || !palette.customColors().contains(*name))
                                 return shown + missing("red: no colour " + quotedIfEmpty(*name));
                             return shown + printable(*name);
                         });
    text += '\n' + table("Fonts", &YGPaletteLoad::customFonts,
                         [&](std::size_t, const std::string&, const Font* font) {
                             return font ? fontText(*font) : missing("none");
                         });
    text += '\n' + table("Font keys", &YGPaletteLoad::keyFontNames,
                         [&](std::size_t theme, const std::string&, const std::string* name) {
                             const YGPaletteLoad& palette = *palettes_[theme];
                             if (!name)
                                 return missing("system font: no such key");
                             if (name->empty() || !palette.customFonts().contains(*name))
                                 return missing("system font: no font " + quotedIfEmpty(*name));
                             return printable(*name);
                         });
    text += '\n' + table("Images", &YGPaletteLoad::customImages,
                         [&](std::size_t, const std::string&, const Image* image) {
                             return image ? imageText(*image) : missing("none");
                         });
    return text;
}

/// A row for each entry of the map in either palette, in the order of the light one.
template <class Value, class CellOf>
std::string PaletteView::table(std::string_view title,
                               const RecordMap<Value>& (YGPaletteLoad::*map)() const,
                               CellOf cellOf) const {
    RecordMap<bool> labels;
    for (const YGPaletteLoad* palette : palettes_) {
        if (!palette)
            continue;
        for (const auto& [key, value] : (palette->*map)())
            labels.set(key, true);
    }
    std::vector<Row> rows;
    for (const auto& [label, isListed] : labels) {
        Row row{quotedIfEmpty(label), {}};
        for (std::size_t theme = 0; theme < themes; ++theme) {
            if (palettes_[theme])
                row.cells[theme] = cellOf(theme, label, ((*palettes_[theme]).*map)().find(label));
        }
        rows.push_back(std::move(row));
    }
    return lines(title, rows);
}

/// A heading with the names of the themes, and the rows in columns.
std::string PaletteView::lines(std::string_view title, const std::vector<Row>& rows) const {
    const std::string heading = std::string(title) + "  " + std::to_string(rows.size());
    std::size_t labelWidth = displayWidth(heading);
    std::size_t cellWidth = 0;
    for (const Row& row : rows) {
        const std::size_t width = displayWidth(row.label);
        if (width <= widestLabel)
            labelWidth = std::max(labelWidth, width);
        const std::size_t cell = shownWidth(row.cells.front());
        if (cell <= widestCell)
            cellWidth = std::max(cellWidth, cell);
    }
    Columns names;
    for (std::size_t theme = 0; theme < themes; ++theme) {
        names[theme] = std::string(themeNames[theme]);
        if (!palettes_[theme])
            names[theme] += missing(" (not loaded)");
        if (theme == 0)
            cellWidth = std::max(cellWidth, shownWidth(names[theme]));
    }

    const auto line = [&](const std::string& label, std::size_t width, const Columns& cells) {
        std::string text = label;
        pad(text, width, labelWidth);
        text += cells[0];
        if (cells[1].empty())
            return text + '\n';
        pad(text, shownWidth(cells[0]), cellWidth);
        return text + cells[1] + '\n';
    };
    std::string text = line(paint_(Tone::heading, title) + heading.substr(title.size()),
                            displayWidth(heading), names);
    if (!rows.empty())
        text += '\n';
    for (const Row& row : rows)
        text += line(paint_(Tone::page, row.label), displayWidth(row.label), row.cells);
    return text;
}

/// The colour as it looks on white in the light theme, on black in the dark one; "" without
/// colours.
std::string PaletteView::swatch(const Color& color, std::size_t theme) const {
    const double ground = theme == 0 ? 1 : 0;
    const auto over = [&](double component) {
        return levelOf(component * color.alpha + ground * (1 - color.alpha));
    };
    const std::string shown = paint_.swatch(over(color.red), over(color.green), over(color.blue));
    return shown.empty() ? "" : shown + ' ';
}

std::string PaletteView::missing(std::string_view what) const {
    return paint_(Tone::mark, what);
}

}  // namespace yg::tool
