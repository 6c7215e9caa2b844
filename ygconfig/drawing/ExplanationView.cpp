// SPDX-License-Identifier: MIT
#include "ygconfig/drawing/ExplanationView.h"

#include <algorithm>
#include <cstddef>
#include <limits>

#include "ygconfig/drawing/Display.h"

namespace yg::tool {

namespace {

/// A longer answer is left to the command that prints it.
constexpr std::ptrdiff_t mostLines = 14;

constexpr std::size_t indent = 9;  // behind "missing"
constexpr std::size_t leastWidth = 30;

std::string placeOf(const RootPlace& place) {
    return place.file + ":" + std::to_string(place.begin.line) + ":" +
           std::to_string(place.begin.column);
}

void addFolded(std::string& text, std::string_view line, std::size_t columns, std::size_t blanks) {
    for (const std::string& each :
         folded(printable(line), std::max(columns, blanks + leastWidth) - blanks, 0))
        text.append(blanks, ' ').append(each).append("\n");
}

/// Lines that each end with a line feed.
std::string printableLines(std::string_view lines) {
    std::string text;
    while (!lines.empty()) {
        const std::size_t end = std::min(lines.find('\n'), lines.size());
        text += printable(lines.substr(0, end)) + "\n";
        lines.remove_prefix(std::min(end + 1, lines.size()));
    }
    return text;
}

struct Shown {
    std::string_view word;
    Tone tone;
};

Shown shownOutcome(ExplanationStep::Outcome outcome) {
    switch (outcome) {
        case ExplanationStep::Outcome::taken:
            return {"taken", Tone::heading};
        case ExplanationStep::Outcome::lost:
            return {"lost", Tone::quiet};
        case ExplanationStep::Outcome::missing:
            return {"missing", Tone::error};
    }
    return {"", Tone::plain};
}

}  // namespace

std::string shownExplanation(const Explanation& explanation, std::string_view title,
                             std::string_view answer, std::string_view command,
                             const Paint& paint) {
    std::string text = paint(Tone::heading, printable(title)) + "\n";
    if (explanation.substitute) {
        std::string line = "Not found: the answer is " + *explanation.substitute +
                           (*explanation.substitute == "null" ? "." : ", a substitute.");
        if (explanation.nearest)
            line += " Nearest: '" + *explanation.nearest + "'.";
        for (const std::string& each :
             folded(printable(line), std::max(paint.columns(), leastWidth), 0))
            text += paint(Tone::error, each) + "\n";
    }
    if (explanation.substitute != "null") {
        if (std::ranges::count(answer, '\n') <= mostLines)
            text += printableLines(answer);
        else
            addFolded(text, "The answer is long: " + std::string(command) + " prints it.",
                      paint.columns(), 0);
    }
    for (const std::string& remark : explanation.remarks)
        addFolded(text, remark, paint.columns(), 0);
    if (explanation.from)
        text += "\nfrom     " + paint(Tone::page, printable(placeOf(*explanation.from))) + "\n";
    if (!explanation.steps.empty())
        text += "\n";
    for (const ExplanationStep& step : explanation.steps) {
        const auto [word, tone] = shownOutcome(step.outcome);
        text += paint(tone, word) + std::string(indent - word.size(), ' ') +
                paint(Tone::page, printable(placeOf(step.place))) + "\n";
        addFolded(text, step.place.message, paint.columns(), indent);
    }
    return text;
}

std::string shownTemplates(const std::vector<TemplateSignature>& templates, const Paint& paint) {
    std::string text;
    for (const TemplateSignature& signature : templates) {
        std::string name = signature.name;
        for (const TemplateSignature::Slot& slot : signature.slots)
            name += "-{" + slot.group.value_or("") + "}";
        const bool isMost = signature.pages == std::numeric_limits<std::uint64_t>::max();
        text += paint(Tone::page, printable(name)) + "  " + (isMost ? "more than " : "") +
                std::to_string(signature.pages) + (signature.pages == 1 ? " page  " : " pages  ") +
                paint(Tone::quiet, printable(placeOf(signature.place))) + "\n";
        for (const TemplateSignature::Slot& slot : signature.slots) {
            std::string line =
                slot.group ? "{" + *slot.group + "}" : std::string("a slot without a group");
            if (slot.arguments->empty()) {
                line += ": nothing serves it, so the slot stays open.";
            } else {
                for (std::size_t at = 0; at < slot.arguments->size(); ++at)
                    line += (at == 0 ? ": " : ", ") + (*slot.arguments)[at];
            }
            addFolded(text, line, paint.columns(), 4);
        }
    }
    return text;
}

}  // namespace yg::tool
