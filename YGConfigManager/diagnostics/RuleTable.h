// SPDX-License-Identifier: MIT
//
// The one table of rules. Internal: applications walk it by Rule.h.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string_view>

#include "YGConfigManager/diagnostics/Rule.h"

namespace yg {

inline constexpr Rule ruleTable[] = {
    // ---- All formats ----
    {"unreadable-file", Handling::unresolved, Severity::warning,
     "The file is missing or is not well-formed XML, so it contributes nothing."},
    {"unsaved-file", Handling::unresolved, Severity::warning,
     "The file could not be written; what was to be in it is not there at the next start."},
    {"unknown-attribute", Handling::dropped, Severity::error,
     "No attribute of this name is read here."},
    {"unknown-element", Handling::dropped, Severity::error,
     "No element of this name has a meaning here."},
    {"stray-text", Handling::dropped, Severity::error, "Text has no meaning here."},
    {"odd-flag", Handling::defaulted, Severity::warning,
     "A flag is true only for the exact text \"true\"; this reads as false."},
    {"odd-number", Handling::defaulted, Severity::warning,
     "The text is not a plain number in range: only the number that it begins with counts, 0 "
     "without one, the nearest bound when it is too large."},
    {"empty-list", Handling::defaulted, Severity::warning, "An empty list counts as no list."},
    {"unread-content", Handling::dropped, Severity::error,
     "What is inside this element is not read here."},

    // ---- The layout ----
    // Styles.
    {"style-without-name", Handling::dropped, Severity::error,
     "A style needs a name that is not empty."},
    {"duplicate-style", Handling::replaced, Severity::warning,
     "A later style of the same name replaces the earlier one."},
    {"overridden-style", Handling::replaced, Severity::warning,
     "The soft-optimize file's style replaces the main file's style of the same name."},
    {"style-element-name", Handling::defaulted, Severity::error,
     "Only an element named \"style\" can have panels, so this style stays without them."},
    {"ignored-default-style", Handling::dropped, Severity::error,
     "The tab file cannot name the default style; only the main and the soft-optimize style file "
     "can."},
    {"soft-optimize-dropped", Handling::unresolved, Severity::error,
     "The main style file yields no styles, so the soft-optimize styles are dropped with it."},
    {"no-templates", Handling::unresolved, Severity::warning,
     "Without a soft-optimize style file no custom page can be built from a template."},
    // Panels and elements.
    {"misplaced-panel", Handling::dropped, Severity::error,
     "A panel stands below a style, a panel or a reuse panel; here it is dropped with all in it."},
    {"misplaced-element", Handling::dropped, Severity::error,
     "An element stands inside a panel; here it is dropped."},
    {"element-without-name", Handling::dropped, Severity::error,
     "An element needs a name that is not empty."},
    {"rtline-view-left-out", Handling::dropped, Severity::error,
     "Stock detail pages leave out a panel named rtline_view inside another panel."},
    // Magic and reuse panels.
    {"missing-name", Handling::dropped, Severity::error,
     "This needs a name; without one it is dropped."},
    {"duplicate-name", Handling::replaced, Severity::warning,
     "A later definition of the same name replaces the earlier one."},
    {"replaced-group", Handling::replaced, Severity::warning,
     "The soft-optimize file's group replaces the group of the same name whole; members are not "
     "merged."},
    {"unexpected-element-name", Handling::unresolved, Severity::warning,
     "It is read in spite of its element name, but custom pages find it under the proper one "
     "only."},
    {"member-without-panel", Handling::dropped, Severity::error,
     "A magic panel needs an element inside, its panel."},
    {"second-panel", Handling::dropped, Severity::error,
     "Only the first element inside a magic panel is its panel."},
    {"comment-before-panel", Handling::unresolved, Severity::warning,
     "Custom pages take whatever comes first inside a magic panel: here not its panel, but a "
     "comment, so that they show nothing in its place."},
    {"misplaced-magic-panels", Handling::dropped, Severity::error,
     "A slot for magic panels stands below a style or a panel; here nothing is shown."},
    {"unknown-magic-group", Handling::unresolved, Severity::warning,
     "No group of magic panels of this name is known here."},
    {"empty-magic-group", Handling::unresolved, Severity::warning,
     "The group of magic panels has no member to show."},
    {"misplaced-reuse-panel", Handling::dropped, Severity::error,
     "A reuse panel stands inside a panel; here it is dropped."},
    {"unknown-reuse-panel", Handling::unresolved, Severity::warning,
     "No reuse panel of this name is known here."},
    {"expansion-limit", Handling::unresolved, Severity::warning,
     "References, slots and names add at most 1,000,000 elements and 64 MiB to a load or a custom "
     "page; this would be more. It is not added, and a page is not built."},
    // Custom pages.
    {"unknown-template", Handling::unresolved, Severity::warning,
     "No style is the template that the page's name begins with."},
    {"argument-count", Handling::unresolved, Severity::warning,
     "A custom page's name gives exactly one argument for each slot of its template."},
    {"slot-left", Handling::unresolved, Severity::warning,
     "Neither a member nor a pattern serves this argument, so the slot stays as it is."},
    {"broken-pattern", Handling::unresolved, Severity::warning,
     "With the argument written into it the pattern is not well-formed XML, so the slot stays as "
     "it "
     "is."},

    // ---- Events and commands ----
    // Sections.
    {"event-root-name", Handling::dropped, Severity::error,
     "The root of an event configuration is named \"event_list\"; nothing of this file is read."},
    {"nested-event-section", Handling::dropped, Severity::error,
     "A section stands directly below the root; here it is taken for an entry of the section "
     "around it."},
    {"empty-event-section", Handling::dropped, Severity::error,
     "A section without any content has no effect."},
    {"event-section-without-name", Handling::dropped, Severity::error,
     "A template or group needs a name that is not empty."},
    {"template-without-events", Handling::dropped, Severity::error,
     "A template without an event is not kept; an earlier one of the same name stays."},
    {"duplicate-event-template", Handling::replaced, Severity::warning,
     "A later template of the same name replaces the earlier one for all that follows."},
    {"duplicate-event-group", Handling::replaced, Severity::warning,
     "A later group of the same name replaces the earlier one whole; events are not merged."},
    // Commands and events.
    {"command-without-name", Handling::dropped, Severity::error, "A command needs a name."},
    {"unreachable-command", Handling::dropped, Severity::error,
     "A command whose name is empty can never be looked up."},
    {"duplicate-command", Handling::replaced, Severity::warning,
     "A later command of the same name replaces the earlier one, whatever section it is in."},
    {"event-without-name", Handling::dropped, Severity::error, "An event needs a name."},
    {"unreachable-event", Handling::dropped, Severity::error,
     "An event whose name is empty can never be looked up."},
    {"duplicate-event", Handling::replaced, Severity::warning,
     "A later event of the same name replaces the one defined above it."},
    {"overridden-template-event", Handling::replaced, Severity::warning,
     "This takes the place of the event of the same name that a template included above brought."},
    {"event-lost-to-template", Handling::replaced, Severity::warning,
     "The included template has an event of the same name, which replaces the one defined above."},
    {"event-entry-without-effect", Handling::dropped, Severity::error,
     "Without a name and a src that are not empty this neither defines nor includes anything."},
    // Attributes.
    {"dispatch-spelling", Handling::dropped, Severity::error,
     R"(The attribute is "disptch" in templates and "dispatch" in commands and groups.)"},
    {"attribute-without-event", Handling::dropped, Severity::error,
     "This entry only includes a template; it defines no event that the attribute could belong "
     "to."},
    // Includes.
    {"src-on-event", Handling::dropped, Severity::error,
     "In a group an element named \"event\" includes nothing; any other element name does."},
    {"empty-src", Handling::dropped, Severity::error, "An empty src includes nothing."},
    {"include-without-src", Handling::dropped, Severity::error,
     "In a group an element that is not named \"event\" includes a template, and names it by a src "
     "that is not empty."},
    {"later-event-template", Handling::unresolved, Severity::warning,
     "A template reaches only templates that end before it begins."},
    {"unknown-event-template", Handling::unresolved, Severity::warning,
     "No template of this name with an event is known."},
    {"include-limit", Handling::unresolved, Severity::warning,
     "Includes add at most 1,000,000 events and 64 MiB to a file; "
     "with this one it would be more, so "
     "it adds nothing."},

    // ---- Palettes ----
    // Files and sections.
    {"no-palette-path", Handling::unresolved, Severity::warning,
     "The host has no path for the palette of this style; 0 is the light one, 1 the dark one."},
    {"palette-root-name", Handling::dropped, Severity::error,
     "The root of a palette is named \"ROOT\"; nothing of this file is read."},
    {"unknown-palette-section", Handling::dropped, Severity::error,
     "ROOT holds SWPALETTE, which holds COLORES, FONTS, BITMAPS and APP_MAP, which holds COLORES "
     "and FONTS; nothing else is read."},
    {"second-palette-section", Handling::dropped, Severity::error,
     "Of several sections only the first is read."},
    {"no-image-folder", Handling::unresolved, Severity::warning,
     "The host has no folder for images, so none is loaded."},
    // Entries.
    {"palette-entry-without-name", Handling::dropped, Severity::error,
     "A colour, a font or an image needs a NAME."},
    {"unreachable-palette-name", Handling::dropped, Severity::error,
     "A colour or font whose name is empty is never found: an empty VALUE means none."},
    {"duplicate-palette-name", Handling::replaced, Severity::warning,
     "A later entry of the same NAME replaces the earlier one of its section."},
    {"incomplete-palette-key", Handling::dropped, Severity::error,
     "A key needs the attributes KEY and VALUE; the one named here is missing."},
    {"duplicate-palette-key", Handling::replaced, Severity::warning,
     "A later entry of the same KEY replaces the earlier one of its section."},
    // Colours.
    {"missing-color-component", Handling::defaulted, Severity::warning,
     "A colour needs R, G and B; the one named here is missing and reads as 0."},
    {"color-component-out-of-range", Handling::defaulted, Severity::warning,
     "R, G and B go from 0 to 255; the nearest of these counts."},
    {"alpha-out-of-range", Handling::defaulted, Severity::warning,
     "A goes from 0 to 1, not to 255; the nearest of these counts."},
    {"unknown-palette-color", Handling::unresolved, Severity::warning,
     "The palette has no colour of this name; the key shows red."},
    // Fonts.
    {"font-without-size", Handling::defaulted, Severity::warning,
     "A font needs a HEIGHT above 0; without one it has the default size, 12 points."},
    {"unknown-font-face", Handling::unresolved, Severity::warning,
     "No installed face has this name; the system font of the same size stands in."},
    {"unknown-palette-font", Handling::unresolved, Severity::warning,
     "The palette has no font of this name; the key shows the system font of 12 points."},
    // Images.
    {"image-without-path", Handling::dropped, Severity::error, "An image needs a PATH."},
    {"image-outside-folder", Handling::unresolved, Severity::warning,
     "The path leads out of the image folder; what it names is read all the same."},
    {"unreadable-image", Handling::unresolved, Severity::warning,
     "The file is missing, damaged, too large, or neither PNG nor JPEG, so its name has no image."},
    {"too-many-image-pixels", Handling::dropped, Severity::error,
     "The images before this one have 64 Mi pixels together or more, damaged ones too, so it is "
     "not "
     "loaded."},
    {"too-many-image-bytes", Handling::dropped, Severity::error,
     "The image files before this one have 256 MiB together or more, so it is not loaded."},

    // ---- Servers ----
    // Documents and groups.
    {"unreadable-delivery", Handling::unresolved, Severity::warning,
     "What was delivered is empty, is not well-formed XML or could not be read again once it is "
     "saved, so nothing changes."},
    {"replaced-md5", Handling::replaced, Severity::warning,
     "The digest that came with the delivery takes the place of the document's own."},
    {"server-root-name", Handling::dropped, Severity::error,
     "The root of a server configuration is named \"application\"; no group of this file is read."},
    {"server-group-without-type", Handling::dropped, Severity::error,
     "A group needs a type to be found by."},
    {"server-type-never-loaded", Handling::dropped, Severity::error,
     "Groups of the types 1, 2, 3, 4, 5, 7 and 8 are loaded, no other."},
    {"second-server-group", Handling::dropped, Severity::error,
     "Only the first group of a type is read."},
    // Entries.
    {"incomplete-server-entry", Handling::dropped, Severity::error,
     "An entry needs the attributes key, name and addrs; the one named here is missing."},
    {"server-entry-without-address", Handling::dropped, Severity::error,
     "None of the entry's addresses can be used, so it gives no server."},
    {"server-without-name", Handling::defaulted, Severity::warning,
     "Between two \";\", or beside one at an end, stands an empty name, which makes a server."},
    {"too-many-servers", Handling::dropped, Severity::error,
     "Beside the first of each entry, the names of a group give at most 250,000 servers and 16 MiB "
     "of names and hosts."},
    // Addresses.
    {"empty-server-address", Handling::dropped, Severity::error,
     "Between two \";\", or beside one at an end, stands an empty address."},
    {"address-without-port", Handling::dropped, Severity::error,
     "An address is host:port or weight:host:port."},
    {"address-with-too-many-parts", Handling::defaulted, Severity::warning,
     "Of more than three parts the second is the host and the third the port; the others are "
     "ignored."},
    {"ipv6-address", Handling::defaulted, Severity::warning,
     "An address is cut at every \":\", so that an IPv6 address cannot be written; what its parts "
     "give is no usable host."},
    {"address-without-host", Handling::defaulted, Severity::warning,
     "The host before the port is empty."},
    {"odd-server-port", Handling::defaulted, Severity::warning,
     "The port is no plain number: only the number that it begins with counts, 0 without one."},
    {"server-port-out-of-range", Handling::unresolved, Severity::warning,
     "A port is a number from 1 to 65535; this one is stored all the same."},
    {"address-weight", Handling::dropped, Severity::error,
     "Weights have no effect: each address of an entry has the same chance."},

    // ---- Settings, web pages and request URLs ----
    // Settings.
    {"settings-root-name", Handling::dropped, Severity::error,
     "The root of a settings file is named \"config\"; no item of this file is read, and what is "
     "written into it is lost."},
    {"lost-setting", Handling::dropped, Severity::error,
     "Without a root element named \"config\" an item cannot be read again once it is written."},
    {"duplicate-item", Handling::dropped, Severity::error,
     "Of the items of one name in the sections of one name only the first is read."},
    {"no-element-name", Handling::unresolved, Severity::warning,
     "Sections and items are named like elements; this is no such name."},
    {"unreadable-setting", Handling::dropped, Severity::error,
     "With this item the file could not be read again at the next start, so nothing changes."},
    // Settings and web pages.
    {"element-in-text", Handling::defaulted, Severity::warning,
     "Only the text counts here, of elements inside it their text."},
    // Web pages.
    {"web-page-root-name", Handling::dropped, Severity::error,
     "The root of a web page table is named \"urls\"; no address of this file is read."},
    {"web-page-without-key", Handling::dropped, Severity::error,
     "An address needs a key to be found by."},
    {"duplicate-web-page", Handling::dropped, Severity::error,
     "Only the first address of a key is read."},
    {"key-with-apostrophe", Handling::unresolved, Severity::warning,
     "A key with an apostrophe is never found."},
    {"escaped-twice", Handling::defaulted, Severity::warning,
     "Every \"&\" of a delivered table is escaped, also one that is part of \"&amp;\", which then "
     "stays in the address."},
    {"unknown-web-page", Handling::unresolved, Severity::warning,
     "No address has this key; the answer is about:blank."},
    {"unreadable-web-pages", Handling::unresolved, Severity::warning,
     "The delivered table is not well-formed XML, so nothing changes."},
    // Web pages and request URLs.
    {"blanks-around-address", Handling::defaulted, Severity::warning,
     "Nothing is trimmed: the blanks before or behind the address are part of it."},
    // Request URLs.
    {"unreadable-url-list", Handling::unresolved, Severity::warning,
     "The file is missing or is not a JSON object, so there is no list."},
    {"failed-download", Handling::unresolved, Severity::warning,
     "The download did not end with a whole answer or is not a JSON object, so the list stays."},
    {"unknown-member", Handling::dropped, Severity::error, "No member of this name is read here."},
    {"member-of-wrong-type", Handling::dropped, Severity::error,
     "The member is of a type that is not read here, so it counts as missing."},
    {"number-for-text", Handling::defaulted, Severity::warning,
     "A text is expected; the number is read as its decimal text."},
    {"list-without-digest", Handling::unresolved, Severity::warning,
     "Without a digest a download changes nothing, and a stored list is always replaced."},
    {"same-digest-other-entries", Handling::dropped, Severity::error,
     "The download has other entries under the digest of the current list, which stays."},
    {"url-without-key", Handling::dropped, Severity::error, "An entry needs a key to be found by."},
    {"url-without-value", Handling::unresolved, Severity::warning,
     "The entry has no address; its key gives none."},
    {"duplicate-url-key", Handling::dropped, Severity::error,
     "Only the first entry of a key is read."},
    {"unknown-url-key", Handling::unresolved, Severity::warning, "No entry has this key."},
};

/// "unknown-attribute"_rule is that rule; a name that is not in the table does not compile.
consteval const Rule& operator""_rule(const char* name, std::size_t length) {
    for (const Rule& rule : ruleTable) {
        if (rule.name == std::string_view(name, length))
            return rule;
    }
    throw std::invalid_argument("no such rule");
}

}  // namespace yg
