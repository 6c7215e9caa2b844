// SPDX-License-Identifier: MIT
#include "ygconfig/drawing/FleetView.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

#include "YGConfigManager/records/RecordMap.h"

#include "ygconfig/drawing/Details.h"
#include "ygconfig/drawing/Display.h"

namespace yg::tool {

namespace {

constexpr std::string_view leads = " → ";

std::string percentageOf(double chance) {
    return threeDigits(100 * chance) + '%';
}

/// At the right of five columns, below those of the addresses beside it.
std::string column(std::string text) {
    if (text.size() < 5)
        text.insert(0, 5 - text.size(), ' ');
    return text;
}

std::string whole(double number) {
    return std::to_string(std::llround(number));
}

std::string counted(std::uint64_t count, std::string_view thing) {
    return std::to_string(count) + ' ' + std::string(thing) + (count == 1 ? "" : "s");
}

/// Ten columns, as many full as the share has tenths; an address that is chosen at all has one.
std::string bar(double chance) {
    const auto full = static_cast<int>(std::lround(10 * chance));
    std::string columns;
    for (int i = 0; i < 10; ++i)
        columns += i < full || (i == 0 && chance > 0) ? "█" : "·";
    return columns;
}

using LoadsByAddress = RecordMap<const AddressLoad*>;

LoadsByAddress byAddress(const EntryLoads& loads) {
    LoadsByAddress map;
    for (const AddressLoad& load : loads.addresses)
        map.set(load.share.address, &load);
    return map;
}

}  // namespace

std::string FleetView::text() const {
    Details details;
    details.add(quotedIfEmpty(fleet_.path.value_or("")));
    details.add(fleet_.rule == AddressRule::plain ? "plain choice" : "weighted choice");
    details.add(counted(fleet_.clients, "client"));
    details.add(counted(fleet_.reloads, "reload"));
    for (const std::string& address : fleet_.without)
        details.add("without", std::optional(address));
    std::string text = headed("Fleet", details, paint_);
    for (const GroupFleet& group : fleet_.groups) {
        Branch branch{nameOr(group.description, "(no description)"), Tone::page,
                      "type " + std::to_string(group.type)};
        std::ranges::transform(group.entries, std::back_inserter(branch.children),
                               [this](const EntryFleet& entry) { return entryBranch(entry); });
        text += '\n' + drawTree(branch, paint_);
    }
    return text;
}

Branch FleetView::entryBranch(const EntryFleet& entry) const {
    const EntryLoads& loads = entry.without ? *entry.without : entry.now;
    const auto change = [&](double EntryLoads::*member, auto shown) {
        const std::string now = shown(entry.now.*member);
        return entry.without ? now + std::string(leads) + shown(loads.*member) : now;
    };
    Details details;
    details.add("key " + nameOr(entry.offer.key, "missing"));
    details.add(counted(entry.offer.servers, "server"));
    details.add("moved by a reload " + change(&EntryLoads::chanceOfMove, percentageOf));
    details.addIf(entry.offer.servers > 1,
                  "any of the servers " + change(&EntryLoads::chanceForClient, percentageOf));
    if (fleet_.reloads > 1) {
        details.add("by any of " + std::to_string(fleet_.reloads) + " reloads " +
                    change(&EntryLoads::chanceOfAnyMove, percentageOf));
        details.add("expected moves " + change(&EntryLoads::moves, threeDigits));
    }
    if (loads.drawnMoves)
        details.add("drawn " + std::to_string(*loads.drawnMoved) + " moved, " +
                    counted(*loads.drawnMoves, "move"));
    details.addIf(entry.without.has_value(),
                  "moved by the change " + percentageOf(entry.chanceOfChange));
    details.addIf(loads.addresses.empty(), paint_(Tone::mark, "no address is left"));
    Branch branch{nameOr(entry.offer.names, "(no name)"), Tone::element, std::move(details)};
    const LoadsByAddress after = byAddress(loads);
    for (const AddressLoad& now : entry.now.addresses) {
        const auto* const found = after.find(now.share.address);
        branch.children.push_back(addressBranch(entry, &now, found ? *found : nullptr));
    }
    if (entry.without) {
        // By the weighted choice "" or an item as it stands may be a new answer.
        const LoadsByAddress before = byAddress(entry.now);
        for (const AddressLoad& found : loads.addresses) {
            if (!before.contains(found.share.address))
                branch.children.push_back(addressBranch(entry, nullptr, &found));
        }
    }
    return branch;
}

Branch FleetView::addressBranch(const EntryFleet& entry, const AddressLoad* now,
                                const AddressLoad* after) const {
    static const AddressLoad nothing{};
    const AddressLoad& before = now ? *now : nothing;
    const AddressLoad& shown = after ? *after : nothing;
    Details details;
    details.add(paint_(Tone::slot, bar(shown.share.chance())));
    if (entry.without) {
        details.add(column(percentageOf(before.share.chance())) + std::string(leads) +
                    column(percentageOf(shown.share.chance())));
        details.add("load " + whole(before.expected) + std::string(leads) + whole(shown.expected));
        const std::string difference = whole(shown.expected - before.expected);
        details.add(difference.starts_with('-') ? difference : '+' + difference);
    } else {
        details.add(column(percentageOf(shown.share.chance())));
        details.add("load " + whole(shown.expected));
    }
    details.add("99% " + std::to_string(shown.worst));
    if (shown.drawn)
        details.add("drawn " + std::to_string(*shown.drawn));
    details.addIf(!after, paint_(Tone::mark, "taken out"));
    const std::string& address = (now ? *now : *after).share.address;
    return {address.empty() ? "(no host)" : printable(address), Tone::plain, std::move(details)};
}

}  // namespace yg::tool
