// SPDX-License-Identifier: MIT
//
// The formats, one source each, and what their tables are made with. Internal.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>
#include <tuple>

#include "YGConfigManager/diagnostics/RuleTable.h"
#include "YGConfigManager/formats/Format.h"
#include "YGConfigManager/records/AttributeTable.h"

namespace yg {

extern const FormatInfo stylesFormat;
extern const FormatInfo magicPanelsFormat;
extern const FormatInfo reusePanelsFormat;
extern const FormatInfo eventsFormat;
extern const FormatInfo paletteFormat;
extern const FormatInfo serversFormat;
extern const FormatInfo settingsFormat;
extern const FormatInfo webPagesFormat;
extern const FormatInfo requestUrlsFormat;
extern const FormatInfo hostFormat;

/// The rows of some tables, one after the other: those of an element that is read by all of them.
template <class... Record, std::size_t... count>
consteval auto rowsOf(const AttributeTable<Record, count>&... tables) {
    std::array<AttributeInfo, (count + ...)> rows{};
    std::size_t at = 0;
    const auto add = [&](const auto& table) {
        for (const AttributeInfo& row : table.rows())
            rows[at++] = row;
    };
    (add(tables), ...);
    return rows;
}

/// The rows of a record whose members JSON gives, without those that are lists.
template <class Record, std::size_t count>
consteval auto textRowsOf(const std::array<std::string_view, count>& lists) {
    constexpr std::size_t all = std::tuple_size_v<decltype(Description<Record>::fields)>;
    std::array<AttributeInfo, all - count> rows{};
    std::size_t at = 0;
    const auto add = [&](const AttributeInfo& row) {
        for (const std::string_view list : lists) {
            if (row.name == list)
                return;
        }
        rows[at++] = row;
    };
    std::apply([&](const auto&... field) { (add(field.attribute), ...); },
               Description<Record>::fields);
    return rows;
}

/// The same rows where the element has an effect without that attribute, too.
template <std::size_t count>
consteval auto optional(std::array<AttributeInfo, count> rows, std::string_view name) {
    for (AttributeInfo& row : rows) {
        if (row.name == name)
            row.isRequired = false;
    }
    return rows;
}

/// The same rows where that attribute is reported when it is missing.
template <std::size_t count>
consteval auto expected(std::array<AttributeInfo, count> rows, std::string_view name) {
    for (AttributeInfo& row : rows) {
        if (row.name == name)
            row.isExpected = true;
    }
    return rows;
}

/// An attribute whose value must not be empty.
constexpr ValueInfo notEmpty(std::string_view attribute) {
    return {attribute, "minLength", "1", "Not empty."};
}

/// Texts one after the other, without a NUL at the end.
template <std::size_t... size>
consteval auto joined(const char (&... parts)[size]) {
    std::array<char, (size + ...) - sizeof...(size)> text{};
    std::size_t at = 0;
    const auto add = [&](std::string_view part) {
        for (const char c : part)
            text[at++] = c;
    };
    (add(parts), ...);
    return text;
}

}  // namespace yg
