// SPDX-License-Identifier: MIT
//
// The one table of rules; rules/ has its parts. Internal: applications walk it by Rule.h.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>
#include <utility>

#include "YGConfigManager/diagnostics/Rule.h"
#include "YGConfigManager/diagnostics/rules/CommonRules.h"
#include "YGConfigManager/diagnostics/rules/EventRules.h"
#include "YGConfigManager/diagnostics/rules/FileRules.h"
#include "YGConfigManager/diagnostics/rules/LayoutRules.h"
#include "YGConfigManager/diagnostics/rules/PaletteRules.h"
#include "YGConfigManager/diagnostics/rules/ServerRules.h"
#include "YGConfigManager/diagnostics/rules/SettingsRules.h"

namespace yg {

template <std::size_t... sizes>
consteval auto joined(const Rule (&... parts)[sizes]) {
    return [&]<std::size_t... at>(std::index_sequence<at...>) {
        const Rule* const begins[] = {parts...};
        constexpr std::size_t counts[] = {sizes...};
        const auto rule = [&](std::size_t index) {
            std::size_t part = 0;
            for (; index >= counts[part]; ++part)
                index -= counts[part];
            return begins[part][index];
        };
        return std::array{rule(at)...};
    }
    (std::make_index_sequence<(sizes + ...)>());
}

/// Those that every file format shares come first.
inline constexpr auto ruleTable = joined(commonRules, fileRules, layoutRules, eventRules,
                                         paletteRules, serverRules, settingsRules);

/// The name of a rule where it is compiled.
template <std::size_t size>
struct RuleName {
    consteval RuleName(const char (&name)[size]) { std::copy_n(name, size, text); }
    char text[size];
};

/// "unknown-attribute"_rule is that rule; a name that is not in the table does not compile.
template <RuleName name>
constexpr const Rule& operator""_rule() {
    constexpr const Rule* rule =
        std::ranges::find(ruleTable, std::string_view(name.text), &Rule::name);
    static_assert(rule != ruleTable.end(), "no such rule");
    return *rule;
}

}  // namespace yg
