// SPDX-License-Identifier: MIT
//
// The layout: style files, magic panels and reuse panels. All of them have panels and elements.
#include "YGConfigManager/formats/Formats.h"
#include "YGConfigManager/layout/ElementConfigInfo.h"
#include "YGConfigManager/layout/LayoutEntries.h"
#include "YGConfigManager/layout/PanelConfigInfo.h"
#include "YGConfigManager/layout/StyleConfigInfo.h"

namespace yg {

namespace {

// ---- What is in a panel ----

constexpr auto elementRows = rowsOf(attributesOf<ElementConfigInfo>);
constexpr ValueInfo elementValues[] = {notEmpty("name")};
constexpr const Rule* elementRules[] = {&"misplaced-element"_rule, &"element-without-name"_rule};
constexpr ElementInfo element = {
    .id = "element",
    .name = "element",
    .sentence = "An element: a view in a panel.",
    .attributes = elementRows,
    .values = elementValues,
    .rules = elementRules,
};

constexpr auto slotRows = rowsOf(attributesOf<Named<magicSlot>>);
constexpr const Rule* slotRules[] = {
    &"missing-name"_rule,      &"misplaced-magic-panels"_rule, &"unknown-magic-group"_rule,
    &"empty-magic-group"_rule, &"expansion-limit"_rule,
};
constexpr ElementInfo slot = {
    .id = "magic_panels",
    .name = "magic_panels",
    .sentence =
        "A slot: shows the first magic panel of a group, until the terminal changes it. A "
        "custom page says which one each slot begins with.",
    .attributes = slotRows,
    .rules = slotRules,
};

constexpr auto referenceRows = rowsOf(attributesOf<Named<reuseReference>>);
constexpr const Rule* referenceRules[] = {
    &"missing-name"_rule,
    &"misplaced-reuse-panel"_rule,
    &"unknown-reuse-panel"_rule,
    &"expansion-limit"_rule,
};
constexpr ElementInfo reference = {
    .id = "reuse_panel",
    .name = "reuse_panel",
    .sentence = "Shows a reuse panel here.",
    .attributes = referenceRows,
    .rules = referenceRules,
};

extern const ElementInfo panel;

constexpr auto panelRows = rowsOf(attributesOf<PanelConfigInfo>);
constexpr const ElementInfo* panelContent[] = {&panel, &element, &slot, &reference};
constexpr const Rule* panelRules[] = {
    &"misplaced-panel"_rule,
    &"rtline-view-left-out"_rule,
    &"expansion-limit"_rule,
};
constexpr ElementInfo panel = {
    .id = "panel",
    .name = "panel",
    .sentence =
        "A panel: a rectangle that holds panels and elements. The two are kept in lists "
        "of their own, each in the order of the file.",
    .attributes = panelRows,
    .content = panelContent,
    .rules = panelRules,
};

// ---- Style files ----

constexpr auto styleRows = rowsOf(attributesOf<StyleConfigInfo>);
constexpr ValueInfo styleValues[] = {notEmpty("name")};
constexpr const ElementInfo* styleContent[] = {&panel, &slot};
constexpr const Rule* styleRules[] = {
    &"style-element-name"_rule,
    &"style-without-name"_rule,
    &"duplicate-style"_rule,
    &"overridden-style"_rule,
};
constexpr ElementInfo style = {
    .id = "style",
    .name = "style",
    .sentence = "A style: one page, or the template of custom pages.",
    .attributes = styleRows,
    .values = styleValues,
    .content = styleContent,
    .rules = styleRules,
};

constexpr AttributeInfo styleRootRows[] = {defaultStyle};
constexpr const ElementInfo* stylesContent[] = {&style};
constexpr const Rule* stylesRules[] = {
    &"ignored-default-style"_rule,
    &"soft-optimize-dropped"_rule,
    &"no-templates"_rule,
};
constexpr ElementInfo styles = {
    .id = "styles",
    .usualName = "styles",
    .sentence = "The root.",
    .attributes = styleRootRows,
    .content = stylesContent,
    .rules = stylesRules,
};

constexpr FileInfo styleFiles[] = {
    {"config/FILE", "initWithStyleConfigPath",
     "The main style file. The application gives the whole path; FILE is custompage_template.xml "
     "where it gives none."},
    {"soft_optimize/FILE", "getSoftOptimizeConfigFilePath",
     "The soft-optimize style file, of the same name as the main one. Its styles replace those of "
     "the same name whole, and custom pages look for their templates here first. Without this "
     "file there are no custom pages; without a style in the main file it is dropped."},
    {"config/TAB", "initWithStyleConfigPath",
     "The tab styles: small pages shown inside a tab. The application gives the whole path. They "
     "are kept apart: no change_style finds them, and a default_style is ignored. They alone may "
     "name groups that only the soft-optimize magic panels define."},
};

constexpr std::string_view styleExample = R"(<styles default_style="quotes">
    <style name="quotes" layer="0" focus="list">
        <panel name="page" vertical="true">
            <panel name="list" split_scale="0.7" min_size="320">
                <element name="QuoteGrid" param="all" uuid="quote.list" event="quote_list"
                         event_dispatch_dest="quote.chart" is_first_responder="true"/>
            </panel>
            <magic_panels name="chart"/>
            <reuse_panel name="status_strip"/>
        </panel>
    </style>
</styles>
)";

constexpr std::string_view styleNotes[] = {
    "All three files have the same grammar. They are read in the order of the table above, after "
    "the [reuse panels](reuse_panels.md) and the [magic panels](magic_panels.md).",
    "A custom page is a style that no file has: its name is that of a template, a style of these "
    "files, and one argument for each slot of the template, all joined by `-`, as in "
    "`quote-kline-depth`. Neither template nor argument can have a `-` in its name. Slots are "
    "counted from the top of the file to its end.",
};

// ---- Magic panels ----

constexpr auto memberRows = rowsOf(attributesOf<Named<magicMember>>);
constexpr const ElementInfo* memberContent[] = {&panel};
constexpr const Rule* memberRules[] = {
    &"missing-name"_rule, &"unexpected-element-name"_rule, &"member-without-panel"_rule,
    &"second-panel"_rule, &"comment-before-panel"_rule,    &"duplicate-name"_rule,
};
constexpr ElementInfo member = {
    .id = "magic_panel",
    .name = "magic_panel",
    .sentence =
        "A magic panel: one that may be shown in the slots of its group. Nothing stands "
        "before its panel, not even a comment, or custom pages do not find it.",
    .attributes = memberRows,
    .holds = Content::element,
    .content = memberContent,
    .rules = memberRules,
};

constexpr auto groupRows = rowsOf(attributesOf<Named<yg::magicGroup>>);
constexpr const ElementInfo* magicGroupContent[] = {&member};
constexpr const Rule* magicGroupRules[] = {
    &"missing-name"_rule,
    &"unexpected-element-name"_rule,
    &"duplicate-name"_rule,
    &"replaced-group"_rule,
};
constexpr ElementInfo magicGroup = {
    .id = "group",
    .name = "magic_panels",
    .sentence = "A group of magic panels, which take each other's place.",
    .attributes = groupRows,
    .content = magicGroupContent,
    .rules = magicGroupRules,
};

constexpr const ElementInfo* magicRootContent[] = {&magicGroup};
constexpr ElementInfo magicRoot = {
    .id = "magic_panel_groups",
    .usualName = "magic_panel_groups",
    .sentence = "The root.",
    .content = magicRootContent,
};

constexpr FileInfo magicFiles[] = {
    {"config/magic_panels.xml", "initWithStyleConfigPath",
     "The application gives the whole path. Custom pages are made from this file alone."},
    {"soft_optimize/magic_panels.xml", "getSoftOptimizeConfigFilePath",
     "Of the same name as the first, magic_panels.xml where the application gives none. Its "
     "groups replace those of the same name whole; only tab styles find the others."},
};

constexpr std::string_view magicExample = R"(<magic_panel_groups>
    <magic_panels name="chart">
        <magic_panel name="kline">
            <panel name="kline_view" min_size="320">
                <element name="KLineChart" uuid="kline.chart" event="kline_chart"/>
            </panel>
        </magic_panel>
        <magic_panel name="STOCK">
            <panel name="STOCK_view">
                <element name="KLineChart" param="STOCK" uuid="kline.STOCK" event="kline_chart"/>
            </panel>
        </magic_panel>
    </magic_panels>
</magic_panel_groups>
)";

