// SPDX-License-Identifier: MIT
//
// The fonts that the build makes for tests (makeTestFonts.cpp); link yg_test_fonts.
#pragma once

#include <stdlib.h>
#include <string>

namespace yg::testing {

inline std::string testFontPath(const std::string& file) {
    return YG_TEST_FONTS "/" + file;
}

/// Has the library see the test fonts only, "YG Test Square" as the system font. It must come
/// before the first use of any font in the process.
inline void useTestFonts() {
    ::setenv("FONTCONFIG_FILE", testFontPath("fonts.conf").c_str(), 1);
}

}  // namespace yg::testing
