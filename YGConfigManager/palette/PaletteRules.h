// SPDX-License-Identifier: MIT
//
// What diagnostics can say of palette files, beside the rules that all formats share.
#pragma once

#include "YGConfigManager/diagnostics/DiagnosticsSink.h"

namespace yg::rules {

// Files and sections.
inline constexpr Rule noPalettePath{
    "no-palette-path", Handling::unresolved,
    "The host has no path for the palette of this style; 0 is the light one, 1 the dark one."};
inline constexpr Rule paletteRootName{
    "palette-root-name", Handling::dropped,
    "The root of a palette is named \"ROOT\"; nothing of this file is read."};
inline constexpr Rule unknownPaletteSection{
    "unknown-palette-section", Handling::dropped,
    "ROOT holds SWPALETTE, which holds COLORES, FONTS, BITMAPS and APP_MAP, which holds COLORES "
    "and FONTS; nothing else is read."};
inline constexpr Rule secondPaletteSection{"second-palette-section", Handling::dropped,
                                           "Of several sections only the first is read."};
inline constexpr Rule noImageFolder{"no-image-folder", Handling::unresolved,
                                    "The host has no folder for images, so none is loaded."};

// Entries.
inline constexpr Rule paletteEntryWithoutName{"palette-entry-without-name", Handling::dropped,
                                              "A colour, a font or an image needs a NAME."};
inline constexpr Rule unreachablePaletteName{
    "unreachable-palette-name", Handling::dropped,
    "A colour or font whose name is empty is never found: an empty VALUE means none."};
inline constexpr Rule duplicatePaletteName{
    "duplicate-palette-name", Handling::replaced,
    "A later entry of the same NAME replaces the earlier one of its section."};
inline constexpr Rule incompletePaletteKey{
    "incomplete-palette-key", Handling::dropped,
    "A key needs the attributes KEY and VALUE; the one named here is missing."};
inline constexpr Rule duplicatePaletteKey{
    "duplicate-palette-key", Handling::replaced,
    "A later entry of the same KEY replaces the earlier one of its section."};
inline constexpr Rule contentInPaletteEntry{"content-in-palette-entry", Handling::dropped,
                                            "What stands inside an entry is not read."};

// Colours.
inline constexpr Rule missingColorComponent{
    "missing-color-component", Handling::defaulted,
    "A colour needs R, G and B; the one named here is missing and reads as 0."};
inline constexpr Rule colorComponentOutOfRange{
    "color-component-out-of-range", Handling::defaulted,
    "R, G and B go from 0 to 255; the nearest of these counts."};
inline constexpr Rule alphaOutOfRange{
    "alpha-out-of-range", Handling::defaulted,
    "A goes from 0 to 1, not to 255; the nearest of these counts."};
inline constexpr Rule unknownPaletteColor{
    "unknown-palette-color", Handling::unresolved,
    "The palette has no colour of this name; the key shows red."};

// Fonts.
inline constexpr Rule fontWithoutSize{
    "font-without-size", Handling::defaulted,
    "A font needs a HEIGHT above 0; without one it has the default size, 12 points."};
inline constexpr Rule unknownFontFace{
    "unknown-font-face", Handling::unresolved,
    "No installed face has this name; the system font of the same size stands in."};
inline constexpr Rule unknownPaletteFont{
    "unknown-palette-font", Handling::unresolved,
    "The palette has no font of this name; the key shows the system font of 12 points."};

// Images.
inline constexpr Rule imageWithoutPath{"image-without-path", Handling::dropped,
                                       "An image needs a PATH."};
inline constexpr Rule imageOutsideFolder{
    "image-outside-folder", Handling::unresolved,
    "The path leads out of the image folder; what it names is read all the same."};
inline constexpr Rule unreadableImage{
    "unreadable-image", Handling::unresolved,
    "The file is missing, damaged, too large, or neither PNG nor JPEG, so its name has no image."};
inline constexpr Rule tooManyImagePixels{
    "too-many-image-pixels", Handling::dropped,
    "The images before this one have 64 Mi pixels together or more, damaged ones too, so it is not "
    "loaded."};
inline constexpr Rule tooManyImageBytes{
    "too-many-image-bytes", Handling::dropped,
    "The image files before this one have 256 MiB together or more, so it is not loaded."};

}  // namespace yg::rules
