// SPDX-License-Identifier: MIT
//
// Rules of the layout. Internal: a part of RuleTable.h.
#pragma once

#include "YGConfigManager/diagnostics/Rule.h"

namespace yg {

inline constexpr Rule layoutRules[] = {
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
    {"duplicate-style", Handling::replaced, Severity::error,
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
    {"overridden-style", Handling::replaced, Severity::info,
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
    {"overridden-default-style", Handling::replaced, Severity::info,
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
    {"rtline-view-left-out", Handling::dropped, Severity::info,
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
    {"duplicate-name", Handling::replaced, Severity::error,
     "A later definition of the same name replaces the earlier one.",
     "The earlier definition is lost. Rename one of them or delete the earlier one.",
     "base_optimize/reuse_panels.xml",
     R"(<reuse_panels>
    <reuse_panel name="bar" fix_size="40"/><reuse_panel name="bar" fix_size="20"/>
</reuse_panels>)",
     R"(<reuse_panels>
    <reuse_panel name="bar" fix_size="40"/><reuse_panel name="low_bar" fix_size="20"/>
</reuse_panels>)"},
    {"replaced-group", Handling::replaced, Severity::info,
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
    {"unexpected-element-name", Handling::unresolved, Severity::error,
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
    {"comment-before-panel", Handling::unresolved, Severity::error,
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
    {"unknown-magic-group", Handling::unresolved, Severity::error,
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
    {"empty-magic-group", Handling::unresolved, Severity::error,
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
    {"unknown-reuse-panel", Handling::unresolved, Severity::error,
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
    {"expansion-limit", Handling::unresolved, Severity::error,
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
    {"broken-pattern", Handling::unresolved, Severity::error,
     "With the argument written into it the pattern is not well-formed XML, so the slot stays as "
     "it is.",
     "A pattern is a member whose text the argument is written into. An argument with \"<\", \"&\" "
     "or a quotation mark can make it something other than XML; then the slot stays as it is.",
     "", "detail-a<b", "detail-ab"},
    // Found by inspections.
    {"unknown-default-style", Handling::unresolved, Severity::error,
     "The default style names no page.",
     "The page that is shown first must be stored, or be made of a template. Check the name.",
     "config/custompage_template.xml",
     R"(<styles default_style="quoet">
    <style name="quote"/>
</styles>)",
     R"(<styles default_style="quote">
    <style name="quote"/>
</styles>)"},
    {"unknown-focus", Handling::unresolved, Severity::error, "No panel of the page has this name.",
     "The focus of a page is given to one of its panels, by its name. Check the name. The name of "
     "an editable panel in a magic panel is read as GROUP-MEMBER-NAME.",
     "config/custompage_template.xml",
     R"(<styles default_style="quote">
    <style name="quote" focus="mian"><panel name="main"/></style>
</styles>)",
     R"(<styles default_style="quote">
    <style name="quote" focus="main"><panel name="main"/></style>
</styles>)"},
    {"unknown-expand-panel", Handling::unresolved, Severity::error,
     "No panel of the page has this name.",
     "When the panel is expanded, another panel of the same page is switched to. Check the name. "
     "The name of an editable panel in a magic panel is read as GROUP-MEMBER-NAME.",
     "config/custompage_template.xml",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="list"/><panel name="side" switch_expand_panel="lst"/></style>
</styles>)",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="list"/><panel name="side" switch_expand_panel="list"/></style>
</styles>)"},
    {"unknown-dispatch-element", Handling::unresolved, Severity::error,
     "No element of the page has this uuid.",
     "Events go from one element of a page to another, by their uuid. A tab counts as a part of "
     "each page. Check the name.",
     "config/custompage_template.xml",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="main"><element name="tabs" event_dispatch_dest="lst"/><element name="grid" uuid="list"/></panel></style>
</styles>)",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="main"><element name="tabs" event_dispatch_dest="list"/><element name="grid" uuid="list"/></panel></style>
</styles>)"},
    {"missing-on-some-pages", Handling::unresolved, Severity::info,
     "Not all pages that show this have something of this name.",
     "The same panel stands on several pages, or a slot shows one of several members, and the name "
     "exists on some of the pages only. There is nothing to do if that is meant.",
     "config/custompage_template.xml",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="chart"><element name="grid" uuid="grid" event_dispatch_src="tabs"/><magic_panels name="chart"/></panel></style>
</styles>)",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="chart"><element name="grid" uuid="grid"/><magic_panels name="chart"/></panel></style>
</styles>)",
     "config/magic_panels.xml", R"(<groups>
    <magic_panels name="chart"><magic_panel name="kline"><panel name="kline"/></magic_panel><magic_panel name="tabs"><panel name="tabs"><element name="tabs" uuid="tabs"/></panel></magic_panel></magic_panels>
</groups>)"},
    {"duplicate-uuid", Handling::kept, Severity::warning,
     "Two elements of one page have the same uuid.",
     "Events are sent to an element and taken from one by its uuid. When two have the same, it is "
     "not said which one is meant. Rename one of them, also where it is referred to.",
     "config/custompage_template.xml",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="main"><element name="grid" uuid="list"/><element name="tree" uuid="list"/></panel></style>
</styles>)",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="main"><element name="grid" uuid="list"/><element name="tree" uuid="tree"/></panel></style>
</styles>)"},
    {"second-first-responder", Handling::kept, Severity::warning,
     "A page has more than one first responder.",
     "One element of a page takes the keyboard focus first. With two it is not said which one. "
     "Delete the attribute of the others.",
     "config/custompage_template.xml",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="main"><element name="grid" is_first_responder="true"/><element name="tree" is_first_responder="true"/></panel></style>
</styles>)",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="main"><element name="grid" is_first_responder="true"/><element name="tree"/></panel></style>
</styles>)"},
    {"min-above-max", Handling::kept, Severity::error,
     "The smallest size of a panel is above its largest.",
     "No size meets both. Correct one of them. A largest size of 0 is none.",
     "config/custompage_template.xml",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="main" min_size="320" max_size="240"/></style>
</styles>)",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="main" min_size="240" max_size="320"/></style>
</styles>)"},
    {"fixed-size-out-of-bounds", Handling::kept, Severity::warning,
     "The fixed size of a panel is below its smallest or above its largest.",
     "The panel cannot have its fixed size and keep its bounds. Correct one of them.",
     "config/custompage_template.xml",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="main" fix_size="400" max_size="320"/></style>
</styles>)",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="main" fix_size="300" max_size="320"/></style>
</styles>)"},
    {"share-without-space", Handling::kept, Severity::warning,
     "A share of 0 or less gives a panel no space.",
     "The share is the part of the parent's space that the panel has. Give it a share, or a fixed "
     "or a smallest size.",
     "config/custompage_template.xml",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="main" split_scale="0"/></style>
</styles>)",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="main" split_scale="0.5"/></style>
</styles>)"},
    {"shares-above-whole", Handling::kept, Severity::warning,
     "The shares of panels beside each other add up to more than the whole.",
     "Shares below 1 are parts of the parent's space. Panels with a fixed size do not count, nor "
     "do those that a slot or a reference brings. Correct the shares.",
     "config/custompage_template.xml",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="list" split_scale="0.68"/><panel name="side" split_scale="0.42"/></style>
</styles>)",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="list" split_scale="0.68"/><panel name="side" split_scale="0.32"/></style>
</styles>)"},
    {"wildcard-in-two-lists", Handling::dropped, Severity::error,
     "The same value is in two wildcard lists, and only one of them counts.",
     "A custom page looks for the list that holds its argument. With two, a pattern of the other "
     "key is never taken for this value. Delete it from one of them.",
     "host.json", R"({"mappings": {"模版通配": {"FUND": ["F1"], "STOCK": ["F1"]}}})",
     R"({"mappings": {"模版通配": {"FUND": ["F1"], "STOCK": ["S1"]}}})", "config/magic_panels.xml",
     R"(<groups>
    <magic_panels name="chart"><magic_panel name="STOCK"><panel name="STOCK_view"/></magic_panel><magic_panel name="FUND"><panel name="FUND_view"/></magic_panel></magic_panels>
</groups>)"},
    {"wildcard-without-pattern", Handling::unresolved, Severity::warning,
     "No member has the name of this wildcard key.",
     "The values of a list are written into the pattern of its key, the member of the same name in "
     "config/magic_panels.xml. Without one a slot stays as it is. Check the key.",
     "host.json", R"({"mappings": {"模版通配": {"STCOK": ["S1"]}}})",
     R"({"mappings": {"模版通配": {"STOCK": ["S1"]}}})", "config/magic_panels.xml", R"(<groups>
    <magic_panels name="chart"><magic_panel name="STOCK"><panel name="STOCK_view"/></magic_panel><magic_panel name="FUND"><panel name="FUND_view"/></magic_panel></magic_panels>
</groups>)"},
    {"wildcard-with-dash", Handling::dropped, Severity::error,
     "A value with a \"-\" can never be the argument of a custom page.",
     "A page's name is split at each \"-\". Choose another value.", "host.json",
     R"({"mappings": {"模版通配": {"STOCK": ["SH-1"]}}})",
     R"({"mappings": {"模版通配": {"STOCK": ["SH1"]}}})", "config/magic_panels.xml", R"(<groups>
    <magic_panels name="chart"><magic_panel name="STOCK"><panel name="STOCK_view"/></magic_panel><magic_panel name="FUND"><panel name="FUND_view"/></magic_panel></magic_panels>
</groups>)"},
    {"template-with-dash", Handling::kept, Severity::info,
     "A page whose name has a \"-\" is not found as a template of custom pages.",
     "A page's name is split at each \"-\", and the first part is the template. The page itself is "
     "found by its whole name and shows the first member in each slot. Rename it if custom pages "
     "are wanted.",
     "config/custompage_template.xml",
     R"(<styles default_style="my-quote">
    <style name="my-quote"><magic_panels name="chart"/></style>
</styles>)",
     R"(<styles default_style="quote">
    <style name="quote"><magic_panels name="chart"/></style>
