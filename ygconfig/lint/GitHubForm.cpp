// SPDX-License-Identifier: MIT
#include <filesystem>

#include "ygconfig/drawing/Display.h"
#include "ygconfig/lint/LintReport.h"

namespace yg::tool {

namespace {

/// A text as workflow commands take it; in a property two more characters have a meaning.
std::string escaped(std::string_view text, bool isProperty) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string out;
    const auto addPrintable = [&](std::string_view part) {
        for (const char each : printable(part)) {
            if (each == '%' || (isProperty && (each == ':' || each == ',')))
                out.append({'%', digits[static_cast<unsigned char>(each) / 16],
                            digits[static_cast<unsigned char>(each) % 16]});
            else
                out += each;
        }
    };
    while (true) {
        const std::size_t at = text.find_first_of("\r\n");
        addPrintable(text.substr(0, at));
        if (at == std::string_view::npos)
            return out;
        out += text[at] == '\n' ? "%0A" : "%0D";
        text.remove_prefix(at + 1);
    }
}

std::string_view commandOf(Severity severity) {
    return severity == Severity::info ? "notice" : nameOf(severity);
}

}  // namespace

void writeGitHub(const LintReport& report, Output& output) {
    const std::filesystem::path root(report.root);
    for (const RootFinding* finding : report.findings) {
        std::string line = "::";
        const auto add = [&](std::string_view name, const std::string& value) {
            line.append(line.ends_with(' ') ? "" : ",").append(name).append("=").append(value);
        };
        line.append(commandOf(finding->rule->severity)).append(" ");
        add("file", escaped((root / finding->file).lexically_normal().string(), true));
        add("line", std::to_string(finding->begin.line));
        // Columns are for annotations of one line.
        const bool isOneLine = finding->begin.line == finding->end.line;
        if (isOneLine)
            add("col", std::to_string(finding->begin.column));
        add("endLine", std::to_string(finding->end.line));
        if (isOneLine)
            add("endColumn", std::to_string(finding->end.column));
        add("title", escaped(finding->rule->name, true));
        std::string message = finding->message;
        for (const std::string& detail : detailsOf(*finding))
            message += "\n" + detail;
        output.add(line + "::" + escaped(message, false) + "\n");
    }
}

}  // namespace yg::tool
