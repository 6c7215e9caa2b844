// SPDX-License-Identifier: MIT
#include "ygconfig/lint/Rules.h"

#include <algorithm>
#include <string>

#include "ygconfig/drawing/Display.h"
#include "ygconfig/json/Json.h"
#include "ygconfig/lint/LintReport.h"

namespace yg::tool {

namespace {

std::string_view nameOf(Handling handling) {
    switch (handling) {
        case Handling::dropped:
            return "dropped";
        case Handling::replaced:
            return "replaced";
        case Handling::defaulted:
            return "defaulted";
        case Handling::unresolved:
            return "unresolved";
        case Handling::kept:
            return "kept";
    }
    return "";
}

void writeSummary(JsonWriter& writer, const Rule& rule) {
    writer.member("rule", rule.name);
    writer.member("severity", tool::nameOf(rule.severity));
    writer.member("handling", nameOf(rule.handling));
    writer.member("meaning", rule.meaning);
}

/// A file of an example, each line behind four blanks.
std::string indented(std::string_view text) {
    std::string lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        lines.append("    ").append(text.substr(0, end)).append("\n");
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

std::string filled(std::string_view text, std::size_t width) {
    std::string lines;
    for (const std::string& line : folded(text, width, 0))
        lines.append(line).append("\n");
    return lines;
}

}  // namespace

Answer listRules(const Paint& paint) {
    std::size_t widest = 0;
    for (const Rule& rule : rules())
        widest = std::max(widest, rule.name.size());
    std::string text;
    for (const Rule& rule : rules()) {
        const std::string_view severity = tool::nameOf(rule.severity);
        text.append(paint(toneOf(rule.severity), severity))
            .append(9 - severity.size(), ' ')
            .append(paint(Tone::page, rule.name))
            .append(widest + 2 - rule.name.size(), ' ')
            .append(rule.meaning)
            .append("\n");
    }
    return {text};
}

Answer listRulesAsJson() {
    return {[](Output& output) {
        JsonWriter writer(output);
        writer.object([&] {
            writer.member("rules", [&] {
                writer.list(rules(), [&](const Rule& rule) {
                    writer.object([&] { writeSummary(writer, rule); });
                });
            });
        });
        writer.finish();
    }};
}

Answer explainRule(const Rule& rule, const Paint& paint, std::size_t width) {
    std::string text = paint(Tone::page, rule.name) + ": " +
                       paint(toneOf(rule.severity), tool::nameOf(rule.severity)) + "\n" +
                       filled(rule.meaning, width);
    if (!rule.explanation.empty())
        text.append("\n").append(filled(rule.explanation, width));
    const auto example = [&](std::string_view file, std::string_view when,
                             std::string_view content) {
        if (!file.empty())
            text.append("\n").append(file).append(when).append(":\n").append(indented(content));
    };
    example(rule.file, ", before", rule.before);
    example(rule.file, ", after", rule.after);
    example(rule.besideFile, ", which stays", rule.beside);
    return {text};
}

Answer explainRuleAsJson(const Rule& rule) {
    return {[&rule](Output& output) {
        JsonWriter writer(output);
        writer.object([&] {
            writeSummary(writer, rule);
            writer.member("explanation", rule.explanation);
            if (!rule.file.empty()) {
                writer.member("file", rule.file);
                writer.member("before", rule.before);
                writer.member("after", rule.after);
            }
            if (!rule.besideFile.empty()) {
                writer.member("besideFile", rule.besideFile);
                writer.member("beside", rule.beside);
            }
        });
        writer.finish();
    }};
}

}  // namespace yg::tool
