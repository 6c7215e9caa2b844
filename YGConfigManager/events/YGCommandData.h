// SPDX-License-Identifier: MIT
//
// One command of the event configuration: what happens when an event names it. A plain record, held
// by shared pointers. Not synchronised: a record that one thread changes must not be read by
// another.
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

class YG_EXPORT YGCommandData {
public:
    /// A new record with these four texts, each of which may be absent; null when memory does not
    /// suffice.
    static std::shared_ptr<YGCommandData> initWithCommandInfo(OptionalText commandName,
                                                              OptionalText changeStyleName,
                                                              OptionalText dispatchParam,
                                                              OptionalText addtionData);

    /// The command's name, the key under which it is stored ("name").
    const std::optional<std::string>& commandName() const { return commandName_; }
    void setCommandName(OwnedText name) { commandName_ = std::move(name); }

    /// The style to change to ("change_style").
    const std::optional<std::string>& changeStyleName() const { return changeStyleName_; }
    void setChangeStyleName(OwnedText name) { changeStyleName_ = std::move(name); }

    /// What is dispatched, for the host to understand ("dispatch").
    const std::optional<std::string>& dispatchParam() const { return dispatchParam_; }
    void setDispatchParam(OwnedText param) { dispatchParam_ = std::move(param); }

    /// Additional data, for the host to understand ("addtion_data"). Spelt so in the interface and
    /// in files.
    const std::optional<std::string>& addtionData() const { return addtionData_; }
    void setAddtionData(OwnedText data) { addtionData_ = std::move(data); }

private:
    std::optional<std::string> commandName_;
    std::optional<std::string> changeStyleName_;
    std::optional<std::string> dispatchParam_;
    std::optional<std::string> addtionData_;
};

template <>
struct Description<YGCommandData> {
    using Command = YGCommandData;
    static constexpr std::tuple fields{
        Field{"commandName", &Command::commandName, &Command::setCommandName,
              AttributeInfo{.name = "name",
                            .sentence = "The name by which events trigger the command.",
                            .names = Naming::command,
                            .defines = true,
                            .isRequired = true}},
        Field{"changeStyleName", &Command::changeStyleName, &Command::setChangeStyleName,
              AttributeInfo{.name = "change_style",
                            .sentence = "The page that the terminal changes to.",
                            .names = Naming::style}},
        Field{"dispatchParam", &Command::dispatchParam, &Command::setDispatchParam,
              AttributeInfo{.name = "dispatch",
                            .sentence = "What is dispatched; the application knows its meaning."}},
        Field{"addtionData", &Command::addtionData, &Command::setAddtionData,
              AttributeInfo{.name = "addtion_data",
                            .sentence = "Additional data; the application knows its meaning. "
                                        "The attribute is spelt like this."}},
    };
};

}  // namespace yg
