// SPDX-License-Identifier: MIT
//
// A diagnostics sink as a loader holds it: each call does nothing without a sink. Internal. Throws
// std::bad_alloc.
#pragma once

#include <string>
#include <string_view>

#include "YGConfigManager/diagnostics/DiagnosticsSink.h"
#include "YGConfigManager/diagnostics/RuleTable.h"
#include "YGConfigManager/xml/Document.h"

namespace yg {

class Reporter {
public:
    explicit Reporter(DiagnosticsSink* sink) : sink_(sink) {}

    explicit operator bool() const { return sink_ != nullptr; }
    DiagnosticsSink* sink() const { return sink_; }

    void reading(std::string_view path) const {
        if (sink_)
            sink_->readingFile(path);
    }

    /// Reads a file that findings may be about.
    xml::ParseResult parseFile(std::string_view path) const;

    /// The same for bytes that were delivered.
    xml::ParseResult parseBytes(std::string_view bytes) const;

    /// What is wrong with a file that could not be read or parsed: each error of its text, or the
    /// cause, which `error` may name the file before.
    void unreadable(const Rule& rule, std::string_view path, const xml::ParseResult& parsed) const;
    void unreadable(const Rule& rule, std::string_view path, std::string_view error) const;

    /// A finding about a file or a download as a whole, or about a call; `path` may be empty.
    void report(const Rule& rule, std::string_view path = {}, std::string_view value = {}) const;

    /// A file that was not written. The error names it, unless memory did not suffice for that.
    void unsaved(std::string_view fileName, std::string_view error) const;

    void report(const Finding& finding) const {
        if (sink_)
            sink_->report(finding);
    }

private:
    DiagnosticsSink* sink_;
};

/// What the place of a definition that another one loses to means in a finding.
inline constexpr std::string_view earlierDefinition = "the earlier definition";

/// What `unsaved-file` says of a file that the host has no path for.
inline constexpr std::string_view noPathToWrite = "there is no path to write to";

}  // namespace yg
