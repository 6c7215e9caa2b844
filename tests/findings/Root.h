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

#include "files/TemporaryFolder.h"

namespace yg::testing {

/// Files by their names below the root: "config/events.xml".
using RootFiles = std::map<std::string, std::string, std::less<>>;

/// All files of a folder.
RootFiles filesIn(const std::string& folder);

/// The roots that the seeds of a fuzz target are, by the names of the seeds. A seed has several
/// files between lines "=====". Seeds that are not UTF-8 are left out.
std::map<std::string, RootFiles> seedRoots(const std::string& folder);

/// What is looked up in a root: custom pages, settings items as "SECTION/ITEM", keys of web pages.
struct Lookups {
    std::vector<std::string> pages;
    std::vector<std::string> items;
    std::vector<std::string> keys;
};

/// The names that the files have, and some that they do not have.
Lookups lookupsOf(const RootFiles& files);

/// What the loaders answer, by subject: "layout", "events" …
using Answers = std::map<std::string, std::string>;

/// A folder with the files, while it lives.
class Root {
public:
    explicit Root(const RootFiles& files);

    /// Loads everything and looks everything up. Findings go to the sink, if there is one.
    Answers answers(const Lookups& lookups, DiagnosticsSink* sink) const;

    const std::string& path() const { return folder_.path(); }

    /// The name below the root of a file that a finding is in.
    std::string nameOf(const std::string& file) const;

private:
    files::TemporaryFolder folder_;
};

/// The files of generated root number `seed`: mostly right, with all kinds of mistakes.
RootFiles generatedRoot(unsigned seed);

}  // namespace yg::testing
