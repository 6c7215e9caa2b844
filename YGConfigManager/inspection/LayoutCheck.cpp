// SPDX-License-Identifier: MIT
#include "YGConfigManager/inspection/Checks.h"

namespace yg {

void checkLayout(const Loaded& /*loaded*/, Gathering& /*findings*/) {}

}  // namespace yg
