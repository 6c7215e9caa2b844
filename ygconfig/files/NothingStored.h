// SPDX-License-Identifier: MIT
//
// Why a command that stores something has stored nothing. Its answer does not always say so.
#pragma once

#include <string>
#include <string_view>

#include "ygconfig/files/FileSink.h"

namespace yg::tool {

class NothingStored final : public FileSink {
public:
    /// `delivered` is what people call the text that is to be stored, if a text is.
    explicit NothingStored(std::string_view delivered = "") : NothingStored(delivered, nullptr) {}

    /// What is reported about what was stored before, until storing begins, goes to `before`.
    explicit NothingStored(DiagnosticsSink* before) : NothingStored("", before) {}
    void beginStoring() { before_ = nullptr; }

    void readingFile(std::string_view path) override {
        before_ ? before_->readingFile(path) : FileSink::readingFile(path);
    }
    void report(const Finding& finding) override {
        before_ ? before_->report(finding) : FileSink::report(finding);
    }

    /// A line "ygconfig: nothing was stored: FILE: REASON", without the line feed; "" when all was.
    std::string complaint() const;

private:
    NothingStored(std::string_view delivered, DiagnosticsSink* before);

    std::string reasonOf(const Fault& fault) const;

    const std::string delivered_;
    DiagnosticsSink* before_;
};

}  // namespace yg::tool
