// SPDX-License-Identifier: MIT
//
// A listener for what is wrong with whole files and downloads.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/diagnostics/DiagnosticsSink.h"

namespace yg::tool {

class FileSink : public DiagnosticsSink {
public:
    void readingFile(std::string_view) override { isNext_ = false; }
    void report(const Finding& finding) override;

    /// Of one file or download; all errors of a parse are one.
    struct Fault {
        std::string_view rule;
        std::string file;
        std::string reason;  ///< "Line N, column N: REASON; Line …" of a parse

        /// "FILE: REASON"
        std::string text() const { return reason.empty() ? file : file + ": " + reason; }
    };

protected:
    /// Listens for these rules, whose names stay.
    explicit FileSink(std::span<const std::string_view> rules) : rules_(rules) {}

    std::vector<Fault> faults_;

private:
    const std::span<const std::string_view> rules_;
    bool isNext_ = false;  // what comes next may belong to the last fault
};

}  // namespace yg::tool
