// SPDX-License-Identifier: MIT
//
// The one table of rules. Internal: applications walk it by Rule.h.
#pragma once

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string_view>

#include "YGConfigManager/diagnostics/Rule.h"

namespace yg {

inline constexpr Rule ruleTable[] = {

    // ---- All formats ----
    {"unreadable-file", Handling::unresolved, Severity::warning,
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
    {"odd-flag", Handling::defaulted, Severity::warning,
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
    {"odd-number", Handling::defaulted, Severity::warning,
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
    {"number-out-of-range", Handling::defaulted, Severity::warning,
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

    // ---- The layout ----
    // Styles.
    {"style-without-name", Handling::dropped, Severity::error,
     "A style needs a name that is not empty.",
     "Pages are found by their names. Give the style a name.", "config/custompage_template.xml",
     R"(<styles default_style="quote">
    <style layer="1"/>
</styles>)",
     R"(<styles default_style="quote">
    <style name="quote" layer="1"/>
</styles>)"},
    {"duplicate-style", Handling::replaced, Severity::warning,
     "A later style of the same name replaces the earlier one.",
     "The earlier style is lost; the later one takes its place in the order. Rename one of them or "
     "delete the earlier one.",
     "config/custompage_template.xml",
     R"(<styles default_style="quote">
    <style name="quote" layer="1"/><style name="quote" layer="2"/>
</styles>)",
     R"(<styles default_style="quote">
    <style name="quote" layer="1"/><style name="depth" layer="2"/>
</styles>)"},
    {"overridden-style", Handling::replaced, Severity::warning,
     "The soft-optimize file's style replaces the main file's style of the same name.",
     "This is how the soft-optimize folder changes a page. The main file's page of this name is "
     "not used. If that is not meant, rename one of them.",
     "soft_optimize/custompage_template.xml",
     R"(<styles default_style="quote">
    <style name="quote"/>
</styles>)",
     R"(<styles default_style="quote">
    <style name="depth"/>
</styles>)"},
    {"style-element-name", Handling::defaulted, Severity::error,
     "Only an element named \"style\" can have panels, so this style stays without them.",
     "The style is found by its name, but it has no panels, because panels are attached to "
     "elements named \"style\" only. Rename the element.",
     "config/custompage_template.xml",
     R"(<styles default_style="quote">
    <page name="quote"><panel name="main"/></page>
</styles>)",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="main"/></style>
</styles>)"},
    {"ignored-default-style", Handling::dropped, Severity::error,
     "The tab file cannot name the default style; only the main and the soft-optimize style file "
     "can.",
     "The page that opens first is named by the soft-optimize style file or the main one, never by "
     "the tab file. Move the attribute there.",
     "config/tab_styles.xml",
     R"(<styles default_style="quote">
    <style name="tab"/>
</styles>)",
     R"(<styles>
    <style name="tab"/>
</styles>)"},
    {"overridden-default-style", Handling::replaced, Severity::note,
     "The soft-optimize file's default style replaces the main file's.",
     "This is how the soft-optimize folder changes the page that opens first. The main file's "
     "default style is not used. If that is not meant, delete one of the two attributes.",
     "soft_optimize/custompage_template.xml",
     R"(<styles default_style="detail">
    <style name="detail"/>
</styles>)",
     R"(<styles>
    <style name="detail"/>
</styles>)"},
    {"soft-optimize-dropped", Handling::unresolved, Severity::error,
     "The main style file yields no styles, so the soft-optimize styles are dropped with it.",
     "The soft-optimize file adds to the main file. Without any page in the main file its pages "
     "are not used at all. Repair the main file, or put a page into it.",
     "config/custompage_template.xml", "<styles/>",
     R"(<styles default_style="quote">
    <style name="quote"/>
</styles>)"},
    {"no-templates", Handling::unresolved, Severity::warning,
     "Without a soft-optimize style file no custom page can be built from a template.",
     "A page such as \"detail-kline\" is built from a template of the soft-optimize style file. "
     "When that file is missing or cannot be read, no such page can be built, not even from a "
     "template of the main file.",
     "soft_optimize/custompage_template.xml", "<styles>",
     R"(<styles default_style="quote">
    <style name="detail"/>
</styles>)"},
    // Panels and elements.
    {"misplaced-panel", Handling::dropped, Severity::error,
     "A panel stands below a style, a panel or a reuse panel; here it is dropped with all in it.",
     "A panel counts directly below a \"style\", a \"panel\" or a \"reuse_panel\". Anywhere else "
     "it is dropped with all that is in it. Move it into one of these.",
     "base_optimize/reuse_panels.xml",
     R"(<reuse_panels>
    <toolbar name="toolbar"><panel name="buttons"/></toolbar>
</reuse_panels>)",
     R"(<reuse_panels>
    <reuse_panel name="toolbar"><panel name="buttons"/></reuse_panel>
