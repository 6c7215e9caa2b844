// SPDX-License-Identifier: MIT
//
// The attributes of palette files, in the order of the format. Internal.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <tuple>

#include "YGConfigManager/records/AttributeTable.h"

namespace yg {

/// The kind of default folder that the paths of images start from.
inline constexpr std::int64_t imageFolderKind = 4;

// The entries of the sections, as they are read; the texts live as long as the entry's tree.

/// A child of "COLORES", whatever its name, as for the others.
struct ColorEntry {
    float red = 0;
    float green = 0;
    float blue = 0;
    float alpha = 1;
    std::optional<std::string_view> name;
};

/// A child of "FONTS".
struct FontEntry {
    std::optional<std::string_view> name;
    float height = 0;
    std::optional<std::string_view> face;
};

/// A child of "BITMAPS".
struct ImageEntry {
    std::optional<std::string_view> name;
    std::optional<std::string_view> path;
};

/// A child of "COLORES" or "FONTS" in "APP_MAP": a key of a colour or of a font.
template <Naming named>
struct KeyEntry {
    std::optional<std::string_view> key;
    std::optional<std::string_view> value;
};

inline constexpr std::string_view ignoredEntry = "the entry is ignored";

template <>
struct Description<ColorEntry> {
    static constexpr std::tuple fields{
        Field{"red", &ColorEntry::red, &ColorEntry::red,
              AttributeInfo{.name = "R",
                            .kind = AttributeKind::decimal,
                            .sentence = "The share of red, from 0 to 255.",
                            .isExpected = true,
                            .least = 0,
                            .most = 255}},
        Field{"green", &ColorEntry::green, &ColorEntry::green,
              AttributeInfo{.name = "G",
                            .kind = AttributeKind::decimal,
                            .sentence = "The share of green, from 0 to 255.",
                            .isExpected = true,
                            .least = 0,
                            .most = 255}},
        Field{"blue", &ColorEntry::blue, &ColorEntry::blue,
              AttributeInfo{.name = "B",
                            .kind = AttributeKind::decimal,
                            .sentence = "The share of blue, from 0 to 255.",
                            .isExpected = true,
                            .least = 0,
                            .most = 255}},
        Field{"alpha", &ColorEntry::alpha, &ColorEntry::alpha,
              AttributeInfo{.name = "A",
                            .kind = AttributeKind::decimal,
                            .sentence = "The opacity, from 0 for transparent to 1 for opaque.",
                            .least = 0,
                            .most = 1,
                            .whenMissing = "1"}},
        Field{"customColors", &ColorEntry::name, &ColorEntry::name,
              AttributeInfo{.name = "NAME",
                            .sentence = "The name by which keys refer to the colour.",
                            .names = Naming::color,
                            .defines = true,
                            .isRequired = true,
                            .whenMissing = ignoredEntry}},
    };
};

template <>
struct Description<FontEntry> {
    static constexpr std::tuple fields{
        Field{"customFonts", &FontEntry::name, &FontEntry::name,
              AttributeInfo{.name = "NAME",
                            .sentence = "The name by which keys refer to the font.",
                            .names = Naming::font,
                            .defines = true,
                            .isRequired = true,
                            .whenMissing = ignoredEntry}},
        Field{"pointSize", &FontEntry::height, &FontEntry::height,
              AttributeInfo{.name = "HEIGHT",
                            .kind = AttributeKind::decimal,
                            .sentence = "The size in points, above 0.",
                            .isExpected = true,
                            .whenMissing = "12"}},
        Field{"faceName", &FontEntry::face, &FontEntry::face,
              AttributeInfo{.name = "FACE",
                            .sentence = "The name of an installed font face.",
                            .isExpected = true,
                            .whenMissing = "the system font"}},
    };
};

template <>
struct Description<ImageEntry> {
    static constexpr std::tuple fields{
        Field{"customImages", &ImageEntry::name, &ImageEntry::name,
              AttributeInfo{.name = "NAME",
                            .sentence = "The name by which the application asks for the image.",
                            .names = Naming::image,
                            .defines = true,
                            .isRequired = true,
                            .whenMissing = ignoredEntry}},
        Field{"customImages", &ImageEntry::path, &ImageEntry::path,
              AttributeInfo{.name = "PATH",
                            .sentence = "The PNG or JPEG file, from the image folder.",
                            .isExpected = true,
                            .whenMissing = "no image"}},
    };
};

template <Naming named>
struct Description<KeyEntry<named>> {
    using Entry = KeyEntry<named>;
    static constexpr bool isOfColor = named == Naming::color;
    static constexpr const char* map = isOfColor ? "keyColorNames" : "keyFontNames";
    static constexpr std::tuple fields{
        Field{map, &Entry::key, &Entry::key,
              AttributeInfo{.name = "KEY",
                            .sentence = "The key by which the application asks.",
                            .names = isOfColor ? Naming::colorKey : Naming::fontKey,
                            .defines = true,
                            .isRequired = true,
                            .whenMissing = ignoredEntry}},
        Field{map, &Entry::value, &Entry::value,
              AttributeInfo{.name = "VALUE",
                            .sentence = isOfColor ? "The colour that the key shows, by its NAME."
                                                  : "The font that the key shows, by its NAME.",
                            .names = named,
                            .isRequired = true,
                            .whenMissing = ignoredEntry}},
    };
};

}  // namespace yg
