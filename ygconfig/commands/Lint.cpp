// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "YGConfigManager/inspection/Inspection.h"

#include "ygconfig/commandline/Suggestion.h"
#include "ygconfig/commands/Commands.h"
#include "ygconfig/commands/Names.h"
#include "ygconfig/drawing/Display.h"
#include "ygconfig/files/Input.h"
#include "ygconfig/files/WriteOutput.h"
#include "ygconfig/lint/Baseline.h"
#include "ygconfig/lint/LintReport.h"
#include "ygconfig/lint/Rules.h"

namespace yg::tool {

namespace {

void declareLint(CLI::App& app, Arguments& arguments) {
    declareFormat(app, arguments);
    declareChoice(app, "--fail-on", "SEVERITY", arguments.failOn,
                  {"error", "warning", "info", "never"},
                  "the least severity for exit status 1: error, warning, info or never");
    declareText(app, "--baseline", "FILE", arguments.baseline,
                "known findings, which are not shown", anyFile);
    declareFlag(app, "--write-baseline", arguments.writeBaseline,
                "writes all findings to the baseline instead of showing them");
    declareFlag(app, "--rules", arguments.rules, "lists all rules instead");
    declareText(app, "--rule", "NAME", arguments.rule, "explains a rule instead",
                named({NameKind::rule}));
}

Answer unusable(const std::string& why) {
    return {"", ExitCode::unusable, "ygconfig lint: " + why};
}

std::optional<Severity> severityNamed(std::string_view name) {
    for (const Severity severity : {Severity::error, Severity::warning, Severity::info}) {
        if (nameOf(severity) == name)
            return severity;
    }
    return std::nullopt;
}

Answer showRules(const Session& session) {
    const Arguments& arguments = session.arguments;
    const bool isJson = arguments.format == "json";
    const Paint paint = session.paint();
    if (!isJson && arguments.format != "text")
        return unusable("--rules and --rule print text or json");
    if (!arguments.rule)
        return isJson ? listRulesAsJson() : listRules(paint);
    const Rule* const rule = ruleNamed(*arguments.rule);
    if (!rule)
        return unusable(printable("there is no rule '" + *arguments.rule + "'" +
                                  suggestion(*arguments.rule, ruleNames(session, {}))));
    return isJson ? explainRuleAsJson(*rule) : explainRule(*rule, paint, session.columns);
}

std::string baselinePathOf(const Arguments& arguments) {
    return arguments.baseline.value_or(arguments.inRoot(baselineName));
}

Answer writeBaseline(const Arguments& arguments, const LintReport& report) {
    const std::string path = baselinePathOf(arguments);
    const std::string text = baselineText(report);
    std::string error;
    if (!readBaseline(text, error))
        return unusable(printable(path) + " is not written: too many findings for a baseline");
    error = writeOutput(path, text);
    if (!error.empty())
        return {"", ExitCode::failed, "ygconfig lint: " + printable(path + ": " + error)};
    const std::size_t count = report.findings.size();
    return {printable(path) + ": " + std::to_string(count) +
            (count == 1 ? " finding\n" : " findings\n")};
}

/// How a file is named from the root.
std::string nameBelow(const std::string& root, const std::string& path) {
    std::error_code error;
    const auto whole = [&](const std::string& name) {
        return std::filesystem::absolute(name, error).lexically_normal();
    };
    return whole(path).lexically_proximate(whole(root + "/.")).string();
}

/// Why the baseline cannot be used; empty when it can, and when there is none.
std::string useBaseline(const Arguments& arguments, LintReport& report) {
    const std::string path = baselinePathOf(arguments);
    std::string text;
    if (const int error = readInput(path, text); error != 0)
        return error == ENOENT && !arguments.baseline ? "" : path + ": " + std::strerror(error);
    std::string error;
    const auto entries = readBaseline(text, error);
    if (!entries)
        return path + ":" + error;
    hideKnown(*entries, nameBelow(arguments.root, path), report);
    return "";
}

Answer shown(const Session& session, LintReport found) {
    const bool isFailed = std::ranges::any_of(
        found.findings, [&](const RootFinding* each) { return isFailure(found, *each); });
    const ExitCode exitCode = isFailed ? ExitCode::noAnswer : ExitCode::answer;
    const auto report = std::make_shared<const LintReport>(std::move(found));
    const std::string& format = session.arguments.format;
    if (format == "text")
        return {[report, paint = session.paint(), width = session.columns](Output& output) {
                    writeText(*report, paint, width, output);
                },
                exitCode};
    const auto write = format == "json"     ? writeJson
                       : format == "sarif"  ? writeSarif
                       : format == "github" ? writeGitHub
                                            : writeJUnit;
    return {[report, write](Output& output) { write(*report, output); }, exitCode};
}

LintReport reportOf(const Session& session, std::shared_ptr<const Inspection> inspection) {
    LintReport report{session.arguments.root, std::move(inspection)};
    report.failOn = severityNamed(session.arguments.failOn);
    for (const RootFinding& finding : report.inspection->findings())
        report.findings.push_back(&finding);
    return report;
}

Answer lint(const Session& session) {
    const Arguments& arguments = session.arguments;
    if (arguments.rules || arguments.rule)
        return showRules(session);
    std::string error;
    const auto inspection = Inspection::open(arguments.root, error);
    if (!inspection)
        return {"", ExitCode::unusable, "ygconfig: " + printable(error)};
    LintReport report = reportOf(session, inspection);
    if (arguments.writeBaseline)
        return writeBaseline(arguments, report);
    error = useBaseline(arguments, report);
    if (!error.empty())
        return unusable(printable(error));
    return shown(session, std::move(report));
}

constexpr std::string_view lintNotes =
    "Exit status: 0 nothing of the severity of --fail-on (error, if not given) or above was "
    "found,\n"
    "1 something was, 2 lint cannot run: ROOT is not a folder, an option is wrong, or the "
    "baseline\n"
    "cannot be read. A host.json that cannot be used is a finding like others.\n\n"
    "--write-baseline writes ROOT/lint_baseline.json, or the FILE of --baseline. From then on its\n"
    "findings are not shown and do not count; entries that match nothing any more are reported.\n"
    "ROOT/lint_baseline.json is read whenever there is one and --baseline names no other.\n\n"
    "--rules and --rule print JSON with --format json.\n";

constexpr Command table[] = {
    {"lint", "looks through the whole root for mistakes",
     "  ygconfig lint --root examples/terminal\n"
     "  ygconfig lint --root examples/terminal --format json --fail-on warning\n"
     "  ygconfig lint --rule unknown-attribute\n",
     lintNotes, declareLint, lint, false},
};

}  // namespace

void declareFormat(CLI::App& app, Arguments& arguments) {
    declareChoice(app, "--format", "FORMAT", arguments.format,
                  {"text", "json", "sarif", "github", "junit"},
                  "text, json, sarif, github or junit; text if not given");
}

Answer findingsAnswer(const Session& session, std::shared_ptr<const Inspection> inspection) {
    return shown(session, reportOf(session, std::move(inspection)));
}

NameList ruleNames(const Session&, NameGroups) {
    NameList names;
    for (const Rule& each : rules())
        names.emplace_back(each.name);
    return names;
}

std::span<const Command> lintCommands() {
    return table;
}

}  // namespace yg::tool
