// SPDX-License-Identifier: MIT
//
// Rows of attributes that no table of a loader states yet. Internal.
#pragma once

#include "YGConfigManager/records/Description.h"

namespace yg {

// ---- The layout ----

inline constexpr AttributeInfo styleRows[] = {
    {.name = "name",
     .sentence = "The page, by the name that a change_style gives. The part of a custom page's "
                 "name before its first \"-\" names its template.",
     .names = Naming::style,
     .defines = true,
     .isRequired = true},
    {.name = "layer", .kind = AttributeKind::integer, .sentence = "The layer of the page."},
    {.name = "focus",
     .sentence = "What has the focus when the page opens.",
     .names = Naming::panel},
};

inline constexpr AttributeInfo styleRootRows[] = {
    {.name = "default_style",
     .sentence = "The page that is shown first. The soft-optimize file's counts before the main "
                 "file's; the tab file's is ignored.",
     .names = Naming::style},
};

inline constexpr AttributeInfo panelRows[] = {
    {.name = "name", .sentence = "The panel's name.", .names = Naming::panel, .defines = true},
    {.name = "split_scale",
     .kind = AttributeKind::decimal,
     .sentence = "The share of the parent's space.",
     .whenMissing = "1.0"},
    {.name = "fix_size",
     .kind = AttributeKind::decimal,
     .sentence = "A fixed size in points; -1 for none.",
     .whenMissing = "-1.0"},
    {.name = "scroll_size",
     .kind = AttributeKind::integer,
     .sentence = "The extent that is scrolled, in points."},
    {.name = "min_size",
     .kind = AttributeKind::wholeNumber,
     .sentence = "The smallest size in points."},
    {.name = "max_size",
     .kind = AttributeKind::wholeNumber,
     .sentence = "The largest size in points."},
    {.name = "vertical",
     .kind = AttributeKind::flag,
     .sentence = "The content is stacked from top to bottom, not from left to right."},
    {.name = "is_scroll_view", .kind = AttributeKind::flag, .sentence = "The panel scrolls."},
    {.name = "is_dis_split_space",
     .kind = AttributeKind::flag,
     .sentence = "Split bars are shown."},
    {.name = "is_dis_wide_bound",
     .kind = AttributeKind::flag,
     .sentence = "A wide boundary is shown."},
    {.name = "is_border_radius",
     .kind = AttributeKind::flag,
     .sentence = "The border has rounded corners."},
    {.name = "is_editable",
     .kind = AttributeKind::flag,
     .sentence = "The user may edit the panel. In a magic panel its name then begins with those "
                 "of the group and the magic panel."},
    {.name = "is_border_right_angle",
     .kind = AttributeKind::flag,
     .sentence = "The border has square corners."},
    {.name = "display_border", .sentence = "Which borders are drawn."},
    {.name = "switch_expand_panel",
     .sentence = "The panel that this one changes with when it is expanded.",
     .names = Naming::panel},
    {.name = "foldPosition", .sentence = "Where the panel folds to."},
    {.name = "excute_command_info",
     .sentence = "The command of the panel.",
     .names = Naming::command},
};

inline constexpr AttributeInfo elementRows[] = {
    {.name = "name", .sentence = "The kind of view.", .isRequired = true},
    {.name = "param", .sentence = "A parameter; the view knows its meaning."},
    {.name = "property", .sentence = "Properties; the view knows their meaning."},
    {.name = "uuid",
     .sentence = "The element's identifier, by which others dispatch to it.",
     .names = Naming::element,
     .defines = true},
    {.name = "event",
     .sentence = "The group of events of the element.",
     .names = Naming::eventGroup},
    {.name = "event_dispatch_dest",
     .kind = AttributeKind::nameList,
     .sentence = "The elements that get this one's events.",
     .names = Naming::element},
    {.name = "event_dispatch_src",
     .kind = AttributeKind::nameList,
     .sentence = "The elements whose events this one gets.",
     .names = Naming::element},
    {.name = "event_not_change_style",
     .kind = AttributeKind::flag,
     .sentence = "The element's events do not change the page."},
    {.name = "is_first_responder",
     .kind = AttributeKind::flag,
     .sentence = "The element takes the keyboard focus first."},
    {.name = "always_recv_event",
     .kind = AttributeKind::flag,
     .sentence = "The element gets events even when it is not active."},
};

inline constexpr AttributeInfo slotRows[] = {
    {.name = "name",
     .sentence = "The group whose first magic panel is shown.",
     .names = Naming::magicGroup,
     .isRequired = true},
};

inline constexpr AttributeInfo referenceRows[] = {
    {.name = "name",
     .sentence = "The reuse panel that is shown.",
     .names = Naming::reusePanel,
     .isRequired = true},
};

inline constexpr AttributeInfo groupNameRows[] = {
    {.name = "name",
     .sentence = "The name that slots give.",
     .names = Naming::magicGroup,
     .defines = true,
     .isRequired = true},
};

inline constexpr AttributeInfo memberNameRows[] = {
    {.name = "name",
     .sentence = "The name that custom pages give, or a wildcard.",
     .names = Naming::magicPanel,
     .defines = true,
     .isRequired = true},
};

// ---- Palettes ----

inline constexpr AttributeInfo colorRows[] = {
    {.name = "R",
     .kind = AttributeKind::decimal,
     .sentence = "Red.",
     .isExpected = true,
     .least = 0,
     .most = 255},
    {.name = "G",
     .kind = AttributeKind::decimal,
     .sentence = "Green.",
     .isExpected = true,
     .least = 0,
     .most = 255},
    {.name = "B",
     .kind = AttributeKind::decimal,
     .sentence = "Blue.",
     .isExpected = true,
     .least = 0,
     .most = 255},
    {.name = "A",
     .kind = AttributeKind::decimal,
     .sentence = "How opaque the colour is.",
     .least = 0,
     .most = 1,
     .whenMissing = "1.0"},
    {.name = "NAME",
     .sentence = "The colour's name.",
     .names = Naming::color,
     .defines = true,
     .isRequired = true},
};

inline constexpr AttributeInfo fontRows[] = {
    {.name = "NAME",
     .sentence = "The font's name.",
     .names = Naming::font,
     .defines = true,
     .isRequired = true},
    {.name = "HEIGHT",
     .kind = AttributeKind::decimal,
     .sentence = "The size in points.",
     .isExpected = true,
     .whenMissing = "12.0"},
    {.name = "FACE",
     .sentence = "An installed face.",
     .isExpected = true,
     .whenMissing = "the system font"},
};

inline constexpr AttributeInfo imageRows[] = {
    {.name = "NAME",
     .sentence = "The image's name.",
     .names = Naming::image,
     .defines = true,
     .isRequired = true},
    {.name = "PATH",
     .sentence = "The file, PNG or JPEG, from the folder of images.",
     .isExpected = true},
};

inline constexpr AttributeInfo colorKeyRows[] = {
    {.name = "KEY",
     .sentence = "The key that views ask for.",
     .names = Naming::colorKey,
     .defines = true,
     .isRequired = true},
    {.name = "VALUE", .sentence = "The colour.", .names = Naming::color, .isRequired = true},
};

inline constexpr AttributeInfo fontKeyRows[] = {
    {.name = "KEY",
     .sentence = "The key that views ask for.",
     .names = Naming::fontKey,
     .defines = true,
     .isRequired = true},
    {.name = "VALUE", .sentence = "The font.", .names = Naming::font, .isRequired = true},
};

// ---- Servers ----

inline constexpr AttributeInfo applicationRows[] = {
    {.name = "md5",
     .sentence = "The digest of the configuration as it was delivered; written with a delivery."},
};

inline constexpr AttributeInfo serverGroupRows[] = {
    {.name = "type",
     .kind = AttributeKind::integer,
     .sentence = "The type of the servers.",
     .names = Naming::serverType,
     .defines = true,
     .isRequired = true},
    {.name = "name", .sentence = "What the servers are for."},
    {.name = "domain", .sentence = "The domain of messages."},
};

inline constexpr AttributeInfo serverEntryRows[] = {
    {.name = "key",
     .kind = AttributeKind::integer,
     .sentence = "The key of the servers.",
     .isRequired = true},
    {.name = "name",
     .sentence = "The names of the servers, between \";\"; each gives one server.",
     .names = Naming::server,
     .defines = true,
     .isRequired = true},
    {.name = "addrs",
     .sentence = "The addresses, between \";\": host:port or weight:host:port. Each server draws "
                 "one of them; the weight has no effect.",
     .isRequired = true},
};

// ---- Settings, web pages and request URLs ----

inline constexpr AttributeInfo itemRows[] = {
    {.name = "description",
     .sentence = "What the item is for. Written with a new item and never changed again."},
};

inline constexpr AttributeInfo webPageRows[] = {
    {.name = "key",
     .sentence = "The key of the address.",
     .names = Naming::webPage,
     .defines = true,
     .isRequired = true},
};

inline constexpr AttributeInfo urlListRows[] = {
    {.name = "md5Value",
     .sentence = "The digest of the list, which tells one version from another.",
     .isExpected = true},
};

inline constexpr AttributeInfo urlEntryRows[] = {
    {.name = "urlKey",
     .sentence = "The key of the address.",
     .names = Naming::requestUrl,
     .defines = true,
     .isRequired = true},
    {.name = "urlValue", .sentence = "The address.", .isExpected = true},
};

}  // namespace yg
