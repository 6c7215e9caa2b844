// SPDX-License-Identifier: MIT
//
// The items of an entry, and the choice of an address: the uniform one of the group parse and the
// older weighted one.
#include "YGConfigManager/servers/AddressChoice.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <utility>

#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/records/Entry.h"
#include "YGConfigManager/servers/YGServerAddrListTag.h"
#include "YGConfigManager/text/Format.h"
#include "YGConfigManager/text/Numbers.h"

namespace yg {

AddressItem::AddressItem(std::string_view item) {
    for (bool more = true; more; ++count_) {
        const std::size_t colon = item.find(':');
        more = colon != std::string_view::npos;
        if (count_ < parts_.size())
            parts_[count_] = item.substr(0, colon);
        if (more)
            item.remove_prefix(colon + 1);
    }
}

const AddressItem& AddressChoice::draw(RandomSource& random) const {
    return items_.size() == 1 ? items_.front() : items_[random.uniform() % items_.size()];
}

void reportOddAddresses(Entry& entry, std::string_view addrs) {
    if (!entry)
        return;
    bool hasWeight = false;
    forEachItem(addrs, [&](std::string_view text) {
        const AddressItem item(text);
        const auto report = [&entry](const Rule& rule, std::string_view part) {
            entry.reportPart(rule, "addrs", part);
        };
        if (!item.isOffered())
            return report(text.empty() ? "empty-server-address"_rule : "address-without-port"_rule,
                          text);
        if (text.find("::") != std::string_view::npos || text.find('[') != std::string_view::npos)
            return report("ipv6-address"_rule, text);
        if (item.count() > 3)
            report("address-with-too-many-parts"_rule, text);
        else if (item.hasWeight() && !std::exchange(hasWeight, true))
            report("address-weight"_rule, item.weight());
        if (item.host().empty())
            report("address-without-host"_rule, text);
        const auto [port, oddity] = text::readLeadingInt32(item.port());
        if (oddity != text::NumberOddity::none || port < 1 || port > 65535)
            report("odd-server-port"_rule, item.port());
    });
}

std::string chooseAddress(const std::vector<std::string>* items, RandomSource& random) {
    if (!items)
        return "";
    AddressChoice choice;
    for (const std::string& item : *items)
        choice.add(AddressItem(item));
    if (choice.empty())
        return "";
    const AddressItem& chosen = choice.draw(random);
    return text::format("%@:%@", chosen.host(), chosen.port());
}

void HostChoice::add(std::string_view item) {
    if (std::exchange(isEmpty_, false))
        first_ = item;
    if (item.empty())
        return;
    const AddressItem parts(item);
    const bool isWeighted = parts.count() > 1;
    if (isWeighted)
        total_ += static_cast<std::uint64_t>(text::leadingInt64(parts.part(0)));
    totals_.set(parts.part(isWeighted ? 1 : 0), total_);
}

void HostChoice::order() {
    if (total_ == 0)
        return;
    // In the order of the hash, in which running totals do not ascend: a host's chance is not its
    // percentage, and hosts rely on the choice as it is. That order takes a hash without a key, so
    // a list may be made to fill one bucket; it ends there.
    constexpr std::size_t fullBucket = 64;
    std::unordered_map<std::string_view, std::uint64_t> inHashOrder;
    for (const auto& [host, runningTotal] : totals_) {
        if (inHashOrder.bucket_size(inHashOrder.bucket(host)) >= fullBucket)
            break;
        inHashOrder.emplace(host, runningTotal);
    }
    // The first host whose total is greater than the number is chosen, so one that is not greater
    // than all before it never is.
    for (const auto& [host, runningTotal] : inHashOrder) {
        if (runningTotal > (ranges_.empty() ? 0 : ranges_.back().end))
            ranges_.push_back({host, runningTotal});
    }
}

std::string_view HostChoice::draw(RandomSource& random) const {
    if (total_ == 0)
        return first_;
    const std::uint64_t drawn = static_cast<std::uint64_t>(random.legacy()) % total_;
    const auto found = std::ranges::upper_bound(ranges_, drawn, {}, &Range::end);
    return found == ranges_.end() ? "" : found->host;
}

std::string chooseHostByPercent(const std::vector<std::string>* items, RandomSource& random) {
    if (!items)
        return "";
    return std::string(HostChoice(*items).draw(random));
}

std::string YGServerAddrListTag::changeIpByPercentNew(const std::vector<std::string>* items) {
    return guarded("choose server address",
                   [items] { return chooseAddress(items, systemRandomSource()); });
}

std::string YGServerAddrListTag::changeIpByPercent(const std::vector<std::string>* items) {
    return guarded("choose server address",
                   [items] { return chooseHostByPercent(items, systemRandomSource()); });
}

}  // namespace yg
