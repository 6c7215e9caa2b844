// SPDX-License-Identifier: MIT
//
// The servers of one type, read from the server configuration, and the choice of an address among
// several. A plain record, held by shared pointers. Not synchronised: a record that one thread
// changes must not be read by another; the two choices may be made on any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "YGConfigManager/diagnostics/DiagnosticsSink.h"
#include "YGConfigManager/export.h"
#include "YGConfigManager/records/Description.h"
#include "YGConfigManager/servers/YGServerAddrTag.h"
#include "YGConfigManager/text/OwnedText.h"
#include "YGConfigManager/xml/Element.h"

namespace yg {

/// Servers in the order of their file.
using ServerAddrList = std::vector<std::shared_ptr<YGServerAddrTag>>;

class YG_EXPORT YGServerAddrListTag {
public:
    /// What the names of a group's entries may add beside the first of each entry; bytes are those
    /// of names and hosts, of which each server has its own. Further names beyond that give no
    /// servers, and the first is logged as "load style config fail:".
    static constexpr std::size_t mostFurtherServers = 250'000;
    static constexpr std::size_t mostFurtherBytes = std::size_t{16} * 1024 * 1024;

    /// A new group for a server type, filled by loadServerGroupCfg; null only when memory does not
    /// suffice. An empty element leaves all but the type unset.
    static std::shared_ptr<YGServerAddrListTag> initWithServerType(std::uint64_t serverType,
                                                                   const xml::Element& rootElement,
                                                                   DiagnosticsSink* sink = nullptr);

    /// Fills description, domain and servers from the first "server" of this group's type in the
    /// document that holds the element given. Without one nothing is set. Each name of an entry
    /// gives a server with an address of its own, drawn from all of the entry's; an entry without
    /// key, name, addrs or any usable address gives none. What has no effect is reported to
    /// the sink, if there is one. Nothing is set when memory does not suffice.
    void loadServerGroupCfg(const xml::Element& rootElement, DiagnosticsSink* sink = nullptr);

    /// One "host:port" of the items, each with the same chance. An item is host:port or
    /// weight:host:port, whose weight is not used and whose further parts are ignored; others are
    /// never chosen. "" when no item can be used and for a null list. A single usable item is
    /// answered without drawing a random number. "" when memory does not suffice, here and below.
    static std::string changeIpByPercentNew(const std::vector<std::string>* items);

    /// The older choice by weight, kept for hosts; the library does not call it. The first part of
    /// an item is the weight and the second the host, so that of host:port the port is answered; an
    /// item of one part is a host of weight 0. Answers a host without port, the first item as it
    /// stands when the weights add up to 0, or "" when no host qualifies and for a null or empty
    /// list. The chances are not the percentages, and the later hosts of a list that was made for
    /// one hash have none. Draws from rand().
    static std::string changeIpByPercent(const std::vector<std::string>* items);

    /// The group's description ("name"); absent when the group or the attribute is missing.
    const std::optional<std::string>& serverDescription() const { return serverDescription_; }
    void setServerDescription(OwnedText text) { serverDescription_ = std::move(text); }

    /// The messaging domain ("domain"); absent when the group or the attribute is missing.
    const std::optional<std::string>& glooxDomain() const { return glooxDomain_; }
    void setGlooxDomain(OwnedText domain) { glooxDomain_ = std::move(domain); }

    /// The servers in the order of the document; null when there is no group of this type, empty
    /// when it has no usable entry.
    const std::shared_ptr<ServerAddrList>& serverAddrList() const { return serverAddrList_; }
    void setServerAddrList(std::shared_ptr<ServerAddrList> list) {
        serverAddrList_ = std::move(list);
    }

    /// The same, but empty where the other is null.
    const ServerAddrList& servers() const { return serversOf(this); }

    /// The servers of a group that may be null; empty then, too.
    static const ServerAddrList& serversOf(const YGServerAddrListTag* group);

    /// The type that the group was built for ("type").
    std::uint64_t serverType() const { return serverType_; }
    void setServerType(std::uint64_t type) { serverType_ = type; }

private:
    std::optional<std::string> serverDescription_;
    std::optional<std::string> glooxDomain_;
    std::shared_ptr<ServerAddrList> serverAddrList_;
    std::uint64_t serverType_ = 0;
};

template <>
struct Description<YGServerAddrListTag> {
    using Group = YGServerAddrListTag;
    static constexpr std::tuple fields{
        Field{"serverDescription", &Group::serverDescription, &Group::setServerDescription,
              AttributeInfo{.name = "name", .sentence = "What the servers of the group are for."}},
        Field{"glooxDomain", &Group::glooxDomain, &Group::setGlooxDomain,
              AttributeInfo{.name = "domain", .sentence = "The messaging domain of the group."}},
        Field{"serverAddrList", &Group::serverAddrList},
        // A group is found by its type, so there is nothing left to store.
        Field{"serverType", &Group::serverType, nullptr,
              AttributeInfo{.name = "type",
                            .kind = AttributeKind::integer,
                            .sentence = "The kind of servers: 1, 2, 3, 4, 5, 7 or 8. Only the "
                                        "first group of a type is read.",
                            .names = Naming::serverType,
                            .defines = true,
                            .isRequired = true}},
    };
};

}  // namespace yg
