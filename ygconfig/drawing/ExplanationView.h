// SPDX-License-Identifier: MIT
//
// An explanation as text for people: the answer, where it is written, and each step on the way.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/inspection/Explanation.h"

#include "ygconfig/drawing/Paint.h"

namespace yg::tool {

/// What the legend of a help says of the text.
inline constexpr std::string_view explanationLegend =
    "First comes the answer, as the look-up gives it; when it is a substitute, this is said. Then "
    "the\n"
    "place that it is written in, and the steps: the answer goes through what is \"taken\", would "
    "be "
    "the\n"
    "same without what \"lost\", and would need what is \"missing\".\n\n"
    "Exit status: 0 with an answer, 1 when it is null or a substitute, 2 explain cannot run.\n";

/// `answer` is the answer as JSON, with its last line feed; `command` prints it when it is long.
std::string shownExplanation(const Explanation& explanation, std::string_view title,
                             std::string_view answer, std::string_view command, const Paint& paint);

std::string shownTemplates(const std::vector<TemplateSignature>& templates, const Paint& paint);

}  // namespace yg::tool
