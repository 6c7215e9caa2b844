// SPDX-License-Identifier: MIT
//
// Whole records as text, field by field from their descriptions, so that tests compare all of what
// a loader gave.
#pragma once

#include <concepts>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/records/Description.h"
#include "YGConfigManager/records/RecordMap.h"

namespace yg::testing {

inline std::string wholeText(const std::string& text) {
    return text;
}
inline std::string wholeText(std::integral auto number) {
    return std::to_string(number);
}
inline std::string wholeText(std::floating_point auto number) {
    return std::to_string(number);
}
template <class T>
std::string wholeText(const std::optional<T>& value);
template <class T>
std::string wholeText(const std::shared_ptr<T>& value);
template <class T>
std::string wholeText(const std::vector<T>& list);
template <class T>
std::string wholeText(const RecordMap<T>& map);

template <class Record>
auto wholeText(const Record& record) -> decltype(Description<Record>::fields, std::string()) {
    std::string text = "{";
    forEachField(record, [&](std::string_view name, const auto& field) {
        text += std::string(name) + '=' + wholeText(field) + ' ';
    });
    return text + '}';
}
template <class T>
std::string wholeText(const std::optional<T>& value) {
    return value ? wholeText(*value) : "-";
}
template <class T>
std::string wholeText(const std::shared_ptr<T>& value) {
    return value ? wholeText(*value) : "null";
}
template <class T>
std::string wholeText(const std::vector<T>& list) {
    std::string text = "[";
    for (const T& item : list)
        text += wholeText(item) + '\n';
    return text + ']';
}
template <class T>
std::string wholeText(const RecordMap<T>& map) {
    std::string text = "(";
    for (const auto& [key, value] : map)
        text += wholeText(key) + ':' + wholeText(value) + '\n';
    return text + ')';
}

}  // namespace yg::testing
