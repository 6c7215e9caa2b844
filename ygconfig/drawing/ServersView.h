// SPDX-License-Identifier: MIT
//
// The server configuration as text for people: a tree for each server type with its servers, and
// with what each entry of the file offers them.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/servers/YGServerCfgLoader.h"

#include "ygconfig/drawing/Paint.h"
#include "ygconfig/drawing/Tree.h"

namespace yg::tool {

/// Explains the words and signs of the trees; lines, each with its line feed.
inline constexpr std::string_view serversLegend =
    "What the trees say:\n"
    "  NAME  HOST:PORT        a server and the address that was chosen for it in this run\n"
    "  addresses              what the file offers, entry by entry; an entry's names share them\n"
    "  key                    of the entry and of each of its servers\n"
    "  chance                 that the address is chosen, for each name again\n"
    "  weight                 what the file declares; weights have no effect on the choice\n"
    "  skipped                an entry that gives no server, an address that is never chosen\n";

class ServersView {
public:
    /// The loader must outlive the view.
    ServersView(const YGServerCfgLoader& loader, const Paint& paint);

    /// Everything. `shownPath` stands for the file.
    std::string servers(std::string_view shownPath) const;

private:
    Branch groupBranch(std::string_view fieldName, const YGServerAddrListTag& group) const;
    Branch entryBranch(const ServerOffer& entry) const;

    const YGServerCfgLoader& loader_;
    const Paint paint_;
    const std::map<std::uint64_t, std::vector<ServerOffer>> offers_;
};

}  // namespace yg::tool
