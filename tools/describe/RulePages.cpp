// SPDX-License-Identifier: MIT
#include <span>
#include <utility>

#include "YGConfigManager/diagnostics/RuleTable.h"

#include "describe/Describe.h"
#include "describe/Words.h"

namespace yg::describe {

namespace {

/// A part of the table of rules, which gets a page.
struct Subject {
    std::string_view id;
    std::string_view title;
    std::span<const Rule> rules;
};

const Subject subjects[] = {
    {"common", "Rules of all formats", commonRules},
    {"layout", "Rules of pages", layoutRules},
    {"events", "Rules of events and commands", eventRules},
    {"palette", "Rules of palettes", paletteRules},
    {"servers", "Rules of servers", serverRules},
    {"settings", "Rules of settings, web pages, request URLs and the host", settingsRules},
};

std::string_view nameOf(Severity severity) {
    return severity == Severity::error     ? "error"
           : severity == Severity::warning ? "warning"
                                           : "info";
}

std::string begun(std::string_view title) {
    std::string text = "<!-- ";
    return text.append(generatedNote).append(" -->\n# ").append(title).append("\n");
}

/// A file in a block of code.
std::string block(std::string_view file, std::string_view content) {
    std::string text = "\n```";
    text.append(content.starts_with('<') ? "xml" : file.ends_with(".xml") ? "text" : "json");
    text.append("\n").append(content);
    return text.append(content.ends_with('\n') ? "```\n" : "\n```\n");
}

std::string section(const Rule& rule) {
    std::string text = "\n## ";
    text.append(rule.name).append("\n\n**").append(nameOf(rule.severity)).append("**: ");
    text.append(rule.meaning).append("\n");
    if (!rule.explanation.empty())
        text.append("\n").append(rule.explanation).append("\n");
    if (rule.before.empty())
        return text;
    text.append("\n`").append(rule.file).append("`, before:\n");
    text.append(block(rule.file, rule.before)).append("\nAfter:\n");
    text.append(block(rule.file, rule.after));
    if (!rule.besideFile.empty())
        text.append("\nWith `")
            .append(rule.besideFile)
            .append("`:\n")
            .append(block(rule.besideFile, rule.beside));
    return text;
}

constexpr std::string_view introduction = R"(
What `ygconfig lint` finds. Each rule has a name that stays, which `ygconfig lint --rule NAME` explains as
the pages here do. [How to run it](../lint.md).

- **error**: what is written is lost, unreachable, or read as something else than it says.
- **warning**: likely to be a mistake.
- **info**: worth knowing; it may be meant.
)";

}  // namespace

std::vector<GeneratedFile> rulePages() {
    std::vector<GeneratedFile> files;
    std::string index = begun("Rules").append(introduction);
    for (const Subject& subject : subjects) {
        const std::string file = std::string(subject.id) + ".md";
        std::string page = begun(subject.title);
        index.append("\n## [").append(subject.title).append("](").append(file);
        index.append(")\n\n| Rule | Severity | Meaning |\n|---|---|---|\n");
        for (const Rule& rule : subject.rules) {
            page.append(section(rule));
            index.append("| [").append(rule.name).append("](").append(file).append("#");
            index.append(rule.name).append(") | ").append(nameOf(rule.severity)).append(" | ");
            for (const char each : rule.meaning)
                index.append(each == '|' ? "\\|" : std::string(1, each));
            index.append(" |\n");
        }
        files.push_back({"docs/rules/" + file, std::move(page)});
    }
    files.push_back({"docs/rules/index.md", std::move(index)});
    return files;
}

}  // namespace yg::describe
