// SPDX-License-Identifier: MIT
//
// The parse of one server group. The choice of addresses stands in AddressChoice.cpp.
#include "YGConfigManager/servers/YGServerAddrListTag.h"

#include <cstddef>
#include <string_view>
#include <utility>

#include "YGConfigManager/diagnostics/Reporter.h"
#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/host/Log.h"
#include "YGConfigManager/servers/AddressChoice.h"
#include "YGConfigManager/servers/ServerAttributes.h"
#include "YGConfigManager/servers/ServerRules.h"
#include "YGConfigManager/text/Format.h"
#include "YGConfigManager/text/Numbers.h"
#include "YGConfigManager/xml/Query.h"

namespace yg {

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
            writeRuntimeLog(
                "load style config fail:names add more than %ld servers or %ld bytes to a group",
                YGServerAddrListTag::mostFurtherServers, YGServerAddrListTag::mostFurtherBytes);
            return false;
        }
        ++further;
        furtherBytes += bytes;
        return true;
    }
};

void reportPort(const Reporter& reporter, const xml::Element& element, std::string_view item,
                std::string_view port) {
    const auto read = text::readLeadingInt32(port);
    if (read.oddity == text::NumberOddity::noDigits || read.oddity == text::NumberOddity::tail)
        reporter.report(rules::oddServerPort, element, "addrs", item);
    if (read.oddity != text::NumberOddity::noDigits && (read.value < 1 || read.value > 65535))
        reporter.report(rules::serverPortOutOfRange, element, "addrs", item);
}

bool looksLikeIpv6(std::string_view item) {
    return item.find("::") != std::string_view::npos || item.find('[') != std::string_view::npos;
}

void reportAddress(const Reporter& reporter, const xml::Element& element, std::string_view item) {
    const AddressParts parts = splitAddressItem(item);
    if (parts.count < 2) {
        reporter.report(rules::addressWithoutPort, element, "addrs", item);
        return;
    }
    if (looksLikeIpv6(item)) {
        reporter.report(rules::ipv6Address, element, "addrs", item);
        return;
    }
    if (parts.count > 3)
        reporter.report(rules::addressWithTooManyParts, element, "addrs", item);
    const std::size_t host = parts.count == 2 ? 0 : 1;
    if (parts.part[host].empty())
        reporter.report(rules::addressWithoutHost, element, "addrs", item);
    reportPort(reporter, element, item, parts.part[host + 1]);
}

/// What in an entry does not count as its author may expect. Empty items and weights are said once
/// for the entry, however many there are.
void reportEntry(const Reporter& reporter, const xml::Element& element, const ServerEntry& entry) {
    bool hasEmptyName = false;
    forEachItem(*entry.names, [&](std::string_view name) { hasEmptyName |= name.empty(); });
    bool hasEmptyAddress = false;
    std::string_view weighted;
    forEachItem(*entry.addrs, [&](std::string_view item) {
        hasEmptyAddress |= item.empty();
        if (!item.empty())
            reportAddress(reporter, element, item);
        if (weighted.empty() && !looksLikeIpv6(item) && splitAddressItem(item).count > 2)
            weighted = item;
    });
    if (!weighted.empty())
        reporter.report(rules::addressWeight, element, "addrs", weighted);
    if (hasEmptyAddress)
        reporter.report(rules::emptyServerAddress, element, "addrs", *entry.addrs);
    if (hasEmptyName)
        reporter.report(rules::serverWithoutName, element, "name", *entry.names);
}

/// The attribute that an entry lacks; empty when it has all three.
std::string_view missingAttribute(const ServerEntry& entry) {
    if (!entry.key)
        return "key";
    if (!entry.names)
        return "name";
    return entry.addrs ? "" : "addrs";
}

void readEntry(const Reporter& reporter, const xml::Element& element, Servers& servers) {
    ServerEntry entry;
    readAttributes(element, serverEntryAttributes, entry);
    if (const std::string_view missing = missingAttribute(entry); !missing.empty()) {
        reporter.report(rules::incompleteServerEntry, element, {}, missing);
        return;
    }
    AddressChoice choice;
    forEachItem(*entry.addrs, [&](std::string_view item) { choice.add(item); });
    if (reporter)
        reportEntry(reporter, element, entry);
    if (choice.empty()) {
        reporter.report(rules::serverEntryWithoutAddress, element, {}, *entry.addrs);
        return;
    }
    if (reporter) {
        reporter.used(element);
        reportAttributes(element, serverEntryAttributes, *reporter.sink());
        reporter.unread(element, rules::contentInServerEntry);
    }

    const std::int32_t key = text::leadingInt32(*entry.key);
    bool isFirst = true;
    bool isCut = false;
    forEachItem(*entry.names, [&](std::string_view name) {
        const bool isFurther = !std::exchange(isFirst, false);
        isCut = isFurther && servers.isFull;
        if (isCut)
            return;
        // Each name draws for itself.
        const Address& address = choice.draw();
        isCut = isFurther && !servers.mayAddFurther(name, address.host);
        if (isCut)
            return;
        // Widened with its sign: a negative port is kept as its two's complement.
        const auto port =
            static_cast<std::uint64_t>(std::int64_t{text::leadingInt32(address.port)});
        auto server = std::make_shared<YGServerAddrTag>();
        server->setServerName(std::string(name));
        server->setIpAddr(std::string(address.host));
        server->setServerPort(port);
        server->setServerKey(key);
        servers.list->push_back(std::move(server));
    });
    if (isCut)
        reporter.report(rules::tooManyServers, element);
}

}  // namespace

std::shared_ptr<YGServerAddrListTag> YGServerAddrListTag::initWithServerType(
    std::uint64_t serverType, const xml::Element& rootElement, DiagnosticsSink* sink) {
    return guarded("load server group", [&] {
        return std::make_shared<YGServerAddrListTag>(read(serverType, rootElement, sink));
    });
}

void YGServerAddrListTag::loadServerGroupCfg(const xml::Element& rootElement,
                                             DiagnosticsSink* sink) {
    guarded("load server group", [&] {
        YGServerAddrListTag group = *this;
        group.readGroup(rootElement, sink);
        *this = std::move(group);
    });
}

YGServerAddrListTag YGServerAddrListTag::read(std::uint64_t serverType,
                                              const xml::Element& rootElement,
                                              DiagnosticsSink* sink) {
    YGServerAddrListTag group;
    group.serverType_ = serverType;
    group.readGroup(rootElement, sink);
    return group;
}

void YGServerAddrListTag::readGroup(const xml::Element& rootElement, DiagnosticsSink* sink) {
    // A type beyond the signed numbers is written as a negative one.
    const std::string query =
        text::format("/application/server[@type=%ld]", static_cast<std::int64_t>(serverType_));
    const std::vector<xml::Node> groups = rootElement.query(query);
    if (groups.empty())
        return;
    const xml::Element group(groups.front());
    const Reporter reporter(sink);
    for (std::size_t i = 1; i < groups.size(); ++i)
        reporter.report(rules::secondServerGroup, groups[i]);
    if (reporter) {
        reporter.used(group);
        reportAttributes(group, serverAttributes, *sink);
    }

    Servers servers;
    readAttributes(group, serverAttributes, *this);
    for (const xml::Node& child : group.children()) {
        if (child.isElement())
            readEntry(reporter, xml::Element(child), servers);
        else
            reporter.stray(child);
    }
    serverAddrList_ = std::move(servers.list);
}

}  // namespace yg
