// SPDX-License-Identifier: MIT
#include "YGConfigManager/layout/StyleConfigInfo.h"

#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/records/AttributeTable.h"

namespace yg {

std::shared_ptr<StyleConfigInfo> StyleConfigInfo::copyWithZone() const {
    return guarded("copy record", [this] { return copied(); });
}

std::shared_ptr<StyleConfigInfo> StyleConfigInfo::copied() const {
    auto copy = std::make_shared<StyleConfigInfo>();
    copyFields(*this, *copy);
    if (stylePanes_) {
        copy->stylePanes_->reserve(stylePanes_->size());
        for (const std::shared_ptr<PanelConfigInfo>& pane : *stylePanes_)
            copy->stylePanes_->push_back(pane ? pane->copied() : nullptr);
    }
    return copy;
}

}  // namespace yg
