// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "YGConfigManager/servers/AddressShares.h"
#include "YGConfigManager/servers/YGServerCfgLoader.h"

#include "ygconfig/commandline/Suggestion.h"
#include "ygconfig/commands/Commands.h"
#include "ygconfig/drawing/FleetView.h"
#include "ygconfig/json/Json.h"

namespace yg::tool {

namespace {

constexpr std::uint64_t million = 1'000'000;
constexpr std::uint64_t usualClients = 100'000;
constexpr std::uint64_t mostClients = million * million;
constexpr std::uint64_t mostDraws = 10 * million;

void declareFleet(CLI::App& app, Arguments& arguments) {
    declareFlag(app, "--gray", arguments.gray, "as users in the grey release");
    declareNumber(app, "--clients", "N", arguments.clients, "how many choose; 100000 if not given",
                  std::uint64_t{1}, mostClients);
    declareNumber(app, "--reloads", "R", arguments.reloads,
                  "how often each loads the file again; 1 if not given", std::uint64_t{0},
                  mostClients);
    declareTexts(app, "--without", "ADDRESS", arguments.without,
                 "also what changes when this host:port is taken out; may be given several times",
                 named({NameKind::address}));
    declareFlag(app, "--weighted", arguments.weighted, "by the older choice, by weight");
    declareFlag(app, "--simulate", arguments.simulate,
                "also draw such a fleet, of at most 10000000 choices in all");
    declareTextOrJson(app, arguments);
}

/// Works out the loads of one list of addresses.
class Loads {
public:
    Loads(const Fleet& fleet, std::uint64_t servers, bool draws)
        : fleet_(fleet), servers_(servers), draws_(draws) {}

    std::uint64_t choices() const { return fleet_.clients * servers_; }

    EntryLoads of(const std::string& addrs) const {
        EntryLoads loads;
        const std::vector<AddressShare> shares = addressShares(addrs, fleet_.rule);
        std::map<std::uint64_t, std::uint64_t> worst;  // most addresses have equal shares
        for (const AddressShare& share : shares) {
            const auto [known, isNew] = worst.emplace(share.numbers, 0);
            if (isNew)
                known->second = worstLoad(share, choices());
            loads.addresses.push_back({share, share.chance() * static_cast<double>(choices()),
                                       known->second, std::nullopt});
        }
        const double chance = chanceOfAnother(shares, shares);
        const auto reloads = static_cast<double>(fleet_.reloads);
        loads.chanceOfMove = chance;
        loads.chanceForClient = -std::expm1(static_cast<double>(servers_) * std::log1p(-chance));
        loads.chanceAfterReloads = fleet_.reloads > 0 ? chance : 0;
        loads.chanceOfAnyMove = chanceOfMove(shares, fleet_.reloads);
        loads.moves = reloads * chance;
        if (draws_)
            draw(addrs, loads);
        return loads;
    }

private:
    void draw(const std::string& addrs, EntryLoads& loads) const {
        const FleetDraws draws =
            drawFleet(addrs, fleet_.rule, choices(), fleet_.reloads, systemRandomSource());
        for (std::size_t i = 0; i < draws.loads.size(); ++i)
            loads.addresses[i].drawn = draws.loads[i];
        loads.drawnMoved = draws.movedClients;
        loads.drawnMoves = draws.moves;
    }

