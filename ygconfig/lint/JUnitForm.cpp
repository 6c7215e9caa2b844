// SPDX-License-Identifier: MIT
#include <algorithm>

#include "YGConfigManager/text/Controls.h"
#include "YGConfigManager/text/Utf8.h"

#include "ygconfig/lint/LintReport.h"

namespace yg::tool {

namespace {

/// The text as XML holds it, in an attribute as well. What XML cannot hold becomes U+FFFD.
std::string xmlText(std::string_view text) {
    std::string out;
    while (!text.empty()) {
        const text::Character character = text::firstCharacter(text);
        const char32_t value = character.value;
        if (value == '&')
            out += "&amp;";
        else if (value == '<')
            out += "&lt;";
        else if (value == '>')
            out += "&gt;";
        else if (value == '"')
            out += "&quot;";
        else if (value == '\n')
            out += "&#10;";
        else if (!character.isValid || text::isControl(value) || value == 0xFFFE || value == 0xFFFF)
            out += "\xEF\xBF\xBD";
        else
            out += text.substr(0, character.size);
        text.remove_prefix(character.size);
    }
    return out;
}

std::string attribute(std::string_view name, std::string_view value) {
    return std::string(" ").append(name).append("=\"").append(xmlText(value)).append("\"");
}

std::string testOf(const LintReport& report, const RootFinding& finding) {
    std::string whole = placeOf(finding.file, finding.begin) + ": " +
                        std::string(nameOf(finding.rule->severity)) + ": " + finding.message;
    for (const std::string& detail : detailsOf(finding))
        whole += "\n" + detail;
    const std::string place =
        std::to_string(finding.begin.line) + ":" + std::to_string(finding.begin.column) + " ";
    std::string text = "  <testcase" + attribute("classname", finding.file) +
                       attribute("name", place + std::string(finding.rule->name)) + ">\n    ";
    if (isFailure(report, finding))
        text += "<failure" + attribute("type", finding.rule->name) +
                attribute("message", finding.message) + ">" + xmlText(whole) + "</failure>";
    else
        text += "<system-out>" + xmlText(whole) + "</system-out>";
    return text + "\n  </testcase>\n";
}

}  // namespace

void writeJUnit(const LintReport& report, Output& output) {
    const auto failures = std::ranges::count_if(
        report.findings, [&](const RootFinding* each) { return isFailure(report, *each); });
    // A suite without a test is an error to some readers.
    const std::size_t tests = std::max<std::size_t>(report.findings.size(), 1);
    output.add("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuite" +
               attribute("name", "ygconfig lint") + attribute("tests", std::to_string(tests)) +
               attribute("failures", std::to_string(failures)) + attribute("errors", "0") +
               attribute("skipped", "0") + ">\n");
    for (const RootFinding* finding : report.findings)
        output.add(testOf(report, *finding));
    if (report.findings.empty())
        output.add("  <testcase" + attribute("classname", "ygconfig lint") +
                   attribute("name", "no findings") + "/>\n");
    output.add("</testsuite>\n");
}

}  // namespace yg::tool
