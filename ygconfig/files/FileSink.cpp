// SPDX-License-Identifier: MIT
#include "ygconfig/files/FileSink.h"

#include <algorithm>

namespace yg::tool {

namespace {

/// "Line 3, column 5: REASON". Columns of a delivery are not those of what was sent.
std::string placed(const Finding& finding, std::string_view reason, bool isDelivery) {
    const TextPoint& at = finding.place.begin;
    return "Line " + std::to_string(at.line) +
           (isDelivery ? "" : ", column " + std::to_string(at.column)) + ": " + std::string(reason);
}

}  // namespace

void FileSink::report(const Finding& finding) {
    const std::string_view rule = finding.rule.name;
    if (std::ranges::find(rules_, rule) == rules_.end())
        return;
    const bool isDelivery = rule == "unreadable-web-pages" || rule == "unreadable-delivery";
    const bool isXml = finding.place.begin.line != 0 && (isDelivery || rule == "unreadable-file");
    const std::string reason = isXml ? placed(finding, finding.value, isDelivery)
                               : rule.ends_with("root-name")
                                   ? placed(finding, finding.rule.meaning, false)
                                   : finding.value;
    if (isXml && isNext_ && faults_.back().rule == rule)
        faults_.back().reason += "; " + reason;
    else
        faults_.push_back({rule, finding.place.file, reason});
    isNext_ = isXml;
}

}  // namespace yg::tool
