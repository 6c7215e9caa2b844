// SPDX-License-Identifier: MIT
#include <algorithm>

#include "YGConfigManager/diagnostics/RuleTable.h"

namespace yg {

std::span<const Rule> rules() {
    return ruleTable;
}

const Rule* ruleNamed(OptionalText name) {
    const auto* found = std::ranges::find(ruleTable, *name, &Rule::name);
    return found == ruleTable.end() ? nullptr : found;
}

}  // namespace yg
