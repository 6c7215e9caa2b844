// SPDX-License-Identifier: MIT
//
// The addresses of a server entry: which of its items are offered, what is odd about one, and the
// choice among them, with the items read once however many choices follow. Internal; the texts must
// outlive what is made from them.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/records/RecordMap.h"
#include "YGConfigManager/servers/RandomSource.h"

namespace yg {

class Entry;

/// An item of "addrs", cut at every ":": host:port or weight:host:port. Parts behind the port are
/// ignored.
class AddressItem {
public:
    explicit AddressItem(std::string_view item);

    /// How many parts there are, and the first of them.
    std::size_t count() const { return count_; }
    std::string_view part(std::size_t index) const { return parts_[index]; }

    /// Whether the item can be chosen. Without a port it cannot.
    bool isOffered() const { return count_ > 1; }

    /// Whether the item begins with a weight, which is not used.
    bool hasWeight() const { return count_ > 2; }

    std::string_view weight() const { return parts_[0]; }
    std::string_view host() const { return parts_[hasWeight() ? 1 : 0]; }
    std::string_view port() const { return parts_[hasWeight() ? 2 : 1]; }

private:
    std::array<std::string_view, 3> parts_;
    std::size_t count_ = 0;
};

/// Calls `visit` with each piece of a text between ";", empty ones included.
template <class Visit>
void forEachItem(std::string_view text, Visit&& visit) {
    for (std::size_t end = text.find(';'); end != std::string_view::npos; end = text.find(';')) {
        visit(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    visit(text);
}

/// How many of the numbers from 0 to `count` - 1 have a remainder below `bound` when divided by
/// `divisor`, which is not 0.
constexpr std::uint64_t remaindersBelow(std::uint64_t bound, std::uint64_t divisor,
                                        std::uint64_t count) {
    bound = std::min(bound, divisor);
    return count / divisor * bound + std::min(count % divisor, bound);
}

class AddressChoice {
public:
    /// How many numbers a random source gives for it, each as likely as the others.
    static constexpr std::uint64_t randomNumbers = std::uint64_t{1} << 32;

    /// Takes an item if it is offered.
    void add(const AddressItem& item) {
        if (item.isOffered())
            items_.push_back(item);
    }

    bool empty() const { return items_.empty(); }

    const std::vector<AddressItem>& items() const { return items_; }

    /// One of the items, each with the same chance. A single one needs no random number. There must
    /// be one.
    const AddressItem& draw(RandomSource& random) const;

    /// How many of the random numbers lead to an item.
    std::uint64_t numbersFor(std::size_t index) const {
        return remaindersBelow(index + 1, items_.size(), randomNumbers) -
               remaindersBelow(index, items_.size(), randomNumbers);
    }

private:
    std::vector<AddressItem> items_;
};

/// The older choice, by weight.
class HostChoice {
public:
    /// How many numbers a random source gives for it, each as likely as the others.
    static constexpr std::uint64_t randomNumbers = std::uint64_t{RAND_MAX} + 1;

    /// The items as the list has them.
    template <class Items>
    explicit HostChoice(const Items& items) {
        for (const std::string_view item : items)
            add(item);
        order();
    }
    HostChoice(const HostChoice&) = delete;
    HostChoice& operator=(const HostChoice&) = delete;

    /// A host; the first item as it stands, without drawing a number, when the weights add up to 0;
    /// "" when no host qualifies.
    std::string_view draw(RandomSource& random) const;

    /// Calls `visit` with each host, in the order of the list, and 0; then with each answer that
    /// has remainders, and how many of the random numbers lead to it.
    template <class Visit>
    void forEachAnswer(Visit&& visit) const {
        if (total_ == 0)
            return visit(first_, randomNumbers);
        for (const auto& [host, runningTotal] : totals_)
            visit(host, 0);
        std::uint64_t below = 0;
        for (const Range& range : ranges_) {
            const std::uint64_t end = remaindersBelow(range.end, total_, randomNumbers);
            visit(range.host, end - below);
            below = end;
        }
        if (ranges_.empty() || ranges_.back().end < total_)
            visit("", randomNumbers - below);
    }

private:
    /// The host that the numbers below `end` choose, unless an earlier range has them.
    struct Range {
        std::string_view host;
        std::uint64_t end;
    };

    void add(std::string_view item);
    void order();

    std::string_view first_;
    RecordMap<std::uint64_t> totals_;  ///< the running total of each host
    std::uint64_t total_ = 0;
    std::vector<Range> ranges_;  ///< ascending
    bool isEmpty_ = true;
};

/// Reports what is odd about the items of an entry's "addrs", one of which is offered. Weights are
/// reported once, however many there are.
void reportOddAddresses(Entry& entry, std::string_view addrs);

/// YGServerAddrListTag::changeIpByPercentNew and changeIpByPercent with numbers from `random`.
/// Throw std::bad_alloc.
std::string chooseAddress(const std::vector<std::string>* items, RandomSource& random);
std::string chooseHostByPercent(const std::vector<std::string>* items, RandomSource& random);

}  // namespace yg
