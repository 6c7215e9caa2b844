// SPDX-License-Identifier: MIT
//
// Keeps what is found under a lock until the loader holds none. Internal. Throws std::bad_alloc.
#pragma once

#include <vector>

#include "YGConfigManager/diagnostics/Reporter.h"

namespace yg {

class KeptFindings final : DiagnosticsSink {
public:
    /// A null sink gets nothing, and nothing is kept.
    explicit KeptFindings(DiagnosticsSink* sink) : sink_(sink) {}

    /// What keeps; valid as long as this object.
    Reporter reporter() { return Reporter(sink_ ? this : nullptr); }

    /// Reports all that was kept to the sink.
    void passOn() const {
        for (const Place& place : used_)
            sink_->used(place);
        for (const Finding& finding : findings_)
            sink_->report(finding);
    }

private:
    void report(const Finding& finding) override { findings_.push_back(finding); }
    void used(const Place& place) override { used_.push_back(place); }

    DiagnosticsSink* sink_;
    std::vector<Finding> findings_;
    std::vector<Place> used_;
};

}  // namespace yg
