// SPDX-License-Identifier: MIT
#include "YGConfigManager/inspection/Suggestions.h"

#include <algorithm>
#include <set>
#include <utility>

#include "YGConfigManager/text/Nearest.h"

namespace yg {

namespace {

/// The rules about names that do not exist.
constexpr std::pair<std::string_view, Naming> references[] = {
    {"unknown-magic-group", Naming::magicGroup},
    {"unknown-reuse-panel", Naming::reusePanel},
    {"unknown-event-template", Naming::eventTemplate},
    {"unknown-palette-color", Naming::color},
    {"unknown-palette-font", Naming::font},
};

}  // namespace

Naming kindNamedBy(const Finding& finding) {
    const auto* found = std::ranges::find(references, finding.rule.name,
                                          &std::pair<std::string_view, Naming>::first);
    return found == std::end(references) ? Naming::nothing : found->second;
}

KnownNames::KnownNames(const std::vector<NameUse>& names) {
    std::vector<std::set<std::string>> sorted;
    for (const NameUse& use : names) {
        const auto kind = static_cast<std::size_t>(use.row->names);
        if (sorted.size() <= kind)
            sorted.resize(kind + 1);
        if (use.row->defines)
            sorted[kind].insert(use.value);
    }
    for (const std::set<std::string>& kind : sorted)
        byKind_.emplace_back(kind.begin(), kind.end());
}

const std::vector<std::string>& KnownNames::of(Naming kind) const {
    static const std::vector<std::string> none;
    const auto at = static_cast<std::size_t>(kind);
    return at < byKind_.size() ? byKind_[at] : none;
}

bool KnownNames::contains(Naming kind, std::string_view name) const {
    return std::ranges::binary_search(of(kind), name);
}

std::optional<std::string> suggestionFor(const Found& found, const Loaded& /*loaded*/,
                                         const KnownNames& known) {
    if (found.suggestion)
        return found.suggestion;
    const Naming kind = kindNamedBy(found.finding);
    if (kind == Naming::nothing)
        return std::nullopt;
    const std::string_view meant = text::nearest(found.finding.value, known.of(kind));
    return meant.empty() || meant == found.finding.value ? std::nullopt
                                                         : std::optional<std::string>(meant);
}

}  // namespace yg
