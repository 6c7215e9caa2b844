// SPDX-License-Identifier: MIT
//
// The attributes of the server configuration, row for row in the order of the format. Internal.
#pragma once

#include <optional>
#include <string_view>

#include "YGConfigManager/records/AttributeTable.h"
#include "YGConfigManager/servers/YGServerAddrListTag.h"
#include "YGConfigManager/servers/YGServerCfgLoader.h"

namespace yg {

/// An entry of a group, which gives one server for each name; the texts live as long as its tree.
struct ServerEntry {
    std::optional<std::string_view> key;
    std::optional<std::string_view> names;
    std::optional<std::string_view> addrs;
};

/// The root.
inline constexpr AttributeRow<YGServerCfgLoader> applicationAttributes[] = {
    textRow<&YGServerCfgLoader::setConfigMd5, YGServerCfgLoader>("md5", "configMd5"),
};

/// A "server", which is a group of servers.
inline constexpr AttributeRow<YGServerAddrListTag> serverAttributes[] = {
    // Groups are chosen by their type, so there is nothing left to store.
    {"type", "serverType", AttributeKind::integer, "never loaded",
     [](YGServerAddrListTag&, std::string_view) {}},
    textRow<&YGServerAddrListTag::setServerDescription, YGServerAddrListTag>("name",
                                                                             "serverDescription"),
    textRow<&YGServerAddrListTag::setGlooxDomain, YGServerAddrListTag>("domain", "glooxDomain"),
};

/// A child of "server", whatever its name. Without one of the three it is passed over.
inline constexpr AttributeRow<ServerEntry> serverEntryAttributes[] = {
    {"key", "serverKey", AttributeKind::integer, "entry passed over",
     [](ServerEntry& entry, std::string_view value) { entry.key = value; }},
    {"name", "serverName", AttributeKind::text, "entry passed over",
     [](ServerEntry& entry, std::string_view value) { entry.names = value; }},
    {"addrs", "ipAddr", AttributeKind::text, "entry passed over",
     [](ServerEntry& entry, std::string_view value) { entry.addrs = value; }},
};

}  // namespace yg
