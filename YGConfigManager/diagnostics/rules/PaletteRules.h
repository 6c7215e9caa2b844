// SPDX-License-Identifier: MIT
//
// Rules of palettes. Internal: a part of RuleTable.h.
#pragma once

#include "YGConfigManager/diagnostics/Rule.h"

namespace yg {

inline constexpr Rule paletteRules[] = {
    // Files and sections.
    {"no-palette-path", Handling::unresolved, Severity::warning,
     "The host has no path for the palette of this style; 0 is the light one, 1 the dark one.",
     "Style 0 is the light palette, palette_white.xml, style 1 the dark one, palette_black.xml. "
     "The host has no other."},
    {"palette-root-name", Handling::dropped, Severity::error,
     "The root of a palette is named \"ROOT\"; nothing of this file is read.",
     "The whole file is skipped. Name the root \"ROOT\".", "storage/palette_white.xml",
     R"(<PALETTE>
    <SWPALETTE/>
</PALETTE>)",
     R"(<ROOT>
    <SWPALETTE>
        
    </SWPALETTE>
</ROOT>)"},
    {"unknown-palette-section", Handling::dropped, Severity::error,
     "ROOT holds SWPALETTE, which holds COLORES, FONTS, BITMAPS and APP_MAP, which holds COLORES "
     "and FONTS; nothing else is read.",
     "Sections are COLORES, FONTS, BITMAPS and APP_MAP in SWPALETTE, and COLORES and FONTS in "
     "APP_MAP, in capital letters. Images have no keys. Check the spelling and the place.",
     "storage/palette_white.xml",
     R"(<ROOT>
    <SWPALETTE>
        <COLORS/>
    </SWPALETTE>
</ROOT>)",
     R"(<ROOT>
    <SWPALETTE>
        <COLORES/>
    </SWPALETTE>
</ROOT>)"},
    {"second-palette-section", Handling::dropped, Severity::error,
     "Of several sections only the first is read.", "Put all entries into the first section.",
     "storage/palette_white.xml",
     R"(<ROOT>
    <SWPALETTE>
        <COLORES><C NAME="a" R="0" G="0" B="0"/></COLORES><COLORES><C NAME="b" R="0" G="0" B="0"/></COLORES>
    </SWPALETTE>
</ROOT>)",
     R"(<ROOT>
    <SWPALETTE>
        <COLORES><C NAME="a" R="0" G="0" B="0"/><C NAME="b" R="0" G="0" B="0"/></COLORES>
    </SWPALETTE>
</ROOT>)"},
    {"no-image-folder", Handling::unresolved, Severity::warning,
     "The host has no folder for images, so none is loaded.",
     "The host answers no folder for images."},
    // Entries.
    {"palette-entry-without-name", Handling::dropped, Severity::error,
     "A colour, a font or an image needs a NAME.",
     "Give it the name that keys and the application ask for.", "storage/palette_white.xml",
     R"(<ROOT>
    <SWPALETTE>
        <COLORES><C R="255" G="0" B="0"/></COLORES>
    </SWPALETTE>
</ROOT>)",
     R"(<ROOT>
    <SWPALETTE>
        <COLORES><C NAME="red" R="255" G="0" B="0"/></COLORES>
    </SWPALETTE>
</ROOT>)"},
    {"unreachable-palette-name", Handling::unresolved, Severity::error,
     "A colour or font whose name is empty is never found: an empty VALUE means none.",
     "Nothing can ask for it. Give it a name.", "storage/palette_white.xml",
     R"(<ROOT>
    <SWPALETTE>
        <COLORES><C NAME="" R="255" G="0" B="0"/></COLORES>
    </SWPALETTE>
</ROOT>)",
     R"(<ROOT>
    <SWPALETTE>
        <COLORES><C NAME="red" R="255" G="0" B="0"/></COLORES>
    </SWPALETTE>
