// SPDX-License-Identifier: MIT
//
// Which elements of a file have no effect, from the loader that reads it.
#pragma once

#include <cstdint>
#include <set>
#include <string_view>
#include <tuple>

#include "YGConfigManager/diagnostics/DiagnosticsSink.h"
#include "YGConfigManager/xml/Node.h"

namespace yg::tool {

class DroppedNodes final : public DiagnosticsSink {
public:
    /// Reports everything to the other sink, too.
    explicit DroppedNodes(DiagnosticsSink& other) : other_(other) {}

    void readingFile(std::string_view path) override { other_.readingFile(path); }
    void report(const Finding& finding) override {
        if (finding.rule.handling == Handling::dropped)
            dropped_.insert(rangeOf(finding.extent));
        other_.report(finding);
    }

    /// Whether a node of that file was dropped, or one of a copy of it.
    bool contains(const xml::Node& node) const {
        const auto place = node.place();
        return place && dropped_.contains(rangeOf(*place));
    }

private:
    using Range = std::tuple<std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t>;
    static Range rangeOf(const Place& place) {
        return {place.begin.line, place.begin.column, place.end.line, place.end.column};
    }

    DiagnosticsSink& other_;
    std::set<Range> dropped_;
};

}  // namespace yg::tool
