// SPDX-License-Identifier: MIT
//
// The kinds of findings: what can be wrong with a configuration, each under a name that stays. All
// of them are in one table, which any thread may walk.
#pragma once

#include <span>
#include <string_view>

#include "YGConfigManager/export.h"
#include "YGConfigManager/text/OptionalText.h"

namespace yg {

/// What became of the thing that a finding is about.
enum class Handling {
    dropped,     ///< it has no effect
    replaced,    ///< it takes the place of an earlier definition of the same name
    defaulted,   ///< its value cannot be read as it stands; a default or a part of it counts
    unresolved,  ///< it names something that does not exist
    kept,        ///< it counts as it is written
};

/// How much a finding matters to the author of the file.
enum class Severity {
    error,    ///< what is written is lost, unreachable, or read as something else than it says
    warning,  ///< likely to be a mistake
    info,     ///< worth knowing; it may be meant
};

/// One kind of finding. All texts are constants and live as long as the program.
struct Rule {
    std::string_view name;     ///< stable and made for people and scripts: "unknown-attribute"
    Handling handling;         ///< what becomes of the thing
    Severity severity;         ///< how much it matters
    std::string_view meaning;  ///< one sentence for the author of the file
    std::string_view explanation = {};  ///< why it is so and what to do about it, some sentences
    std::string_view file = {};         ///< the file of the example, as in "config/events.xml"
    std::string_view before = {};       ///< a whole file that gives the finding
    std::string_view after = {};        ///< the same file without it
    /// Another file that the example needs, unchanged by the repair; empty for none.
    std::string_view besideFile = {};
    std::string_view beside = {};  ///< that file whole
};

/// All rules, those that every file format shares first.
YG_EXPORT std::span<const Rule> rules();

/// The rule of this name; null when there is none.
YG_EXPORT const Rule* ruleNamed(OptionalText name);

}  // namespace yg
