// SPDX-License-Identifier: MIT
//
// A map from text to a value that keeps the order in which keys were first stored, which for a
// loader is the order of the file. Looking up allocates nothing, and takes the same time whatever
// names a file holds. Entries live as long as the map: where a map is answered by shared pointer,
// keep the pointer while going through it. Reading from several threads is safe as long as none of
// them changes the map.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "YGConfigManager/text/OptionalText.h"
#include "YGConfigManager/text/TextHash.h"

namespace yg {

template <class Value>
class RecordMap {
public:
    /// A key and what is stored under it.
    struct Entry {
        std::string key;  ///< as it was stored
        Value value;      ///< stored last under this key
    };
    /// Goes through the entries; ends when the map is changed.
    using const_iterator = typename std::vector<Entry>::const_iterator;

    /// Whether nothing is stored, and how many keys there are.
    bool empty() const { return entries_.empty(); }
    std::size_t size() const { return entries_.size(); }

    /// The entries in the order in which their keys were first stored.
    const_iterator begin() const { return entries_.begin(); }
    const_iterator end() const { return entries_.end(); }

    /// The value stored under exactly this key; null when there is none. Valid until the map is
    /// changed.
    const Value* find(OptionalText key) const {
        return slots_.empty() ? nullptr : find(*key, hash_(*key));
    }

    /// Whether something is stored under exactly this key.
    bool contains(OptionalText key) const { return find(key) != nullptr; }

    /// Stores a value. A key that is there keeps its place in the order and gets the new value;
    /// the answer says whether it was there.
    bool set(OptionalText name, Value value) {
        const std::string_view key = *name;
        if (slots_.empty()) {
            hash_ = text::TextHash::ofProcess();
            grow();
        }
        const std::uint32_t hash = hash_(key);
        if (const Value* found = find(key, hash)) {
            const_cast<Value&>(*found) = std::move(value);
            return true;
        }
        if ((entries_.size() + 1) * 2 > slots_.size())
            grow();
        entries_.push_back({std::string(key), std::move(value)});
        place({hash, static_cast<std::uint32_t>(entries_.size() - 1)});
        return false;
    }

    /// How many slots the lookup of a stored key looks at, at most; 0 without any key.
    std::size_t longestSearch() const {
        std::size_t longest = 0;
        for (std::size_t at = 0; at < slots_.size(); ++at) {
            if (slots_[at].entry != none)
                longest = std::max(longest, ((at - slots_[at].hash) & mask()) + 1);
        }
        return longest;
    }

private:
    static constexpr std::uint32_t none = 0xFFFFFFFF;

    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t entry = none;
    };

    std::size_t mask() const { return slots_.size() - 1; }

    const Value* find(std::string_view key, std::uint32_t hash) const {
        const Slot* const slots = slots_.data();
        const std::size_t last = mask();
        for (std::size_t at = hash & last;; at = (at + 1) & last) {
            const Slot& slot = slots[at];
            if (slot.hash == hash && slot.entry != none && entries_[slot.entry].key == key)
                return &entries_[slot.entry].value;
            if (slot.entry == none)
                return nullptr;
        }
    }

    void place(Slot slot) {
        std::size_t at = slot.hash & mask();
        while (slots_[at].entry != none)
            at = (at + 1) & mask();
        slots_[at] = slot;
    }

    void grow() {
        std::vector<Slot> before(slots_.empty() ? 8 : slots_.size() * 2);
        slots_.swap(before);
        for (const Slot& slot : before) {
            if (slot.entry != none)
                place(slot);
        }
    }

    std::vector<Entry> entries_;
    std::vector<Slot>
        slots_;  ///< a power of two of them, at most half of them used: a second look costs more
    text::TextHash hash_{0, 0};  ///< of the process, once there is a slot
};

}  // namespace yg
