// SPDX-License-Identifier: MIT
//
// What an author probably meant. Internal. Throws std::bad_alloc.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/inspection/Gathering.h"
#include "YGConfigManager/inspection/Loaded.h"

namespace yg {

/// What a finding's value names; Naming::nothing when it names nothing that could be looked up.
Naming kindNamedBy(const Finding& finding);

/// The names of each kind that the files define.
class KnownNames {
public:
    explicit KnownNames(const std::vector<NameUse>& names);

    const std::vector<std::string>& of(Naming kind) const;
    bool contains(Naming kind, std::string_view name) const;

private:
    std::vector<std::vector<std::string>> byKind_;
};

/// A text that can stand in the place of the one that the finding is about; absent without one.
std::optional<std::string> suggestionFor(const Found& found, const Loaded& loaded,
                                         const KnownNames& known);

}  // namespace yg
