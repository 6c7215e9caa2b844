// SPDX-License-Identifier: MIT
//
// Runs ygconfig as a whole, as a shell would, and keeps what came out of it.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace yg::testing {

/// Where standard output of the run goes.
enum class OutputTo {
    memory,    ///< kept in ToolRun::output
    terminal,  ///< the same, through a pseudo-terminal
    fullDisk,
    closedPipe,  ///< a pipe that is no longer read
    nowhere,     ///< the stream is closed
    count,       ///< ToolRun::outputSize alone says how much it was
};

struct ToolSetting {
    OutputTo outputTo = OutputTo::memory;
    /// "NAME=VALUE"; NO_COLOR, CLICOLOR_FORCE, TERM and COLUMNS are not set unless they stand here.
    std::vector<std::string> environment = {};
    /// The run's current folder; the project's when empty.
    std::string folder = {};
    /// What comes from standard input.
    std::string input = {};
    /// How many bytes of address space the run has; 0 for no limit.
    std::size_t memory = 0;
    /// How large a file that the run writes may become, as if the disk were full then; 0 for no
    /// limit.
    std::size_t fileSize = 0;
};

struct ToolRun {
    int status = -1;  ///< the exit status; -1 when the run ended otherwise
    std::string output;
    std::size_t outputSize = 0;
    std::string errors;
};

ToolRun runTool(const std::vector<std::string>& arguments, const ToolSetting& setting = {});

}  // namespace yg::testing
