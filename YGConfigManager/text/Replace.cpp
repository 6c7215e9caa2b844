// SPDX-License-Identifier: MIT
#include "YGConfigManager/text/Replace.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <optional>
#include <unicode/uchar.h>
#include <vector>

#include "YGConfigManager/text/Utf8.h"

namespace yg::text {

namespace {

/// A folded character and the bytes that it took. A byte that is not UTF-8 is a character beyond
/// all of Unicode's.
struct Folded {
    char32_t character;
    std::size_t size;
};

/// The first character of a text that is not empty.
Folded firstFolded(std::string_view text) {
    const Character first = firstCharacter(text);
    if (!first.isValid)
        return {char32_t{0x110000} + static_cast<unsigned char>(text.front()), 1};
    const auto character = static_cast<UChar32>(first.value);
    return {static_cast<char32_t>(u_foldCase(character, U_FOLD_CASE_DEFAULT)), first.size};
}

/// Whether another text could be equal to this one.
bool hasCase(std::string_view text) {
    return std::any_of(text.begin(), text.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
               static_cast<unsigned char>(c) >= 0x80;
    });
}

/// Searches for a sequence of folded characters, each character of the text looked at once.
class Search {
public:
    explicit Search(std::string_view target) {
        while (!target.empty()) {
            const Folded folded = firstFolded(target);
            wanted_.push_back(folded.character);
            target.remove_prefix(folded.size);
        }
        shorter_.resize(wanted_.size());
        for (std::size_t at = 1, matched = 0; at < wanted_.size(); ++at) {
            matched = afterMatching(matched, wanted_[at]);
            shorter_[at] = matched;
        }
        starts_.resize(wanted_.size());
    }

    /// Takes the character that begins at this place; true when it completes an occurrence.
    bool take(char32_t character, std::size_t place) {
        starts_[taken_++ % starts_.size()] = place;
        matched_ = afterMatching(matched_, character);
        if (matched_ < wanted_.size())
            return false;
        matched_ = 0;
        return true;
    }

    /// Where the occurrence begins that was just completed.
    std::size_t start() const { return starts_[taken_ % starts_.size()]; }

private:
    /// How much of the target's beginning ends with the next character, given how much of it ended
    /// before.
    std::size_t afterMatching(std::size_t matched, char32_t character) const {
        while (matched > 0 && wanted_[matched] != character)
            matched = shorter_[matched - 1];
        return wanted_[matched] == character ? matched + 1 : 0;
    }

    std::vector<char32_t> wanted_;
    std::vector<std::size_t> shorter_;  ///< the longest beginning that ends at each place
    std::vector<std::size_t> starts_;   ///< of the last characters, as many as are wanted
    std::size_t taken_ = 0;
    std::size_t matched_ = 0;
};

/// Where an occurrence begins and ends.
struct Occurrence {
    std::size_t begin;
    std::size_t end;
};

/// The text with the replacement in each place that `next` answers: the first one from an offset
/// on.
template <class Next>
std::string replaced(std::string_view text, std::string_view replacement, Next next) {
    std::string out;
    std::size_t copied = 0;
    while (const std::optional<Occurrence> found = next(copied)) {
        out += text.substr(copied, found->begin - copied);
        out += replacement;
        copied = found->end;
    }
    out += text.substr(copied);
    return out;
}

}  // namespace

std::size_t findText(std::string_view text, std::string_view target, std::size_t from) {
    // The view's own search compares the whole target at each place, which is best for short ones.
    constexpr std::size_t longestShort = 64;
    if (target.size() <= longestShort)
        return text.find(target, from);
    if (from > text.size() || text.size() - from < target.size())
        return std::string_view::npos;
    const void* const found =
        ::memmem(text.data() + from, text.size() - from, target.data(), target.size());
    return found ? static_cast<std::size_t>(static_cast<const char*>(found) - text.data())
                 : std::string_view::npos;
}

std::string replaceAll(std::string_view text, std::string_view target,
                       std::string_view replacement) {
    if (target.empty())
        return std::string(text);
    return replaced(text, replacement, [&](std::size_t from) -> std::optional<Occurrence> {
        const std::size_t found = findText(text, target, from);
        if (found == std::string_view::npos)
            return std::nullopt;
        return Occurrence{found, found + target.size()};
    });
}

std::string replaceAllIgnoringCase(std::string_view text, std::string_view target,
                                   std::string_view replacement) {
    if (!hasCase(target))
        return replaceAll(text, target, replacement);
    Search search(target);
    return replaced(text, replacement, [&](std::size_t from) -> std::optional<Occurrence> {
        while (from < text.size()) {
            const Folded folded = firstFolded(text.substr(from));
            const bool isComplete = search.take(folded.character, from);
            from += folded.size;
            if (isComplete)
                return Occurrence{search.start(), from};
        }
        return std::nullopt;
    });
}

}  // namespace yg::text
