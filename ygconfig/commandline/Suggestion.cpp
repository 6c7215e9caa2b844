// SPDX-License-Identifier: MIT
#include "ygconfig/commandline/Suggestion.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "ygconfig/drawing/Display.h"

namespace yg::tool {

namespace {

/// How many steps lead from one word to the other, each character taking part in one step at most.
std::size_t distance(const std::wstring& from, const std::wstring& to) {
    std::vector<std::size_t> beforeLast;
    std::vector<std::size_t> last(to.size() + 1);
    std::vector<std::size_t> current(to.size() + 1);
    for (std::size_t j = 0; j <= to.size(); ++j)
        current[j] = j;
    for (std::size_t i = 1; i <= from.size(); ++i) {
        beforeLast = last;
        last = current;
        current[0] = i;
        for (std::size_t j = 1; j <= to.size(); ++j) {
            const std::size_t change = from[i - 1] == to[j - 1] ? 0 : 1;
            current[j] = std::min({last[j] + 1, current[j - 1] + 1, last[j - 1] + change});
            if (i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1])
                current[j] = std::min(current[j], beforeLast[j - 2] + 1);
        }
    }
    return current[to.size()];
}

}  // namespace

std::string_view nearest(std::string_view word, std::span<const std::string> known) {
    const std::wstring wanted = characters(word);
    std::string_view found;
    std::size_t best = 0;
    for (const std::string& each : known) {
        const std::wstring candidate = characters(each);
        const std::size_t longer = std::max(wanted.size(), candidate.size());
        const std::size_t shorter = std::min(wanted.size(), candidate.size());
        const std::size_t limit = std::max<std::size_t>(1, longer / 3);
        if (candidate.empty() || longer - shorter > limit)
            continue;
        const std::size_t steps = distance(wanted, candidate);
        // With half of the characters changed it is a different word.
        if (steps <= limit && 2 * steps < longer && (found.empty() || steps < best)) {
            found = each;
            best = steps;
        }
    }
    return found;
}

std::string suggestion(std::string_view word, std::span<const std::string> known) {
    const std::string_view meant = nearest(word, known);
    return meant.empty() ? "" : "; did you mean '" + printable(meant) + "'?";
}

}  // namespace yg::tool
