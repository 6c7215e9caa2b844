// SPDX-License-Identifier: MIT
//
// The files of a terminal, loaded as a whole: everything that the loaders answer as text, and
// everything that they report.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/diagnostics/DiagnosticsSink.h"

namespace yg::testing {

/// Files by their names below the root: "config/events.xml".
using RootFiles = std::map<std::string, std::string, std::less<>>;

/// All files of a folder but images.
RootFiles filesIn(const std::string& folder);

/// The names of custom pages that can be asked for: each template with members of its slots'
/// groups, one too few and one that is not there.
std::vector<std::string> pagesOf(const RootFiles& files);

/// What the loaders answer for a root, by subject: "layout", "events" …
using Answers = std::map<std::string, std::string>;

/// Loads everything and looks everything up. Of the settings the items of `items` are read, which
/// are "SECTION/ITEM". Findings go to the sink, if there is one, with paths below the root.
struct Lookups {
    std::vector<std::string> pages;
    std::vector<std::string> items;
    std::vector<std::string> keys;
};
Lookups lookupsOf(const RootFiles& files);
Answers answersOf(const RootFiles& files, const Lookups& lookups, DiagnosticsSink* sink);

/// The files of generated root number `seed`: mostly right, with all kinds of mistakes.
RootFiles generatedRoot(unsigned seed);

}  // namespace yg::testing
