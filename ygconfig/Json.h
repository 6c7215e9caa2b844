// SPDX-License-Identifier: MIT
//
// JSON of whatever the library holds, made from the records' descriptions: a record is an object
// with all of its fields, a list an array, a map an object, and what is absent is null. A new
// record needs nothing here but its Description.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "YGConfigManager/records/Fields.h"
#include "YGConfigManager/records/RecordMap.h"

#include "ygconfig/Answer.h"

namespace yg::tool {

/// Members keep their order.
using Json = nlohmann::ordered_json;

/// A number that is written with the fewest digits that read back to the same float; an infinity is
/// the text "inf" or "-inf".
Json numberJson(float number);
/// The same for a double.
Json numberJson(double number);

/// The JSON as lines of UTF-8 text, with a line feed at the end. What is no UTF-8 is replaced by
/// U+FFFD.
std::string jsonText(const Json& json);

/// The answer of a command: the text, and whether it is null or false.
Answer jsonAnswer(const Json& json);

template <class Value>
concept Described = requires {
    Description<Value>::fields;
};

// Declared before they are defined, since lists hold maps and maps hold lists.
template <class Value>
Json toJson(const Value& value);
template <class Value>
Json toJson(const std::optional<Value>& value);
template <class Value>
Json toJson(const std::shared_ptr<Value>& value);
template <class Value>
Json toJson(const std::vector<Value>& list);
template <class Value>
Json toJson(const RecordMap<Value>& map);

template <class Value>
Json toJson(const std::optional<Value>& value) {
    return value ? toJson(*value) : Json();
}

template <class Value>
Json toJson(const std::shared_ptr<Value>& value) {
    return value ? toJson(*value) : Json();
}

template <class Value>
Json toJson(const std::vector<Value>& list) {
    Json array = Json::array();
    for (const Value& value : list)
        array.push_back(toJson(value));
    return array;
}

/// Adds a member whose name is new. The object's own operations would compare it with all others.
inline void addMember(Json& object, std::string_view name, Json value) {
    static_cast<Json::object_t::Container&>(object.get_ref<Json::object_t&>())
        .emplace_back(std::string(name), std::move(value));
}

template <class Value>
Json toJson(const RecordMap<Value>& map) {
    Json object = Json::object();
    for (const auto& [key, value] : map)
        addMember(object, key, toJson(value));
    return object;
}

/// A record, a text, a flag or a number.
template <class Value>
Json toJson(const Value& value) {
    if constexpr (Described<Value>) {
        Json object = Json::object();
        forEachField(value, [&](std::string_view name, const auto& field) {
            addMember(object, name, toJson(field));
        });
        return object;
    } else if constexpr (std::is_floating_point_v<Value>) {
        return numberJson(value);
    } else {
        static_assert(std::is_arithmetic_v<Value> || std::is_convertible_v<Value, std::string>,
                      "a record needs a Description");
        return Json(value);
    }
}

}  // namespace yg::tool
