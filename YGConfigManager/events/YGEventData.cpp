// SPDX-License-Identifier: MIT
#include "YGConfigManager/events/YGEventData.h"

#include "YGConfigManager/host/Guarded.h"

namespace yg {

std::shared_ptr<YGEventData> YGEventData::initWithEventInfo(OptionalText eventName,
                                                            OptionalText command,
                                                            OptionalText changeStyleName,
                                                            OptionalText dispatchParam,
                                                            OptionalText addtionData) {
    return guarded("event record", [&] {
        auto record = std::make_shared<YGEventData>();
        record->setEventName(eventName);
        record->setCommand(command);
        record->setChangeStyleName(changeStyleName);
        record->setDispatchParam(dispatchParam);
        record->setAddtionData(addtionData);
        return record;
    });
}

}  // namespace yg