</styles>)"},
    {"member-with-dash", Handling::kept, Severity::warning,
     "A member whose name has a \"-\" cannot be chosen by a custom page.",
     "A page's name is split at each \"-\", so that no argument has one. Rename the member.",
     "config/magic_panels.xml",
     R"(<groups>
    <magic_panels name="chart"><magic_panel name="kline"><panel name="kline"/></magic_panel><magic_panel name="day-line"><panel name="day"/></magic_panel></magic_panels>
</groups>)",
     R"(<groups>
    <magic_panels name="chart"><magic_panel name="kline"><panel name="kline"/></magic_panel><magic_panel name="day"><panel name="day"/></magic_panel></magic_panels>
</groups>)",
     "config/custompage_template.xml", R"(<styles default_style="quote">
    <style name="quote"><magic_panels name="chart"/></style>
</styles>)"},
    {"style-hides-custom-page", Handling::kept, Severity::info,
     "A stored page has the name of a page that a template would build.",
     "The stored page is found first, and the template is never used for this name. There is "
     "nothing to do if that is meant.",
     "config/custompage_template.xml",
     R"(<styles default_style="quote">
    <style name="quote"><magic_panels name="chart"/></style><style name="quote-kline"/>
</styles>)",
     R"(<styles default_style="quote">
    <style name="quote"><magic_panels name="chart"/></style><style name="kline"/>
