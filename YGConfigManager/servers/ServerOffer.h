// SPDX-License-Identifier: MIT
//
// What a server configuration offers, entry by entry, whichever addresses were chosen. Plain
// values.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "YGConfigManager/text/Place.h"

namespace yg {

/// One address of an entry.
struct AddressOffer {
    std::string address;                ///< host:port; an item without a port as it stands
    std::optional<std::string> weight;  ///< as written; it has no effect
    bool canBeChosen;                   ///< with the same chance as the entry's others that can be
};

/// An entry of a group. It gives servers if one of its addresses can be chosen.
struct ServerOffer {
    std::optional<std::string> key;       ///< as written
    std::optional<std::string> names;     ///< as written, between ";"
    std::vector<AddressOffer> addresses;  ///< empty when the entry does not say
    std::optional<std::string> addrs;     ///< as written
    std::size_t servers = 0;              ///< how many it gives, while the group has room for them
    Place place = {};                     ///< of its start tag
};

}  // namespace yg
