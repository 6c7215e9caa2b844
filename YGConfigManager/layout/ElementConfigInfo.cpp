// SPDX-License-Identifier: MIT
#include "YGConfigManager/layout/ElementConfigInfo.h"

#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/text/Format.h"

namespace yg {

std::string ElementConfigInfo::description() const {
    return guarded("describe record", [this] {
        return text::format("(%@ *)%p ,%@, %@, [%@]", "ElementConfigInfo", this, elementName_,
                            elementParam_, elementUuid_);
    });
}

}  // namespace yg
