// SPDX-License-Identifier: MIT
#include "ygconfig/drawing/ServersView.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <type_traits>
#include <utility>
#include <vector>

#include "ygconfig/drawing/Details.h"
#include "ygconfig/drawing/Display.h"

namespace yg::tool {

namespace {

std::string percentage(std::ptrdiff_t count) {
    return threeDigits(100.0 / static_cast<double>(count)) + '%';
}

}  // namespace

ServersView::ServersView(const YGServerCfgLoader& loader, const Paint& paint)
    : loader_(loader), paint_(paint), offers_(loader.offers()) {}

std::string ServersView::servers(std::string_view shownPath) const {
    std::vector<std::pair<std::string_view, YGServerCfgLoader::Group>> groups;
    forEachField(loader_, [&](std::string_view name, const auto& value) {
        if constexpr (std::is_convertible_v<decltype(value), YGServerCfgLoader::Group>) {
            if (value)
                groups.emplace_back(name, value);
        }
    });
    std::sort(groups.begin(), groups.end(), [](const auto& left, const auto& right) {
        return left.second->serverType() < right.second->serverType();
    });

    Details details;
    details.add(quotedIfEmpty(shownPath));
    details.add("md5", loader_.configMd5());
    details.addIf(groups.empty(), "nothing was loaded");
    std::string text = headed("Servers", details, paint_);
    for (const auto& [name, group] : groups)
        text += '\n' + drawTree(groupBranch(name, *group), paint_);
    return text;
}

Branch ServersView::groupBranch(std::string_view fieldName,
                                const YGServerAddrListTag& group) const {
    Details details;
    details.add("type " + std::to_string(group.serverType()));
    details.add(fieldName);
    details.add("domain", group.glooxDomain());
    details.addIf(!group.serverAddrList(), paint_(Tone::mark, "not in the file"));
    Branch branch{nameOr(group.serverDescription(), "(no description)"), Tone::page};
    if (group.serverAddrList()) {
        details.addIf(group.serverAddrList()->empty(), "no servers");
        for (const auto& server : *group.serverAddrList()) {
            Details chosen;
            chosen.add(printable(server->ipAddr().value_or("")) + ':' +
                       std::to_string(server->serverPort()));
            chosen.add("key " + std::to_string(server->serverKey()));
            branch.children.push_back(
                {nameOr(server->serverName(), "(no name)"), Tone::element, std::move(chosen)});
        }
        Branch addresses{"addresses", Tone::quiet};
        if (const auto found = offers_.find(group.serverType()); found != offers_.end())
            std::ranges::transform(found->second, std::back_inserter(addresses.children),
                                   [this](const ServerOffer& entry) { return entryBranch(entry); });
        if (!addresses.children.empty())
            branch.children.push_back(std::move(addresses));
    }
    branch.details = std::move(details);
    return branch;
}

Branch ServersView::entryBranch(const ServerOffer& entry) const {
    const auto usable =
        std::ranges::count_if(entry.addresses, [](const auto& each) { return each.canBeChosen; });
    const std::string skipped = paint_(Tone::mark, "skipped");
    Details details;
    details.add("key " + nameOr(entry.key, "missing"));
    details.addIf(usable == 0, skipped);
    Branch branch{nameOr(entry.names, "(no name)"), Tone::plain, std::move(details)};
    for (const AddressOffer& offer : entry.addresses) {
        Details beside;
        beside.add(offer.canBeChosen ? "chance " + percentage(usable) : skipped);
        beside.add("weight", offer.weight);
        branch.children.push_back({quotedIfEmpty(offer.address), Tone::slot, std::move(beside)});
    }
    return branch;
}

}  // namespace yg::tool
