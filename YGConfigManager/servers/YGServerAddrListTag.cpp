// SPDX-License-Identifier: MIT
//
// The parse of one server group. The choice of addresses is in AddressChoice.cpp.
#include "YGConfigManager/servers/YGServerAddrListTag.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>

#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/host/Immortal.h"
#include "YGConfigManager/host/Log.h"
#include "YGConfigManager/records/Entry.h"
#include "YGConfigManager/servers/AddressChoice.h"
#include "YGConfigManager/servers/ServerAttributes.h"
#include "YGConfigManager/servers/ServerGroup.h"
#include "YGConfigManager/text/Format.h"
#include "YGConfigManager/text/Numbers.h"

namespace yg {

const ServerAddrList& YGServerAddrListTag::serversOf(const YGServerAddrListTag* group) {
    static Immortal<ServerAddrList> none;
    return group && group->serverAddrList_ ? *group->serverAddrList_ : *none;
}

namespace {

/// The servers of a group while it is read.
struct Servers {
    std::shared_ptr<ServerAddrList> list = std::make_shared<ServerAddrList>();
    std::size_t further = 0;
    std::size_t furtherBytes = 0;
    bool isFull = false;

    /// Whether there is room for a further server of an entry, which is then counted. Not asked
    /// again once it is full.
    bool mayAddFurther(std::string_view name, std::string_view host) {
        const std::size_t bytes = name.size() + host.size();
        isFull = further == YGServerAddrListTag::mostFurtherServers ||
                 bytes > YGServerAddrListTag::mostFurtherBytes - furtherBytes;
        if (isFull) {
            writeRuntimeError(
                "load style config fail:names add more than %ld servers or %ld bytes to a group",
                YGServerAddrListTag::mostFurtherServers, YGServerAddrListTag::mostFurtherBytes);
            return false;
        }
        ++further;
        furtherBytes += bytes;
        return true;
    }
};

void readEntry(Entry& element, Servers& servers, RandomSource& random) {
    ServerEntry entry;
    if (const std::string_view missing = element.read(entry); !missing.empty())
        return element.drop("incomplete-server-entry"_rule, {}, missing);
    AddressChoice choice;
    forEachItem(*entry.addrs, [&](std::string_view item) { choice.add(AddressItem(item)); });
    if (choice.empty())
        return element.drop("server-entry-without-address"_rule, "addrs", *entry.addrs);
    reportOddAddresses(element, *entry.addrs);

    const std::string_view names = *entry.names;
    std::string_view cut;
    bool hasEmptyName = false;
    forEachItem(names, [&](std::string_view name) {
        if (!cut.empty())
            return;
        const auto begin = static_cast<std::size_t>(name.data() - names.data());
        const bool isFurther = begin > 0;
        // Each name draws for itself.
        const AddressItem* const address =
            isFurther && servers.isFull ? nullptr : &choice.draw(random);
        if (!address || (isFurther && !servers.mayAddFurther(name, address->host()))) {
            cut = names.substr(begin - 1);
            return element.reportPart("too-many-servers"_rule, "name", cut);
        }
        if (name.empty() && !std::exchange(hasEmptyName, true))
            element.reportPart("server-without-name"_rule, "name", name);
        auto server = std::make_shared<YGServerAddrTag>();
        server->setServerName(std::string(name));
        server->setIpAddr(std::string(address->host()));
        // Widened with its sign: a negative port is kept as its two's complement.
        server->setServerPort(
            static_cast<std::uint64_t>(std::int64_t{text::leadingInt32(address->port())}));
        server->setServerKey(*entry.key);
        servers.list->push_back(std::move(server));
    });
}

}  // namespace

bool isServerType(std::string_view written, std::uint64_t type) {
    // A type beyond the signed numbers is written as a negative one.
    return text::queryNumber(written) == static_cast<double>(static_cast<std::int64_t>(type));
}

std::vector<xml::Node> serverGroups(const xml::Element& root, std::uint64_t serverType) {
    xml::Element top = root;
    for (xml::Element above = top.parent(); above; above = above.parent())
        top = above;
    std::vector<xml::Node> groups;
    if (top.name() != "application")
        return groups;
    for (const xml::Element& group : top.elements()) {
        if (group.name() != "server")
            continue;
        const auto type = group.attribute("type");
        if (type && isServerType(*type, serverType))
            groups.push_back(group);
    }
    return groups;
}

void readServerGroup(const std::vector<xml::Node>& found, YGServerAddrListTag& group,
                     const Reporter& reporter, RandomSource& random) {
    if (found.empty())
        return;
    reading(reporter, xml::Element(found.front()), [&](Entry& element) {
        Servers servers;
        element.read(group);
        element.forEachElement([&](Entry& entry) { readEntry(entry, servers, random); });
        group.setServerAddrList(std::move(servers.list));
    });
    for (std::size_t i = 1; i < found.size(); ++i) {
        reading(reporter, xml::Element(found[i]),
                [](Entry& second) { second.drop("second-server-group"_rule); });
    }
}

std::vector<ServerOffer> serverOffers(const xml::Element& group) {
    std::vector<ServerOffer> offers;
    reading(Reporter(nullptr), group, [&](Entry& entries) {
        entries.forEachElement([&](Entry& element) {
            ServerEntry entry;
            const bool isComplete = element.read(entry).empty();
            ServerOffer& offer = offers.emplace_back();
            offer.key = element.attribute("key");
            offer.names = entry.names;
            offer.addrs = entry.addrs;
            offer.place = element.element().tagPlace().value_or(Place());
            if (!entry.addrs)
                return;
            forEachItem(*entry.addrs, [&](std::string_view text) {
                const AddressItem item(text);
                AddressOffer& address = offer.addresses.emplace_back();
                address.address = item.isOffered() ? text::format("%@:%@", item.host(), item.port())
                                                   : std::string(text);
                if (item.hasWeight())
                    address.weight = item.weight();
                address.canBeChosen = isComplete && item.isOffered();
            });
            if (std::ranges::any_of(offer.addresses, &AddressOffer::canBeChosen))
                forEachItem(*entry.names, [&](std::string_view) {
                    offer.servers += offer.servers <= YGServerAddrListTag::mostFurtherServers;
                });
        });
    });
    return offers;
}

std::shared_ptr<YGServerAddrListTag> YGServerAddrListTag::initWithServerType(
    std::uint64_t serverType, const xml::Element& rootElement, DiagnosticsSink* sink) {
    return guarded("load server group", [&] {
        auto group = std::make_shared<YGServerAddrListTag>();
        group->setServerType(serverType);
        readServerGroup(serverGroups(rootElement, serverType), *group, Reporter(sink),
                        systemRandomSource());
        return group;
    });
}

void YGServerAddrListTag::loadServerGroupCfg(const xml::Element& rootElement,
                                             DiagnosticsSink* sink) {
    guarded("load server group", [&] {
        YGServerAddrListTag group = *this;
        readServerGroup(serverGroups(rootElement, serverType_), group, Reporter(sink),
                        systemRandomSource());
        *this = std::move(group);
    });
}

}  // namespace yg
