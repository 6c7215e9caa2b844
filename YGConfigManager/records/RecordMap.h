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

    bool contains(std::string_view key) const { return find(key) != nullptr; }

    /// Stores a value. A key that is there keeps its place in the order and gets the new value;
    /// the answer tells whether it was there.
    bool set(std::string_view key, Value value) {
        if (const Value* found = find(key)) {
            const_cast<Value&>(*found) = std::move(value);
            return true;
        }
        if ((entries_.size() + 1) * 2 > slots_.size())
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

    template <class Word>
    static std::uint64_t wordAt(const char* bytes) {
        Word word = 0;
        std::memcpy(&word, bytes, sizeof word);
        return word;
    }

    /// Two words folded into one through both halves of their product.
    static std::uint64_t folded(std::uint64_t one, std::uint64_t other) {
        __extension__ using Product = unsigned __int128;
        const Product product = Product{one ^ 0x2D358DCCAA6C78A5} * (other ^ 0x8BB84B93962EACC9);
        return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
    }

    /// The first and the last bytes of a text of at most sixteen, as two words that overlap.
    static std::pair<std::uint64_t, std::uint64_t> ends(const char* bytes, std::size_t size) {
        if (size >= 8)
            return {wordAt<std::uint64_t>(bytes), wordAt<std::uint64_t>(bytes + size - 8)};
        if (size >= 4)
            return {wordAt<std::uint32_t>(bytes), wordAt<std::uint32_t>(bytes + size - 4)};
        if (size == 0)
            return {0, 0};
        return {wordAt<std::uint8_t>(bytes) << 8 | wordAt<std::uint8_t>(bytes + size / 2),
                wordAt<std::uint8_t>(bytes + size - 1)};
    }

    /// Sixteen bytes at a time, for names are short, and std::hash spends more on its call than
    /// on them.
    static std::uint32_t hashOf(std::string_view key) {
        const char* bytes = key.data();
        std::uint64_t hash = key.size();
        std::size_t left = key.size();
        for (; left > 16; left -= 16, bytes += 16)
            hash = folded(hash ^ wordAt<std::uint64_t>(bytes), wordAt<std::uint64_t>(bytes + 8));
        const auto [first, last] = ends(bytes, left);
        hash = folded(hash ^ first, last);
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
    std::vector<Slot>
        slots_;  ///< a power of two of them, at most half of them used: a second look costs more
};

}  // namespace yg
