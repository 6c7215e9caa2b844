// SPDX-License-Identifier: MIT
//
// The palettes.
#include "YGConfigManager/formats/Formats.h"
#include "YGConfigManager/palette/PaletteAttributes.h"

namespace yg {

namespace {

constexpr auto colorRows = rowsOf(attributesOf<ColorEntry>);
constexpr ValueInfo colorValues[] = {notEmpty("NAME")};
constexpr const Rule* colorRules[] = {
    &"palette-entry-without-name"_rule,
    &"unreachable-palette-name"_rule,
    &"duplicate-palette-name"_rule,
};
constexpr ElementInfo color = {
    .id = "color",
    .usualName = "COLOR",
    .sentence = "A colour.",
    .attributes = colorRows,
    .values = colorValues,
    .rules = colorRules,
};

constexpr auto fontRows = rowsOf(attributesOf<FontEntry>);
constexpr ValueInfo fontValues[] = {
    notEmpty("NAME"),
    {"HEIGHT", "minExclusive", "0", "Above 0."},
};
constexpr const Rule* fontRules[] = {
    &"palette-entry-without-name"_rule, &"unreachable-palette-name"_rule,
    &"duplicate-palette-name"_rule,     &"font-without-size"_rule,
    &"unknown-font-face"_rule,
};
constexpr ElementInfo font = {
    .id = "font",
    .usualName = "FONT",
    .sentence = "A font.",
    .attributes = fontRows,
    .values = fontValues,
    .rules = fontRules,
};

constexpr auto imageRows = rowsOf(attributesOf<ImageEntry>);
constexpr const Rule* imageRules[] = {
    &"palette-entry-without-name"_rule, &"duplicate-palette-name"_rule,
    &"unreadable-image"_rule,           &"image-outside-folder"_rule,
    &"too-many-image-pixels"_rule,      &"too-many-image-bytes"_rule,
};
constexpr ElementInfo image = {
    .id = "image",
    .usualName = "BITMAP",
    .sentence = "An image.",
    .attributes = imageRows,
    .rules = imageRules,
};

constexpr auto colorKeyRows = rowsOf(attributesOf<KeyEntry<Naming::color>>);
constexpr const Rule* colorKeyRules[] = {
    &"incomplete-palette-key"_rule,
    &"duplicate-palette-key"_rule,
    &"unknown-palette-color"_rule,
};
constexpr ElementInfo colorKey = {
    .id = "color-key",
    .usualName = "ITEM",
    .sentence = "The colour of a key.",
    .attributes = colorKeyRows,
    .rules = colorKeyRules,
};

constexpr auto fontKeyRows = rowsOf(attributesOf<KeyEntry<Naming::font>>);
constexpr const Rule* fontKeyRules[] = {
    &"incomplete-palette-key"_rule,
    &"duplicate-palette-key"_rule,
    &"unknown-palette-font"_rule,
};
constexpr ElementInfo fontKey = {
    .id = "font-key",
    .usualName = "ITEM",
    .sentence = "The font of a key.",
    .attributes = fontKeyRows,
    .rules = fontKeyRules,
};

// ---- Sections ----

constexpr const Rule* sectionRules[] = {&"second-palette-section"_rule};

constexpr const ElementInfo* colorsContent[] = {&color};
constexpr ElementInfo colors = {
    .id = "colors",
    .name = "COLORES",
    .sentence = "The colours by name. Spelt so.",
    .content = colorsContent,
    .rules = sectionRules,
};

constexpr const ElementInfo* fontsContent[] = {&font};
constexpr ElementInfo fonts = {
    .id = "fonts",
    .name = "FONTS",
    .sentence = "The fonts by name.",
    .content = fontsContent,
    .rules = sectionRules,
};

constexpr const ElementInfo* imagesContent[] = {&image};
constexpr const Rule* imagesRules[] = {&"second-palette-section"_rule, &"no-image-folder"_rule};
constexpr ElementInfo images = {
    .id = "images",
    .name = "BITMAPS",
    .sentence = "The images by name.",
    .content = imagesContent,
    .rules = imagesRules,
};

constexpr const ElementInfo* colorKeysContent[] = {&colorKey};
constexpr ElementInfo colorKeys = {
    .id = "color-keys",
    .name = "COLORES",
    .sentence = "The keys of colours.",
    .content = colorKeysContent,
    .rules = sectionRules,
};

constexpr const ElementInfo* fontKeysContent[] = {&fontKey};
constexpr ElementInfo fontKeys = {
    .id = "font-keys",
    .name = "FONTS",
    .sentence = "The keys of fonts.",
    .content = fontKeysContent,
    .rules = sectionRules,
};

constexpr const Rule* holderRules[] = {&"unknown-palette-section"_rule};
constexpr const ElementInfo* mapContent[] = {&colorKeys, &fontKeys};
constexpr ElementInfo map = {
    .id = "map",
    .name = "APP_MAP",
    .sentence = "Says which colour and which font each key has.",
    .content = mapContent,
    .rules = holderRules,
};

constexpr const ElementInfo* paletteContent[] = {&colors, &fonts, &images, &map};
constexpr ElementInfo palette = {
    .id = "palette",
    .name = "SWPALETTE",
    .sentence = "The sections, in any order. Of several of one name only the first is read.",
    .content = paletteContent,
    .rules = holderRules,
};

constexpr const ElementInfo* rootContent[] = {&palette};
constexpr const Rule* rootRules[] = {&"palette-root-name"_rule, &"unknown-palette-section"_rule};
constexpr ElementInfo root = {
    .id = "root",
    .name = "ROOT",
    .sentence = "The root.",
    .content = rootContent,
    .rules = rootRules,
};

constexpr FileInfo files[] = {
    {"user/palette_white.xml", "getStorageFilePath",
     "The light palette, style 0, if the user has one."},
    {"storage/palette_white.xml", "getStorageFilePath", "The light palette as shipped."},
    {"user/palette_black.xml", "getStorageFilePath",
     "The dark palette, style 1, if the user has one."},
    {"storage/palette_black.xml", "getStorageFilePath", "The dark palette as shipped."},
    {"images/", "getDefualtFolderPath", "The folder that the paths of images start from."},
};

constexpr std::string_view example = R"(<ROOT>
    <SWPALETTE>
        <COLORES>
            <COLOR NAME="window" R="245" G="247" B="250"/>
            <COLOR NAME="veil" R="255" G="255" B="255" A="0.72"/>
        </COLORES>
        <FONTS>
            <FONT NAME="text" HEIGHT="12" FACE="DejaVu Sans"/>
        </FONTS>
        <BITMAPS>
            <BITMAP NAME="search" PATH="white/search.png"/>
        </BITMAPS>
        <APP_MAP>
            <COLORES>
                <ITEM KEY="Window.background" VALUE="window"/>
            </COLORES>
            <FONTS>
                <ITEM KEY="Window.text" VALUE="text"/>
            </FONTS>
        </APP_MAP>
    </SWPALETTE>
</ROOT>
)";

constexpr std::string_view notes[] = {
    "Views ask for colours and fonts by key and for images by name. A key without a colour shows "
    "red; a key without a font, and a face that is not installed, give the system font.",
    "The style that the application asks for chooses the file: 0 is `palette_white.xml`, 1 is "
    "`palette_black.xml`; no other style has a file. Change both: a key that only one of them has "
    "loses "
    "its colour when the user changes the theme.",
};

}  // namespace

constexpr FormatInfo paletteFormat = {
    .id = "palette",
    .title = "Palettes",
    .sentence = "The colours, fonts and images of the light and of the dark theme.",
    .files = files,
    .root = root,
    .example = example,
    .notes = notes,
};

}  // namespace yg
