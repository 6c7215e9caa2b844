// SPDX-License-Identifier: MIT
//
// Expected output that is too long for a test's source is in files of the folder golden.
//
// When output changes on purpose, YG_UPDATE_GOLDEN=1 makes the tests rewrite the files; read
// and judge the difference as part of the change:
//
//   YG_UPDATE_GOLDEN=1 ctest --preset release -R '^tool'
#pragma once

#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace yg::testing {

/// Whether `text` is what file `name` of the folder golden holds; if not, says where they differ.
::testing::AssertionResult isGolden(std::string_view text, const std::string& name);

}  // namespace yg::testing
