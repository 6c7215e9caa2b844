// SPDX-License-Identifier: MIT
#include "YGConfigManager/inspection/Checks.h"

namespace yg {

void checkSettings(const Loaded& /*loaded*/, Gathering& /*findings*/) {}

}  // namespace yg
