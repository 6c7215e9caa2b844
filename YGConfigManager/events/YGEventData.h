// SPDX-License-Identifier: MIT
//
// One event of a template or of an element's event group. A plain record, held by shared pointers:
// an event that comes from a template stands as one and the same record in the template and in all
// that include it. Not synchronised: a record that one thread changes must not be read by another.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>

#include "YGConfigManager/export.h"
#include "YGConfigManager/records/Description.h"
#include "YGConfigManager/text/OptionalText.h"
#include "YGConfigManager/text/OwnedText.h"

namespace yg {

class YG_EXPORT YGEventData {
public:
    /// A new record with these five texts, each of which may be absent; null when memory does not
    /// suffice.
    static std::shared_ptr<YGEventData> initWithEventInfo(OptionalText eventName,
                                                          OptionalText command,
                                                          OptionalText changeStyleName,
                                                          OptionalText dispatchParam,
                                                          OptionalText addtionData);

    /// The event's name, the key under which it is stored in its group ("name").
    const std::optional<std::string>& eventName() const { return eventName_; }
    void setEventName(OwnedText name) { eventName_ = std::move(name); }

    /// The command that the event triggers, a name for YGEventLoader::commandByName ("command").
    const std::optional<std::string>& command() const { return command_; }
    void setCommand(OwnedText command) { command_ = std::move(command); }

    /// The style to change to ("change_style").
    const std::optional<std::string>& changeStyleName() const { return changeStyleName_; }
    void setChangeStyleName(OwnedText name) { changeStyleName_ = std::move(name); }

    /// What is dispatched, for the host to understand: "disptch" in a template, spelt so in files,
    /// "dispatch" in a group.
    const std::optional<std::string>& dispatchParam() const { return dispatchParam_; }
    void setDispatchParam(OwnedText param) { dispatchParam_ = std::move(param); }

    /// Additional data, for the host to understand ("addtion_data"). Spelt so in the interface and
    /// in files.
    const std::optional<std::string>& addtionData() const { return addtionData_; }
    void setAddtionData(OwnedText data) { addtionData_ = std::move(data); }

private:
    std::optional<std::string> eventName_;
    std::optional<std::string> command_;
    std::optional<std::string> changeStyleName_;
    std::optional<std::string> dispatchParam_;
    std::optional<std::string> addtionData_;
};

template <>
struct Description<YGEventData> {
    using Event = YGEventData;
    static constexpr std::tuple fields{
        Field{"eventName", &Event::eventName, &Event::setEventName,
              AttributeInfo{.name = "name",
                            .sentence = "The event, by the name that the element gives it.",
                            .names = Naming::event,
                            .defines = true,
                            .isRequired = true}},
        Field{"command", &Event::command, &Event::setCommand,
              AttributeInfo{.name = "command",
                            .sentence = "The command that the event triggers.",
                            .names = Naming::command}},
        Field{"changeStyleName", &Event::changeStyleName, &Event::setChangeStyleName,
              AttributeInfo{.name = "change_style",
                            .sentence = "The page that the terminal changes to; it takes "
                                        "precedence over the command's.",
                            .names = Naming::style}},
        Field{"dispatchParam", &Event::dispatchParam, &Event::setDispatchParam,
              AttributeInfo{.name = "dispatch",
                            .sentence = "What is dispatched; the application knows its meaning. "
                                        "In a template the attribute is spelt \"disptch\"."}},
        Field{"addtionData", &Event::addtionData, &Event::setAddtionData,
              AttributeInfo{.name = "addtion_data",
                            .sentence = "Additional data; the application knows its meaning. "
                                        "The attribute is spelt like this."}},
    };
};

}  // namespace yg