</reuse_panels>)"},
    {"misplaced-element", Handling::dropped, Severity::error,
     "An element stands inside a panel; here it is dropped.",
     "An element needs a panel around it. Directly below a style it is dropped.",
     "config/custompage_template.xml",
     R"(<styles default_style="quote">
    <style name="quote"><element name="grid"/></style>
</styles>)",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="main"><element name="grid"/></panel></style>
</styles>)"},
    {"element-without-name", Handling::dropped, Severity::error,
     "An element needs a name that is not empty.",
     "The name says which view is shown. Without one there is nothing to show.",
     "config/custompage_template.xml",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="main"><element param="SH"/></panel></style>
</styles>)",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="main"><element name="grid" param="SH"/></panel></style>
</styles>)"},
    {"rtline-view-left-out", Handling::dropped, Severity::error,
     "Stock detail pages leave out a panel named rtline_view inside another panel.",
     "Pages whose name begins with 个股详细视图- show the panel rtline_view at the top level only. "
     "Inside another panel it is left out with all that is in it.",
     "config/custompage_template.xml",
     R"(<styles default_style="quote">
    <style name="个股详细视图-A"><panel name="main"><panel name="rtline_view"/></panel></style>
</styles>)",
     R"(<styles default_style="quote">
    <style name="个股详细视图-A"><panel name="rtline_view"/></style>
</styles>)"},
    // Magic and reuse panels.
    {"missing-name", Handling::dropped, Severity::error,
     "This needs a name; without one it is dropped.", "It is found by its name alone. Give it one.",
     "base_optimize/reuse_panels.xml",
     R"(<reuse_panels>
    <reuse_panel fix_size="40"/>
</reuse_panels>)",
     R"(<reuse_panels>
    <reuse_panel name="toolbar" fix_size="40"/>
</reuse_panels>)"},
    {"duplicate-name", Handling::replaced, Severity::warning,
     "A later definition of the same name replaces the earlier one.",
     "The earlier definition is lost. Rename one of them or delete the earlier one.",
     "base_optimize/reuse_panels.xml",
     R"(<reuse_panels>
    <reuse_panel name="bar" fix_size="40"/><reuse_panel name="bar" fix_size="20"/>
</reuse_panels>)",
     R"(<reuse_panels>
    <reuse_panel name="bar" fix_size="40"/><reuse_panel name="low_bar" fix_size="20"/>
</reuse_panels>)"},
    {"replaced-group", Handling::replaced, Severity::warning,
     "The soft-optimize file's group replaces the group of the same name whole; members are not "
     "merged.",
     "This is how the soft-optimize folder changes a group. The whole group of the main file is "
     "replaced, so members that only it had are gone for custom pages too. Repeat them here if "
     "they are wanted.",
     "soft_optimize/magic_panels.xml",
     R"(<groups>
    <magic_panels name="chart"><magic_panel name="kline"><panel name="kline"/></magic_panel></magic_panels>
</groups>)",
     R"(<groups>
    <magic_panels name="side"><magic_panel name="kline"><panel name="kline"/></magic_panel></magic_panels>
</groups>)"},
    {"unexpected-element-name", Handling::unresolved, Severity::warning,
     "It is read in spite of its element name, but custom pages find it under the proper one only.",
     "It is read by its name attribute, whatever the element is called. Custom pages look for the "
     "proper element name, \"magic_panels\", \"magic_panel\" or \"reuse_panel\", and do not find "
     "it. Rename the element.",
     "config/magic_panels.xml",
     R"(<groups>
    <group name="chart"><magic_panel name="kline"><panel name="kline"/></magic_panel></group>
</groups>)",
     R"(<groups>
    <magic_panels name="chart"><magic_panel name="kline"><panel name="kline"/></magic_panel></magic_panels>
</groups>)"},
    {"member-without-panel", Handling::dropped, Severity::error,
     "A magic panel needs an element inside, its panel.",
     "The element inside a \"magic_panel\" is the panel that a slot shows. Put one in.",
     "config/magic_panels.xml",
     R"(<groups>
    <magic_panels name="chart"><magic_panel name="kline"/></magic_panels>
</groups>)",
     R"(<groups>
    <magic_panels name="chart"><magic_panel name="kline"><panel name="kline"/></magic_panel></magic_panels>
</groups>)"},
    {"second-panel", Handling::dropped, Severity::error,
     "Only the first element inside a magic panel is its panel.",
     "A slot shows one panel. To show several, put them into one panel.", "config/magic_panels.xml",
     R"(<groups>
    <magic_panels name="chart"><magic_panel name="kline"><panel name="a"/><panel name="b"/></magic_panel></magic_panels>
</groups>)",
     R"(<groups>
    <magic_panels name="chart"><magic_panel name="kline"><panel name="both"><panel name="a"/><panel name="b"/></panel></magic_panel></magic_panels>
</groups>)"},
    {"comment-before-panel", Handling::unresolved, Severity::warning,
     "Custom pages take whatever comes first inside a magic panel: here not its panel, but a "
     "comment, so that they show nothing in its place.",
     "Custom pages show the first thing inside a \"magic_panel\". A comment or a text there takes "
     "the place of the panel. Move it behind the panel, or outside.",
     "config/magic_panels.xml",
     R"(<groups>
    <magic_panels name="chart"><magic_panel name="kline"><!-- daily --><panel name="kline"/></magic_panel></magic_panels>
</groups>)",
     R"(<groups>
    <magic_panels name="chart"><!-- daily --><magic_panel name="kline"><panel name="kline"/></magic_panel></magic_panels>
