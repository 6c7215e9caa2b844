// SPDX-License-Identifier: MIT
#include "YGConfigManager/events/YGCommandData.h"

#include "YGConfigManager/host/Guarded.h"

namespace yg {

std::shared_ptr<YGCommandData> YGCommandData::initWithCommandInfo(OptionalText commandName,
                                                                  OptionalText changeStyleName,
                                                                  OptionalText dispatchParam,
                                                                  OptionalText addtionData) {
    return guarded("command record", [&] {
        auto record = std::make_shared<YGCommandData>();
        record->setCommandName(commandName);
        record->setChangeStyleName(changeStyleName);
        record->setDispatchParam(dispatchParam);
        record->setAddtionData(addtionData);
        return record;
    });
}

}  // namespace yg
