// SPDX-License-Identifier: MIT
//
// A hash of texts for tables in memory. Its key is drawn for each process, so a file cannot hold
// names that all get one hash. Never to be stored, shown or used for an order. Any thread may call.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <utility>

#include "YGConfigManager/export.h"
#include "YGConfigManager/text/OptionalText.h"

namespace yg::text {

class YG_EXPORT TextHash {
public:
    /// With a key of two words, which are to be random.
    constexpr TextHash(std::uint64_t first, std::uint64_t second)
        : first_(first), second_(second) {}

    /// With the key of this process, drawn from the system's random numbers at the first call,
    /// which may come before main(). A forked process keeps it.
    static TextHash ofProcess();

    /// Sixteen bytes at a time, for names are short, and std::hash spends more on its call than on
    /// them. Each factor has a secret in it, because one of only zeros or ones loses the other.
    std::uint32_t operator()(OptionalText of) const {
        const std::string_view text = *of;
        const char* bytes = text.data();
        std::size_t left = text.size();
        std::uint64_t hash = 0;
        for (; left > 16; left -= 16, bytes += 16)
            hash = folded(hash ^ wordAt<std::uint64_t>(bytes), wordAt<std::uint64_t>(bytes + 8));
        const auto [first, last] = ends(bytes, left);
        hash = folded(hash ^ first, last);
        hash = folded(hash, text.size());
        return static_cast<std::uint32_t>(hash ^ (hash >> 32));
    }

private:
    template <class Word>
    static std::uint64_t wordAt(const char* bytes) {
        Word word = 0;
        std::memcpy(&word, bytes, sizeof word);
        return word;
    }

    /// Two words folded into one through both halves of their product.
    std::uint64_t folded(std::uint64_t one, std::uint64_t other) const {
        __extension__ using Product = unsigned __int128;
        const Product product = Product{one ^ first_} * (other ^ second_);
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

    std::uint64_t first_;
    std::uint64_t second_;
};

}  // namespace yg::text