</groups>)"},
    {"misplaced-magic-panels", Handling::dropped, Severity::error,
     "A slot for magic panels is directly below a style or a panel; here nothing is shown.",
     "A slot counts directly below a \"style\" or a \"panel\". Anywhere else nothing is shown. Put "
     "a panel around the slot.",
     "config/custompage_template.xml",
     R"(<styles default_style="quote">
    <page name="quote"><magic_panels name="chart"/></page>
</styles>)",
     R"(<styles default_style="quote">
    <style name="quote"><magic_panels name="chart"/></style>
</styles>)"},
    {"unknown-magic-group", Handling::unresolved, Severity::warning,
     "No group of magic panels of this name is known here.",
     "The group must be in the magic panel file that is known at this point: pages of the "
     "soft-optimize file know the groups of the main file only. Check the name.",
     "config/custompage_template.xml",
     R"(<styles default_style="quote">
    <style name="quote"><magic_panels name="charts"/></style>
</styles>)",
     R"(<styles default_style="quote">
    <style name="quote"><magic_panels name="chart"/></style>
</styles>)"},
    {"empty-magic-group", Handling::unresolved, Severity::warning,
     "The group of magic panels has no member to show.",
     "The group is there, but has no member with a panel. Add one.", "config/magic_panels.xml",
     R"(<groups>
    <magic_panels name="chart"/>
</groups>)",
     R"(<groups>
    <magic_panels name="chart"><magic_panel name="kline"><panel name="kline"/></magic_panel></magic_panels>
</groups>)"},
    {"misplaced-reuse-panel", Handling::dropped, Severity::error,
     "A reuse panel stands inside a panel; here it is dropped.",
     "A reference to a reuse panel counts inside a panel. Directly below a style it is dropped. "
     "Put a panel around it.",
     "config/custompage_template.xml",
     R"(<styles default_style="quote">
    <style name="quote"><reuse_panel name="toolbar"/></style>
</styles>)",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="main"><reuse_panel name="toolbar"/></panel></style>
</styles>)"},
    {"unknown-reuse-panel", Handling::unresolved, Severity::warning,
     "No reuse panel of this name is known here.",
     "The name must be one of the reuse panel file. While that file is read its own panels are not "
     "known yet, so one cannot refer to another. Check the name.",
     "config/custompage_template.xml",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="main"><reuse_panel name="tool_bar"/></panel></style>
</styles>)",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="main"><reuse_panel name="toolbar"/></panel></style>
</styles>)"},
    {"expansion-limit", Handling::unresolved, Severity::warning,
     "References, slots and names add at most 1,000,000 elements and 64 MiB to a load or a custom "
     "page; this would be more. It is not added, and a page is not built.",
     "References repeat what they refer to. A few files can ask for more than any machine holds, "
     "so a load stops adding at this limit. Use fewer references, or smaller panels."},
    // Custom pages.
    {"unknown-template", Handling::unresolved, Severity::warning,
     "No style is the template that the page's name begins with.",
     "A page name is TEMPLATE-ARGUMENT-ARGUMENT. The part before the first \"-\" must be the name "
     "of a style.",
     "", "detals-kline", "detail-kline"},
    {"argument-count", Handling::unresolved, Severity::warning,
     "A custom page's name gives exactly one argument for each slot of its template.",
     "The template has a number of slots, at any depth, and the name must give one argument for "
     "each, in the order of the document.",
     "", "detail-kline-depth", "detail-kline"},
    {"slot-left", Handling::unresolved, Severity::warning,
     "Neither a member nor a pattern serves this argument, so the slot stays as it is.",
     "An argument is the name of a member of the slot's group, or a text that the mapping "
     "\"模版通配\" assigns to a pattern of the group. When it is neither, the slot shows the first "
     "member of its group, as on any page.",
     "", "detail-klin", "detail-kline"},
    {"broken-pattern", Handling::unresolved, Severity::warning,
     "With the argument written into it the pattern is not well-formed XML, so the slot stays as "
     "it is.",
     "A pattern is a member whose text the argument is written into. An argument with \"<\", \"&\" "
     "or a quotation mark can make it something other than XML; then the slot stays as it is.",
     "", "detail-a<b", "detail-ab"},

    // ---- Events and commands ----
    // Sections.
    {"event-root-name", Handling::dropped, Severity::error,
     "The root of an event configuration is named \"event_list\"; nothing of this file is read.",
     "The whole file is skipped. Name the root \"event_list\".", "config/events.xml",
     R"(<events>
    <command_event><command name="open"/></command_event>
</events>)",
     R"(<event_list>
    <command_event><command name="open"/></command_event>
</event_list>)"},
    {"nested-event-section", Handling::defaulted, Severity::error,
     "A section stands directly below the root; here it is taken for an entry of the section "
     "around it.",
     "Sections do not nest. Close the section before it and move this one below the root.",
     "config/events.xml",
     R"(<event_list>
    <command_event><element_event name="grid"/></command_event>
</event_list>)",
     R"(<event_list>
    <command_event><command name="open"/></command_event><element_event name="grid"><event name="click"/></element_event>
</event_list>)"},
    {"empty-event-section", Handling::dropped, Severity::error,
     "A section without any content has no effect.",
     "It can be deleted, or it lacks what was meant to be in it.", "config/events.xml",
     R"(<event_list>
    <command_event/>
</event_list>)",
     R"(<event_list>
    <command_event><command name="open"/></command_event>
