// SPDX-License-Identifier: MIT
//
// A map from text to a value that keeps the order in which keys were first stored, which for a
// loader is the order of the file. Looking up allocates nothing. Reading from several threads is
// safe as long as none of them changes the map.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace yg {

template <class Value>
class RecordMap {
public:
    struct Entry {
        std::string key;
        Value value;
    };
    using const_iterator = typename std::vector<Entry>::const_iterator;

    bool empty() const { return entries_.empty(); }
    std::size_t size() const { return entries_.size(); }

    /// The entries in the order in which their keys were first stored.
    const_iterator begin() const { return entries_.begin(); }
    const_iterator end() const { return entries_.end(); }

    /// The value stored under exactly this key; null when there is none. Valid until the map is
    /// changed.
    const Value* find(std::string_view key) const {
        if (slots_.empty())
            return nullptr;
        const std::uint32_t hash = hashOf(key);
        for (std::size_t at = hash & mask();; at = (at + 1) & mask()) {
            const Slot& slot = slots_[at];
            if (slot.entry == none)
                return nullptr;
            if (slot.hash == hash && entries_[slot.entry].key == key)
                return &entries_[slot.entry].value;
        }
    }

    bool contains(std::string_view key) const { return find(key) != nullptr; }

    /// Stores a value. A key that is there keeps its place in the order and gets the new value;
    /// the answer tells whether it was there.
    bool set(std::string_view key, Value value) {
        if (const Value* found = find(key)) {
            const_cast<Value&>(*found) = std::move(value);
            return true;
        }
        if ((entries_.size() + 1) * 4 > slots_.size() * 3)
            grow();
        entries_.push_back({std::string(key), std::move(value)});
        place(hashOf(key), static_cast<std::uint32_t>(entries_.size() - 1));
        return false;
    }

private:
    static constexpr std::uint32_t none = 0xFFFFFFFF;

    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t entry = none;
    };

    /// Eight bytes at a time, both halves of the product: names are short and differ in few bits,
    /// and std::hash spends more on its call than on them.
    static std::uint32_t hashOf(std::string_view key) {
        __extension__ using Product = unsigned __int128;
        std::uint64_t hash = key.size();
        const auto add = [&hash](std::uint64_t word) {
            const Product product = Product{hash ^ word ^ 0x2D358DCCAA6C78A5} * 0x9E3779B97F4A7C15;
            hash = static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
        };
        const auto wordAt = [](const char* bytes) {
            std::uint64_t word = 0;
            std::memcpy(&word, bytes, sizeof word);
            return word;
        };
        const char* const end = key.data() + key.size();
        if (key.size() < sizeof(std::uint64_t)) {
            std::uint64_t word = 0;
            for (const char c : key)
                word = word << 8 | static_cast<unsigned char>(c);
            add(word);
        } else {
            for (const char* at = key.data(); end - at > 8; at += 8)
                add(wordAt(at));
            add(wordAt(end - 8));
        }
        return static_cast<std::uint32_t>(hash ^ (hash >> 32));
    }

    std::size_t mask() const { return slots_.size() - 1; }

    void place(std::uint32_t hash, std::uint32_t entry) {
        std::size_t at = hash & mask();
        while (slots_[at].entry != none)
            at = (at + 1) & mask();
        slots_[at] = {hash, entry};
    }

    void grow() {
        slots_.assign(slots_.empty() ? 8 : slots_.size() * 2, Slot());
        for (std::size_t i = 0; i < entries_.size(); ++i)
            place(hashOf(entries_[i].key), static_cast<std::uint32_t>(i));
    }

    std::vector<Entry> entries_;
    std::vector<Slot> slots_;  ///< a power of two of them, at most three quarters used
};

}  // namespace yg
