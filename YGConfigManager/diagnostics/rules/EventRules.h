// SPDX-License-Identifier: MIT
//
// Rules of events and commands. Internal: a part of RuleTable.h.
#pragma once

#include "YGConfigManager/diagnostics/Rule.h"

namespace yg {

inline constexpr Rule eventRules[] = {
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
    {"duplicate-event-template", Handling::replaced, Severity::error,
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
    {"duplicate-event-group", Handling::replaced, Severity::error,
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
    {"duplicate-command", Handling::replaced, Severity::error,
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
    {"duplicate-event", Handling::replaced, Severity::error,
     "A later event of the same name replaces the one defined above it.",
     "The earlier event is lost. Rename one of them or delete the earlier one.",
     "config/events.xml",
     R"(<event_list>
    <element_event name="grid"><event name="a"/><event name="a"/></element_event>
</event_list>)",
     R"(<event_list>
    <element_event name="grid"><event name="a"/><event name="b"/></element_event>
</event_list>)"},
    {"overridden-template-event", Handling::replaced, Severity::info,
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
    {"event-lost-to-template", Handling::replaced, Severity::error,
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
    {"repeated-include", Handling::dropped, Severity::info,
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
    {"unknown-event-template", Handling::unresolved, Severity::error,
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
    {"include-limit", Handling::unresolved, Severity::error,
     "Includes add at most 1,000,000 events and 64 MiB to a file; with this one it would be more, "
     "so it adds nothing.",
     "Includes repeat what they include. A small file can ask for more than any machine holds, so "
     "a load stops adding at this limit."},
    // Found by inspections.
    {"unknown-event-group", Handling::unresolved, Severity::error,
     "No event group of this name is in the event configuration, so the element has no events.",
     "An element's \"event\" names an \"element_event\" of the event configuration. Check the "
     "name, "
     "or define the group.",
     "config/custompage_template.xml",
     R"(<styles>
    <style name="quote"><panel name="main"><element name="grid" event="quote_lst"/></panel></style>
</styles>)",
     R"(<styles>
    <style name="quote"><panel name="main"><element name="grid" event="quote_list"/></panel></style>
</styles>)",
     "config/events.xml",
     R"(<event_list>
    <element_event name="quote_list"><event name="click"/></element_event>
</event_list>)"},
    {"unknown-command", Handling::unresolved, Severity::error,
     "No command of this name is in the event configuration, so the event triggers nothing.",
     "An event names one command of a \"command_event\" section, by its whole name. Check the "
     "name, "
     "or define the command.",
     "config/events.xml",
     R"(<event_list>
    <command_event><command name="open"/></command_event>
    <element_event name="grid"><event name="click" command="opne"/></element_event>
</event_list>)",
     R"(<event_list>
    <command_event><command name="open"/></command_event>
    <element_event name="grid"><event name="click" command="open"/></element_event>
</event_list>)"},
    {"unknown-panel-command", Handling::unresolved, Severity::warning,
     "No command of this name is in the event configuration.",
     "A panel's \"excute_command_info\" usually is the name of a command. The application takes it "
     "as it stands and may know other names. A text of several words is not checked.",
     "config/custompage_template.xml",
     R"(<styles>
    <style name="quote"><panel name="main" excute_command_info="opne"/></style>
</styles>)",
     R"(<styles>
    <style name="quote"><panel name="main" excute_command_info="open"/></style>
</styles>)",
     "config/events.xml",
     R"(<event_list>
    <command_event><command name="open"/></command_event>
</event_list>)"},
    {"unknown-page", Handling::unresolved, Severity::error,
     "This page does not exist and cannot be built from a template.",
     "The name of a page is that of a stored style, or TEMPLATE-ARGUMENT-ARGUMENT with one "
     "argument "
     "for each slot of the template: a member of the slot's group, or a value of a wildcard that "
     "the group has a pattern for. Check the name.",
     "config/events.xml",
     R"(<event_list>
    <command_event><command name="open" change_style="quoet"/></command_event>
</event_list>)",
     R"(<event_list>
    <command_event><command name="open" change_style="quote"/></command_event>
</event_list>)",
     "config/custompage_template.xml",
     R"(<styles>
    <style name="quote"><panel name="main"/></style>
</styles>)"},
    {"tab-as-page", Handling::kept, Severity::info,
     "Only a tab has this name; looking up a page by its name finds no tabs.",
     "Tabs are in a table of their own. If the application does not look there by itself, the page "
     "does not change.",
     "config/events.xml",
     R"(<event_list>
    <command_event><command name="open" change_style="trend"/></command_event>
</event_list>)",
     R"(<event_list>
    <command_event><command name="open"/></command_event>
</event_list>)",
     "config/tab_styles.xml",
     R"(<styles>
    <style name="trend"><panel name="main"/></style>
</styles>)"},
    {"unused-event-group", Handling::kept, Severity::info,
     "No element of a page, a tab, a magic panel or a reuse panel names this event group.",
     "The group can be deleted, unless the application asks for it by itself.", "config/events.xml",
     R"(<event_list>
    <element_event name="grid"><event name="click"/></element_event>
    <element_event name="chart"><event name="click"/></element_event>
</event_list>)",
     R"(<event_list>
    <element_event name="grid"><event name="click"/></element_event>
</event_list>)",
     "config/custompage_template.xml",
     R"(<styles>
    <style name="quote"><panel name="main"><element name="grid" event="grid"/></panel></style>
</styles>)"},
    {"unused-event-template", Handling::kept, Severity::info,
     "No template and no event group includes this template.",
     "A template counts only where it is included. Include it, or delete it.", "config/events.xml",
     R"(<event_list>
    <event_template name="list"><event name="select"/></event_template>
    <element_event name="grid"><event name="click"/></element_event>
</event_list>)",
     R"(<event_list>
    <event_template name="list"><event name="select"/></event_template>
    <element_event name="grid"><include src="list"/></element_event>
</event_list>)"},
    {"unused-command", Handling::kept, Severity::info, "No event and no panel names this command.",
     "The command can be deleted, unless the application asks for it by itself.",
     "config/events.xml",
     R"(<event_list>
    <command_event><command name="open"/></command_event>
    <element_event name="grid"><event name="click"/></element_event>
</event_list>)",
     R"(<event_list>
    <command_event><command name="open"/></command_event>
    <element_event name="grid"><event name="click" command="open"/></element_event>
</event_list>)"},
};

}  // namespace yg
