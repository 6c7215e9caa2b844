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
    {"image-outside-folder", Handling::unresolved, Severity::error,
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
};

}  // namespace yg