    const Fleet& fleet_;
    const std::uint64_t servers_;
    const bool draws_;
};

std::vector<AddressShare> sharesOf(const EntryLoads& loads) {
    std::vector<AddressShare> shares;
    for (const AddressLoad& load : loads.addresses)
        shares.push_back(load.share);
    return shares;
}

EntryFleet entryOf(const ServerOffer& offer, const Fleet& fleet, bool draws) {
    const Loads loads(fleet, offer.servers, draws);
    EntryFleet entry{offer, loads.choices(), loads.of(*offer.addrs), std::nullopt, 0};
    std::string left = *offer.addrs;
    for (const std::string& address : fleet.without)
        left = withoutAddress(left, address);
    if (left != *offer.addrs) {
        entry.without = loads.of(left);
        entry.chanceOfChange = chanceOfAnother(sharesOf(entry.now), sharesOf(*entry.without));
    }
    return entry;
}

using Offers = std::map<std::uint64_t, std::vector<ServerOffer>>;

/// The entries that give servers, by type.
Offers usableOffers(const YGServerCfgLoader& loader) {
    Offers offers = loader.offers();
    for (auto& [type, entries] : offers)
        std::erase_if(entries, [](const ServerOffer& entry) { return entry.servers == 0; });
    std::erase_if(offers, [](const auto& group) { return group.second.empty(); });
    return offers;
}

/// How many choices a drawn fleet would make, as near as it matters.
double drawsOf(const Offers& offers, const Fleet& fleet) {
    double servers = 0;
    for (const auto& [type, entries] : offers) {
        for (const ServerOffer& entry : entries)
            servers += static_cast<double>(entry.servers);
    }
    return servers * static_cast<double>(fleet.clients) * (static_cast<double>(fleet.reloads) + 1) *
           (fleet.without.empty() ? 1 : 2);
}

std::vector<std::string> addressesOf(const Offers& offers) {
    std::vector<std::string> addresses;
    for (const auto& [type, entries] : offers) {
        for (const ServerOffer& entry : entries) {
            for (const AddressOffer& offer : entry.addresses)
                addresses.push_back(offer.address);
        }
    }
    return addresses;
}

void writeLoads(JsonWriter& writer, const EntryLoads& loads) {
    writer.object([&] {
        writer.member("addresses", [&] {
            writer.list(loads.addresses, [&](const AddressLoad& load) {
                writer.object([&] {
                    writer.member("address", load.share.address);
                    writer.member("numbers", load.share.numbers);
                    writer.member("ofNumbers", load.share.ofNumbers);
                    writer.member("share", load.share.chance());
                    writer.member("expectedLoad", load.expected);
                    writer.member("worstLoad", load.worst);
                    writer.member("drawnLoad", load.drawn);
                });
            });
        });
        writer.member("chanceOfMove", loads.chanceOfMove);
        writer.member("chanceOfMoveOfClient", loads.chanceForClient);
        writer.member("chanceOfAnotherAfterReloads", loads.chanceAfterReloads);
        writer.member("chanceOfAnyMove", loads.chanceOfAnyMove);
        writer.member("expectedMoves", loads.moves);
        writer.member("drawnWithAnother", loads.drawnMoved);
        writer.member("drawnMoves", loads.drawnMoves);
    });
}

void writeEntry(JsonWriter& writer, const EntryFleet& entry) {
    writer.object([&] {
        writer.member("key", entry.offer.key);
        writer.member("name", entry.offer.names);
        writer.member("servers", entry.offer.servers);
        writer.member("choices", entry.choices);
        writer.member("now", [&] { writeLoads(writer, entry.now); });
        writer.member("without", [&] {
            if (entry.without)
                writeLoads(writer, *entry.without);
            else
                writer.write(nullptr);
        });
        writer.member("chanceOfMoveByChange",
                      entry.without ? std::optional(entry.chanceOfChange) : std::nullopt);
    });
}

void writeFleet(const Fleet& fleet, Output& output) {
    JsonWriter writer(output);
    writer.object([&] {
        writer.member("configPath", fleet.path);
        writer.member("choice", fleet.rule == AddressRule::plain ? "plain" : "weighted");
        writer.member("clients", fleet.clients);
        writer.member("reloads", fleet.reloads);
        writer.member("without", fleet.without);
        writer.member("groups", [&] {
            writer.list(fleet.groups, [&](const GroupFleet& group) {
                writer.object([&] {
                    writer.member("serverType", group.type);
                    writer.member("serverDescription", group.description);
                    writer.member("entries", [&] {
                        writer.list(group.entries, [&](const EntryFleet& entry) {
                            writeEntry(writer, entry);
                            output.passOn();
                        });
                    });
                });
            });
        });
    });
    writer.finish();
}

Answer nothing(bool isJson, std::string complaint) {
    Answer answer = isJson ? jsonAnswer(nullptr) : Answer{"", ExitCode::noAnswer};
    answer.complaint = std::move(complaint);
    return answer;
}

Answer simulateServers(const Session& session) {
    const Arguments& arguments = session.arguments;
    const bool isJson = arguments.format == "json";
    const auto loader = YGServerCfgLoader::initWithIsGray(arguments.gray, session.unreadable);
    if (!loader)
        return nothing(isJson, std::string(noServerPath));
    Fleet fleet;
    fleet.path = arguments.withoutRoot(loader->configPath());
    fleet.rule = arguments.weighted ? AddressRule::weighted : AddressRule::plain;
    fleet.clients = arguments.clients.value_or(usualClients);
    fleet.reloads = arguments.reloads.value_or(1);
    fleet.without = arguments.without;

    const Offers offers = usableOffers(*loader);
    if (offers.empty())
        return nothing(isJson, "ygconfig: no server in " + inQuotes(fleet.path.value_or("")));
    const std::vector<std::string> addresses = addressesOf(offers);
    for (const std::string& address : fleet.without) {
        if (std::ranges::find(addresses, address) == addresses.end())
            return nothing(isJson, nothingNamed("address", address, addresses));
    }
    if (arguments.simulate && drawsOf(offers, fleet) > static_cast<double>(mostDraws))
        return {"", ExitCode::unusable,
                "ygconfig simulate servers: --simulate: the fleet would draw more than " +
                    std::to_string(mostDraws) + " addresses"};
    // The weighted choice draws from rand(), which programs seed, not the library.
    std::srand(std::random_device{}());
    for (const auto& [type, entries] : offers) {
        const auto group = loader->listTagWithServerType(type);
        GroupFleet& drawn = fleet.groups.emplace_back();
        drawn.type = type;
        if (group)
            drawn.description = group->serverDescription();
        for (const ServerOffer& offer : entries)
            drawn.entries.push_back(entryOf(offer, fleet, arguments.simulate));
    }
    if (!isJson)
        return {FleetView(fleet, session.paint()).text()};
    return {[fleet = std::move(fleet)](Output& output) { writeFleet(fleet, output); }};
}

constexpr std::string_view fleetNotes =
    "What the trees say:\n"
    "  servers                how many the entry gives a client; each chooses for itself\n"
    "  moved by a reload      the chance that a reload gives a server another address\n"
    "  any of the servers     the same of one or more of the client's servers\n"
    "  by any of 5 reloads    the same of one or more reloads; expected moves are how many\n"
    "  moved by the change    the same of the first load without the addresses taken out\n"
    "  ███·······  33.3%      the exact share of the choices that an address gets\n"
    "  load                   how many choices are expected to be that, of clients times servers\n"
    "  99%                    the load that it does not exceed in 99 of 100 fleets\n"
    "  drawn                  the load in a fleet that was drawn, with --simulate\n"
    "  33.3% →   50%          with --without: now, and when the addresses are no longer in the "
    "file\n"
    "\n"
    "An address that fails but stays in the file keeps its share. With --weighted the shares are\n"
    "those of hosts, and hold for applications that seed rand(): those that do not draw the same\n"
    "numbers in each client. In JSON, \"numbers\" of the \"ofNumbers\" random numbers choose an "
    "address.\n"
    "Exit status: 0 answered, 1 the file gives no server or does not have an address to take out,\n"
    "2 the command line, ROOT or host.json cannot be used.\n";

constexpr Command table[] = {
    {"simulate", "works out what the random choices come to for a fleet of clients",
     "  ygconfig simulate servers --root examples/terminal --clients 1000000000\n"
     "  ygconfig simulate servers --root examples/terminal --without 192.0.2.14:9211\n",
     "", nullptr, nullptr},

    {"simulate servers", "the shares and loads of the servers' addresses, as trees or JSON",
     "  ygconfig simulate servers --root examples/terminal --clients 1000000000\n"
     "  ygconfig simulate servers --root examples/terminal --without 192.0.2.14:9211\n"
     "  ygconfig simulate servers --root examples/terminal --weighted --clients 1000 --simulate\n",
     fleetNotes, declareFleet, simulateServers, true, true},
};

}  // namespace

std::span<const Command> simulateCommands() {
    return table;
}

}  // namespace yg::tool