</ROOT>)"},
    {"duplicate-palette-name", Handling::replaced, Severity::error,
     "A later entry of the same NAME replaces the earlier one of its section.",
     "The earlier entry is lost. Rename one of them or delete the earlier one.",
     "storage/palette_white.xml",
     R"(<ROOT>
    <SWPALETTE>
        <COLORES><C NAME="a" R="0" G="0" B="0"/><C NAME="a" R="9" G="9" B="9"/></COLORES>
    </SWPALETTE>
</ROOT>)",
     R"(<ROOT>
    <SWPALETTE>
        <COLORES><C NAME="a" R="0" G="0" B="0"/><C NAME="b" R="9" G="9" B="9"/></COLORES>
    </SWPALETTE>
</ROOT>)"},
    {"incomplete-palette-key", Handling::dropped, Severity::error,
     "A key needs the attributes KEY and VALUE; the one named here is missing.",
     "A key says which colour or font the application uses for something: KEY is what it asks for, "
     "VALUE is the name in the palette. Add the missing attribute.",
     "storage/palette_white.xml",
     R"(<ROOT>
    <SWPALETTE>
        <APP_MAP><COLORES><I KEY="Grid.up"/></COLORES></APP_MAP>
    </SWPALETTE>
</ROOT>)",
     R"(<ROOT>
    <SWPALETTE>
        <COLORES><C NAME="red" R="255" G="0" B="0"/></COLORES><APP_MAP><COLORES><I KEY="Grid.up" VALUE="red"/></COLORES></APP_MAP>
    </SWPALETTE>
</ROOT>)"},
    {"duplicate-palette-key", Handling::replaced, Severity::error,
     "A later entry of the same KEY replaces the earlier one of its section.",
     "The earlier entry is lost. Delete one of them.", "storage/palette_white.xml",
     R"(<ROOT>
    <SWPALETTE>
        <COLORES><C NAME="a" R="0" G="0" B="0"/></COLORES><APP_MAP><COLORES><I KEY="k" VALUE="b"/><I KEY="k" VALUE="a"/></COLORES></APP_MAP>
    </SWPALETTE>
</ROOT>)",
     R"(<ROOT>
    <SWPALETTE>
        <COLORES><C NAME="a" R="0" G="0" B="0"/></COLORES><APP_MAP><COLORES><I KEY="k" VALUE="a"/></COLORES></APP_MAP>
    </SWPALETTE>
</ROOT>)"},
    // Colours.
    {"unknown-palette-color", Handling::unresolved, Severity::error,
     "The palette has no colour of this name; the key shows red.",
     "Red marks what is missing. Add the colour, or name one that is there.",
     "storage/palette_white.xml",
     R"(<ROOT>
    <SWPALETTE>
        <COLORES><C NAME="red" R="255" G="0" B="0"/></COLORES><APP_MAP><COLORES><I KEY="Grid.up" VALUE="rde"/></COLORES></APP_MAP>
    </SWPALETTE>
</ROOT>)",
     R"(<ROOT>
    <SWPALETTE>
        <COLORES><C NAME="red" R="255" G="0" B="0"/></COLORES><APP_MAP><COLORES><I KEY="Grid.up" VALUE="red"/></COLORES></APP_MAP>
    </SWPALETTE>
</ROOT>)"},
    // Fonts.
    {"font-without-size", Handling::defaulted, Severity::warning,
     "The HEIGHT of a font is above 0; with any other it has the default size, 12 points.",
     "HEIGHT is the size in points. Write it down.", "storage/palette_white.xml",
     R"(<ROOT>
    <SWPALETTE>
        <FONTS><F NAME="f" HEIGHT="0"/></FONTS>
    </SWPALETTE>
</ROOT>)",
     R"(<ROOT>
    <SWPALETTE>
        <FONTS><F NAME="f" HEIGHT="12"/></FONTS>
    </SWPALETTE>
