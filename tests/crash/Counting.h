// SPDX-License-Identifier: MIT
//
// What the program that counts in a settings file writes, for it and for those who look.
#pragma once

#include <cstddef>
#include <string>

namespace yg::testing {

/// The value with that number: texts of very different lengths, each of which can be told from half
/// of another.
inline std::string textOf(long number) {
    const auto length = static_cast<std::size_t>(number * 7919 % 50'000);
    return std::to_string(number) + " " + std::string(length, 'x') + " " + std::to_string(number);
}

}  // namespace yg::testing
