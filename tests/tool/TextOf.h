// SPDX-License-Identifier: MIT
//
// The texts of answers, whole.
#pragma once

#include <string>
#include <string_view>

#include "ygconfig/Answer.h"

namespace yg::testing {

inline std::string textOf(const tool::Text& text) {
    std::string whole;
    text.writeTo([&](std::string_view piece) { whole += piece; });
    return whole;
}

}  // namespace yg::testing
