// SPDX-License-Identifier: MIT
//
// A record described once: its fields under their exact names, in their order, and for each the
// attribute that it is read from. What reads, prints, copies, compares or documents whole records
// goes by the description and names no field itself. A new attribute is a member of its record and
// a row here.
#pragma once

#include <concepts>
#include <cstddef>
#include <functional>
#include <limits>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

namespace yg {

/// How the text of an attribute is read.
enum class AttributeKind {
    text,         ///< as it stands
    flag,         ///< true only for "true"
    integer,      ///< the leading decimal integer, 0 without one
    wholeNumber,  ///< the same into a float field, so that a fraction is dropped
    decimal,      ///< the leading decimal number, 0 without one
    nameList,     ///< names between ";", empty ones kept; an empty text counts as no list
};

/// What the text of an attribute names.
enum class Naming {
    nothing,
    style,
    panel,
    magicGroup,
    magicPanel,
    reusePanel,
    element,
    eventGroup,
    eventTemplate,
    event,
    command,
    color,
    font,
    image,
    colorKey,
    fontKey,
    serverType,
    server,
    webPage,
    requestUrl,
};

/// One attribute, as its author sees it.
struct AttributeInfo {
    /// No bound: the lowest number of all, and as `most` its negation, the highest.
    static constexpr float lowest = std::numeric_limits<float>::lowest();

    std::string_view name = {};                ///< empty for a field that no attribute gives
    AttributeKind kind = AttributeKind::text;  ///< how the value is read
    std::string_view sentence = {};            ///< what it means, for the author of the file
    Naming names = Naming::nothing;            ///< what the value names
    bool defines = false;                      ///< defines that name; otherwise refers to it
    bool isRequired = false;                   ///< without it the element has no effect
    bool isExpected = false;            ///< a default counts without it, but it should be there
    float least = lowest;               ///< of a number; what is below counts as this
    float most = -lowest;               ///< of a number; what is above counts as this
    std::string_view whenMissing = {};  ///< the value then; empty for the kind's own
    std::string_view field = {};        ///< the record's field; set from its row
};

/// One field: its name, its getter or the member itself, and how it is filled.
template <class Getter, class Setter = std::nullptr_t>
struct Field {
    std::string_view name;  ///< of the field, as dumps show it
    Getter getter;          ///< a member, or an operation without arguments
    /// What stores a value read from a file, or copied; null when nothing is to be stored.
    Setter setter = nullptr;
    AttributeInfo attribute = {};
    /// Whether a copy of the record has the value.
    bool isCopied = true;
};

template <class Getter>
Field(const char*, Getter) -> Field<Getter>;
template <class Getter, class Setter>
Field(const char*, Getter, Setter) -> Field<Getter, Setter>;
template <class Getter, class Setter>
Field(const char*, Getter, Setter, AttributeInfo) -> Field<Getter, Setter>;
template <class Getter, class Setter>
Field(const char*, Getter, Setter, AttributeInfo, bool) -> Field<Getter, Setter>;

/// Specialised for each record, next to the record: `static constexpr std::tuple fields{…}`.
template <class Record>
struct Description;

/// A class whose fields are described.
template <class Record>
concept DescribedRecord = requires {
    Description<Record>::fields;
};

namespace detail {

template <class Visit, class Record, class... Fields>
constexpr bool takesFields(const std::tuple<Fields...>&) {
    return (std::invocable<Visit&, const std::string_view&,
                           std::invoke_result_t<decltype((std::declval<const Fields&>().getter)),
                                                const Record&>> &&
            ...);
}

}  // namespace detail

/// What can be called with a field's name, a std::string_view, and the value of each field of the
/// record: these are of several types, so it is usually a lambda of (auto name, const auto& value).
template <class Visit, class Record>
concept VisitsEveryField = detail::takesFields<Visit, Record>(Description<Record>::fields);

/// Calls `visit(name, value)` for each field of the record, in order.
template <DescribedRecord Record, VisitsEveryField<Record> Visit>
void forEachField(const Record& record, Visit&& visit) {
    std::apply(
        [&](const auto&... field) { (visit(field.name, std::invoke(field.getter, record)), ...); },
        Description<Record>::fields);
}

}  // namespace yg
