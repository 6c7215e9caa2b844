// SPDX-License-Identifier: MIT
#include <algorithm>
#include <sstream>

#include "YGConfigManager/version.h"

#include "manual/Manual.h"

namespace yg::manual {

namespace {

using tool::Command;
using tool::CommandUsage;
using tool::OperandUsage;
using tool::OptionUsage;

/// The text as roff shows it, character for character.
std::string escaped(std::string_view text) {
    // A line that begins so would be a request.
    std::string roff = text.starts_with('.') ? "\\&" : "";
    for (const char each : text) {
        switch (each) {
            case '\\':
                roff += "\\e";
                break;
            case '-':
                roff += "\\-";
                break;
            case '\'':
                roff += "\\(aq";
                break;
            case '`':
                roff += "\\(ga";
                break;
            case '^':
                roff += "\\(ha";
                break;
            case '~':
                roff += "\\(ti";
                break;
            case '"':
                roff += "\\(dq";
                break;
            default:
                roff += each;
        }
    }
    return roff;
}

std::string inFont(const char* font, std::string_view text) {
    std::string roff = font;
    return roff.append(escaped(text)).append("\\fR");
}

std::string bold(std::string_view text) {
    return inFont("\\fB", text);
}

std::string italic(std::string_view text) {
    return inFont("\\fI", text);
}

std::string upper(std::string text) {
    for (char& each : text) {
        if (each >= 'a' && each <= 'z')
            each = static_cast<char>(each - 'a' + 'A');
    }
    return text;
}

std::string nameOf(const Command& command) {
    return command.words.empty() ? "ygconfig" : "ygconfig " + std::string(command.words);
}

/// "ygconfig-dump", the page that holds the command.
std::string pageOf(const Command& command) {
    const std::string_view first = command.words.substr(0, command.words.find(' '));
    return first.empty() ? "ygconfig" : "ygconfig-" + std::string(first);
}

bool isAlone(const Command& command) {
    return command.words.find(' ') == std::string_view::npos;
}

std::vector<std::string> linesOf(std::string_view text) {
    std::vector<std::string> lines;
    std::istringstream stream{std::string(text)};
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

/// Whether lines up to the next empty one are a table, whose columns must stay below each other.
bool isTable(std::span<const std::string> lines) {
    return std::ranges::any_of(lines.begin(), std::ranges::find(lines, ""),
                               [](const std::string& line) { return line.starts_with(' '); });
}

/// Text as help shows it: paragraphs, and tables whose lines stay as they are.
std::string flowing(std::string_view text) {
    std::string roff;
    const std::vector<std::string> lines = linesOf(text);
    for (std::size_t i = 0; i < lines.size();) {
        const auto end = static_cast<std::size_t>(
            std::find(lines.begin() + static_cast<std::ptrdiff_t>(i), lines.end(), "") -
            lines.begin());
        const std::span<const std::string> paragraph(lines.data() + i, end - i);
        const bool keepsLines = isTable(paragraph);
        roff += i == 0 ? "" : ".PP\n";
        roff += keepsLines ? ".nf\n" : "";
        for (const std::string& line : paragraph)
            roff += escaped(line) + "\n";
        roff += keepsLines ? ".fi\n" : "";
        i = end + 1;
    }
    return roff;
}

constexpr std::string_view mark = "Exit status: ";

/// The notes without what they say of the exit status, or that alone; it has a section of
/// its own.
std::string_view notesOf(const Command& command, bool ofExitStatus) {
    const std::size_t begin = command.notes.find(mark);
    if (begin == std::string_view::npos)
        return ofExitStatus ? std::string_view() : command.notes;
    std::size_t end = command.notes.find("\n\n", begin);
    end = end == std::string_view::npos ? command.notes.size() : end + 1;
    return ofExitStatus ? command.notes.substr(begin, end - begin) : command.notes.substr(0, begin);
}

std::string behindExitStatus(const Command& command) {
    const std::string_view status = notesOf(command, true);
    if (status.empty())
        return "";
    const auto offset = static_cast<std::size_t>(status.data() - command.notes.data());
    std::string_view rest = command.notes.substr(offset + status.size());
    while (rest.starts_with('\n'))
        rest.remove_prefix(1);
    return std::string(rest);
}

std::string shownName(const OperandUsage& operand) {
    return italic(operand.name) + (operand.isRepeated ? "…" : "");
}

std::string synopsis(const CommandUsage& usage) {
    std::string line = bold(nameOf(*usage.command));
    if (!usage.below.empty())
        line += usage.command->run ? " [\\fICOMMAND\\fR]" : " \\fICOMMAND\\fR";
    for (const OperandUsage& operand : usage.operands)
        line.append(operand.isRequired ? " " : " [")
            .append(shownName(operand))
            .append(operand.isRequired ? "" : "]");
    for (const OptionUsage& option : usage.options) {
        if (option.isRequired)
            line.append(" ")
                .append(bold(option.names.front()))
                .append(" ")
                .append(italic(option.valueName));
    }
    return line + " [\\fIOPTION\\fR]…\n";
}

/// `above` has the options that are described already; null for none.
std::string optionsOf(const CommandUsage& usage, const CommandUsage* above = nullptr) {
    std::string roff;
    const auto add = [&](std::string_view names, const std::string& help) {
        roff.append(".TP\n").append(names).append("\n").append(escaped(help)).append("\n");
    };
    for (const OperandUsage& operand : usage.operands)
        add(shownName(operand), operand.help);
    for (const OptionUsage& option : usage.options) {
        if (above && std::ranges::find_if(above->options, [&](const OptionUsage& each) {
                         return each.names == option.names && each.help == option.help;
                     }) != above->options.end())
            continue;
        std::string names;
        for (const std::string& name : option.names)
            names.append(names.empty() ? "" : ", ").append(bold(name));
        if (!option.valueName.empty())
            names.append(" ").append(italic(option.valueName));
        add(names, option.help);
    }
    return roff;
}

std::string examplesOf(const Command& command) {
    std::string roff = ".nf\n";
    for (const std::string& line : linesOf(command.examples))
        roff += escaped(std::string_view(line).substr(line.find_first_not_of(' '))) + "\n";
    return roff + ".fi\n";
}

class Page {
public:
    Page(const Usages& usages, std::span<const CommandUsage> commands)
        : usages_(usages), commands_(commands), first_(commands.front()) {}

    GeneratedFile file() const {
        const std::string name = pageOf(*first_.command);
        std::string roff =
            "'\\\" -*- coding: utf-8 -*-\n"
            ".\\\" Made by scripts/describe from the commands of ygconfig.\n"
            ".TH " +
            upper(escaped(name)) + " 1 \"\" \"YGConfigManager " + YGConfigManagerVersionString +
            "\" \"YGConfigManager\"\n.nh\n.ad l\n"
            ".SH NAME\n" +
            escaped(name) + " \\- " + escaped(first_.command->help) + "\n.SH SYNOPSIS\n";
        for (const CommandUsage& usage : commands_)
            roff += (&usage == &first_ ? "" : ".br\n") + synopsis(usage);
        roff += ".SH DESCRIPTION\n" + description();
        roff += ".SH OPTIONS\n" + optionsOf(first_);
        roff += otherCommands();
        roff += ".SH \"EXIT STATUS\"\n" + exitStatus();
        roff += ".SH EXAMPLES\n" + examplesOf(*first_.command);
        roff += filesSection();
        roff += ".SH \"SEE ALSO\"\n" + seeAlso(name);
        return {"docs/man/" + name + ".1", roff};
    }

private:
    std::string description() const {
        std::string roff =
            bold(nameOf(*first_.command)) + " " + escaped(first_.command->help) + ".\n";
        const std::string notes =
            flowing(notesOf(*first_.command, false)) + flowing(behindExitStatus(*first_.command));
        roff += notes.empty() ? "" : ".PP\n" + notes;
        if (first_.command->words.empty())
            roff += listOfPages();
        return roff;
    }

    /// Of the program itself: its commands, each with its page.
    std::string listOfPages() const {
        std::string roff = ".SH COMMANDS\n";
        for (const CommandUsage& usage : usages_) {
            if (usage.command->words.empty())
                continue;
            roff += ".TP\n" + bold(nameOf(*usage.command)) + "\n" + escaped(usage.command->help) +
                    "; see " + bold(pageOf(*usage.command)) + "(1)\n";
        }
        return roff;
    }

    std::string otherCommands() const {
        if (commands_.size() == 1)
            return "";
        std::string roff = ".SH COMMANDS\n";
        for (const CommandUsage& usage : commands_.subspan(1)) {
            const Command& command = *usage.command;
            roff += ".SS \"" + escaped(nameOf(command)) + "\"\n" + escaped(command.help) +
                    ".\n.PP\n" + synopsis(usage) + (command.notes.empty() ? "" : ".PP\n") +
                    flowing(command.notes);
            roff += optionsOf(usage, &first_) + ".PP\nExamples:\n.PP\n" + examplesOf(command);
        }
        return roff;
    }

    /// The page's own words, else those of the program.
    std::string exitStatus() const {
        const std::string_view own = notesOf(*first_.command, true);
        return flowing(
            (own.empty() ? notesOf(*usages_.front().command, true) : own).substr(mark.size()));
    }

    static std::string filesSection() {
        return ".SH FILES\n"
               ".TP\n\\fIROOT\\fR/host.json\n"
               "what the application says about the terminal, such as the user\\(aqs right level\n"
               ".TP\n\\fIROOT\\fR/config, \\fIROOT\\fR/soft_optimize, \\fIROOT\\fR/base_optimize\n"
               "pages, panels, events and commands\n"
               ".TP\n\\fIROOT\\fR/storage\n"
               "palettes, servers, settings, web pages and request URLs as they are shipped\n"
               ".TP\n\\fIROOT\\fR/user\n"
               "the user\\(aqs own files, which count instead of those in storage\n"
               ".TP\n\\fIROOT\\fR/images\n"
               "the images of palettes\n";
    }

    std::string seeAlso(const std::string& name) const {
        std::vector<std::string> others;
        for (const CommandUsage& usage : usages_) {
            const std::string page = pageOf(*usage.command);
            if (isAlone(*usage.command) && page != name)
                others.push_back(page);
        }
        std::string roff;
        for (const std::string& page : others)
            roff += ".BR " + escaped(page) + " (1)" + (&page == &others.back() ? "\n" : ",\n");
        return roff;
    }

    const Usages& usages_;
    const std::span<const CommandUsage> commands_;
    const CommandUsage& first_;
};

}  // namespace

std::vector<GeneratedFile> pages(const Usages& usages) {
    std::vector<GeneratedFile> files;
    for (const CommandUsage& first : usages) {
        if (!isAlone(*first.command))
            continue;
        Usages commands{first};
        for (const CommandUsage& usage : usages) {
            if (!isAlone(*usage.command) && pageOf(*usage.command) == pageOf(*first.command))
                commands.push_back(usage);
        }
        files.push_back(Page(usages, commands).file());
    }
    return files;
}

}  // namespace yg::manual