</event_list>)"},
    {"event-section-without-name", Handling::dropped, Severity::error,
     "A template or group needs a name that is not empty.",
     "Templates are included by name, and elements name their group. Give the section a name.",
     "config/events.xml",
     R"(<event_list>
    <element_event><event name="click"/></element_event>
</event_list>)",
     R"(<event_list>
    <element_event name="grid"><event name="click"/></element_event>
</event_list>)"},
    {"template-without-events", Handling::dropped, Severity::error,
     "A template without an event is not kept; an earlier one of the same name stays.",
     "The template is not kept, so an include of it finds an earlier one of the same name, or "
     "nothing. Put an event in.",
     "config/events.xml",
     R"(<event_list>
    <event_template name="list"><!-- later --></event_template>
</event_list>)",
     R"(<event_list>
    <event_template name="list"><event name="select"/></event_template>
</event_list>)"},
    {"duplicate-event-template", Handling::replaced, Severity::warning,
     "A later template of the same name replaces the earlier one for all that follows.",
     "Sections below include the later template. What included the earlier one keeps that one's "
     "events. Rename one of them.",
     "config/events.xml",
     R"(<event_list>
    <event_template name="t"><event name="a"/></event_template><event_template name="t"><event name="b"/></event_template>
</event_list>)",
     R"(<event_list>
    <event_template name="t"><event name="a"/></event_template><event_template name="u"><event name="b"/></event_template>
</event_list>)"},
    {"duplicate-event-group", Handling::replaced, Severity::warning,
     "A later group of the same name replaces the earlier one whole; events are not merged.",
     "The earlier group is lost with all its events. Put the events into one group.",
     "config/events.xml",
     R"(<event_list>
    <element_event name="grid"><event name="a"/></element_event><element_event name="grid"><event name="b"/></element_event>
</event_list>)",
     R"(<event_list>
    <element_event name="grid"><event name="a"/><event name="b"/></element_event>
</event_list>)"},
    // Commands and events.
    {"command-without-name", Handling::dropped, Severity::error, "A command needs a name.",
     "Events trigger commands by name. Give the command a name.", "config/events.xml",
     R"(<event_list>
    <command_event><command change_style="quote"/></command_event>
</event_list>)",
     R"(<event_list>
    <command_event><command name="open" change_style="quote"/></command_event>
</event_list>)"},
    {"unreachable-command", Handling::unresolved, Severity::error,
     "A command whose name is empty can never be looked up.",
     "No event can trigger a command whose name is empty. Give it a name.", "config/events.xml",
     R"(<event_list>
    <command_event><command name=""/></command_event>
</event_list>)",
     R"(<event_list>
    <command_event><command name="open"/></command_event>
</event_list>)"},
    {"duplicate-command", Handling::replaced, Severity::warning,
     "A later command of the same name replaces the earlier one, whatever section it is in.",
     "All command sections share one table. Rename one of the commands or delete the earlier one.",
     "config/events.xml",
     R"(<event_list>
    <command_event><command name="open"/><command name="open"/></command_event>
</event_list>)",
     R"(<event_list>
    <command_event><command name="open"/><command name="close"/></command_event>
</event_list>)"},
    {"event-without-name", Handling::dropped, Severity::error, "An event needs a name.",
     "Elements trigger events by name. Give the event a name.", "config/events.xml",
     R"(<event_list>
    <element_event name="grid"><event command="open"/></element_event>
</event_list>)",
     R"(<event_list>
    <element_event name="grid"><event name="click" command="open"/></element_event>
</event_list>)"},
    {"unreachable-event", Handling::unresolved, Severity::error,
     "An event whose name is empty can never be looked up.",
     "No element can trigger an event whose name is empty. Give it a name.", "config/events.xml",
     R"(<event_list>
    <element_event name="grid"><event name=""/></element_event>
</event_list>)",
     R"(<event_list>
    <element_event name="grid"><event name="click"/></element_event>
</event_list>)"},
    {"duplicate-event", Handling::replaced, Severity::warning,
     "A later event of the same name replaces the one defined above it.",
     "The earlier event is lost. Rename one of them or delete the earlier one.",
     "config/events.xml",
     R"(<event_list>
    <element_event name="grid"><event name="a"/><event name="a"/></element_event>
</event_list>)",
     R"(<event_list>
    <element_event name="grid"><event name="a"/><event name="b"/></element_event>
</event_list>)"},
    {"overridden-template-event", Handling::replaced, Severity::warning,
     "This takes the place of the event of the same name that a template included above brought.",
     "This is how a section changes one event of a template. If it is not meant, rename one of "
     "them.",
     "config/events.xml",
     R"(<event_list>
    <event_template name="t"><event name="a"/></event_template><element_event name="grid"><include src="t"/><event name="a"/></element_event>
</event_list>)",
     R"(<event_list>
    <event_template name="t"><event name="a"/></event_template><element_event name="grid"><include src="t"/><event name="b"/></element_event>
</event_list>)"},
    {"event-lost-to-template", Handling::replaced, Severity::warning,
     "The included template has an event of the same name, which replaces the one defined above.",
     "The include comes later, so its event wins. Move the include above the section's own events.",
     "config/events.xml",
     R"(<event_list>
    <event_template name="t"><event name="a"/></event_template><element_event name="grid"><event name="a"/><include src="t"/></element_event>
</event_list>)",
     R"(<event_list>
    <event_template name="t"><event name="b"/></event_template><element_event name="grid"><event name="a"/><include src="t"/></element_event>
