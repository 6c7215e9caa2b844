// SPDX-License-Identifier: MIT
//
// The rules themselves, as `lint --rules` and `lint --rule` print them.
#pragma once

#include <cstddef>

#include "YGConfigManager/diagnostics/Rule.h"

#include "ygconfig/Answer.h"
#include "ygconfig/drawing/Paint.h"

namespace yg::tool {

/// All rules with their severity, a line for each; as JSON {"rules": […]}.
Answer listRules(const Paint& paint);
Answer listRulesAsJson();

/// One rule with its explanation and its example, in lines of at most `width` columns but for the
/// example; as JSON an object.
Answer explainRule(const Rule& rule, const Paint& paint, std::size_t width);
Answer explainRuleAsJson(const Rule& rule);

}  // namespace yg::tool
