// SPDX-License-Identifier: MIT
#include "YGConfigManager/events/YGCommandData.h"

#include "YGConfigManager/host/Guarded.h"

namespace yg {

std::shared_ptr<YGCommandData> YGCommandData::initWithCommandInfo(
    std::optional<std::string_view> commandName, std::optional<std::string_view> changeStyleName,
    std::optional<std::string_view> dispatchParam, std::optional<std::string_view> addtionData) {
    return guarded("command record", [&] {
        auto record = std::make_shared<YGCommandData>();
        record->commandName_ = commandName;
        record->changeStyleName_ = changeStyleName;
        record->dispatchParam_ = dispatchParam;
        record->addtionData_ = addtionData;
        return record;
    });
}

}  // namespace yg