</event_list>)"},
    {"event-entry-without-effect", Handling::dropped, Severity::error,
     "Without a name and a src that are not empty this neither defines nor includes anything.",
     "An entry of a template defines an event by its name, includes a template by its src, or "
     "both. Give it one of them.",
     "config/events.xml",
     R"(<event_list>
    <event_template name="t"><event command="open"/><event name="a"/></event_template>
</event_list>)",
     R"(<event_list>
    <event_template name="t"><event name="b" command="open"/><event name="a"/></event_template>
</event_list>)"},
    // Attributes.
    {"dispatch-spelling", Handling::dropped, Severity::error,
     R"(The attribute is "disptch" in templates and "dispatch" in commands and groups.)",
     "In templates the attribute is \"disptch\", in commands and groups \"dispatch\". The other "
     "spelling is not read.",
     "config/events.xml",
     R"(<event_list>
    <event_template name="t"><event name="a" dispatch="d"/></event_template>
</event_list>)",
     R"(<event_list>
    <event_template name="t"><event name="a" disptch="d"/></event_template>
</event_list>)"},
    {"attribute-without-event", Handling::dropped, Severity::error,
     "This entry only includes a template; it defines no event that the attribute could belong to.",
     "The entry has a src, but defines no event. In a template give it a name; in a group write an "
     "\"event\" of its own.",
     "config/events.xml",
     R"(<event_list>
    <event_template name="t"><event name="a"/></event_template><element_event name="grid"><include src="t" command="open"/></element_event>
</event_list>)",
     R"(<event_list>
    <event_template name="t"><event name="a"/></event_template><element_event name="grid"><include src="t"/></element_event>
</event_list>)"},
    // Includes.
    {"src-on-event", Handling::dropped, Severity::error,
     "In a group an element named \"event\" includes nothing; any other element name does.",
     "To include a template, write an element with another name, such as \"include\".",
     "config/events.xml",
     R"(<event_list>
    <event_template name="t"><event name="a"/></event_template><element_event name="grid"><event name="b" src="t"/></element_event>
</event_list>)",
     R"(<event_list>
    <event_template name="t"><event name="a"/></event_template><element_event name="grid"><event name="b"/><include src="t"/></element_event>
</event_list>)"},
    {"empty-src", Handling::dropped, Severity::error, "An empty src includes nothing.",
     "Leave the attribute out, or name a template.", "config/events.xml",
     R"(<event_list>
    <event_template name="t"><event name="a" src=""/></event_template>
</event_list>)",
     R"(<event_list>
    <event_template name="t"><event name="a"/></event_template>
</event_list>)"},
    {"include-without-src", Handling::dropped, Severity::error,
     "In a group an element that is not named \"event\" includes a template, and names it by a src "
     "that is not empty.",
     "Only \"event\" defines an event in a group. An element with another name includes the "
     "template that its src names. Check the element's name.",
     "config/events.xml",
     R"(<event_list>
    <element_event name="grid"><evnt name="a"/></element_event>
</event_list>)",
     R"(<event_list>
    <element_event name="grid"><event name="a"/></element_event>
</event_list>)"},
    {"repeated-include", Handling::dropped, Severity::note,
     "All events of this template are there already, so including it here changes nothing.",
     "The section includes the template twice, or another template that includes it. Delete one of "
     "the includes.",
     "config/events.xml",
     R"(<event_list>
    <event_template name="t"><event name="a"/></event_template>
    <element_event name="grid"><include src="t"/><include src="t"/></element_event>
</event_list>)",
     R"(<event_list>
    <event_template name="t"><event name="a"/></event_template>
    <element_event name="grid"><include src="t"/></element_event>
</event_list>)"},
    {"unknown-event-template", Handling::unresolved, Severity::warning,
     "No template of this name that has an event ends above this include.",
     "A template is known from its end on, so templates include only those above them. Check the "
     "name, or move the template up.",
     "config/events.xml",
     R"(<event_list>
    <event_template name="t"><event name="a"/><include src="u"/></event_template><event_template name="u"><event name="b"/></event_template>
</event_list>)",
     R"(<event_list>
    <event_template name="u"><event name="b"/></event_template><event_template name="t"><event name="a"/><include src="u"/></event_template>
