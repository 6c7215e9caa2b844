// SPDX-License-Identifier: MIT
//
// The addresses of a server entry: which of its items are offered, what is odd about one, and the
// choice among them, with the items read once however many choices follow. Internal; the texts must
// outlive what is made from them.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

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

class AddressChoice {
public:
    /// Takes an item if it is offered.
    void add(const AddressItem& item) {
        if (item.isOffered())
            items_.push_back(item);
    }

    bool empty() const { return items_.empty(); }

    /// One of the items, each with the same chance. A single one needs no random number. There must
    /// be one.
    const AddressItem& draw(RandomSource& random) const;

private:
    std::vector<AddressItem> items_;
};

/// Reports what is odd about the items of an entry's "addrs", one of which is offered. Weights are
/// reported once, however many there are.
void reportOddAddresses(Entry& entry, std::string_view addrs);

/// YGServerAddrListTag::changeIpByPercentNew and changeIpByPercent with numbers from `random`.
/// Throw std::bad_alloc.
std::string chooseAddress(const std::vector<std::string>* items, RandomSource& random);
std::string chooseHostByPercent(const std::vector<std::string>* items, RandomSource& random);

}  // namespace yg
