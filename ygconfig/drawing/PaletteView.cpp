// SPDX-License-Identifier: MIT
#include "ygconfig/drawing/PaletteView.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <numeric>
#include <utility>

#include "ygconfig/drawing/Details.h"
#include "ygconfig/drawing/Display.h"

namespace yg::tool {

namespace {

constexpr std::string_view themeNames[] = {"light", "dark"};
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

/// How wide columns are whose texts want so much: together not more than there is. Of what narrow
/// columns leave the wide ones have equal parts.
template <std::size_t count>
std::array<std::size_t, count> sharedAmong(std::array<std::size_t, count> wanted,
                                           std::size_t columns) {
    std::array<std::size_t, count> order{};
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::sort(order, {}, [&](std::size_t at) { return wanted[at]; });
    std::size_t left = columns;
    for (std::size_t i = 0; i < count; ++i) {
        std::size_t& width = wanted[order[i]];
        width = std::min(width, left / (count - i));
        left -= width;
    }
    return wanted;
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
        Row row{paint_(Tone::page, quotedIfEmpty(label)), {}};
        for (std::size_t theme = 0; theme < themes; ++theme) {
            if (palettes_[theme])
                row.cells[theme] = cellOf(theme, label, ((*palettes_[theme]).*map)().find(label));
        }
        rows.push_back(std::move(row));
    }
    return lines(title, rows);
}

/// A heading with the names of the themes, and the rows in columns. What is wider than its column
/// is folded.
std::string PaletteView::lines(std::string_view title, const std::vector<Row>& rows) const {
    Row heading{paint_(Tone::heading, title) + "  " + std::to_string(rows.size()), {}};
    for (std::size_t theme = 0; theme < themes; ++theme) {
        heading.cells[theme] = std::string(themeNames[theme]);
        if (!palettes_[theme])
            heading.cells[theme] += missing(" (not loaded)");
    }
    using Widths = std::array<std::size_t, themes + 1>;
    Widths widths{};
    const auto measure = [&](const Row& row) {
        widths[0] = std::max(widths[0], shownWidth(row.label));
        for (std::size_t theme = 0; theme < themes; ++theme)
            widths[theme + 1] = std::max(widths[theme + 1], shownWidth(row.cells[theme]));
    };
    measure(heading);
    for (const Row& row : rows)
        measure(row);
    const std::size_t gaps = themes * gap;
    widths = sharedAmong(widths, paint_.columns() - std::min(paint_.columns(), gaps));

    const auto add = [&](std::string& text, const Row& row) {
        std::array<std::vector<std::string>, themes + 1> parts;
        parts[0] = folded(row.label, widths[0]);
        for (std::size_t theme = 0; theme < themes; ++theme)
            parts[theme + 1] = folded(row.cells[theme], widths[theme + 1]);
        std::size_t height = 0;
        for (const std::vector<std::string>& each : parts)
            height = std::max(height, each.size());
        for (std::size_t at = 0; at < height; ++at) {
            std::size_t blanks = 0;  // before the next text
            for (std::size_t column = 0; column < parts.size(); ++column) {
                const std::string part = at < parts[column].size() ? parts[column][at] : "";
                if (!part.empty())
                    text.append(std::exchange(blanks, 0), ' ') += part;
                const std::size_t width = shownWidth(part);
                blanks += std::max(widths[column], width) - width + gap;
            }
            text += '\n';
        }
    };
    std::string text;
    add(text, heading);
    if (!rows.empty())
        text += '\n';
    for (const Row& row : rows)
        add(text, row);
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
