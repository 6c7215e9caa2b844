// SPDX-License-Identifier: MIT
#include "ygconfig/commandline/Help.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "ygconfig/drawing/Display.h"

namespace yg::tool {

namespace {

using Rows = std::vector<std::pair<std::string, std::string>>;

/// A title and below it two columns; "" without rows.
std::string section(std::string_view title, const Rows& rows) {
    if (rows.empty())
        return "";
    std::size_t width = 0;
    for (const auto& [left, right] : rows)
        width = std::max(width, displayWidth(left));
    std::string text = "\n" + std::string(title) + ":\n";
    for (const auto& [left, right] : rows) {
        text.append("  ").append(left).append(width - displayWidth(left) + 2, ' ');
        text.append(right).append("\n");
    }
    return text;
}

std::string operandsOf(const CLI::App& reader) {
    std::string names;
    for (const CLI::Option* option : reader.get_options()) {
        if (option->get_positional())
            names += " " + option->get_name(true, false);
    }
    return names;
}

/// The name of the tool, of a group or of a command as it is typed.
std::string typed(std::string_view words) {
    return words.empty() ? "ygconfig" : "ygconfig " + std::string(words);
}

std::string beginning(std::string_view words, std::string_view help, std::string_view usage) {
    return typed(words) + ": " + std::string(help) + "\n\nUsage: " + typed(words) + " [OPTION…]" +
           std::string(usage) + '\n';
}

/// The operands, the options, the examples and the notes.
std::string ending(const CLI::App& reader, std::string_view examples, std::string_view notes) {
    Rows operands;
    Rows options;
    for (const CLI::Option* option : reader.get_options()) {
        if (option->get_positional()) {
            operands.emplace_back(option->get_name(true, false), option->get_description());
        } else {
            std::string names = option->get_name(false, true);
            if (const std::size_t comma = names.find(','); comma != std::string::npos)
                names.insert(comma + 1, " ");
            if (!option->get_option_text().empty())
                names += " " + option->get_option_text();
            options.emplace_back(std::move(names), option->get_description());
        }
    }
    std::string text = section("Operands", operands) + section("Options", options);
    text += "\nExamples:\n";
    while (!examples.empty()) {
        const std::size_t end = examples.find('\n') + 1;
        text.append("  ").append(examples.substr(0, end));
        examples.remove_prefix(end);
    }
    if (!notes.empty())
        text.append("\n").append(notes);
    return text;
}

}  // namespace

std::string commandHelp(const Command& command, const CLI::App& reader) {
    return beginning(command.words, command.help, operandsOf(reader)) +
           ending(reader, command.examples, command.notes);
}

std::string groupHelp(const Group& group, const CLI::App& reader) {
    const std::string start = group.words.empty() ? "" : std::string(group.words) + " ";
    Rows rows;
    for (const Command& command : commands()) {
        if (command.words.substr(0, start.size()) == start)
            rows.emplace_back(command.words, command.help);
    }
    return beginning(group.words, group.help, " COMMAND") + section("Commands", rows) +
           ending(reader, group.examples, group.notes);
}

}  // namespace yg::tool
