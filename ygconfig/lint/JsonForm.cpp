// SPDX-License-Identifier: MIT
#include "ygconfig/json/Json.h"
#include "ygconfig/lint/LintReport.h"

namespace yg::tool {

namespace {

void writeOptional(JsonWriter& writer, std::string_view name,
                   const std::optional<std::string>& text) {
    if (text)
        writer.member(name, *text);
}

void writeRelated(JsonWriter& writer, const RootPlace& place) {
    writer.object([&] {
        writer.member("file", place.file);
        writer.member("line", place.begin.line);
        writer.member("column", place.begin.column);
        writer.member("message", place.message);
    });
}

void writeFinding(JsonWriter& writer, const RootFinding& finding) {
    writer.object([&] {
        writer.member("rule", finding.rule->name);
        writer.member("severity", nameOf(finding.rule->severity));
        writer.member("file", finding.file);
        writer.member("line", finding.begin.line);
        writer.member("column", finding.begin.column);
        writer.member("endLine", finding.end.line);
        writer.member("endColumn", finding.end.column);
        writer.member("message", finding.message);
        writeOptional(writer, "attribute", finding.attribute);
        writeOptional(writer, "value", finding.value);
        writeOptional(writer, "suggestion", finding.suggestion);
        writer.member("related", [&] {
            writer.list(finding.related,
                        [&](const RootPlace& place) { writeRelated(writer, place); });
        });
        writer.member("consequences", finding.consequences);
    });
}

}  // namespace

void writeJson(const LintReport& report, Output& output) {
    JsonWriter writer(output);
    writer.object([&] {
        writer.member("findings", [&] {
            writer.list(report.findings,
                        [&](const RootFinding* finding) { writeFinding(writer, *finding); });
        });
        writer.member("summary", [&] {
            writer.object([&] {
                for (const Severity severity : {Severity::error, Severity::warning, Severity::info})
                    writer.member(nameOf(severity), countOf(report, severity));
            });
        });
    });
    writer.finish();
}

}  // namespace yg::tool
