// SPDX-License-Identifier: MIT
//
// What a program does that saves for ever: PROGRAM SAVER ROOT FIRST [COUNT]. It saves the number
// FIRST and those that follow, for ever or COUNT of them. Each that is safe is acknowledged as a
// line on standard output; whoever reads it ends the program as roughly as it likes.
#pragma once

#include <cstdlib>
#include <limits>
#include <string>
#include <unistd.h>

#include "crash/Savers.h"

namespace yg::testing {

/// An image has a width of 1 to this.
inline constexpr long imageWidths = 40;

/// The program's exit status.
inline int saveOnAndOn(const Save& save, int words, char** arguments) {
    const long first = std::atol(arguments[3]);
    const long end = words > 4 ? first + std::atol(arguments[4]) : std::numeric_limits<long>::max();
    for (long number = first; number < end; ++number) {
        if (!save(number))
            return 1;
        const std::string line = std::to_string(number) + "\n";
        if (::write(STDOUT_FILENO, line.data(), line.size()) < 0)
            return 1;
    }
    return 0;
}

}  // namespace yg::testing