</styles>)"},
    {"unused-magic-group", Handling::kept, Severity::info,
     "No slot shows this group of magic panels.",
     "The group can be deleted if the application does not ask for it by its name.",
     "config/magic_panels.xml",
     R"(<groups>
    <magic_panels name="side"><magic_panel name="depth"><panel name="depth"/></magic_panel></magic_panels>
</groups>)",
     R"(<groups>
    <magic_panels name="chart"><magic_panel name="kline"><panel name="kline"/></magic_panel></magic_panels>
</groups>)",
     "config/custompage_template.xml", R"(<styles default_style="quote">
    <style name="quote"><magic_panels name="chart"/></style>
</styles>)"},
    {"unused-reuse-panel", Handling::kept, Severity::info, "No panel refers to this reuse panel.",
     "The definition can be deleted if the application does not ask for it by its name.",
     "base_optimize/reuse_panels.xml",
     R"(<reuse_panels>
    <reuse_panel name="bar"/>
</reuse_panels>)",
     R"(<reuse_panels>
    <reuse_panel name="toolbar"/>
</reuse_panels>)",
     "config/custompage_template.xml", R"(<styles default_style="quote">
    <style name="quote"><panel name="main"><reuse_panel name="toolbar"/></panel></style>
</styles>)"},
};

}  // namespace yg
