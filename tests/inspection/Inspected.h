// SPDX-License-Identifier: MIT
//
// Roots given as texts, and what an inspection finds in them, as lines to compare:
//
//   EXPECT_THAT(linesOf({{"config/events.xml", "<event_list x='1'/>"}}),
//               Contains("config/events.xml:1:13 error unknown-attribute x"));
#pragma once

#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "YGConfigManager/inspection/Inspection.h"

#include "files/TemporaryFolder.h"

namespace yg::testing {

/// Files by their names below the root.
using Files = std::map<std::string, std::string>;

/// Throws when there is no inspection.
inline std::shared_ptr<const Inspection> inspected(const std::string& root,
                                                   const InspectionOptions& options = {}) {
    std::string error;
    auto inspection = Inspection::open(root, error, options);
    return inspection ? inspection : throw std::runtime_error(error);
}

/// "FILE:LINE:COLUMN SEVERITY RULE VALUE -> SUGGESTION (FILE:LINE:COLUMN)", without what is not
/// there; the last for each related place. Without a value the attribute.
inline std::string lineOf(const RootFinding& finding) {
    const auto at = [](const std::string& file, const TextPoint& point) {
        return file + ":" + std::to_string(point.line) + ":" + std::to_string(point.column);
    };
    const Severity severity = finding.rule->severity;
    std::string line = at(finding.file, finding.begin);
    line += severity == Severity::error     ? " error "
            : severity == Severity::warning ? " warning "
                                            : " info ";
    line += finding.rule->name;
    if (finding.value)
        line += " " + *finding.value;
    else if (finding.attribute)
        line += " " + *finding.attribute;
    if (finding.suggestion)
        line += " -> " + *finding.suggestion;
    for (const RootPlace& related : finding.related)
        line += " (" + at(related.file, related.begin) + ")";
    return line;
}

inline std::vector<std::string> linesOf(const Inspection& inspection) {
    std::vector<std::string> lines;
    for (const RootFinding& finding : inspection.findings())
        lines.push_back(lineOf(finding));
    return lines;
}

/// All findings in a root of these files alone. Other files that a terminal reads are missing and
/// reported so; compare with Contains() or leave them out by rule.
inline std::vector<std::string> linesOf(const Files& files) {
    const files::TemporaryFolder folder;
    for (const auto& [name, bytes] : files)
        folder.write(name, bytes);
    return linesOf(*inspected(folder.path()));
}

/// The findings of one rule.
inline std::vector<std::string> linesOf(const Files& files, std::string_view rule) {
    const files::TemporaryFolder folder;
    for (const auto& [name, bytes] : files)
        folder.write(name, bytes);
    std::vector<std::string> lines;
    const auto inspection = inspected(folder.path());
    for (const RootFinding& finding : inspection->findings()) {
        if (finding.rule->name == rule)
            lines.push_back(lineOf(finding));
    }
    return lines;
}

}  // namespace yg::testing
