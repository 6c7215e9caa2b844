// SPDX-License-Identifier: MIT
//
// The attributes of an element as a table for its loader, made from the description of the record.
// Internal.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "YGConfigManager/diagnostics/RuleTable.h"
#include "YGConfigManager/records/Description.h"
#include "YGConfigManager/text/Numbers.h"
#include "YGConfigManager/text/Split.h"
#include "YGConfigManager/xml/Element.h"

namespace yg {

/// A list of texts that records share by reference.
using TextList = std::vector<std::string>;

/// The only text that is true.
constexpr bool isTrueText(std::string_view value) {
    return value == "true";
}

/// What is odd about a value of an attribute; null when nothing is.
const Rule* oddity(const AttributeInfo& attribute, std::string_view value);

/// Stores a value by a setter, which may answer false without memory for it, or in a member.
template <class Record, class Setter, class Value>
void store(Record& record, Setter setter, Value&& value) {
    if constexpr (std::is_same_v<Setter, std::nullptr_t>) {
        // There is nothing to be kept.
    } else if constexpr (std::is_member_object_pointer_v<Setter>) {
        record.*setter = std::forward<Value>(value);
    } else if constexpr (std::is_same_v<decltype((record.*setter)(std::forward<Value>(value))),
                                        bool>) {
        if (!(record.*setter)(std::forward<Value>(value)))
            throw std::bad_alloc();
    } else {
        (record.*setter)(std::forward<Value>(value));
    }
}

/// A table of a record's attributes, in the order of the description.
template <class Record, std::size_t count>
class AttributeTable {
public:
    using Read = void (*)(Record&, std::string_view value);

    static_assert(count > 0 && count < 64);

    constexpr AttributeTable(std::array<AttributeInfo, count> rows, std::array<Read, count> reads)
        : rows_(rows), reads_(reads) {
        // By the lengths of the names, so that hardly any name is compared to find one.
        std::size_t placed = 0;
        for (std::size_t size = 0; size < longest; ++size) {
            first_[size] = static_cast<std::uint8_t>(placed);
            for (std::size_t row = 0; row < count; ++row) {
                if (rows_[row].name.size() == size)
                    bySize_[placed++] = static_cast<std::uint8_t>(row);
            }
        }
        for (std::size_t row = 0; row < count; ++row) {
            if (rows_[row].kind == AttributeKind::flag)
                flags_ |= std::uint64_t{1} << row;
            if (rows_[row].isRequired)
                required_ |= std::uint64_t{1} << row;
        }
        first_[longest] = static_cast<std::uint8_t>(placed);
        if (placed != count)
            throw "the name of an attribute is too long";
    }

    constexpr std::span<const AttributeInfo> rows() const { return rows_; }

    /// The same table with another name for one of its attributes.
    constexpr AttributeTable renamed(std::string_view from, std::string_view to) const {
        auto rows = rows_;
        for (AttributeInfo& row : rows) {
            if (row.name == from)
                row.name = to;
        }
        return {rows, reads_};
    }

    /// Reads all attributes of an element in one pass. A missing one leaves the record's own value,
    /// but a flag is false. Answers the first required one that is missing; "" when none is.
    std::string_view read(const xml::Element& element, Record& record) const {
        return readEach(record, [&](auto&& add) {
            for (const xml::Attribute attribute : element.attributes())
                add(attribute.name, attribute.value);
        });
    }

    /// The same of an element of any kind; `forEachAttribute(add)` calls `add(name, value)`.
    template <class ForEachAttribute>
    std::string_view readEach(Record& record, ForEachAttribute&& forEachAttribute) const {
        std::uint64_t seen = 0;
        forEachAttribute([&](std::string_view name, std::string_view value) {
            const std::size_t row = find(name);
            if (row == count)
                return;
            reads_[row](record, value);
            seen |= std::uint64_t{1} << row;
        });
        for (std::uint64_t missing = flags_ & ~seen; missing != 0; missing &= missing - 1)
            reads_[static_cast<std::size_t>(std::countr_zero(missing))](record, {});
        const std::uint64_t lacking = required_ & ~seen;
        return lacking == 0 ? std::string_view()
                            : rows_[static_cast<std::size_t>(std::countr_zero(lacking))].name;
    }

private:
    static constexpr std::size_t longest = 32;

    std::size_t find(std::string_view name) const {
        if (name.size() >= longest)
            return count;
        for (std::size_t at = first_[name.size()]; at < first_[name.size() + 1]; ++at) {
            if (rows_[bySize_[at]].name == name)
                return bySize_[at];
        }
        return count;
    }

    std::array<AttributeInfo, count> rows_;
    std::array<Read, count> reads_;
    std::array<std::uint8_t, count> bySize_{};
    std::array<std::uint8_t, longest + 1> first_{};
    std::uint64_t flags_ = 0;
    std::uint64_t required_ = 0;
};

namespace detail {

template <class Record, std::size_t at>
void readField(Record& record, std::string_view value) {
    constexpr auto& field = std::get<at>(Description<Record>::fields);
    constexpr AttributeKind kind = field.attribute.kind;
    if constexpr (std::is_same_v<std::decay_t<decltype(field.setter)>, std::nullptr_t>)
        return;
    else if constexpr (kind == AttributeKind::text)
        store(record, field.setter, value);
    else if constexpr (kind == AttributeKind::flag)
        store(record, field.setter, isTrueText(value));
    else if constexpr (kind == AttributeKind::integer)
        store(record, field.setter, text::leadingInt32(value));
    else if constexpr (kind == AttributeKind::wholeNumber)
        store(record, field.setter, static_cast<float>(text::leadingInt32(value)));
    else if constexpr (kind == AttributeKind::decimal)
        store(record, field.setter, text::leadingFloat(value));
    else if (!value.empty())
        store(record, field.setter, std::make_shared<TextList>(text::split(value, ';')));
}

template <class Record>
constexpr auto makeTable() {
    constexpr auto& fields = Description<Record>::fields;
    constexpr std::size_t all = std::tuple_size_v<std::decay_t<decltype(fields)>>;
    constexpr std::size_t count = std::apply(
        [](const auto&... field) { return (std::size_t{!field.attribute.name.empty()} + ...); },
        fields);
    std::array<AttributeInfo, count> rows{};
    std::array<void (*)(Record&, std::string_view), count> reads{};
    std::size_t row = 0;
    const auto add = [&]<std::size_t at>(std::integral_constant<std::size_t, at>) {
        if constexpr (!std::get<at>(Description<Record>::fields).attribute.name.empty()) {
            rows[row] = std::get<at>(Description<Record>::fields).attribute;
            rows[row].field = std::get<at>(Description<Record>::fields).name;
            reads[row++] = &readField<Record, at>;
        }
    };
    [&]<std::size_t... at>(std::index_sequence<at...>) {
        (add(std::integral_constant<std::size_t, at>()), ...);
    }
    (std::make_index_sequence<all>());
    return AttributeTable<Record, count>(rows, reads);
}

}  // namespace detail

/// The table of a record's attributes.
template <class Record>
inline constexpr auto attributesOf = detail::makeTable<Record>();

/// Copies each field of a record that is copied and has a setter.
template <class Record>
void copyFields(const Record& from, Record& to) {
    const auto copy = [&](const auto& field) {
        if (field.isCopied)
            store(to, field.setter, std::invoke(field.getter, from));
    };
    std::apply([&](const auto&... field) { (copy(field), ...); }, Description<Record>::fields);
}

}  // namespace yg
