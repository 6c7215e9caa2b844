// SPDX-License-Identifier: MIT
//
// What diagnostics can say of the server configuration, beside the rules that all formats share.
#pragma once

#include "YGConfigManager/diagnostics/DiagnosticsSink.h"

namespace yg::rules {

// Documents and groups.
inline constexpr Rule unreadableDelivery{
    "unreadable-delivery", Handling::unresolved,
    "What was delivered is empty, is not well-formed XML or could not be read again once it is "
    "saved, so nothing changes."};
inline constexpr Rule replacedMd5{
    "replaced-md5", Handling::replaced,
    "The digest that came with the delivery takes the place of the document's own."};
inline constexpr Rule serverRootName{
    "server-root-name", Handling::dropped,
    "The root of a server configuration is named \"application\"; no group of this file is read."};
inline constexpr Rule serverGroupWithoutType{"server-group-without-type", Handling::dropped,
                                             "A group needs a type to be found by."};
inline constexpr Rule serverTypeNeverLoaded{
    "server-type-never-loaded", Handling::dropped,
    "Groups of the types 1, 2, 3, 4, 5, 7 and 8 are loaded, no other."};
inline constexpr Rule secondServerGroup{"second-server-group", Handling::dropped,
                                        "Only the first group of a type is read."};

// Entries.
inline constexpr Rule incompleteServerEntry{
    "incomplete-server-entry", Handling::dropped,
    "An entry needs the attributes key, name and addrs; the one named here is missing."};
inline constexpr Rule serverEntryWithoutAddress{
    "server-entry-without-address", Handling::dropped,
    "None of the entry's addresses can be used, so it gives no server."};
inline constexpr Rule serverWithoutName{
    "server-without-name", Handling::defaulted,
    "Between two \";\", or beside one at an end, stands an empty name, which makes a server."};
inline constexpr Rule tooManyServers{
    "too-many-servers", Handling::dropped,
    "Beside the first of each entry, the names of a group give at most 250,000 servers and 16 MiB "
    "of names and hosts."};
inline constexpr Rule contentInServerEntry{"content-in-server-entry", Handling::dropped,
                                           "What stands inside an entry is not read."};

// Addresses.
inline constexpr Rule emptyServerAddress{
    "empty-server-address", Handling::dropped,
    "Between two \";\", or beside one at an end, stands an empty address."};
inline constexpr Rule addressWithoutPort{"address-without-port", Handling::dropped,
                                         "An address is host:port or weight:host:port."};
inline constexpr Rule addressWithTooManyParts{
    "address-with-too-many-parts", Handling::defaulted,
    "Of more than three parts the second is the host and the third the port; the others are "
    "ignored."};
inline constexpr Rule ipv6Address{
    "ipv6-address", Handling::defaulted,
    "An address is cut at every \":\", so that an IPv6 address cannot be written; what its parts "
    "give is no usable host."};
inline constexpr Rule addressWithoutHost{"address-without-host", Handling::defaulted,
                                         "The host before the port is empty."};
inline constexpr Rule oddServerPort{
    "odd-server-port", Handling::defaulted,
    "The port is no plain number: only the number that it begins with counts, 0 without one."};
inline constexpr Rule serverPortOutOfRange{
    "server-port-out-of-range", Handling::unresolved,
    "A port is a number from 1 to 65535; this one is stored all the same."};
inline constexpr Rule addressWeight{
    "address-weight", Handling::dropped,
    "Weights have no effect: each address of an entry has the same chance."};

}  // namespace yg::rules
