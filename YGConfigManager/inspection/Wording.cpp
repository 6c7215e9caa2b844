// SPDX-License-Identifier: MIT
#include "YGConfigManager/inspection/Wording.h"

#include <algorithm>
#include <iterator>

#include "YGConfigManager/inspection/Values.h"
#include "YGConfigManager/text/Utf8.h"

namespace yg {

namespace {

/// The beginning of a text, so that a message stays one that can be read.
std::string shortened(std::string_view text) {
    constexpr std::size_t most = 60;
    std::size_t at = 0;
    for (std::size_t count = 0; count < most && at < text.size(); ++count)
        at += text::firstCharacter(text.substr(at)).size;
    return std::string(text.substr(0, at)) + (at < text.size() ? "…" : "");
}

bool isXmlError(const Finding& finding) {
    return finding.element.empty() && finding.attribute.empty() && !finding.value.empty() &&
           finding.rule.name.starts_with("unreadable-");
}

/// The thing to look at, as it is written in the file.
std::string subjectOf(const Finding& finding) {
    if (!finding.attribute.empty()) {
        // Of a value the part concerned.
        const bool isEmptyValue =
            finding.rule.name.starts_with("unreachable-") || finding.rule.name == "empty-src";
        const bool isWhole =
            (finding.value.empty() && !isEmptyValue) || finding.rule.name == "unknown-attribute";
        std::string subject = finding.attribute;
        if (!isWhole)
            subject.append("=\"").append(shortened(finding.value)).append("\"");
        return subject;
    }
    if (finding.element == "#text")
        return std::string("\"").append(shortened(finding.value)).append("\"");
    if (finding.element == "#comment")
        return std::string("<!--").append(shortened(finding.value)).append("-->");
    if (!finding.element.empty())
        return std::string("<").append(shortened(finding.element)).append(">");
    return shortened(finding.value);
}

}  // namespace

std::string messageOf(const Found& found) {
    const Finding& finding = found.finding;
    if (!found.message.empty())
        return found.message;
    if (isXmlError(finding))
        return finding.value;
    const std::string subject = subjectOf(finding);
    const std::string sentence(finding.rule.meaning);
    return subject.empty() ? sentence : subject + ": " + sentence;
}

std::string readAs(const Found& found) {
    constexpr std::string_view rules[] = {"odd-flag", "odd-number", "number-out-of-range"};
    const Finding& finding = found.finding;
    if (std::ranges::find(rules, finding.rule.name) == std::end(rules))
        return "";
    const AttributeInfo* const row = attributeRow(finding.element, finding.attribute);
    return row ? readValue(*row, finding.value) : "";
}

}  // namespace yg
