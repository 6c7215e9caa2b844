// SPDX-License-Identifier: MIT
//
// What one run of the tool has to say. Commands answer values and print nothing themselves.
#pragma once

#include <string>

namespace yg::tool {

/// The exit status of a run, which scripts rely on.
enum class ExitCode {
    answer = 0,
    noAnswer = 1,  ///< the answer is null or false
    unusable = 2,  ///< the command line, the root folder or host.json cannot be used
    failed = 3,    ///< the answer cannot be made, or not be written whole
};

struct Answer {
    /// For standard output, with its last line feed.
    std::string output;
    ExitCode exitCode = ExitCode::answer;
    /// Lines for standard error, without the last line feed; empty for none.
    std::string complaint = {};
};

}  // namespace yg::tool
