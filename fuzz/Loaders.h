// SPDX-License-Identifier: MIT
//
// What the targets of whole loaders share: a host that keeps the log, a sink that looks at
// whatever is reported, and records as text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "YGConfigManager/diagnostics/DiagnosticsSink.h"
#include "YGConfigManager/host/Host.h"

#include "Target.h"
#include "records/RecordText.h"

namespace yg::fuzz {

/// Knows no files but the one of the storage, for reading and for writing alike.
class LoggingHost : public Host {
public:
    std::string log;
    std::optional<std::string> storagePath;

    std::optional<std::string> getStorageFilePath(std::int64_t, std::optional<std::string_view>,
                                                  std::optional<std::string_view>, bool) override {
        return storagePath;
    }
    std::optional<std::string> getUserRightDescription() override { return std::nullopt; }
    std::optional<std::string> getSoftOptimizeConfigFilePath(std::int64_t,
                                                             std::string_view) override {
        return std::nullopt;
    }
    std::optional<std::string> getBaseOptimizeConfigFilePath(std::int64_t,
                                                             std::string_view) override {
        return std::nullopt;
    }
    std::shared_ptr<const MappingDic> getMappingDicForKey(std::string_view) override {
        return nullptr;
    }
    std::optional<std::string> getDefualtFolderPath(std::int64_t) override { return std::nullopt; }
    void writeLog(LogChannel, std::string_view message) override {
        log += message;
        log += '\n';
    }
};

/// Looks at whatever is reported.
class LookingSink : public DiagnosticsSink {
public:
    std::size_t seen = 0;

    void report(const Finding& finding) override {
        require(finding.element.empty() || finding.place.begin.line > 0,
                "an element reported has a place");
        require(ruleNamed(finding.rule.name) == &finding.rule, "a rule is in the table");
        require(isInOrder(finding.place) && isInOrder(finding.extent),
                "a place ends behind its begin");
        seen += finding.element.size() + finding.attribute.size() + finding.value.size();
        for (const RelatedPlace& related : finding.related)
            require(isInOrder(related.place), "a related place ends behind its begin");
    }
    void used(const Place& place) override {
        require(isInOrder(place), "what is used has a place");
    }

private:
    static bool isInOrder(const Place& place) {
        const auto before = [](const TextPoint& left, const TextPoint& right) {
            return left.line < right.line ||
                   (left.line == right.line && left.column <= right.column);
        };
        return before(place.begin, place.end);
    }
};

/// Records as text.
template <class Value>
std::string shown(const Value& value) {
    return testing::wholeText(value);
}

}  // namespace yg::fuzz