</event_list>)"},
    {"include-limit", Handling::unresolved, Severity::warning,
     "Includes add at most 1,000,000 events and 64 MiB to a file; with this one it would be more, "
     "so it adds nothing.",
     "Includes repeat what they include. A small file can ask for more than any machine holds, so "
     "a load stops adding at this limit."},

    // ---- Palettes ----
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
    {"unreachable-palette-name", Handling::unresolved, Severity::warning,
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
    {"duplicate-palette-name", Handling::replaced, Severity::warning,
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
    {"duplicate-palette-key", Handling::replaced, Severity::warning,
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
    {"unknown-palette-color", Handling::unresolved, Severity::warning,
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
    {"unknown-font-face", Handling::unresolved, Severity::warning,
     "No installed face has this name; the system font of the same size is used.",
     "The face is not installed on this machine; it may be on another. Names must match exactly. "
     "Install the font, or name a face that all machines have."},
    {"unknown-palette-font", Handling::unresolved, Severity::warning,
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
    {"image-outside-folder", Handling::unresolved, Severity::warning,
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
    {"unreadable-image", Handling::unresolved, Severity::warning,
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
    {"too-many-image-pixels", Handling::unresolved, Severity::warning,
     "The images before this one have 64 Mi pixels together or more, damaged ones too, so its name "
     "has no image.",
     "The limit keeps a few damaged files from taking all memory. Use smaller images."},
    {"too-many-image-bytes", Handling::unresolved, Severity::warning,
     "The image files before this one have 256 MiB together or more, so its name has no image.",
     "The limit keeps a few large files from taking all memory. Use smaller files."},

    // ---- Servers ----
    // Documents and groups.
    {"unreadable-delivery", Handling::unresolved, Severity::warning,
     "What was delivered is empty, is not well-formed XML or could not be read again once it is "
     "saved, so nothing changes.",
     "The login server sent something that cannot be used. The servers that were known before "
     "stay."},
    {"replaced-md5", Handling::replaced, Severity::warning,
     "The digest that came with the delivery takes the place of the document's own.",
     "The digest is what the next login compares; the one that was sent beside the document "
     "counts."},
    {"server-root-name", Handling::unresolved, Severity::error,
     "The root of a server configuration is named \"application\"; no group of this file is read.",
     "No server of the file is used. Name the root \"application\".", "storage/skeleton_v1.xml",
     R"(<servers>
    <server type="1"/>
</servers>)",
     R"(<application>
    <server type="1"/>
</application>)"},
    {"server-group-without-type", Handling::dropped, Severity::error,
     "A group needs a type to be found by.",
     "Groups are found by their type. Give it one of 1, 2, 3, 4, 5, 7 and 8.",
     "storage/skeleton_v1.xml",
     R"(<application>
    <server name="Quotes"/>
</application>)",
     R"(<application>
    <server type="1" name="Quotes"/>
</application>)"},
    {"server-type-never-loaded", Handling::dropped, Severity::error,
     "Groups of the types 1, 2, 3, 4, 5, 7 and 8 are loaded, no other.",
     "The terminal asks for the types 1, 2, 3, 4, 5, 7 and 8 only. Check the type.",
     "storage/skeleton_v1.xml",
     R"(<application>
    <server type="6"/>
</application>)",
     R"(<application>
    <server type="7"/>
</application>)"},
    {"second-server-group", Handling::dropped, Severity::error,
     "Only the first group of a type is read.", "Put all entries into the first group of the type.",
     "storage/skeleton_v1.xml",
     R"(<application>
    <server type="1" name="a"/>
    <server type="1" name="b"/>
</application>)",
     R"(<application>
    <server type="1" name="a"/>
    <server type="2" name="b"/>
</application>)"},
    // Entries.
    {"incomplete-server-entry", Handling::dropped, Severity::error,
     "An entry needs the attributes key, name and addrs; the one named here is missing.",
     "Add the missing attribute: key is a number, name lists the servers, addrs their addresses.",
     "storage/skeleton_v1.xml",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East"/>
    </server>
</application>)",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs="192.0.2.1:9211"/>
    </server>
</application>)"},
    {"server-entry-without-address", Handling::dropped, Severity::error,
     "None of the entry's addresses is host:port or weight:host:port, so it gives no server.",
     "Write at least one address as host:port.", "storage/skeleton_v1.xml",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs="192.0.2.1"/>
    </server>
</application>)",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs="192.0.2.1:9211"/>
    </server>
</application>)"},
    {"server-without-name", Handling::defaulted, Severity::warning,
     "Between two \";\", or beside one at an end, stands an empty name, which makes a server.",
     "Delete the extra \";\".", "storage/skeleton_v1.xml",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East;" addrs="192.0.2.1:9211"/>
    </server>
</application>)",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs="192.0.2.1:9211"/>
    </server>
</application>)"},
    {"too-many-servers", Handling::dropped, Severity::error,
     "Beside the first of each entry, the names of a group give at most 250,000 servers and 16 MiB "
     "of names and hosts; these names give none.",
     "Each name of an entry makes a server. The limit keeps a small file from taking all memory."},
    // Addresses.
    {"empty-server-address", Handling::dropped, Severity::error,
     "Between two \";\", or beside one at an end, stands an empty address.",
     "Delete the extra \";\".", "storage/skeleton_v1.xml",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs="192.0.2.1:9211;"/>
    </server>
</application>)",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs="192.0.2.1:9211"/>
    </server>
</application>)"},
    {"address-without-port", Handling::dropped, Severity::error,
     "An address is host:port or weight:host:port; without a port it is never chosen.",
     "It is never chosen. Add the port.", "storage/skeleton_v1.xml",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs="192.0.2.1:9211;192.0.2.2"/>
    </server>
</application>)",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs="192.0.2.1:9211;192.0.2.2:9211"/>
    </server>
</application>)"},
    {"address-with-too-many-parts", Handling::defaulted, Severity::warning,
     "Of more than three parts the second is the host and the third the port; the others are "
     "ignored.",
     "Write host:port.", "storage/skeleton_v1.xml",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs="1:192.0.2.1:9211:x"/>
    </server>
</application>)",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs="192.0.2.1:9211"/>
    </server>
</application>)"},
    {"ipv6-address", Handling::defaulted, Severity::warning,
     "An address is cut at every \":\", so that an IPv6 address cannot be written; its parts give "
     "a wrong host and port.",
     "Write a host name that has the IPv6 address.", "storage/skeleton_v1.xml",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs="[2001:db8::1]:9211"/>
    </server>
</application>)",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs="east.example.com:9211"/>
    </server>
