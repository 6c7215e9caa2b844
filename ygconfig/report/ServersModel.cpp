// SPDX-License-Identifier: MIT
#include <cstdint>
#include <map>
#include <type_traits>
#include <vector>

#include "YGConfigManager/records/RecordMap.h"
#include "YGConfigManager/servers/AddressShares.h"

#include "ygconfig/report/Model.h"

namespace yg::tool {

namespace {

/// The chances are those of `ygconfig simulate`. What cannot be chosen has none.
void writeAddresses(JsonWriter& json, const ServerOffer& entry) {
    RecordMap<double> chances;
    if (entry.servers > 0) {
        for (const AddressShare& share : addressShares(entry.addrs))
            chances.set(share.address, share.chance());
    }
    json.list(entry.addresses, [&](const AddressOffer& offer) {
        json.object([&] {
            json.member("address", offer.address);
            if (offer.weight)
                json.member("weight", *offer.weight);
            const double* const chance = offer.canBeChosen ? chances.find(offer.address) : nullptr;
            if (chance)
                json.member("chance", *chance);
        });
    });
}

void writeEntry(JsonWriter& json, ModelSource& source, const std::string& file,
                const ServerOffer& entry) {
    json.object([&] {
        json.member("key", entry.key);
        json.member("names", entry.names);
        json.member("servers", entry.servers);
        json.member("addresses", [&] { writeAddresses(json, entry); });
        source.places.writeAt(json, RootPlace{file, entry.place.begin, entry.place.end, ""});
    });
}

void writeGroups(JsonWriter& json, ModelSource& source, const RootContents::Servers& servers) {
    std::map<std::uint64_t, YGServerCfgLoader::Group> groups;
    forEachField(*servers.servers, [&](std::string_view, const auto& value) {
        if constexpr (std::is_convertible_v<decltype(value), YGServerCfgLoader::Group>) {
            if (value && value->serverAddrList())
                groups.emplace(value->serverType(), value);
        }
    });
    std::map<std::uint64_t, std::vector<ServerOffer>> offers = servers.servers->offers();
    json.list(groups, [&](const auto& each) {
        const std::uint64_t type = each.first;
        const YGServerAddrListTag& group = *each.second;
        json.object([&] {
            json.member("type", type);
            json.member("description", group.serverDescription());
            json.member("domain", group.glooxDomain());
            json.member("entries", [&] {
                json.list(offers[type], [&](const ServerOffer& entry) {
                    writeEntry(json, source, servers.file, entry);
                });
            });
            source.places.writeAt(
                json,
                source.places.definition(Naming::serverType, std::to_string(type), servers.file));
        });
    });
}

}  // namespace

void writeServers(JsonWriter& json, ModelSource& source) {
    json.list(source.contents.servers(), [&](const RootContents::Servers& servers) {
        json.object([&] {
            json.member("file", servers.file);
            json.member("right", servers.right);
            json.member("isGray", servers.isGray);
            json.member("isUsers", servers.isUsers);
            json.member("md5", servers.servers->configMd5());
            json.member("groups", [&] { writeGroups(json, source, servers); });
        });
    });
}

}  // namespace yg::tool
