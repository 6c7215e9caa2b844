// SPDX-License-Identifier: MIT
//
// The known word or name that a misspelt one probably means.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/records/RecordMap.h"

namespace yg::tool {

/// "; did you mean 'X'?" with the nearest known word; "" when none is near.
std::string suggestion(std::string_view word, std::span<const std::string> known);

/// "'NAME'", printable.
std::string inQuotes(std::string_view name);

/// "; nearest: 'X'" with the nearest known name; "" when none is near.
std::string nearestOf(std::string_view name, std::span<const std::string> known);

/// What a look-up says that finds nothing: "ygconfig: no KIND 'NAME' in GROUP; nearest: 'X'".
/// `where` begins with a blank; empty for nowhere in particular.
std::string nothingNamed(std::string_view kind, std::string_view name,
                         std::span<const std::string> known, std::string_view where = "");

/// The names in a map, in its order.
template <class Value>
std::vector<std::string> namesIn(const RecordMap<Value>& map) {
    std::vector<std::string> names;
    for (const auto& entry : map)
        names.push_back(entry.key);
    return names;
}

}  // namespace yg::tool
