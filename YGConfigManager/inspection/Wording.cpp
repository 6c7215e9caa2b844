// SPDX-License-Identifier: MIT
#include "YGConfigManager/inspection/Wording.h"

namespace yg {

std::string messageOf(const Found& found) {
    const Finding& finding = found.finding;
    const std::string sentence =
        found.message.empty() ? std::string(finding.rule.meaning) : found.message;
    const std::string& subject = finding.attribute.empty() ? finding.value : finding.attribute;
    return subject.empty() || !found.message.empty() ? sentence : "'" + subject + "': " + sentence;
}

std::string readAs(const Found& /*found*/) {
    return "";
}

}  // namespace yg
