// SPDX-License-Identifier: MIT
//
// The event configuration.
#include "YGConfigManager/events/EventAttributes.h"
#include "YGConfigManager/formats/Formats.h"

namespace yg {

namespace {

constexpr std::string_view sections[] = {"command_event", "event_template", "element_event"};

// ---- Commands ----

constexpr auto commandRows = rowsOf(attributesOf<YGCommandData>);
constexpr ValueInfo commandValues[] = {notEmpty("name")};
constexpr const Rule* commandRules[] = {
    &"command-without-name"_rule, &"unreachable-command"_rule,  &"duplicate-command"_rule,
    &"dispatch-spelling"_rule,    &"nested-event-section"_rule,
};
constexpr ElementInfo command = {
    .id = "command",
    .usualName = "command",
    .otherThan = sections,
    .sentence = "A command: what happens when an event names it.",
    .attributes = commandRows,
    .values = commandValues,
    .rules = commandRules,
};

constexpr const ElementInfo* commandSectionContent[] = {&command};
constexpr const Rule* commandSectionRules[] = {&"empty-event-section"_rule};
constexpr ElementInfo commandSection = {
    .id = "command_event",
    .name = "command_event",
    .sentence = "Commands. All sections of this kind make one table.",
    .content = commandSectionContent,
    .rules = commandSectionRules,
};

// ---- Templates ----

constexpr auto includeRows = rowsOf(attributesOf<EventInclude>);
constexpr ValueInfo includeValues[] = {notEmpty("src")};
constexpr auto templateEventRows =
    optional(rowsOf(templateEventAttributes, attributesOf<EventInclude>), "src");
constexpr ValueInfo templateEventValues[] = {notEmpty("name"), notEmpty("src")};
constexpr const Rule* templateEventRules[] = {
    &"event-entry-without-effect"_rule, &"dispatch-spelling"_rule, &"duplicate-event"_rule,
    &"overridden-template-event"_rule,  &"empty-src"_rule,         &"nested-event-section"_rule,
};
constexpr ElementInfo templateEvent = {
    .id = "template-event",
    .usualName = "event",
    .otherThan = sections,
    .sentence =
        "An event of the template. With a src it also includes another template, after "
        "itself.",
    .attributes = templateEventRows,
    .values = templateEventValues,
    .rules = templateEventRules,
};

constexpr const Rule* templateIncludeRules[] = {
    &"attribute-without-event"_rule,
    &"unknown-event-template"_rule,
    &"event-lost-to-template"_rule,
    &"include-limit"_rule,
};
constexpr ElementInfo templateInclude = {
    .id = "template-include",
    .usualName = "include",
    .otherThan = sections,
    .sentence = "Adds the events of another template.",
    .attributes = includeRows,
    .values = includeValues,
    .rules = templateIncludeRules,
};

constexpr auto templateRows = rowsOf(attributesOf<EventTemplateName>);
constexpr ValueInfo sectionValues[] = {notEmpty("name")};
constexpr const ElementInfo* templateContent[] = {&templateEvent, &templateInclude};
constexpr const Rule* templateRules[] = {
    &"event-section-without-name"_rule,
    &"empty-event-section"_rule,
    &"template-without-events"_rule,
    &"duplicate-event-template"_rule,
};
constexpr ElementInfo eventTemplate = {
    .id = "event_template",
    .name = "event_template",
    .sentence =
        "A template: events that groups and other templates include by its name. Of two "
        "events of one name the later counts, included ones too.",
    .attributes = templateRows,
    .values = sectionValues,
    .content = templateContent,
    .rules = templateRules,
};

// ---- Groups ----

constexpr auto eventRows = rowsOf(attributesOf<YGEventData>);
constexpr ValueInfo eventValues[] = {notEmpty("name")};
constexpr const Rule* eventRules[] = {
    &"event-without-name"_rule, &"unreachable-event"_rule,         &"dispatch-spelling"_rule,
    &"duplicate-event"_rule,    &"overridden-template-event"_rule, &"src-on-event"_rule,
};
constexpr ElementInfo event = {
    .id = "event",
    .name = "event",
    .sentence = "An event of the group.",
    .attributes = eventRows,
    .values = eventValues,
    .rules = eventRules,
};

constexpr std::string_view notIncludes[] = {"event", "command_event", "event_template",
                                            "element_event"};
constexpr const Rule* includeRules[] = {
    &"include-without-src"_rule,    &"attribute-without-event"_rule, &"unknown-event-template"_rule,
    &"event-lost-to-template"_rule, &"include-limit"_rule,           &"nested-event-section"_rule,
};
constexpr ElementInfo include = {
    .id = "include",
    .usualName = "include",
    .otherThan = notIncludes,
    .sentence = "Adds the events of a template.",
    .attributes = includeRows,
    .values = includeValues,
    .rules = includeRules,
};

constexpr auto groupRows = rowsOf(attributesOf<EventGroupName>);
constexpr const ElementInfo* groupContent[] = {&event, &include};
constexpr const Rule* groupRules[] = {
    &"event-section-without-name"_rule,
    &"empty-event-section"_rule,
    &"duplicate-event-group"_rule,
};
constexpr ElementInfo group = {
    .id = "element_event",
    .name = "element_event",
    .sentence =
        "A group: the events of the elements that name it. Of two events of one name the "
        "later counts, included ones too.",
    .attributes = groupRows,
    .values = sectionValues,
    .content = groupContent,
    .rules = groupRules,
};

// ---- The file ----

constexpr const ElementInfo* rootContent[] = {&commandSection, &eventTemplate, &group};
constexpr const Rule* rootRules[] = {&"event-root-name"_rule};
constexpr ElementInfo root = {
    .id = "event_list",
    .name = "event_list",
    .sentence =
        "The root. Its sections may come in any order: commands are read first, then "
        "templates, then groups.",
    .content = rootContent,
    .rules = rootRules,
};

constexpr FileInfo files[] = {
    {"config/FILE", "initWithEventConfigPath",
     "The application gives the whole path; the sample has config/events.xml."},
};

constexpr std::string_view example = R"(<event_list>
    <command_event>
        <command name="open_stock" change_style="single" dispatch="symbol"/>
    </command_event>
    <event_template name="base_table">
        <event name="key_enter" command="open_stock" disptch="symbol"/>
    </event_template>
    <element_event name="quote_list">
        <include src="base_table"/>
        <event name="double_click" command="open_stock" dispatch="symbol"/>
    </element_event>
</event_list>
)";

constexpr std::string_view notes[] = {
    "A template reaches only templates that end above it. A group reaches every template of the "
    "file.",
    "The attribute `dispatch` is spelt `disptch` in templates, and only there.",
};

}  // namespace

constexpr FormatInfo eventsFormat = {
    .id = "events",
    .title = "Events and commands",
    .sentence =
        "What happens when the user acts on an element: the events of each element, and "
        "the commands that they trigger.",
    .files = files,
    .root = root,
    .example = example,
    .notes = notes,
};

}  // namespace yg
