// SPDX-License-Identifier: MIT
//
// Why a page cannot be built, or not as its name says, from the loader that builds it.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "YGConfigManager/diagnostics/DiagnosticsSink.h"
#include "YGConfigManager/layout/YGStyleConfigLoad.h"

namespace yg::tool {

class PageFaults final : public DiagnosticsSink {
public:
    /// For the look-up of one style. Reports everything to the other sink, too.
    PageFaults(std::string name, DiagnosticsSink& other) : name_(std::move(name)), other_(other) {}

    void readingFile(std::string_view path) override { other_.readingFile(path); }
    void report(const Finding& finding) override;

    /// After the look-up: a line for each of the first faults, with the nearest name, without the
    /// last line feed; "" when there is none. `isFound`: there was an answer.
    std::string complaint(const YGStyleConfigLoad& loader, bool isFound) const;

private:
    struct Fault {
        const Rule* rule;
        TextPoint place;  ///< of the slot, in the file of its template
        std::string value;
    };

    const std::string name_;
    DiagnosticsSink& other_;
    std::vector<Fault> faults_;
    std::string missing_;  ///< the file without which there are no templates
};

}  // namespace yg::tool
