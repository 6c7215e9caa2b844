// SPDX-License-Identifier: MIT
//
// A record described once: its fields under their exact names, in their order. What prints or
// compares whole records goes by the description and names no field itself.
#pragma once

#include <functional>
#include <string_view>
#include <tuple>
#include <utility>

namespace yg {

/// One field: its name and its getter, or the member itself.
template <class Getter>
struct Field {
    std::string_view name;
    Getter getter;
};

template <class Getter>
Field(const char*, Getter) -> Field<Getter>;

/// Specialised for each record, next to the record: `static constexpr std::tuple fields{…}`.
template <class Record>
struct Description;

/// Calls `visit(name, value)` for each field of the record, in order.
template <class Record, class Visit>
void forEachField(const Record& record, Visit&& visit) {
    std::apply(
        [&](const auto&... field) { (visit(field.name, std::invoke(field.getter, record)), ...); },
        Description<Record>::fields);
}

}  // namespace yg
