// SPDX-License-Identifier: MIT
#include "YGConfigManager/events/YGEventData.h"

#include "YGConfigManager/host/Guarded.h"

namespace yg {

std::shared_ptr<YGEventData> YGEventData::initWithEventInfo(
    std::optional<std::string_view> eventName, std::optional<std::string_view> command,
    std::optional<std::string_view> changeStyleName, std::optional<std::string_view> dispatchParam,
    std::optional<std::string_view> addtionData) {
    return guarded("event record", [&] {
        auto record = std::make_shared<YGEventData>();
        record->eventName_ = eventName;
        record->command_ = command;
        record->changeStyleName_ = changeStyleName;
        record->dispatchParam_ = dispatchParam;
        record->addtionData_ = addtionData;
        return record;
    });
}

}  // namespace yg
