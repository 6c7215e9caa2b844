// SPDX-License-Identifier: MIT
//
// How the clients of a fleet are spread over the addresses of a server entry: the exact chance of
// each address, taken from the choice itself, and what follows from it for many clients, who choose
// independently of each other. Any thread may call; nothing is thrown, and nothing is drawn but by
// `drawFleet`.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "YGConfigManager/export.h"
#include "YGConfigManager/servers/RandomSource.h"
#include "YGConfigManager/text/OptionalText.h"

namespace yg {

/// Which of the two choices of YGServerAddrListTag.
enum class AddressRule {
    plain,     ///< changeIpByPercentNew, by which servers are loaded
    weighted,  ///< changeIpByPercent, the older one, which hosts call
};

/// How many of the random numbers that the choice takes lead to an address. Each number is as
/// likely as the others.
struct AddressShare {
    /// What is chosen: host:port by the plain choice, a host by the weighted one.
    std::string address;
    std::uint64_t numbers = 0;
    std::uint64_t ofNumbers = 1;  ///< all random numbers; not 0

    /// From 0 to 1.
    double chance() const { return static_cast<double>(numbers) / static_cast<double>(ofNumbers); }
};

/// The shares of the addresses in "addrs", as an entry of the file has it, in the order of the
/// text; an address that is there twice has one share. By the plain choice they are those that can
/// be chosen, and none when there is none. By the weighted choice they are all hosts, also those
/// that are never chosen, then "" if that can be the answer; the first item as it stands when the
/// weights add up to 0. Empty when memory does not suffice.
YG_EXPORT std::vector<AddressShare> addressShares(OptionalText addrs,
                                                  AddressRule rule = AddressRule::plain);

/// "addrs" without the items of an address: of a host:port, whatever their weight, or of an item
/// without a port as it stands. "" when memory does not suffice.
YG_EXPORT std::string withoutAddress(OptionalText addrs, OptionalText address);

/// The chance that a client has another address, or none, when it has chosen by the shares `after`
/// than when it had by `before`. Of the same shares twice: that a reload moves it, which after
/// several reloads is the chance that it has another address than before the first. 0 when it had
/// none, or when memory does not suffice.
YG_EXPORT double chanceOfAnother(const std::vector<AddressShare>& before,
                                 const std::vector<AddressShare>& after);

/// The chance that at least one of so many reloads moves a client. How often it moves is expected
/// to be the number of reloads times the chance of one.
YG_EXPORT double chanceOfMove(const std::vector<AddressShare>& shares, std::uint64_t reloads);

/// The load that an address has in 99 of 100 fleets at most: the least number of clients that so
/// many choices, up to 10^18, do not exceed with a chance of 99 %. It is worked out from the
/// binomial distribution: term by term, to ten digits of the chance, up to a variance of 10^7,
/// which is at least 40 million choices; beyond by the normal distribution with the correction for
/// its skewness, which is at most 1 off, and 1 more for each 10^18 choices.
YG_EXPORT std::uint64_t worstLoad(const AddressShare& share, std::uint64_t choices);

/// What came out of a fleet in which each client chose once and then once for each reload.
struct FleetDraws {
    std::vector<std::uint64_t> loads;  ///< in the end, of each of `addressShares`
    std::uint64_t movedClients = 0;    ///< with another address in the end than at first
    std::uint64_t moves = 0;           ///< reloads after which a client had another than before
};

/// Has a fleet choose, client by client, by numbers from `random`, so that the shares can be
/// checked. Without loads when there is nothing to choose or when memory does not suffice.
YG_EXPORT FleetDraws drawFleet(OptionalText addrs, AddressRule rule, std::uint64_t clients,
                               std::uint64_t reloads, RandomSource& random);

}  // namespace yg
