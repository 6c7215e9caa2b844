// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "YGConfigManager/inspection/Difference.h"
TEST(X, Y) {}
