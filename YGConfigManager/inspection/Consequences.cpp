// SPDX-License-Identifier: MIT
#include "YGConfigManager/inspection/Consequences.h"

#include <utility>

#include "YGConfigManager/inspection/Causes.h"
#include "YGConfigManager/inspection/Slips.h"

namespace yg {

namespace {

/// The cause at the beginning of each chain of causes. Of findings that would be each other's
/// causes one is the beginning.
std::vector<std::size_t> firstCauses(CauseIndexes causes) {
    constexpr auto unknown = static_cast<std::size_t>(-1);
    std::vector<std::size_t> first(causes.size(), unknown);
    std::vector<bool> isOnWay(causes.size());
    for (std::size_t at = 0; at < causes.size(); ++at) {
        std::vector<std::size_t> way;
        std::size_t next = at;
        for (; first[next] == unknown && causes[next] && !isOnWay[next]; next = *causes[next]) {
            isOnWay[next] = true;
            way.push_back(next);
        }
        const std::size_t begin = first[next] == unknown ? next : first[next];
        first[next] = begin;
        for (const std::size_t each : way)
            first[each] = begin;
    }
    return first;
}

}  // namespace

std::vector<Cause> withConsequences(std::vector<Found> found, const Loaded& loaded,
                                    Suggestions& suggestions) {
    CauseIndexes causes = causesOf(found, loaded, suggestions);
    joinSlips(found, causes, suggestions);
    const std::vector<std::size_t> causeOf = firstCauses(std::move(causes));
    std::vector<Cause> all;
    std::vector<std::size_t> placeOf(found.size());
    for (std::size_t at = 0; at < found.size(); ++at) {
        placeOf[at] = all.size();
        if (causeOf[at] == at)
            all.push_back({std::move(found[at])});
    }
    for (std::size_t at = 0; at < found.size(); ++at) {
        if (causeOf[at] != at)
            all[placeOf[causeOf[at]]].consequences.push_back(std::move(found[at]));
    }
    return all;
}

}  // namespace yg