</ROOT>)"},
    {"unknown-font-face", Handling::unresolved, Severity::info,
     "No installed face has this name; the system font of the same size is used.",
     "The face is not installed on this machine; it may be on another. Names must match exactly. "
     "Install the font, or name a face that all machines have."},
    {"unknown-palette-font", Handling::unresolved, Severity::error,
     "The palette has no font of this name; the key shows the system font of 12 points.",
     "Add the font, or name one that is there.", "storage/palette_white.xml",
     R"(<ROOT>
    <SWPALETTE>
        <FONTS><F NAME="f" HEIGHT="12"/></FONTS><APP_MAP><FONTS><I KEY="Grid" VALUE="g"/></FONTS></APP_MAP>
    </SWPALETTE>
</ROOT>)",
     R"(<ROOT>
    <SWPALETTE>
        <FONTS><F NAME="f" HEIGHT="12"/></FONTS><APP_MAP><FONTS><I KEY="Grid" VALUE="f"/></FONTS></APP_MAP>
    </SWPALETTE>
</ROOT>)"},
    // Images.
    {"image-outside-folder", Handling::kept, Severity::error,
     "The path leads out of the image folder; what it names is read all the same.",
     "A path with \"..\" depends on where the terminal is installed. Move the file below the image "
     "folder.",
     "storage/palette_white.xml",
     R"(<ROOT>
    <SWPALETTE>
        <BITMAPS><B NAME="logo" PATH="../logo.png"/></BITMAPS>
    </SWPALETTE>
</ROOT>)",
     R"(<ROOT>
    <SWPALETTE>
        <BITMAPS><B NAME="logo" PATH="logo.png"/></BITMAPS>
    </SWPALETTE>
</ROOT>)"},
    {"unreadable-image", Handling::unresolved, Severity::error,
     "The file is missing, damaged, too large, or neither PNG nor JPEG, so its name has no image.",
     "PNG and JPEG are read. The path is taken below the image folder; letter case counts.",
     "storage/palette_white.xml",
     R"(<ROOT>
    <SWPALETTE>
        <BITMAPS><B NAME="logo" PATH="log.png"/></BITMAPS>
    </SWPALETTE>
</ROOT>)",
     R"(<ROOT>
    <SWPALETTE>
        <BITMAPS><B NAME="logo" PATH="logo.png"/></BITMAPS>
    </SWPALETTE>
</ROOT>)"},
    {"too-many-image-pixels", Handling::unresolved, Severity::error,
     "The images before this one have 64 Mi pixels together or more, damaged ones too, so its name "
     "has no image.",
     "The limit keeps a few damaged files from taking all memory. Use smaller images."},
    {"too-many-image-bytes", Handling::unresolved, Severity::error,
     "The image files before this one have 256 MiB together or more, so its name has no image.",
     "The limit keeps a few large files from taking all memory. Use smaller files."},
    // Found by inspections.
    {"missing-in-other-theme", Handling::kept, Severity::warning,
     "What an application asks for is in one theme only; the other one has nothing to show for it.",
     "Applications ask both themes for the same keys of colours and fonts and for the same names "
     "of "
     "images. A key that is missing shows red or the system font of 12 points, an image is "
     "missing. "
     "Add it to the other palette, or delete it here.",
     "storage/palette_white.xml",
     R"(<ROOT>
    <SWPALETTE>
        <COLORES><C NAME="ink" R="9" G="9" B="9"/></COLORES>
        <APP_MAP><COLORES><I KEY="Grid.text" VALUE="ink"/><I KEY="Grid.down" VALUE="ink"/></COLORES></APP_MAP>
    </SWPALETTE>
</ROOT>)",
     R"(<ROOT>
    <SWPALETTE>
        <COLORES><C NAME="ink" R="9" G="9" B="9"/></COLORES>
        <APP_MAP><COLORES><I KEY="Grid.text" VALUE="ink"/></COLORES></APP_MAP>
    </SWPALETTE>
</ROOT>)",
     "storage/palette_black.xml",
     R"(<ROOT>
    <SWPALETTE>
        <COLORES><C NAME="ink" R="246" G="246" B="246"/></COLORES>
        <APP_MAP><COLORES><I KEY="Grid.text" VALUE="ink"/></COLORES></APP_MAP>
    </SWPALETTE>
