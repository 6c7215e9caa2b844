// SPDX-License-Identifier: MIT
#include "YGConfigManager/text/Nearest.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <new>
#include <numeric>
#include <unicode/normalizer2.h>
#include <unicode/unistr.h>
#include <vector>

namespace yg::text {

namespace {

/// One for all characters that look like it.
char32_t lookAlike(char32_t character) {
    constexpr std::u32string_view like = U"01iаеорсхуі－–—‐";
    constexpr std::u32string_view meant = U"ollaeopcxyl----";
    const std::size_t at = like.find(character);
    return at == std::u32string_view::npos ? character : meant[at];
}

/// Without blanks, in small letters and in the usual width, with similar characters as one.
std::u32string folded(std::string_view word) {
    UErrorCode failure = U_ZERO_ERROR;
    const icu::Normalizer2* const folding = icu::Normalizer2::getNFKCCasefoldInstance(failure);
    if (U_FAILURE(failure))
        throw std::bad_alloc();
    const icu::UnicodeString text = folding->normalize(
        icu::UnicodeString::fromUTF8({word.data(), static_cast<int>(word.size())}), failure);
    if (U_FAILURE(failure))
        throw std::bad_alloc();
    std::u32string characters;
    for (int at = 0; at < text.length(); at = text.moveIndex32(at, 1)) {
        const auto character = static_cast<char32_t>(text.char32At(at));
        if (!u_isUWhiteSpace(static_cast<UChar32>(character)))
            characters += lookAlike(character);
    }
    return characters;
}

/// Which characters a word has: a bit for each, which several may share.
std::uint64_t charactersOf(const std::u32string& word) {
    std::uint64_t bits = 0;
    for (const char32_t character : word)
        bits |= std::uint64_t{1} << (character * std::uint64_t{0x9E3779B97F4A7C15} >> 58);
    return bits;
}

/// Steps that there are at least: one makes up for one character that only one of the words has.
std::size_t leastDistance(std::uint64_t characters, std::uint64_t others) {
    return static_cast<std::size_t>(
        std::max(std::popcount(characters & ~others), std::popcount(others & ~characters)));
}

/// How many steps lead from one word to the other, each character taking part in one step at most;
/// any number above the limit when there are more.
std::size_t distance(const std::u32string& from, const std::u32string& to, std::size_t limit,
                     std::array<std::vector<std::uint32_t>, 3>& rows) {
    auto& [beforeLast, last, current] = rows;
    for (auto& row : rows)
        row.resize(to.size() + 1);
    std::iota(current.begin(), current.end(), 0U);
    std::uint32_t least = 0;
    for (std::size_t i = 1; i <= from.size(); ++i) {
        beforeLast.swap(last);
        last.swap(current);
        // A swap of characters leads past one row, but not past two.
        const std::uint32_t leastBefore = least;
        current[0] = least = static_cast<std::uint32_t>(i);
        for (std::size_t j = 1; j <= to.size(); ++j) {
            const std::uint32_t change = from[i - 1] == to[j - 1] ? 0 : 1;
            current[j] = std::min({last[j] + 1, current[j - 1] + 1, last[j - 1] + change});
            if (i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1])
                current[j] = std::min(current[j], beforeLast[j - 2] + 1);
            least = std::min(least, current[j]);
        }
        if (least > limit && leastBefore > limit)
            return least;
    }
    return current[to.size()];
}

}  // namespace

KnownWords::KnownWords(std::span<const std::string> words) : words_(words.begin(), words.end()) {
    for (std::size_t at = 0; at < words_.size(); ++at) {
        std::u32string form = folded(words_[at]);
        byForm_.try_emplace(form, at);
        const std::size_t length = form.size();
        const std::uint64_t characters = charactersOf(form);
        byLength_[length].push_back({std::move(form), characters, at});
    }
}

std::string_view KnownWords::nearest(std::string_view word) {
    const std::u32string wanted = folded(word);
    if (const auto same = byForm_.find(wanted); same != byForm_.end() && !wanted.empty())
        return words_[same->second];
    const std::uint64_t characters = charactersOf(wanted);
    std::array<std::vector<std::uint32_t>, 3> rows;
    std::string_view found;
    std::size_t best = 0;
    std::size_t bestIndex = 0;
    for (const auto& [length, candidates] : byLength_) {
        const std::size_t longer = std::max(wanted.size(), length);
        const std::size_t shorter = std::min(wanted.size(), length);
        const std::size_t limit = std::max<std::size_t>(1, longer / 3);
        if (length == 0 || longer - shorter > limit)
            continue;
        for (const Word& candidate : candidates) {
            steps_ += (wanted.size() + 1) * (length + 1);
            if (steps_ > mostSteps)
                return "";
            const std::size_t most = found.empty() ? limit : std::min(limit, best);
            if (leastDistance(characters, candidate.characters) > most)
                continue;
            const std::size_t steps = distance(wanted, candidate.folded, most, rows);
            const bool isBetter =
                found.empty() || steps < best || (steps == best && candidate.index < bestIndex);
            // With half of the characters changed it is a different word.
            if (steps <= limit && 2 * steps < longer && isBetter) {
                found = words_[candidate.index];
                best = steps;
                bestIndex = candidate.index;
            }
        }
    }
    return found;
}

std::string nearest(std::string_view word, std::span<const std::string> known) {
    return std::string(KnownWords(known).nearest(word));
}

}  // namespace yg::text
