// SPDX-License-Identifier: MIT
//
// A file of findings that are known and are not shown again. An entry says what was found and in
// which element, never in which line, so it still holds when lines are added above.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/inspection/RootFinding.h"
#include "YGConfigManager/text/Place.h"

#include "ygconfig/lint/LintReport.h"

namespace yg::tool {

/// The baseline of a root when no other file is named.
inline constexpr std::string_view baselineName = "lint_baseline.json";

struct BaselineEntry {
    std::string key;  ///< what it says, as in the file
    std::string rule;
    std::string file;
    std::size_t count = 1;  ///< how many findings of this key are known
    TextPoint begin;        ///< where the entry stands in the baseline
    TextPoint end;
};

/// The text of a baseline with all findings of the report: a line for each key, sorted.
std::string baselineText(const LintReport& report);

/// The entries of a baseline; absent, with "LINE:COLUMN: what is wrong" in `error`, when the text
/// does not have its form.
std::optional<std::vector<BaselineEntry>> readBaseline(std::string_view text, std::string& error);

/// Takes the findings that are in the baseline out of what is shown, and adds a finding in
/// `baselineFile`, named below the root, for each entry that matches fewer than it says.
void hideKnown(std::span<const BaselineEntry> entries, const std::string& baselineFile,
               LintReport& report);

/// Sixteen digits that are the same for findings of one key.
std::string fingerprintOf(const Inspection& inspection, const RootFinding& finding);

}  // namespace yg::tool
