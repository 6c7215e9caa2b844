// SPDX-License-Identifier: MIT
#include "YGConfigManager/inspection/Checks.h"
#include "YGConfigManager/inspection/PageChecks.h"

namespace yg {

void checkLayout(const Loaded& loaded, Gathering& findings) {
    checkLayoutNames(loaded, findings);
    checkPages(loaded, findings);
    checkPanelSizes(loaded, findings);
}

}  // namespace yg
