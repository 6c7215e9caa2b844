// SPDX-License-Identifier: MIT
//
// The version of the library that is loaded, which may be newer than the headers compiled against.
#pragma once

#include "YGConfigManager/export.h"

extern "C" {

/// Major and minor version as one number: 1.0.
YG_EXPORT extern const double YGConfigManagerVersionNumber;

/// The full version as text, "1.0.0". Lives as long as the library is loaded.
YG_EXPORT extern const char* const YGConfigManagerVersionString;
}
