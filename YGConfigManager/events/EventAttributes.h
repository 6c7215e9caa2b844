// SPDX-License-Identifier: MIT
//
// The attributes of the event configuration that are not those of a record. Internal.
#pragma once

#include <optional>
#include <string_view>
#include <tuple>

#include "YGConfigManager/events/YGCommandData.h"
#include "YGConfigManager/events/YGEventData.h"
#include "YGConfigManager/records/AttributeTable.h"

namespace yg {

/// The name of a template or group; the text lives as long as its tree.
struct EventTemplateName {
    std::optional<std::string_view> name;
};
struct EventGroupName {
    std::optional<std::string_view> name;
};

/// What an entry of a template or group includes.
struct EventInclude {
    std::optional<std::string_view> source;
};

template <>
struct Description<EventTemplateName> {
    static constexpr std::tuple fields{
        Field{"eventTemplateDatas", &EventTemplateName::name, &EventTemplateName::name,
              AttributeInfo{.name = "name",
                            .sentence = "The name by which the template is included.",
                            .names = Naming::eventTemplate,
                            .defines = true,
                            .isRequired = true}}};
};

template <>
struct Description<EventGroupName> {
    static constexpr std::tuple fields{
        Field{"elementEventDatas", &EventGroupName::name, &EventGroupName::name,
              AttributeInfo{.name = "name",
                            .sentence = "The name that elements give in their attribute \"event\".",
                            .names = Naming::eventGroup,
                            .defines = true,
                            .isRequired = true}}};
};

template <>
struct Description<EventInclude> {
    static constexpr std::tuple fields{
        Field{"eventTemplateDatas", &EventInclude::source, &EventInclude::source,
              AttributeInfo{.name = "src",
                            .sentence = "The template whose events are added here; it must end "
                                        "above.",
                            .names = Naming::eventTemplate,
                            .isRequired = true}}};
};

/// In templates, and only there, an attribute is spelt in another way.
inline constexpr auto templateEventAttributes =
    attributesOf<YGEventData>.renamed("dispatch", "disptch");

}  // namespace yg
