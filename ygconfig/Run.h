// SPDX-License-Identifier: MIT
//
// Does what a command line says, with the stand-alone host on its root folder.
#pragma once

#include "ygconfig/Answer.h"
#include "ygconfig/commandline/CommandLine.h"

namespace yg::tool {

/// The command's answer, or why the root folder cannot be used; the answer of the command line when
/// it names no command. `colour`: text for people may have colours.
Answer run(const CommandLine& line, bool colour);

}  // namespace yg::tool
