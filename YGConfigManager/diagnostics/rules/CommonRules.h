// SPDX-License-Identifier: MIT
//
// Rules that all file formats share. Internal: a part of RuleTable.h.
#pragma once

#include "YGConfigManager/diagnostics/Rule.h"

namespace yg {

inline constexpr Rule commonRules[] = {
    {"unreadable-file", Handling::unresolved, Severity::error,
     "The file is missing or is not well-formed XML, so it contributes nothing.",
     "A missing file is an answer like any other: what it would have held is not there. In a file "
     "that is not well-formed XML each error is reported at its line and column. The first one is "
     "the one to repair; the others often follow from it.",
     "config/events.xml",
     R"(<event_list>
    <command_event>
</event_list>)",
     R"(<event_list>
    <command_event><command name="open"/></command_event>
</event_list>)"},
    {"unsaved-file", Handling::unresolved, Severity::warning,
     "The file could not be written; what was to be in it is not there at the next start.",
     "The folder may be missing or read-only, the disk may be full, or another program may hold "
     "the file. The change counts until the application ends. The value says which file it is and "
     "what the system answered."},
    {"unknown-attribute", Handling::dropped, Severity::error,
     "No attribute of this name is read here.",
     "Nothing reads an attribute of this name on this element. Often it is misspelt, has another "
     "letter case, or belongs to another element. Names must match exactly.",
     "config/custompage_template.xml",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="main"><element name="grid" parm="SH"/></panel></style>
</styles>)",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="main"><element name="grid" param="SH"/></panel></style>
</styles>)"},
    {"unknown-element", Handling::dropped, Severity::error,
     "No element of this name has a meaning here.",
     "Nothing reads an element of this name in this place. It is dropped with all that is in it. "
     "Check the spelling and the letter case.",
     "config/custompage_template.xml",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="main"><elemnt name="grid"/></panel></style>
</styles>)",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="main"><element name="grid"/></panel></style>
</styles>)"},
    {"stray-text", Handling::dropped, Severity::error, "Text has no meaning here.",
     "Only elements count here. The text may be left over from an edit, or the end of a comment.",
     "config/custompage_template.xml",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="main">grid <element name="grid"/></panel></style>
</styles>)",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="main"><!-- grid --> <element name="grid"/></panel></style>
</styles>)"},
    {"odd-flag", Handling::defaulted, Severity::error,
     "A flag is true only for the exact text \"true\"; this reads as false.",
     "A flag is true only for \"true\" in small letters. \"True\", \"1\" and \"yes\" are read as "
     "false. Write \"true\" or \"false\".",
     "config/custompage_template.xml",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="main" vertical="True"/></style>
</styles>)",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="main" vertical="true"/></style>
</styles>)"},
    {"odd-number", Handling::defaulted, Severity::error,
     "The text is not a plain number in range: only the number that it begins with counts, 0 "
     "without one, the nearest bound when it is too large.",
     "The number at the beginning of the text counts: \"12px\" is 12. Without one it is 0. A "
     "number beyond what can be stored becomes the nearest one that can. Write digits only, with a "
     "point where fractions are allowed.",
     "config/custompage_template.xml",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="main" scroll_size="12px"/></style>
</styles>)",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="main" scroll_size="12"/></style>
</styles>)"},
    {"number-out-of-range", Handling::defaulted, Severity::error,
     "The number is outside of the range of this attribute; the nearest bound counts.",
     "R, G and B go from 0 to 255; A goes from 0, transparent, to 1, opaque. What is beyond counts "
     "as the nearest of these.",
     "storage/palette_white.xml",
     R"(<ROOT>
    <SWPALETTE>
        <COLORES><C NAME="red" R="300" G="0" B="0"/></COLORES>
    </SWPALETTE>
</ROOT>)",
     R"(<ROOT>
    <SWPALETTE>
        <COLORES><C NAME="red" R="255" G="0" B="0"/></COLORES>
    </SWPALETTE>
</ROOT>)"},
    {"missing-attribute", Handling::defaulted, Severity::warning,
     "The attribute named here is missing; what counts without one is probably not meant.",
     "The element counts, with a default for what is missing: 0 for a component of a colour, no "
     "image for an image without a PATH. Write it down.",
     "storage/palette_white.xml",
     R"(<ROOT>
    <SWPALETTE>
        <COLORES><C NAME="red" R="255" G="0"/></COLORES>
    </SWPALETTE>
</ROOT>)",
     R"(<ROOT>
    <SWPALETTE>
        <COLORES><C NAME="red" R="255" G="0" B="0"/></COLORES>
    </SWPALETTE>
</ROOT>)"},
    {"empty-list", Handling::defaulted, Severity::warning, "An empty list counts as no list.",
     "An attribute that lists names and is empty is read as if it were missing. Leave it out, or "
     "name something.",
     "config/custompage_template.xml",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="main"><element name="grid" event_dispatch_dest=""/></panel></style>
</styles>)",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="main"><element name="grid" event_dispatch_dest="chart"/></panel></style>
</styles>)"},
    {"unread-content", Handling::dropped, Severity::error,
     "What is inside this element is not read here.",
     "This element is read by its attributes alone; what is inside has no effect. It may be meant "
     "for the element around it.",
     "config/custompage_template.xml",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="main"><element name="grid"><panel name="side"/></element></panel></style>
</styles>)",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="main"><element name="grid"/><panel name="side"/></panel></style>
</styles>)"},
    // Found by `ygconfig lint` alone.
    {"stale-baseline-entry", Handling::unresolved, Severity::info,
     "This entry of the baseline stands for more findings than there are.",
     "A baseline lists findings that are known. This one was repaired since, or the element around "
     "it has another name now. Remove the entry, or write the baseline again."},
};

}  // namespace yg
