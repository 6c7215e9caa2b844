// SPDX-License-Identifier: MIT
//
// The known word that somebody probably meant. Internal. Throws std::bad_alloc.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace yg::text {

/// Words to choose from. One object must not be used by several threads at a time.
class KnownWords {
public:
    explicit KnownWords(std::span<const std::string> words);

    /// The known word that the fewest added, left out, changed or swapped characters lead to, after
    /// case, width (full-width forms), blanks and similar characters (0 and O, 1, l and I) were
    /// folded; the first of several. "" when none is near, where a third of the characters would
    /// change, and once the object has done all the work that it may, so that a file of many
    /// unknown words takes no longer than one of some.
    std::string_view nearest(std::string_view word);

private:
    struct Word {
        std::u32string folded;
        std::uint64_t characters;  ///< which ones it has
        std::size_t index;
    };

    static constexpr std::size_t mostSteps = 10'000'000;

    std::vector<std::string> words_;
    std::map<std::size_t, std::vector<Word>> byLength_;
    std::map<std::u32string, std::size_t> byForm_;
    std::size_t steps_ = 0;
};

/// The same for one question.
std::string nearest(std::string_view word, std::span<const std::string> known);

}  // namespace yg::text
