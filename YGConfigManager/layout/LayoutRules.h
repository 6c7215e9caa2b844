// SPDX-License-Identifier: MIT
//
// What diagnostics can say of the layout files, beside the rules that all formats share.
#pragma once

#include "YGConfigManager/diagnostics/DiagnosticsSink.h"

namespace yg::rules {

// Styles.
inline constexpr Rule styleWithoutName{"style-without-name", Handling::dropped,
                                       "A style needs a name that is not empty."};
inline constexpr Rule duplicateStyle{"duplicate-style", Handling::replaced,
                                     "A later style of the same name replaces the earlier one."};
inline constexpr Rule overriddenStyle{
    "overridden-style", Handling::replaced,
    "The soft-optimize file's style replaces the main file's style of the same name."};
inline constexpr Rule styleElementName{
    "style-element-name", Handling::dropped,
    "Panels are attached to elements named \"style\" only, so this style stays without panels."};
inline constexpr Rule ignoredDefaultStyle{"ignored-default-style", Handling::dropped,
                                          "The tab file does not name the default style."};
inline constexpr Rule softOptimizeDropped{
    "soft-optimize-dropped", Handling::dropped,
    "The main style file yields no styles, so the soft-optimize styles are dropped with it."};
inline constexpr Rule noTemplates{
    "no-templates", Handling::unresolved,
    "Without a soft-optimize style file no custom page can be built from a template."};

// Panels and elements.
inline constexpr Rule misplacedPanel{
    "misplaced-panel", Handling::dropped,
    "A panel stands below a style, a panel or a reuse panel; here it is dropped with all in it."};
inline constexpr Rule misplacedElement{"misplaced-element", Handling::dropped,
                                       "An element stands inside a panel; here it is dropped."};
inline constexpr Rule elementWithoutName{"element-without-name", Handling::dropped,
                                         "An element needs a name that is not empty."};
inline constexpr Rule realTimeLineView{
    "rtline-view-left-out", Handling::dropped,
    "Stock detail pages leave out a panel named rtline_view inside another panel."};
inline constexpr Rule unreadContent{"unread-content", Handling::dropped,
                                    "What stands inside this element is not read here."};

// Magic and reuse panels.
inline constexpr Rule missingName{"missing-name", Handling::dropped,
                                  "This needs a name; without one it is dropped."};
inline constexpr Rule duplicateName{
    "duplicate-name", Handling::replaced,
    "A later definition of the same name replaces the earlier one."};
inline constexpr Rule replacedGroup{
    "replaced-group", Handling::replaced,
    "The soft-optimize file's group replaces the group of the same name whole; members are not "
    "merged."};
inline constexpr Rule unexpectedName{
    "unexpected-element-name", Handling::unresolved,
    "Taken whatever its name, but custom pages find it under its proper name only."};
inline constexpr Rule memberWithoutPanel{"member-without-panel", Handling::dropped,
                                         "A magic panel needs an element inside, its panel."};
inline constexpr Rule secondPanel{"second-panel", Handling::dropped,
                                  "Only the first element inside a magic panel is its panel."};
inline constexpr Rule misplacedMagicPanels{
    "misplaced-magic-panels", Handling::dropped,
    "A slot for magic panels stands below a style or a panel; here nothing is shown."};
inline constexpr Rule unknownMagicGroup{"unknown-magic-group", Handling::unresolved,
                                        "No group of magic panels of this name is known here."};
inline constexpr Rule emptyMagicGroup{"empty-magic-group", Handling::unresolved,
                                      "The group of magic panels has no member to show."};
inline constexpr Rule misplacedReusePanel{
    "misplaced-reuse-panel", Handling::dropped,
    "A reuse panel stands inside a panel; here it is dropped."};
inline constexpr Rule unknownReusePanel{"unknown-reuse-panel", Handling::unresolved,
                                        "No reuse panel of this name is known here."};
inline constexpr Rule expansionLimit{
    "expansion-limit", Handling::unresolved,
    "References, slots and names add at most 1,000,000 elements and 64 MiB to a load or a custom "
    "page; this would be more. It is not added, and a page is not built."};

// Custom pages.
inline constexpr Rule unknownTemplate{"unknown-template", Handling::unresolved,
                                      "No style is the template that the page's name begins with."};
inline constexpr Rule argumentCount{
    "argument-count", Handling::unresolved,
    "A custom page's name gives exactly one argument for each slot of its template."};
inline constexpr Rule slotLeft{
    "slot-left", Handling::unresolved,
    "Neither a member nor a pattern serves this argument, so the slot stays as it is."};
inline constexpr Rule brokenPattern{"broken-pattern", Handling::unresolved,
                                    "With the argument written into it the pattern is no XML."};

}  // namespace yg::rules
