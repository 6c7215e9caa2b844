// SPDX-License-Identifier: MIT
//
// What is wrong with a root, ready to be printed in one of several forms.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/inspection/Inspection.h"

#include "ygconfig/Answer.h"
#include "ygconfig/drawing/Paint.h"

namespace yg::tool {

struct LintReport {
    std::string root;                              ///< as the user named it
    std::shared_ptr<const Inspection> inspection;  ///< never null
    std::vector<RootFinding> stale = {};           ///< entries of the baseline that match nothing
    /// What is shown, sorted by file, line, column and rule; of the inspection and of `stale`.
    std::vector<const RootFinding*> findings = {};
    std::size_t hidden = 0;               ///< findings that the baseline has
    std::optional<Severity> failOn = {};  ///< what counts as a failure; absent for nothing
};

/// "error", "warning", "info".
std::string_view nameOf(Severity severity);

/// The colour of that.
Tone toneOf(Severity severity);

bool isFailure(const LintReport& report, const RootFinding& finding);

/// How many of the findings that are shown have this severity.
std::size_t countOf(const LintReport& report, Severity severity);

/// What follows the message: what it is read as, the nearest name, the related places, what
/// follows from it. Each is one line.
std::vector<std::string> detailsOf(const RootFinding& finding);

/// "FILE:LINE:COLUMN".
std::string placeOf(const std::string& file, const TextPoint& point);

// ---- The forms ----

/// For people: each finding with its line of the file, folded at `width` columns.
void writeText(const LintReport& report, const Paint& paint, std::size_t width, Output& output);

void writeJson(const LintReport& report, Output& output);

/// SARIF 2.1.0. Places are relative to the root, which is relative to the folder that the run was
/// started in.
void writeSarif(const LintReport& report, Output& output);

/// Workflow commands, which GitHub shows beside the lines concerned. Files are named as seen from
/// the folder that the run was started in.
void writeGitHub(const LintReport& report, Output& output);

/// JUnit XML: one test for each finding, which fails when the finding counts as a failure.
void writeJUnit(const LintReport& report, Output& output);

}  // namespace yg::tool
