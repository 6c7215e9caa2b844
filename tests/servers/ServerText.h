// SPDX-License-Identifier: MIT
//
// Server records as texts, to compare them.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/servers/YGServerAddrListTag.h"
#include "YGConfigManager/text/Format.h"
#include "YGConfigManager/xml/Document.h"

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

/// The servers of group 1 of a document with these entries.
inline std::vector<std::string> serversOfEntries(std::string_view entries) {
    return serversOf(*groupOf(
        "<application><server type='1'>" + std::string(entries) + "</server></application>", 1));
}

}  // namespace yg::testing
