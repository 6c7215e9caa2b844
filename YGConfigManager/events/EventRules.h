// SPDX-License-Identifier: MIT
//
// What diagnostics can say of the event configuration, beside the rules that all formats share.
#pragma once

#include "YGConfigManager/diagnostics/DiagnosticsSink.h"

namespace yg::rules {

// Sections.
inline constexpr Rule eventRootName{
    "event-root-name", Handling::dropped,
    "The root of an event configuration is named \"event_list\"; nothing of this file is read."};
inline constexpr Rule nestedEventSection{
    "nested-event-section", Handling::dropped,
    "A section stands directly below the root; here it is taken for an entry of the section "
    "around it."};
inline constexpr Rule emptyEventSection{"empty-event-section", Handling::dropped,
                                        "A section without any content has no effect."};
inline constexpr Rule eventSectionWithoutName{
    "event-section-without-name", Handling::dropped,
    "A template or group needs a name that is not empty."};
inline constexpr Rule templateWithoutEvents{
    "template-without-events", Handling::dropped,
    "A template without an event is not kept; an earlier one of the same name stays."};
inline constexpr Rule duplicateEventTemplate{
    "duplicate-event-template", Handling::replaced,
    "A later template of the same name replaces the earlier one for all that follows."};
inline constexpr Rule duplicateEventGroup{
    "duplicate-event-group", Handling::replaced,
    "A later group of the same name replaces the earlier one whole; events are not merged."};

// Commands and events.
inline constexpr Rule commandWithoutName{"command-without-name", Handling::dropped,
                                         "A command needs a name."};
inline constexpr Rule unreachableCommand{"unreachable-command", Handling::dropped,
                                         "A command whose name is empty can never be looked up."};
inline constexpr Rule duplicateCommand{
    "duplicate-command", Handling::replaced,
    "A later command of the same name replaces the earlier one, whatever section it is in."};
inline constexpr Rule eventWithoutName{"event-without-name", Handling::dropped,
                                       "An event needs a name."};
inline constexpr Rule unreachableEvent{"unreachable-event", Handling::dropped,
                                       "An event whose name is empty can never be looked up."};
inline constexpr Rule duplicateEvent{
    "duplicate-event", Handling::replaced,
    "A later event of the same name replaces the one defined above it."};
inline constexpr Rule overriddenTemplateEvent{
    "overridden-template-event", Handling::replaced,
    "This takes the place of the event of the same name that a template included above brought."};
inline constexpr Rule eventLostToTemplate{
    "event-lost-to-template", Handling::replaced,
    "The included template has an event of the same name, which replaces the one defined above."};
inline constexpr Rule eventEntryWithoutEffect{
    "event-entry-without-effect", Handling::dropped,
    "Without a name and a src that are not empty this neither defines nor includes anything."};
inline constexpr Rule contentInEventEntry{"content-in-event-entry", Handling::dropped,
                                          "What stands inside an entry is not read."};

// Attributes.
inline constexpr Rule dispatchSpelling{
    "dispatch-spelling", Handling::dropped,
    R"(The attribute is "disptch" in templates and "dispatch" in commands and groups.)"};
inline constexpr Rule attributeWithoutEvent{
    "attribute-without-event", Handling::dropped,
    "This entry only includes a template; it defines no event that the attribute could belong "
    "to."};

// Includes.
inline constexpr Rule srcOnEvent{
    "src-on-event", Handling::dropped,
    "In a group an element named \"event\" includes nothing; any other element name does."};
inline constexpr Rule emptySrc{"empty-src", Handling::dropped, "An empty src includes nothing."};
inline constexpr Rule includeWithoutSrc{
    "include-without-src", Handling::dropped,
    "In a group an element that is not named \"event\" includes a template, and names it by a src "
    "that is not empty."};
inline constexpr Rule laterEventTemplate{
    "later-event-template", Handling::unresolved,
    "A template reaches only templates that end before it begins."};
inline constexpr Rule unknownEventTemplate{"unknown-event-template", Handling::unresolved,
                                           "No template of this name with an event is known."};
inline constexpr Rule includeLimit{"include-limit", Handling::unresolved,
                                   "Includes add at most 1,000,000 events and 64 MiB to a file; "
                                   "with this one it would be more, so "
                                   "it adds nothing."};

}  // namespace yg::rules
