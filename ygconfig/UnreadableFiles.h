// SPDX-License-Identifier: MIT
//
// Which files could not be read, and why, for people: the library's log says why, but not which.
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/diagnostics/DiagnosticsSink.h"

namespace yg::tool {

class UnreadableFiles final : public DiagnosticsSink {
public:
    void readingFile(std::string_view path) override { files_.emplace_back(path); }
    void report(const Finding& finding) override;

    /// A line "ygconfig: FILE: Line N: REASON" for each file, without the last line feed; "" if all
    /// could be read.
    const std::string& complaint() const { return complaint_; }

private:
    std::vector<std::string> files_ = {""};  // read so far, the last one last
    std::set<std::string> told_;
    std::string complaint_;
};

}  // namespace yg::tool
