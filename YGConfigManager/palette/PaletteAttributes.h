// SPDX-License-Identifier: MIT
//
// The attributes of palette files, row for row in the order of the format. Internal.
#pragma once

#include <optional>
#include <string_view>

#include "YGConfigManager/records/AttributeTable.h"

namespace yg {

// The entries of the sections, as they are read; the texts live as long as the entry's tree.

struct ColorEntry {
    float red = 0;  ///< 0 to 255, as green and blue
    float green = 0;
    float blue = 0;
    float alpha = 1;  ///< 0 to 1
    std::optional<std::string_view> name;
};

struct FontEntry {
    std::optional<std::string_view> name;
    float height = 0;
    std::optional<std::string_view> face;
};

struct ImageEntry {
    std::optional<std::string_view> name;
    std::optional<std::string_view> path;
};

struct KeyEntry {
    std::optional<std::string_view> key;
    std::optional<std::string_view> value;
};

/// A row of an entry, from the member that it fills.
template <auto member, class Entry>
constexpr AttributeRow<Entry> entryTextRow(std::string_view name, std::string_view field,
                                           std::string_view whenMissing) {
    return {name, field, AttributeKind::text, whenMissing,
            [](Entry& entry, std::string_view value) { entry.*member = value; }};
}

template <auto member, class Entry>
constexpr AttributeRow<Entry> entryNumberRow(std::string_view name, std::string_view field,
                                             std::string_view whenMissing) {
    return {
        name, field, AttributeKind::decimal, whenMissing,
        [](Entry& entry, std::string_view value) { entry.*member = text::leadingFloat(value); }};
}

/// A child of "COLORES", whatever its name.
inline constexpr AttributeRow<ColorEntry> colorAttributes[] = {
    entryNumberRow<&ColorEntry::red, ColorEntry>("R", "red", "0.0"),
    entryNumberRow<&ColorEntry::green, ColorEntry>("G", "green", "0.0"),
    entryNumberRow<&ColorEntry::blue, ColorEntry>("B", "blue", "0.0"),
    entryNumberRow<&ColorEntry::alpha, ColorEntry>("A", "alpha", "1.0"),
    entryTextRow<&ColorEntry::name, ColorEntry>("NAME", "customColors", "entry passed over"),
};

/// A child of "FONTS".
inline constexpr AttributeRow<FontEntry> fontAttributes[] = {
    entryTextRow<&FontEntry::name, FontEntry>("NAME", "customFonts", "entry passed over"),
    entryNumberRow<&FontEntry::height, FontEntry>("HEIGHT", "pointSize", "12.0"),
    entryTextRow<&FontEntry::face, FontEntry>("FACE", "faceName", "the system font"),
};

/// A child of "BITMAPS".
inline constexpr AttributeRow<ImageEntry> imageAttributes[] = {
    entryTextRow<&ImageEntry::name, ImageEntry>("NAME", "customImages", "entry passed over"),
    entryTextRow<&ImageEntry::path, ImageEntry>("PATH", "customImages", "no image"),
};

/// A child of "COLORES" or "FONTS" in "APP_MAP".
inline constexpr AttributeRow<KeyEntry> keyAttributes[] = {
    entryTextRow<&KeyEntry::key, KeyEntry>("KEY", "keyColorNames, keyFontNames",
                                           "entry passed over"),
    entryTextRow<&KeyEntry::value, KeyEntry>("VALUE", "keyColorNames, keyFontNames",
                                             "entry passed over"),
};

}  // namespace yg