</ROOT>)"},
    {"name-in-one-theme", Handling::kept, Severity::info,
     "Only one theme has a colour or a font of this name.",
     "Each palette may have names of its own, for keys refer to the names of their own file. Where "
     "the palettes are meant to be alike, add the name to the other one.",
     "storage/palette_white.xml",
     R"(<ROOT>
    <SWPALETTE>
        <COLORES><C NAME="blue" R="9" G="9" B="99"/></COLORES>
        <APP_MAP><COLORES><I KEY="Grid.text" VALUE="blue"/></COLORES></APP_MAP>
    </SWPALETTE>
</ROOT>)",
     R"(<ROOT>
    <SWPALETTE>
        <COLORES><C NAME="ink" R="9" G="9" B="9"/></COLORES>
        <APP_MAP><COLORES><I KEY="Grid.text" VALUE="ink"/></COLORES></APP_MAP>
    </SWPALETTE>
</ROOT>)",
     "storage/palette_black.xml",
     R"(<ROOT>
    <SWPALETTE>
        <COLORES><C NAME="ink" R="246" G="246" B="246"/></COLORES>
        <APP_MAP><COLORES><I KEY="Grid.text" VALUE="ink"/></COLORES></APP_MAP>
    </SWPALETTE>
</ROOT>)"},
    {"unused-palette-color", Handling::kept, Severity::info,
     "No key of this palette shows the colour.",
     "Applications ask for colours by keys alone, so nothing can show it. Delete it, or give it a "
     "key.",
     "storage/palette_white.xml",
     R"(<ROOT>
    <SWPALETTE>
        <COLORES><C NAME="ink" R="9" G="9" B="9"/><C NAME="sky" R="9" G="9" B="99"/></COLORES>
        <APP_MAP><COLORES><I KEY="Grid.text" VALUE="ink"/></COLORES></APP_MAP>
    </SWPALETTE>
</ROOT>)",
     R"(<ROOT>
    <SWPALETTE>
        <COLORES><C NAME="ink" R="9" G="9" B="9"/></COLORES>
        <APP_MAP><COLORES><I KEY="Grid.text" VALUE="ink"/></COLORES></APP_MAP>
    </SWPALETTE>
</ROOT>)"},
    {"unused-palette-font", Handling::kept, Severity::info, "No key of this palette has the font.",
     "Applications ask for fonts by keys alone, so nothing can show it. Delete it, or give it a "
     "key.",
     "storage/palette_white.xml",
     R"(<ROOT>
    <SWPALETTE>
        <FONTS><F NAME="text" HEIGHT="12"/><F NAME="title" HEIGHT="15"/></FONTS>
        <APP_MAP><FONTS><I KEY="Grid" VALUE="text"/></FONTS></APP_MAP>
    </SWPALETTE>
</ROOT>)",
     R"(<ROOT>
    <SWPALETTE>
        <FONTS><F NAME="text" HEIGHT="12"/></FONTS>
        <APP_MAP><FONTS><I KEY="Grid" VALUE="text"/></FONTS></APP_MAP>
    </SWPALETTE>
</ROOT>)"},
    {"color-in-fractions", Handling::kept, Severity::warning,
     "R, G and B are written as fractions of 1, but go from 0 to 255; the colour is nearly black.",
     "R, G and B are read on a scale from 0 to 255; only A goes from 0 to 1. Multiply each of the "
     "three by 255.",
     "storage/palette_white.xml",
     R"(<ROOT>
    <SWPALETTE>
        <COLORES><C NAME="sky" R="0.4" G="0.6" B="1"/></COLORES>
    </SWPALETTE>
</ROOT>)",
     R"(<ROOT>
    <SWPALETTE>
        <COLORES><C NAME="sky" R="102" G="153" B="255"/></COLORES>
    </SWPALETTE>
