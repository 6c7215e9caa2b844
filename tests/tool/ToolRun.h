// SPDX-License-Identifier: MIT
//
// Runs ygconfig as a whole, as a shell would, and keeps what came out of it.
#pragma once

#include <string>
#include <vector>

namespace yg::testing {

/// Where standard output of the run goes.
enum class OutputTo {
    memory,    ///< kept in ToolRun::output
    terminal,  ///< likewise, through a pseudo-terminal
    fullDisk,
    closedPipe,  ///< a pipe that nobody reads any more
    nowhere,     ///< the stream is closed
};

struct ToolSetting {
    OutputTo outputTo = OutputTo::memory;
    /// "NAME=VALUE"; NO_COLOR and TERM are not set unless they stand here.
    std::vector<std::string> environment = {};
    /// The run's current folder; the project's when empty.
    std::string folder = {};
    /// What comes from standard input.
    std::string input = {};
};

struct ToolRun {
    int status = -1;  ///< the exit status; -1 when the run ended otherwise
    std::string output;
    std::string errors;
};

ToolRun runTool(const std::vector<std::string>& arguments, const ToolSetting& setting = {});

}  // namespace yg::testing
