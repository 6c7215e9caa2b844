// SPDX-License-Identifier: MIT
#include "YGConfigManager/layout/PanelConfigInfo.h"

#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/host/Immortal.h"
#include "YGConfigManager/records/AttributeTable.h"
#include "YGConfigManager/text/Format.h"

namespace yg {

const PanelConfigInfo::RareTexts& PanelConfigInfo::noRareTexts() {
    static Immortal<const RareTexts> none;
    return *none;
}

std::shared_ptr<PanelConfigInfo> PanelConfigInfo::copyWithZone() const {
    return guarded("copy record", [this] { return copied(); });
}

std::shared_ptr<PanelConfigInfo> PanelConfigInfo::copied() const {
    auto copy = std::make_shared<PanelConfigInfo>();
    copyFields(*this, *copy);
    if (panePanes_) {
        copy->panePanes_->reserve(panePanes_->size());
        for (const std::shared_ptr<PanelConfigInfo>& pane : *panePanes_)
            copy->panePanes_->push_back(pane ? pane->copied() : nullptr);
    }
    return copy;
}

std::string PanelConfigInfo::description() const {
    const auto negation = [](bool flag) { return flag ? "" : "不"; };
    return guarded("describe record", [&] {
        return text::format(
            "[%@] %@ %p\n%@显示分割条, %@显示宽边界, %@是圆角边界,%@是直角边界, "
            "\n折叠名字[%@],折叠位置[%@]",
            panelName_, paneVertical_ ? "V" : "H", this, negation(isDisSplitSpace_),
            negation(isDispWideBound_), negation(isBorderRaduis_), negation(isBorderRightAngle_),
            switchExpandPanelName(), foldPosition());
    });
}

}  // namespace yg
