// SPDX-License-Identifier: MIT
#include "YGConfigManager/version.h"

const double YGConfigManagerVersionNumber = 1.0;
const char* const YGConfigManagerVersionString = "1.0.0";
