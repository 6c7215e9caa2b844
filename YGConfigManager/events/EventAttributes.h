// SPDX-License-Identifier: MIT
//
// The attributes of the event configuration, row for row in the order of the format. Internal.
#pragma once

#include <optional>
#include <string_view>

#include "YGConfigManager/events/YGCommandData.h"
#include "YGConfigManager/events/YGEventData.h"
#include "YGConfigManager/records/AttributeTable.h"

namespace yg {

/// What an entry of a template or group includes; the text lives as long as the entry's tree.
struct EventInclude {
    std::optional<std::string_view> templateName;
};

/// A child of "command_event".
inline constexpr AttributeRow<YGCommandData> commandAttributes[] = {
    textRow<&YGCommandData::setCommandName, YGCommandData>("name", "commandName"),
    textRow<&YGCommandData::setChangeStyleName, YGCommandData>("change_style", "changeStyleName"),
    textRow<&YGCommandData::setDispatchParam, YGCommandData>("dispatch", "dispatchParam"),
    textRow<&YGCommandData::setAddtionData, YGCommandData>("addtion_data", "addtionData"),
};

/// A child of "event_template" that defines an event.
inline constexpr AttributeRow<YGEventData> templateEventAttributes[] = {
    textRow<&YGEventData::setEventName, YGEventData>("name", "eventName"),
    textRow<&YGEventData::setCommand, YGEventData>("command", "command"),
    textRow<&YGEventData::setChangeStyleName, YGEventData>("change_style", "changeStyleName"),
    // Spelt so in templates, and only there.
    textRow<&YGEventData::setDispatchParam, YGEventData>("disptch", "dispatchParam"),
    textRow<&YGEventData::setAddtionData, YGEventData>("addtion_data", "addtionData"),
};

/// An "event" in "element_event".
inline constexpr AttributeRow<YGEventData> elementEventAttributes[] = {
    textRow<&YGEventData::setEventName, YGEventData>("name", "eventName"),
    textRow<&YGEventData::setCommand, YGEventData>("command", "command"),
    textRow<&YGEventData::setChangeStyleName, YGEventData>("change_style", "changeStyleName"),
    textRow<&YGEventData::setDispatchParam, YGEventData>("dispatch", "dispatchParam"),
    textRow<&YGEventData::setAddtionData, YGEventData>("addtion_data", "addtionData"),
};

/// A child of "event_template", and in "element_event" one that is no "event": what it includes.
inline constexpr AttributeRow<EventInclude> includeAttributes[] = {
    {"src", "templateName", AttributeKind::text, "absent",
     [](EventInclude& include, std::string_view value) { include.templateName = value; }},
};

}  // namespace yg
