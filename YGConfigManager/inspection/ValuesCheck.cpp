// SPDX-License-Identifier: MIT
#include "YGConfigManager/inspection/Checks.h"

namespace yg {

void checkValues(const Loaded& /*loaded*/, Gathering& /*findings*/) {}

}  // namespace yg