constexpr std::string_view magicNotes[] = {
    "A custom page's argument names the magic panel that its slot begins with: `kline` in "
    "`quote-kline`. A slot that no magic panel serves stays an ordinary one.",
    "Wildcards: where the group has no magic panel of the argument's name, the host's mapping "
    "table `模版通配` is asked for (`getMappingDicForKey`; `mappings` in "
    "[host.json](host.md)). It lists arguments under wildcards. The wildcard whose list has the "
    "argument is the name of a magic panel that serves as a pattern: everywhere in its XML, "
    "names, values and texts alike, the wildcard is replaced by the argument. With "
    "`\"STOCK\": [\"SH990001\"]` and the example below, `quote-SH990001` shows a panel "
    "`SH990001_view` whose element has the param `SH990001`. No argument may be listed twice.",
};

// ---- Reuse panels ----

/// The attributes of a panel, whose name is that of the reuse panel.
constexpr auto reuseRows = [] {
    auto rows = panelRows;
    for (AttributeInfo& row : rows) {
        if (row.name == yg::reuseDefinition.name)
            row = yg::reuseDefinition;
    }
    return rows;
}();

constexpr const Rule* reuseRules[] = {
    &"missing-name"_rule,
    &"unexpected-element-name"_rule,
    &"duplicate-name"_rule,
};
// A slot is in an element named "panel".
constexpr const ElementInfo* withoutSlots[] = {&panel, &element, &reference};
constexpr ElementInfo reuseDefinition = {
    .id = "definition",
    .name = "reuse_panel",
    .sentence =
        "A reuse panel: a panel that stands here once and is shown wherever a file names "
        "it. All places share one record.",
    .attributes = reuseRows,
    .content = withoutSlots,
    .rules = reuseRules,
};

