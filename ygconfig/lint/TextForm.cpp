// SPDX-License-Identifier: MIT
#include <algorithm>
#include <string>
#include <utility>

#include "ygconfig/drawing/Display.h"
#include "ygconfig/lint/LintReport.h"
#include "ygconfig/lint/SourceLines.h"

namespace yg::tool {

namespace {

constexpr std::size_t tabWidth = 4;
constexpr std::size_t leastWidth = 20;  // of what is shown of a line
constexpr std::string_view cut = "…";

/// One character as it is shown.
struct Cell {
    std::string text;
    std::size_t width;
};

Cell cellOf(std::string_view character, std::size_t column) {
    if (character == "\t") {
        const std::size_t width = tabWidth - column % tabWidth;
        return {std::string(width, ' '), width};
    }
    std::string text = printable(character);
    const std::size_t width = displayWidth(text);
    return {std::move(text), width};
}

struct MarkedLine {
    std::string line;
    std::string mark;
};

/// The part of a line around what is between the two offsets, in at most `width` columns. Takes no
/// longer for a longer line.
MarkedLine markedLine(std::string_view line, std::size_t begin, std::size_t end,
                      std::size_t width) {
    const std::size_t mostCharacters = 4 * width;  // combining ones take no column

    // The first character of at most `columns` columns in front of the mark.
    const auto startFor = [&](std::size_t columns) {
        std::size_t start = begin;
        std::size_t used = 0;
        for (std::size_t count = 0; start > 0 && count < mostCharacters; ++count) {
            const std::size_t before = offsetBefore(line, start);
            const std::string_view character = line.substr(before, start - before);
            used += character == "\t" ? tabWidth : cellOf(character, 0).width;
            if (used > columns)
                break;
            start = before;
        }
        return start;
    };
    // The columns behind the beginning of the mark, as far as they matter.
    const auto widthTo = [&](std::size_t to) {
        std::size_t columns = 0;
        std::size_t at = begin;
        for (std::size_t count = 0; at < to && columns < width && count < mostCharacters; ++count) {
            const std::size_t next = offsetAfter(line, at, 1);
            columns += cellOf(line.substr(at, next - at), 0).width;
            at = next;
        }
        return std::clamp<std::size_t>(columns, 1, width);
    };
    // The line from its beginning if that shows the mark; otherwise a third of the width is in
    // front of the mark, more where the line ends before the width does.
    std::size_t start = startFor(width - widthTo(end));
    if (start > 0)
        start = startFor(std::max(width / 3, width - widthTo(line.size())) - 1);

    MarkedLine shown;
    std::size_t column = 0;
    std::size_t markAt = 0;
    std::size_t markTo = 0;
    const auto append = [&](const Cell& cell) {
        shown.line += cell.text;
        column += cell.width;
    };
    if (start > 0)
        append({std::string(cut), 1});
    // Behind `fits` there would be no room for the sign that the line is cut.
    std::size_t fits = 0;
    std::size_t fitsColumn = 0;
    std::size_t at = start;
    for (std::size_t count = 0; at < line.size() && count < mostCharacters; ++count) {
        const std::size_t next = offsetAfter(line, at, 1);
        const Cell cell = cellOf(line.substr(at, next - at), column);
        if (column + cell.width > width)
            break;
        if (column < width) {
            fits = shown.line.size();
            fitsColumn = column;
        }
        if (at <= begin)
            markAt = column;
        append(cell);
        if (at < end)
            markTo = column;
        at = next;
    }
    if (at < line.size()) {
        if (column >= width) {
            shown.line.resize(fits);
            column = fitsColumn;
        }
        append({std::string(cut), 1});
        markTo = std::min(markTo, column);
    }
    if (begin >= at && at == line.size())
        markAt = column;  // behind the last character
    shown.mark = std::string(markAt, ' ') + '^';
    if (markTo > markAt + 1)
        shown.mark.append(markTo - markAt - 1, '~');
    return shown;
}

bool isAboutWholeFile(const RootFinding& finding) {
    constexpr TextPoint beginning{1, 1};
    return finding.begin == beginning && finding.end == beginning;
}

class TextForm {
public:
    TextForm(const LintReport& report, const Paint& paint, std::size_t width)
        : paint_(paint), width_(width), lines_(*report.inspection) {}

