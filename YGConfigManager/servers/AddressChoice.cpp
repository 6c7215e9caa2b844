// SPDX-License-Identifier: MIT
//
// The choice of an address: the uniform one of the group parse and the older weighted one.
#include "YGConfigManager/servers/AddressChoice.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>

#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/records/RecordMap.h"
#include "YGConfigManager/servers/RandomSource.h"
#include "YGConfigManager/servers/YGServerAddrListTag.h"
#include "YGConfigManager/text/Format.h"
#include "YGConfigManager/text/Numbers.h"

namespace yg {

void AddressChoice::add(std::string_view item) {
    const AddressParts parts = splitAddressItem(item);
    if (parts.count == 2)
        addresses_.push_back({parts.part[0], parts.part[1]});
    else if (parts.count > 2)
        addresses_.push_back({parts.part[1], parts.part[2]});
}

const Address& AddressChoice::draw() const {
    if (addresses_.size() == 1)
        return addresses_.front();
    return addresses_[randomSource().uniform() % addresses_.size()];
}

std::string YGServerAddrListTag::changeIpByPercentNew(const std::vector<std::string>* items) {
    return guarded("choose server address", [items]() -> std::string {
        AddressChoice choice;
        if (items) {
            for (const std::string& item : *items)
                choice.add(item);
        }
        if (choice.empty())
            return "";
        const Address& chosen = choice.draw();
        return text::format("%@:%@", chosen.host, chosen.port);
    });
}

namespace {

std::string chooseByPercent(const std::vector<std::string>* items) {
    if (!items || items->empty())
        return "";
    RecordMap<std::uint64_t> totals;
    std::uint64_t total = 0;
    for (const std::string& item : *items) {
        if (item.empty())
            continue;
        const AddressParts parts = splitAddressItem(item);
        const bool isWeighted = parts.count > 1;
        if (isWeighted)
            total += static_cast<std::uint64_t>(text::leadingInt64(parts.part[0]));
        totals.set(isWeighted ? parts.part[1] : parts.part[0], total);
    }
    if (total == 0)
        return items->front();
    const std::uint64_t drawn = static_cast<std::uint64_t>(randomSource().legacy()) % total;
    // In the order of the hash, in which running totals do not ascend: a host's chance is not its
    // percentage, and hosts rely on the choice as it is. That order takes a hash without a key, so
    // a list may be made to fill one bucket; it ends there.
    constexpr std::size_t fullBucket = 64;
    std::unordered_map<std::string_view, std::uint64_t> inHashOrder;
    for (const auto& [host, runningTotal] : totals) {
        if (inHashOrder.bucket_size(inHashOrder.bucket(host)) >= fullBucket)
            break;
        inHashOrder.emplace(host, runningTotal);
    }
    for (const auto& [host, runningTotal] : inHashOrder) {
        if (runningTotal > drawn)
            return std::string(host);
    }
    return "";
}

}  // namespace

std::string YGServerAddrListTag::changeIpByPercent(const std::vector<std::string>* items) {
    return guarded("choose server address", [items] { return chooseByPercent(items); });
}

}  // namespace yg