</application>)"},
    {"address-without-host", Handling::defaulted, Severity::warning,
     "The host before the port is empty.", "Write the host before the port.",
     "storage/skeleton_v1.xml",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs=":9211"/>
    </server>
</application>)",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs="192.0.2.1:9211"/>
    </server>
</application>)"},
    {"odd-server-port", Handling::defaulted, Severity::warning,
     "A port is a plain number from 1 to 65535; of this one the number that it begins with is "
     "stored, 0 without one.",
     "Write digits only.", "storage/skeleton_v1.xml",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs="192.0.2.1:9211x"/>
    </server>
</application>)",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs="192.0.2.1:9211"/>
    </server>
</application>)"},
    {"address-weight", Handling::dropped, Severity::note,
     "Weights have no effect: each address of an entry has the same chance.",
     "Delete the number before the host. To make an address more likely, write it twice.",
     "storage/skeleton_v1.xml",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs="3:192.0.2.1:9211;192.0.2.2:9211"/>
    </server>
</application>)",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs="192.0.2.1:9211;192.0.2.2:9211"/>
    </server>
</application>)"},

    // ---- Settings, web pages and request URLs ----
    // Settings.
    {"settings-root-name", Handling::dropped, Severity::error,
     "The root of a settings file is named \"config\"; no item of this file is read, and what is "
     "written into it is lost.",
     "No item can be read, and what the application stores is lost at the next start. Name the "
     "root \"config\".",
     "storage/app_config.xml",
     R"(<settings>
    <chart><grid>true</grid></chart>
</settings>)",
     R"(<config>
    <chart><grid>true</grid></chart>
</config>)"},
    {"lost-setting", Handling::unresolved, Severity::error,
     "Without a root element named \"config\" an item cannot be read again once it is written.",
     "The file is missing, cannot be read, or its root has another name. Put a file <config/> in "
     "its place."},
    {"duplicate-item", Handling::dropped, Severity::error,
     "Of the items of one name in the sections of one name only the first is read.",
     "Delete one of them. What the application stores goes to the first.", "storage/app_config.xml",
     R"(<config>
    <chart><grid>true</grid><grid>false</grid></chart>
</config>)",
     R"(<config>
    <chart><grid>true</grid></chart>
</config>)"},
    {"no-element-name", Handling::unresolved, Severity::warning,
     "Sections and items are named like elements; this is not an element name.",
     R"(A name begins with a letter or "_" and has letters, digits, "-", "_" and ".".)"},
    {"unreadable-setting", Handling::unresolved, Severity::error,
     "With this item the file could not be read again at the next start, so nothing changes.",
     "The text is too long, or the file would be too large."},
    // Settings and web pages.
    {"element-in-text", Handling::defaulted, Severity::warning,
     "Only the text counts here, of elements inside it their text.",
     R"(Write the text alone. A "<" that belongs to the text is written "&lt;".)",
     "storage/app_config.xml",
     R"(<config>
    <chart><title>daily <b>chart</b></title></chart>
</config>)",
     R"(<config>
    <chart><title>daily chart</title></chart>
</config>)"},
    // Web pages.
    {"web-page-root-name", Handling::dropped, Severity::error,
     "The root of a web page table is named \"urls\"; no address of this file is read.",
     "Name the root \"urls\".", "storage/web_page_urls.xml",
     R"(<pages>
    <url key="help">https://example.com/</url>
</pages>)",
     R"(<urls>
    <url key="help">https://example.com/</url>
</urls>)"},
    {"web-page-without-key", Handling::dropped, Severity::error,
     "An address needs a key to be found by.", "Add the key that the application asks for.",
     "storage/web_page_urls.xml",
     R"(<urls>
    <url>https://example.com/</url>
</urls>)",
     R"(<urls>
    <url key="help">https://example.com/</url>
</urls>)"},
    {"duplicate-web-page", Handling::dropped, Severity::error,
     "Only the first address of a key is read.", "Delete one of them, or give it another key.",
     "storage/web_page_urls.xml",
     R"(<urls>
    <url key="help">https://a.example/</url><url key="help">https://b.example/</url>
</urls>)",
     R"(<urls>
    <url key="help">https://a.example/</url>
</urls>)"},
    {"key-with-apostrophe", Handling::dropped, Severity::error,
     "A key with an apostrophe is never found.", "Use another key.", "storage/web_page_urls.xml",
     R"(<urls>
    <url key="what's-new">https://example.com/</url>
</urls>)",
     R"(<urls>
    <url key="whats-new">https://example.com/</url>
</urls>)"},
    {"escaped-twice", Handling::defaulted, Severity::warning,
     "Every \"&\" of a delivered table is escaped, also one that is part of \"&amp;\", which then "
     "stays in the address.",
     "In a table that a server delivers, write a plain \"&\"; in a file on the disk write "
     "\"&amp;\" once.",
     "storage/web_page_urls.xml",
     R"(<urls>
    <url key="help">https://example.com/?a=1&amp;amp;b=2</url>
</urls>)",
     R"(<urls>
    <url key="help">https://example.com/?a=1&amp;b=2</url>
