// SPDX-License-Identifier: MIT
//
// A listener that knows which file, or which download, a finding is about.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/diagnostics/DiagnosticsSink.h"

namespace yg::tool {

class FileSink : public DiagnosticsSink {
public:
    void readingFile(std::string_view path) override { files_.emplace_back(path); }

protected:
    /// What the finding says, behind the file that it is about: "FILE: Line N: REASON".
    std::string withFile(const Finding& finding) const;

    /// The file read last; "" before the first.
    const std::string& lastFile() const { return files_.back(); }

private:
    std::vector<std::string> files_ = {""};  // read so far, the last one last
};

}  // namespace yg::tool
