// SPDX-License-Identifier: MIT
#include "YGConfigManager/inspection/Wording.h"

#include <algorithm>
#include <iterator>

#include "YGConfigManager/inspection/Values.h"
#include "YGConfigManager/text/Characters.h"
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

/// Whether the value is the text in the element.
bool isAboutAddress(const Finding& finding) {
    return finding.rule.name == "blanks-around-address" || finding.rule.name == "escaped-twice";
}

/// Whether the value is the name of what is missing.
bool isAboutLackOfAttribute(const Finding& finding) {
    constexpr std::string_view rules[] = {"missing-attribute", "incomplete-palette-key",
                                          "incomplete-server-entry"};
    return !finding.element.empty() && !finding.value.empty() &&
           std::ranges::find(rules, finding.rule.name) != std::end(rules);
}

bool isXmlError(const Finding& finding) {
    return finding.element.empty() && finding.attribute.empty() && !finding.value.empty() &&
           finding.rule.name.starts_with("unreadable-");
}

/// Whether the name concerns the finding, and not the value behind it.
bool isAboutName(const Finding& finding) {
    constexpr std::string_view rules[] = {"unknown-attribute", "unknown-member", "replaced-member",
                                          "unknown-host-member", "unused-mapping"};
    return std::ranges::find(rules, finding.rule.name) != std::end(rules);
}

/// The thing to look at, as it is written in the file.
std::string subjectOf(const Finding& finding) {
    if (!finding.attribute.empty()) {
        std::string subject = finding.attribute;
        const bool isEmptyValue =
            finding.rule.name.starts_with("unreachable-") || finding.rule.name == "empty-src";
        if ((finding.value.empty() && !isEmptyValue) || isAboutName(finding))
            return subject;
        if (finding.rule.name == "incomplete-contrast-pair")
            return subject.append(".").append(finding.value);
        // An object of a list, by its key.
        if (finding.element.empty() && subject.ends_with(']'))
            return subject.append(" (\"").append(shortened(finding.value)).append("\")");
        // Of a value the part concerned. In JSON it may be there with its quotes.
        const bool isJson = finding.element.empty() && finding.value.find_first_of("\"[{") == 0;
        return isJson ? subject.append(": ").append(shortened(finding.value))
                      : subject.append("=\"").append(shortened(finding.value)).append("\"");
    }
    if (finding.element == "#text" || isAboutAddress(finding))
        return std::string("\"")
            .append(shortened(text::withoutBlanksAround(finding.value)))
            .append("\"");
    if (isAboutLackOfAttribute(finding))
        return finding.value + " of <" + shortened(finding.element) + ">";
    if (finding.element == "#comment")
        return std::string("<!--").append(shortened(finding.value)).append("-->");
    if (!finding.element.empty())
        return std::string("<").append(shortened(finding.element)).append(">");
    return shortened(finding.value);
}

/// With a capital at its beginning, unless that is the name of an attribute or no plain word.
std::string asSentence(std::string message, std::string_view attribute) {
    constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyz";
    const std::size_t end = message.find_first_not_of(letters);
    if (end != 0 && end != std::string::npos && message[end] == ' ' &&
        std::string_view(message).substr(0, end) != attribute)
        message[0] = static_cast<char>(message[0] - 'a' + 'A');
    return message;
}

}  // namespace

std::string messageOf(const Found& found) {
    const Finding& finding = found.finding;
    if (!found.message.empty())
        return asSentence(found.message, finding.attribute);
    if (isXmlError(finding))
        return finding.value == "not a JSON object" ? "Write one JSON object; this is none."
                                                    : finding.value;
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