</urls>)"},
    {"unknown-web-page", Handling::unresolved, Severity::warning,
     "No address has this key; the answer is about:blank.", "Check the key; letter case counts.",
     "", R"(getWebPageUrlByKey("Help"))", R"(getWebPageUrlByKey("help"))"},
    {"unreadable-web-pages", Handling::unresolved, Severity::warning,
     "The delivered table is not well-formed XML, so nothing changes.",
     "The table that was known before stays."},
    // Web pages and request URLs.
    {"blanks-around-address", Handling::defaulted, Severity::warning,
     "Nothing is trimmed: the blanks before or behind the address are part of it.",
     "Delete them: a browser may not find the page.", "storage/web_page_urls.xml",
     R"(<urls>
    <url key="help"> https://example.com/ </url>
</urls>)",
     R"(<urls>
    <url key="help">https://example.com/</url>
</urls>)"},
    // Request URLs.
    {"unreadable-url-list", Handling::unresolved, Severity::warning,
     "The file is missing or is not a JSON object, so there is no list.",
     "The file must be one JSON object. The value says what is wrong with it.",
     "storage/request_urls_json.txt", "[]", R"({"md5Value": "1", "urlConfigList": []})"},
    {"failed-download", Handling::unresolved, Severity::warning,
     "The download did not end with a whole answer or is not a JSON object, so the list stays.",
     "The list that was known before stays. The value is the cause."},
    {"unknown-member", Handling::dropped, Severity::error, "No member of this name is read here.",
     "Check the spelling; letter case counts.", "storage/request_urls_json.txt",
     R"({"md5": "1", "md5Value": "1", "urlConfigList": []})",
     R"({"md5Value": "1", "urlConfigList": []})"},
    {"member-of-wrong-type", Handling::dropped, Severity::error,
     "The member is of a type that is not read here, so it counts as missing.",
     "Texts are in quotes, a list is in brackets.", "storage/request_urls_json.txt",
     R"({"md5Value": "1", "urlConfigList": {}})", R"({"md5Value": "1", "urlConfigList": []})"},
    {"replaced-member", Handling::dropped, Severity::error,
     "A later member of the same name counts.",
     "Of the members of one name in an object only the last is read. Delete the others.",
     "storage/request_urls_json.txt", R"({"md5Value": "2", "md5Value": "1", "urlConfigList": []})",
     R"({"md5Value": "1", "urlConfigList": []})"},
    {"number-for-text", Handling::defaulted, Severity::warning,
     "A text is expected; the number is read as its decimal text.", "Put the number in quotes.",
     "storage/request_urls_json.txt", R"({"md5Value": 1, "urlConfigList": []})",
     R"({"md5Value": "1", "urlConfigList": []})"},
    {"list-without-digest", Handling::unresolved, Severity::warning,
     "Without a digest a download changes nothing, and a stored list is always replaced.",
     "The digest distinguishes the versions of the list. The server that makes the list sets "
     "it.",
     "storage/request_urls_json.txt", R"({"urlConfigList": []})",
     R"({"md5Value": "1", "urlConfigList": []})"},
    {"same-digest-other-entries", Handling::unresolved, Severity::error,
     "The download has other entries under the digest of the current list, which stays.",
     "The server has changed the list but not its digest."},
    {"url-without-key", Handling::unresolved, Severity::error,
     "An entry needs a key to be found by.", "Add the member \"urlKey\".",
     "storage/request_urls_json.txt",
     R"({"md5Value": "1", "urlConfigList": [{"urlValue": "http://example.com/"}]})",
     R"({"md5Value": "1", "urlConfigList": [{"urlKey": "quote", "urlValue": "http://example.com/"}]})"},
    {"url-without-value", Handling::unresolved, Severity::warning,
     "The entry has no address; its key gives none.", "Add the member \"urlValue\".",
     "storage/request_urls_json.txt",
     R"({"md5Value": "1", "urlConfigList": [{"urlKey": "quote"}]})",
     R"({"md5Value": "1", "urlConfigList": [{"urlKey": "quote", "urlValue": "http://example.com/"}]})"},
    {"duplicate-url-key", Handling::unresolved, Severity::error,
     "Only the first entry of a key is found.",
     "Delete one of the entries, or give it another key.", "storage/request_urls_json.txt",
     R"({"md5Value": "1", "urlConfigList": [{"urlKey": "q", "urlValue": "http://a.example/"}, {"urlKey": "q", "urlValue": "http://b.example/"}]})",
     R"({"md5Value": "1", "urlConfigList": [{"urlKey": "q", "urlValue": "http://a.example/"}]})"},
    {"unknown-url-key", Handling::unresolved, Severity::warning, "No entry has this key.",
     "Check the key; letter case counts.", "", R"(httpReqUrlStringWithUrlKey("Quote"))",
     R"(httpReqUrlStringWithUrlKey("quote"))"},
};

/// The name of a rule where it is compiled.
template <std::size_t size>
struct RuleName {
    consteval RuleName(const char (&name)[size]) { std::copy_n(name, size, text); }
    char text[size];
};

/// "unknown-attribute"_rule is that rule; a name that is not in the table does not compile.
template <RuleName name>
constexpr const Rule& operator""_rule() {
    constexpr const Rule* rule =
        std::ranges::find(ruleTable, std::string_view(name.text), &Rule::name);
    static_assert(rule != std::end(ruleTable), "no such rule");
    return *rule;
}

}  // namespace yg
