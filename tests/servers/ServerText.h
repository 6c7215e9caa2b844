// SPDX-License-Identifier: MIT
//
// Server records as texts, to compare them.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/servers/ServerGroup.h"
#include "YGConfigManager/servers/YGServerAddrListTag.h"
#include "YGConfigManager/text/Format.h"
#include "YGConfigManager/xml/Document.h"

#include "servers/ScriptedRandomSource.h"

namespace yg::testing {

/// The server types of which a loader has groups.
inline constexpr std::uint64_t loadedTypes[] = {1, 2, 3, 4, 5, 7, 8};

/// "KEY NAME ADDRESS:PORT".
inline std::string textOf(const YGServerAddrTag& server) {
    return text::format("%d %@ %@:%ld", server.serverKey(), server.serverName(), server.ipAddr(),
                        server.serverPort());
}

/// A line for each server; "null" without a list.
inline std::vector<std::string> serversOf(const YGServerAddrListTag& group) {
    if (!group.serverAddrList())
        return {"null"};
    std::vector<std::string> lines;
    for (const auto& server : *group.serverAddrList())
        lines.push_back(textOf(*server));
    return lines;
}

/// The group of a type in a document.
inline std::shared_ptr<YGServerAddrListTag> groupOf(std::string_view xml, std::uint64_t type,
                                                    DiagnosticsSink* sink = nullptr) {
    const auto parsed = xml::Document::parseText(xml, {.positions = sink != nullptr});
    return YGServerAddrListTag::initWithServerType(type, parsed.document.root(), sink);
}

/// The servers of group 1 of a document with these entries, chosen by these numbers.
inline std::vector<std::string> serversOfEntries(std::string_view entries, RandomSource& random) {
    const auto parsed = xml::Document::parseText("<application><server type='1'>" +
                                                 std::string(entries) + "</server></application>");
    YGServerAddrListTag group;
    readServerGroup(serverGroups(parsed.document.root(), 1), group, Reporter(nullptr), random);
    return serversOf(group);
}

/// The same where nothing is to be chosen.
inline std::vector<std::string> serversOfEntries(std::string_view entries) {
    ScriptedRandomSource random;
    return serversOfEntries(entries, random);
}

}  // namespace yg::testing
