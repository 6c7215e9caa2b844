// SPDX-License-Identifier: MIT
#include "ygconfig/lint/LintReport.h"

#include <algorithm>

namespace yg::tool {

std::string_view nameOf(Severity severity) {
    return severity == Severity::error     ? "error"
           : severity == Severity::warning ? "warning"
                                           : "info";
}

Tone toneOf(Severity severity) {
    return severity == Severity::error     ? Tone::error
           : severity == Severity::warning ? Tone::warning
                                           : Tone::info;
}

bool isFailure(const LintReport& report, const RootFinding& finding) {
    return report.failOn && finding.rule->severity <= *report.failOn;
}

std::size_t countOf(const LintReport& report, Severity severity) {
    return static_cast<std::size_t>(std::ranges::count_if(
        report.findings,
        [&](const RootFinding* finding) { return finding->rule->severity == severity; }));
}

std::string placeOf(const std::string& file, const TextPoint& point) {
    return file + ":" + std::to_string(point.line) + ":" + std::to_string(point.column);
}

std::vector<std::string> detailsOf(const RootFinding& finding) {
    std::vector<std::string> details;
    if (!finding.readAs.empty())
        details.push_back("read as: " + finding.readAs);
    if (finding.suggestion)
        details.push_back("nearest: " + *finding.suggestion);
    for (const RootPlace& place : finding.related)
        details.push_back(placeOf(place.file, place.begin) + ": " + place.message);
    if (!finding.consequences.empty())
        details.push_back(std::to_string(finding.consequences.size()) +
                          (finding.consequences.size() == 1 ? " more follows" : " more follow") +
                          " from this");
    return details;
}

}  // namespace yg::tool
