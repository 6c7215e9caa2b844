// SPDX-License-Identifier: MIT
//
// What the targets of whole loaders share: a host that keeps the log, a listener that looks at all
// it is told, and records as text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "YGConfigManager/diagnostics/DiagnosticsSink.h"
#include "YGConfigManager/host/Host.h"
#include "YGConfigManager/records/Description.h"
#include "YGConfigManager/records/RecordMap.h"

#include "Target.h"

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

class LookingSink : public DiagnosticsSink {
public:
    void report(const Finding& finding) override {
        require(!finding.rule.name.empty(), "a rule has a name");
        require(finding.element.empty() || finding.place.begin.line > 0,
                "an element reported has a place");
        require(finding.place.begin.line <= finding.place.end.line,
                "a place ends behind its begin");
    }
};

inline std::string shown(const std::string& text) {
    return '"' + text + '"';
}

template <class Number>
requires std::is_arithmetic_v<Number> std::string shown(Number number) {
    return std::to_string(number);
}

template <class Value>
std::string shown(const std::optional<Value>& value) {
    return value ? shown(*value) : "absent";
}

template <class Value>
std::string shown(const std::shared_ptr<Value>& value);

template <class Value>
std::string shown(const std::vector<Value>& values) {
    std::string text = "[";
    for (const Value& value : values)
        text += shown(value) + '\n';
    return text + ']';
}

template <class Value>
std::string shown(const RecordMap<Value>& values);

template <class Record>
auto shown(const Record& record) -> decltype(Description<Record>::fields, std::string()) {
    std::string text = "{";
    forEachField(record, [&](std::string_view name, const auto& value) {
        text += std::string(name) + '=' + shown(value) + ' ';
    });
    return text + '}';
}

template <class Value>
std::string shown(const std::shared_ptr<Value>& value) {
    return value ? shown(*value) : "null";
}

template <class Value>
std::string shown(const RecordMap<Value>& values) {
    std::string text = "{";
    for (const auto& [key, value] : values)
        text += shown(key) + ": " + shown(value) + '\n';
    return text + '}';
}

}  // namespace yg::fuzz