constexpr const ElementInfo* reuseRootContent[] = {&reuseDefinition};
constexpr ElementInfo reuseRoot = {
    .id = "reuse_panels",
    .usualName = "reuse_panels",
    .sentence = "The root.",
    .content = reuseRootContent,
};

constexpr FileInfo reuseFiles[] = {
    {"base_optimize/reuse_panels.xml", "getBaseOptimizeConfigFilePath",
     "Read first of all layout files."},
};

constexpr std::string_view reuseExample = R"(<reuse_panels>
    <reuse_panel name="status_strip" fix_size="24" display_border="top">
        <panel name="status_state" fix_size="260">
            <element name="StatusBar" param="time" uuid="status.state" always_recv_event="true"/>
        </panel>
    </reuse_panel>
</reuse_panels>
)";

constexpr std::string_view reuseNotes[] = {
    "While this file is read neither reuse panels nor magic panels are known: references and "
    "slots in it are reported as unknown. They count in custom pages alone, where a magic panel "
    "names the reuse panel.",
};

}  // namespace

constexpr FormatInfo stylesFormat = {
    .id = "styles",
    .title = "Styles",
    .sentence = "The pages of the terminal: each a tree of panels whose leaves are elements.",
    .files = styleFiles,
    .root = styles,
    .example = styleExample,
    .notes = styleNotes,
};

constexpr FormatInfo magicPanelsFormat = {
    .id = "magic_panels",
    .title = "Magic panels",
    .sentence = "Groups of panels that may take each other's place in the slots of pages.",
    .files = magicFiles,
    .root = magicRoot,
    .example = magicExample,
    .notes = magicNotes,
};

constexpr FormatInfo reusePanelsFormat = {
    .id = "reuse_panels",
    .title = "Reuse panels",
    .sentence = "Panels that pages and magic panels share.",
    .files = reuseFiles,
    .root = reuseRoot,
    .example = reuseExample,
    .notes = reuseNotes,
};

}  // namespace yg
