// SPDX-License-Identifier: MIT
//
// Does what a command line says, with the stand-alone host on its root folder.
#pragma once

#include <cstddef>

#include "ygconfig/Answer.h"
#include "ygconfig/commandline/CommandLine.h"

namespace yg::tool {

/// What text for people is written to.
struct Display {
    bool colour = false;                 ///< shows colours
    std::size_t columns = usualColumns;  ///< how wide it is
};

/// The command's answer, or why the root folder cannot be used; the answer of the command line when
/// it names no command.
Answer run(const CommandLine& line, const Display& display);

}  // namespace yg::tool