</ROOT>)"},
    {"uneven-strips", Handling::kept, Severity::warning,
     "The image is not as many pieces wide as that of the other theme, which seems to be a strip "
     "of "
     "square pieces.",
     "Applications cut a strip into the same number of equal pieces in both themes. A width that "
     "does not divide by it loses columns at the right, and another shape shows parts of two "
     "pieces. Draw both images alike."},
    {"unused-image-file", Handling::kept, Severity::info, "No palette names this image file.",
     "Applications ask for images by the names in the palettes, so nothing shows the file unless "
     "the application opens it by its path. Delete it, or give it a name."},
    // Contrast.
    {"unreadable-contrast-file", Handling::unresolved, Severity::error,
     "The file is not a JSON object, so no contrast is checked.",
     "The file must be one JSON object with the list \"pairs\". The value says what is wrong with "
     "it.",
     "contrast.json", "[]", R"({"pairs": []})"},
    {"incomplete-contrast-pair", Handling::unresolved, Severity::error,
     "The file needs the list \"pairs\", and each pair \"text\", \"ground\" and \"minimum\"; the "
     "one "
     "named here is missing.",
     "A pair says which colours stand on each other, by their keys, and how much contrast they "
     "need "
     "at least. Without the missing member nothing is checked.",
     "contrast.json", R"({"pairs": [{"text": "Grid.text", "ground": "Grid.back"}]})",
     R"({"pairs": [{"text": "Grid.text", "ground": "Grid.back", "minimum": 4.5}]})"},
    {"contrast-minimum-out-of-range", Handling::unresolved, Severity::error,
     "A contrast goes from 1 to 21, so the pair is not checked.",
     "The ratio of equal colours is 1, that of black and white 21. Texts need 4.5, large ones and "
     "symbols 3.",
     "contrast.json", R"({"pairs": [{"text": "Grid.text", "ground": "Grid.back", "minimum": 45}]})",
     R"({"pairs": [{"text": "Grid.text", "ground": "Grid.back", "minimum": 4.5}]})"},
    {"unknown-contrast-key", Handling::unresolved, Severity::error,
     "Neither palette has a colour of this key, so the pair is not checked.",
     "Colours are named by the KEY in APP_MAP, as applications ask for them, not by their NAME. "
     "Check the spelling.",
     "contrast.json", R"({"pairs": [{"text": "Grid.txt", "ground": "Grid.back", "minimum": 4.5}]})",
     R"({"pairs": [{"text": "Grid.text", "ground": "Grid.back", "minimum": 4.5}]})",
     "storage/palette_white.xml",
     R"(<ROOT>
    <SWPALETTE>
        <COLORES><C NAME="ink" R="9" G="9" B="9"/><C NAME="paper" R="246" G="246" B="246"/></COLORES>
        <APP_MAP><COLORES><I KEY="Grid.text" VALUE="ink"/><I KEY="Grid.back" VALUE="paper"/></COLORES></APP_MAP>
    </SWPALETTE>
</ROOT>)"},
    {"low-contrast", Handling::kept, Severity::warning,
     "The colours have less contrast than contrast.json asks for.",
     "The contrast ratio is that of WCAG 2, from 1 to 21; a colour that is not opaque is drawn "
     "over "
     "what is below it first. Make one of the colours lighter or darker, or ask for less.",
     "storage/palette_white.xml",
     R"(<ROOT>
    <SWPALETTE>
        <COLORES><C NAME="ink" R="170" G="170" B="170"/><C NAME="paper" R="246" G="246" B="246"/></COLORES>
        <APP_MAP><COLORES><I KEY="Grid.text" VALUE="ink"/><I KEY="Grid.back" VALUE="paper"/></COLORES></APP_MAP>
    </SWPALETTE>
</ROOT>)",
     R"(<ROOT>
    <SWPALETTE>
        <COLORES><C NAME="ink" R="9" G="9" B="9"/><C NAME="paper" R="246" G="246" B="246"/></COLORES>
        <APP_MAP><COLORES><I KEY="Grid.text" VALUE="ink"/><I KEY="Grid.back" VALUE="paper"/></COLORES></APP_MAP>
    </SWPALETTE>
</ROOT>)",
     "contrast.json",
     R"({"pairs": [{"text": "Grid.text", "ground": "Grid.back", "minimum": 4.5}]})"},
};

}  // namespace yg
