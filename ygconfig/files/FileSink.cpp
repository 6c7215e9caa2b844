// SPDX-License-Identifier: MIT
#include "ygconfig/files/FileSink.h"

#include <algorithm>
#include <cstdint>

namespace yg::tool {

void FileSink::report(const Finding& finding) {
    const std::string_view rule = finding.rule.name;
    if (std::ranges::find(rules_, rule) == rules_.end())
        return;
    const std::uint32_t line = finding.place.begin.line;
    const bool isXml = line != 0 && (rule == "unreadable-file" || rule == "unreadable-web-pages" ||
                                     rule == "unreadable-delivery");
    const std::string reason = (isXml ? "Line " + std::to_string(line) + ": " : "") + finding.value;
    if (isXml && isNext_ && faults_.back().rule == rule)
        faults_.back().reason += "; " + reason;
    else
        faults_.push_back({rule, finding.place.file, reason});
    isNext_ = isXml;
}

}  // namespace yg::tool
