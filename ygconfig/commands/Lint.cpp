// SPDX-License-Identifier: MIT
#include <memory>
#include <string>

#include "YGConfigManager/inspection/Inspection.h"

#include "ygconfig/commands/Commands.h"
#include "ygconfig/drawing/Display.h"

namespace yg::tool {

namespace {

std::string_view nameOf(Severity severity) {
    return severity == Severity::error     ? "error"
           : severity == Severity::warning ? "warning"
                                           : "info";
}

Answer lint(const Session& session) {
    std::string error;
    const auto inspection = Inspection::open(session.arguments.root, error);
    if (!inspection)
        return {"", ExitCode::unusable, "ygconfig: " + printable(error)};
    return findingsAnswer(*inspection);
}

constexpr Command table[] = {
    {"lint", "looks through the whole root for mistakes",
     "  ygconfig lint --root examples/terminal\n", "", nullptr, lint, false},
};

}  // namespace

Answer findingsAnswer(const Inspection& inspection) {
    std::string text;
    bool isClean = true;
    for (const RootFinding& finding : inspection.findings()) {
        isClean = isClean && finding.rule->severity != Severity::error;
        text += printable(finding.file) + ":" + std::to_string(finding.begin.line) + ":" +
                std::to_string(finding.begin.column) + ": " +
                std::string(nameOf(finding.rule->severity)) + ": " + printable(finding.message) +
                " [" + std::string(finding.rule->name) + "]\n";
        if (finding.suggestion)
            text += "    nearest: " + printable(*finding.suggestion) + "\n";
    }
    return {text, isClean ? ExitCode::answer : ExitCode::noAnswer};
}

std::span<const Command> lintCommands() {
    return table;
}

}  // namespace yg::tool
