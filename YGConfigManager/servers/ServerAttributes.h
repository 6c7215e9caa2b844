// SPDX-License-Identifier: MIT
//
// The attributes of the server configuration that are not those of a record. Internal.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <tuple>

#include "YGConfigManager/records/Description.h"

namespace yg {

/// A child of "server", whatever its name; the texts live as long as its tree.
struct ServerEntry {
    std::optional<std::int32_t> key;
    std::optional<std::string_view> names;
    std::optional<std::string_view> addrs;
};

template <>
struct Description<ServerEntry> {
    static constexpr std::tuple fields{
        Field{"serverKey", &ServerEntry::key, &ServerEntry::key,
              AttributeInfo{.name = "key",
                            .kind = AttributeKind::integer,
                            .sentence = "A number for the application, the same for all servers of "
                                        "the entry.",
                            .isRequired = true}},
        Field{"serverName", &ServerEntry::names, &ServerEntry::names,
              AttributeInfo{.name = "name",
                            .sentence = "The names of the servers, separated by \";\"; each name "
                                        "makes a server.",
                            .names = Naming::server,
                            .defines = true,
                            .isRequired = true}},
        Field{"ipAddr", &ServerEntry::addrs, &ServerEntry::addrs,
              AttributeInfo{.name = "addrs",
                            .sentence = "The addresses, separated by \";\", each host:port or "
                                        "weight:host:port. One is chosen at random for each "
                                        "server; weights have no effect.",
                            .isRequired = true}}};
};

}  // namespace yg
