// SPDX-License-Identifier: MIT
//
// How the clients of a fleet are spread over the addresses of a server file, and that as text for
// people: a tree for each server type, with bars.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/servers/AddressShares.h"
#include "YGConfigManager/servers/ServerOffer.h"

#include "ygconfig/drawing/Paint.h"
#include "ygconfig/drawing/Tree.h"

namespace yg::tool {

/// What an address gets.
struct AddressLoad {
    AddressShare share;
    double expected = 0;
    std::uint64_t worst = 0;             ///< in 99 of 100 fleets it is at most this
    std::optional<std::uint64_t> drawn;  ///< in a fleet that was drawn
};

/// The choices of a fleet for one entry: one for each client and server.
struct EntryLoads {
    std::vector<AddressLoad> addresses;
    double chanceOfMove = 0;        ///< that one reload gives a server another address
    double chanceForClient = 0;     ///< that it does so for any of the entry's servers
    double chanceAfterReloads = 0;  ///< that the address is another one than before all reloads
    double chanceOfAnyMove = 0;     ///< that any of the reloads gives another one
    double moves = 0;               ///< how many reloads are expected to do so
    /// Of a fleet that was drawn, in all.
    std::optional<std::uint64_t> drawnMoved;
    std::optional<std::uint64_t> drawnMoves;
};

struct EntryFleet {
    ServerOffer offer;
    std::uint64_t choices = 0;
    EntryLoads now;
    /// When the addresses to leave out are no longer in the file; absent when it has none of them.
    std::optional<EntryLoads> without;
    /// That a client gets another address, or none, by the load after that change.
    double chanceOfChange = 0;
};

struct GroupFleet {
    std::uint64_t type = 0;
    std::optional<std::string> description;
    std::vector<EntryFleet> entries;
};

struct Fleet {
    std::optional<std::string> path;  ///< of the file, as shown
    AddressRule rule = AddressRule::plain;
    std::uint64_t clients = 0;
    std::uint64_t reloads = 0;
    std::vector<std::string> without;
    std::vector<GroupFleet> groups;
};

class FleetView {
public:
    /// The fleet must outlive the view.
    FleetView(const Fleet& fleet, const Paint& paint) : fleet_(fleet), paint_(paint) {}

    std::string text() const;

private:
    Branch entryBranch(const EntryFleet& entry) const;
    Branch addressBranch(const EntryFleet& entry, const AddressLoad* now,
                         const AddressLoad* after) const;

    const Fleet& fleet_;
    const Paint paint_;
};

}  // namespace yg::tool
