// SPDX-License-Identifier: MIT
//
// Which files and downloads could not be read, and which file could not be written, and why, for
// people: the library's log says why, but not which.
#pragma once

#include <set>
#include <string>

#include "ygconfig/files/FileSink.h"

namespace yg::tool {

class UnreadableFiles final : public FileSink {
public:
    void report(const Finding& finding) override;

    /// A line "ygconfig: FILE: Line N: REASON" for each file, without the last line feed; "" if all
    /// could be read and written.
    const std::string& complaint() const { return complaint_; }

private:
    std::set<std::string> told_;
    std::string complaint_;
};

}  // namespace yg::tool
