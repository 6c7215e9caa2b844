// SPDX-License-Identifier: MIT
//
// Internal. Throws std::bad_alloc.
#pragma once

#include <string_view>

#include "YGConfigManager/host/JsonValue.h"

namespace yg {

/// The member of an object; null when there is none, or no object.
inline JsonValue memberOf(const JsonValue& value, std::string_view name) {
    const auto object = value.object();
    const auto found = object ? object->find(name) : JsonValue::Object::const_iterator();
    return object && found != object->end() ? found->second : JsonValue();
}

}  // namespace yg
