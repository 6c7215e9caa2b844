// SPDX-License-Identifier: MIT
//
// A record's attributes as a table: one row for each, from which the loader reads and from which
// schemas, documents and dictionaries are made. A new attribute is a new row.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "YGConfigManager/diagnostics/CommonRules.h"
#include "YGConfigManager/diagnostics/DiagnosticsSink.h"
#include "YGConfigManager/text/Numbers.h"
#include "YGConfigManager/text/Split.h"
#include "YGConfigManager/xml/Element.h"

namespace yg {

/// A list of texts that records share by reference.
using TextList = std::vector<std::string>;

/// How the text of an attribute is read.
enum class AttributeKind {
    text,            ///< as it stands
    flag,            ///< true only for "true"
    integer,         ///< the leading decimal integer, 0 without one
    integerAsFloat,  ///< the same into a float field, so that a fraction is dropped
    decimal,         ///< the leading decimal number, 0 without one
    nameList,        ///< names between ";", empty ones kept; an empty text counts as no list
};

/// One attribute of an element that becomes a `Record`.
template <class Record>
struct AttributeRow {
    std::string_view name;
    std::string_view field;  ///< the name of the record's field
    AttributeKind kind;
    std::string_view whenMissing;  ///< the value without the attribute, as documents show it
    void (*read)(Record&, std::string_view value);
    /// Sets the value for a missing attribute where it is not the record's own default.
    void (*setMissing)(Record&) = nullptr;
};

/// What a text lets an attribute of a kind hear from diagnostics; null when nothing is odd.
inline const Rule* oddity(AttributeKind kind, std::string_view value) {
    using text::NumberOddity;
    switch (kind) {
        case AttributeKind::text:
            return nullptr;
        case AttributeKind::flag:
            return value == "true" || value == "false" ? nullptr : &rules::oddFlag;
        case AttributeKind::integer:
        case AttributeKind::integerAsFloat:
            return text::readLeadingInt32(value).oddity == NumberOddity::none ? nullptr
                                                                              : &rules::oddNumber;
        case AttributeKind::decimal:
            return text::readLeadingFloat(value).oddity == NumberOddity::none ? nullptr
                                                                              : &rules::oddNumber;
        case AttributeKind::nameList:
            return value.empty() ? &rules::emptyList : nullptr;
    }
    return nullptr;
}

/// The only text that is true.
constexpr bool isTrueText(std::string_view value) {
    return value == "true";
}

/// The rows of a table are made by these, from the record's setter.
template <auto setter, class Record>
constexpr AttributeRow<Record> textRow(std::string_view name, std::string_view field) {
    return {name, field, AttributeKind::text, "absent", [](Record& record, std::string_view value) {
                using Answer = decltype((record.*setter)(std::string(value)));
                if constexpr (std::is_void_v<Answer>)
                    (record.*setter)(std::string(value));
                else if (!(record.*setter)(std::string(value)))
                    throw std::bad_alloc();
            }};
}

template <auto setter, class Record>
constexpr AttributeRow<Record> flagRow(std::string_view name, std::string_view field) {
    return {name,
            field,
            AttributeKind::flag,
            "false",
            [](Record& record, std::string_view value) { (record.*setter)(isTrueText(value)); },
            [](Record& record) { (record.*setter)(false); }};
}

template <auto setter, class Record>
constexpr AttributeRow<Record> integerRow(std::string_view name, std::string_view field) {
    return {name, field, AttributeKind::integer, "0", [](Record& record, std::string_view value) {
                (record.*setter)(text::leadingInt32(value));
            }};
}

template <auto setter, class Record>
constexpr AttributeRow<Record> integerAsFloatRow(std::string_view name, std::string_view field) {
    return {name, field, AttributeKind::integerAsFloat, "0.0",
            [](Record& record, std::string_view value) {
                (record.*setter)(static_cast<float>(text::leadingInt32(value)));
            }};
}

/// `whenMissing` says what the record's own default is.
template <auto setter, class Record>
constexpr AttributeRow<Record> decimalRow(std::string_view name, std::string_view field,
                                          std::string_view whenMissing) {
    return {name, field, AttributeKind::decimal, whenMissing,
            [](Record& record, std::string_view value) {
                (record.*setter)(text::leadingFloat(value));
            }};
}

template <auto setter, class Record>
constexpr AttributeRow<Record> nameListRow(std::string_view name, std::string_view field) {
    return {name, field, AttributeKind::nameList, "absent",
            [](Record& record, std::string_view value) {
                if (!value.empty())
                    (record.*setter)(std::make_shared<TextList>(text::split(value, ';')));
            }};
}

template <class Record, std::size_t size>
std::size_t rowOf(const AttributeRow<Record> (&table)[size], std::string_view name) {
    std::size_t row = 0;
    while (row < size && table[row].name != name)
        ++row;
    return row;
}

/// Tells a sink of each attribute of an element that is read by the table.
template <class Record, std::size_t size>
void reportAttributes(const xml::Element& element, const AttributeRow<Record> (&table)[size],
                      DiagnosticsSink& sink) {
    for (const xml::Attribute attribute : element.attributes()) {
        const std::size_t row = rowOf(table, attribute.name);
        const Rule* rule =
            row < size ? oddity(table[row].kind, attribute.value) : &rules::unknownAttribute;
        if (rule)
            sink.report(
                {*rule, element, std::string(attribute.name), std::string(attribute.value)});
        else
            sink.usedAttribute(element, attribute.name);
    }
}

/// Reads all attributes of an element in one pass; a missing one gives the row's default.
template <class Record, std::size_t size>
void readAttributes(const xml::Element& element, const AttributeRow<Record> (&table)[size],
                    Record& record) {
    static_assert(size < 64);
    std::uint64_t seen = 0;
    for (const xml::Attribute attribute : element.attributes()) {
        const std::size_t row = rowOf(table, attribute.name);
        if (row == size)
            continue;
        table[row].read(record, attribute.value);
        seen |= std::uint64_t{1} << row;
    }
    for (std::size_t row = 0; row < size; ++row) {
        if (table[row].setMissing && (seen & (std::uint64_t{1} << row)) == 0)
            table[row].setMissing(record);
    }
}

}  // namespace yg