    std::string shown(const RootFinding& finding) {
        const Tone tone = toneOf(finding.rule->severity);
        std::string rule("[");
        rule.append(finding.rule->name).append("]");
        std::string text =
            paint_(Tone::page, placeOf(printable(finding.file), finding.begin).append(":"));
        text.append(" ")
            .append(paint_(tone, std::string(nameOf(finding.rule->severity)).append(":")))
            .append(" ")
            .append(printable(finding.message))
            .append(" ")
            .append(paint_(Tone::quiet, rule))
            .append("\n");
        std::string number = std::to_string(finding.begin.line);
        number.insert(0, number.size() < gutter ? gutter - number.size() : 0, ' ');
        const std::size_t indent = number.size() + bar.size();
        if (!isAboutWholeFile(finding) && lines_.goTo(finding.file, finding.begin.line) &&
            !lines_.text().empty()) {
            const MarkedLine line =
                markedLineOf(finding, std::max(width_, indent + leastWidth) - indent);
            text.append(paint_(Tone::quiet, number.append(bar))).append(line.line).append("\n");
            number.assign(indent - bar.size(), ' ');
            text.append(paint_(Tone::quiet, number.append(bar)))
                .append(paint_(tone, line.mark))
                .append("\n");
        }
        for (const std::string& detail : detailsOf(finding)) {
            for (const std::string& line :
                 folded(printable(detail), std::max(width_, indent + leastWidth) - indent))
                text.append(indent, ' ').append(line).append("\n");
        }
        return text;
    }

private:
    static constexpr std::size_t gutter = 5;
    static constexpr std::string_view bar = " | ";

    /// In the line that `lines_` is at.
    MarkedLine markedLineOf(const RootFinding& finding, std::size_t width) {
        const std::size_t begin = lines_.offsetOf(finding.begin.column);
        // What goes on in the next line is marked to the end of this one.
        const std::size_t end =
            finding.end.line > finding.begin.line
                ? lines_.text().size()
                : offsetAfter(lines_.text(), begin, finding.end.column - finding.begin.column);
        return markedLine(lines_.text(), begin, end, width);
    }

    const Paint& paint_;
    std::size_t width_;
    SourceLines lines_;
};

std::string counted(std::size_t count, std::string_view one, std::string_view several) {
    return std::to_string(count).append(" ").append(count == 1 ? one : several);
}

/// "2 errors, 1 warning, 14 infos in 3 files".
std::string summaryOf(const LintReport& report) {
    std::string summary;
    const auto add = [&](std::size_t count, std::string_view one, std::string_view several) {
        if (count > 0)
            summary += (summary.empty() ? "" : ", ") + counted(count, one, several);
    };
    add(countOf(report, Severity::error), "error", "errors");
    add(countOf(report, Severity::warning), "warning", "warnings");
    add(countOf(report, Severity::info), "info", "infos");
    std::size_t files = 0;
    const std::string* last = nullptr;
    for (const RootFinding* finding : report.findings) {
        files += !last || *last != finding->file;
        last = &finding->file;
    }
    summary = report.findings.empty() ? "no findings"
                                      : summary + " in " + counted(files, "file", "files");
    if (report.hidden > 0)
        summary += "; " + std::to_string(report.hidden) + " more in the baseline";
    return summary;
}

}  // namespace

void writeText(const LintReport& report, const Paint& paint, std::size_t width, Output& output) {
    TextForm form(report, paint, width);
    for (const RootFinding* finding : report.findings)
        output.add(form.shown(*finding));
    output.add(summaryOf(report) + "\n");
}

}  // namespace yg::tool
