// SPDX-License-Identifier: MIT
#include "ygconfig/commandline/CommandLine.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "YGConfigManager/version.h"

#include "ygconfig/commandline/Suggestion.h"
#include "ygconfig/commandline/Usage.h"
#include "ygconfig/drawing/Display.h"

namespace yg::tool {

namespace {

constexpr const char* endOfOptions = "--";

/// The words of the command that it stands below, which are none for the program itself, and its
/// own.
std::pair<std::string, std::string> wordsOf(const Command& command) {
    const std::size_t blank = command.words.rfind(' ');
    if (blank == std::string_view::npos)
        return {"", std::string(command.words)};
    return {std::string(command.words.substr(0, blank)),
            std::string(command.words.substr(blank + 1))};
}

/// Adds the command below the ones whose words it begins with; the first one is the program itself.
void add(const Command& command, CLI::App& program, CommandLine& line) {
    CLI::App* app = &program;
    if (!command.words.empty()) {
        const auto [above, word] = wordsOf(command);
        if (!above.empty())
            app = program.get_subcommand(above);
        app = app->add_subcommand(word);
    }
    std::string footer = "Examples:\n" + std::string(command.examples);
    if (!command.notes.empty())
        footer.append("\n").append(command.notes);
    footer.pop_back();  // CLI11 ends the last line
    app->description(std::string(command.help))->footer(footer);
    app->require_subcommand(command.run ? 0 : 1, 1);
    if (command.declare)
        command.declare(*app, line.arguments);
    if (command.draws)
        declareFlag(*app, "--log", line.arguments.log, "print the library's log on standard error");
    declareCommon(*app, line.arguments);
    app->callback([&] {
        if (!line.command)  // of "show layout", not of "show"
            line.command = &command;
    });
}

/// Declares all commands; `app` and `line` must outlive each other's use.
void declareAll(CLI::App& app, CommandLine& line) {
    app.option_defaults()->take_last();
    app.get_formatter()->column_width(22);
    app.set_version_flag("--version", std::string("ygconfig ") + YGConfigManagerVersionString);
    for (const Command& command : commands())
        add(command, app, line);
}

/// The words as CLI11 takes them, last one first.
std::vector<std::string> prepared(std::span<const std::string> words) {
    std::vector<std::string> all(words.begin(), words.end());
    // In CLI11 "--" ends the options of one command and hides the names of those below it, so it
    // goes to where it is needed. Behind an option it is a value.
    const auto mark = std::find(all.begin(), all.end(), endOfOptions);
    if (mark != all.end() && (mark == all.begin() || !mark[-1].starts_with('-')))
        std::rotate(mark, mark + 1, std::find_if(mark + 1, all.end(), [](const std::string& word) {
                        return word.starts_with('-');
                    }));
    for (std::string& word : all)
        word = marked(std::move(word));
    std::reverse(all.begin(), all.end());
    return all;
}

/// The first word that the command does not take.
std::optional<std::string> unexpectedIn(const CLI::App& app) {
    for (const std::string& word : app.remaining()) {
        if (word != endOfOptions)
            return unmarked(word).substr(
                0, word.starts_with('-') ? word.find('=') : std::string::npos);
    }
    return std::nullopt;
}

std::vector<std::string> below(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::App* each : app.get_subcommands([](const CLI::App*) { return true; }))
        names.push_back(each->get_name());
    return names;
}

/// None for an operand.
std::vector<std::string> namesOf(const CLI::Option& option) {
    std::vector<std::string> names;
    for (const std::string& name : option.get_snames())
        names.push_back("-" + name);
    for (const std::string& name : option.get_lnames())
        names.push_back("--" + name);
    return names;
}

/// All that may stand behind the words of the command.
std::vector<std::string> namesIn(const CLI::App& app) {
    std::vector<std::string> names = below(app);
    for (const CLI::Option* option : app.get_options())
        std::ranges::move(namesOf(*option), std::back_inserter(names));
    return names;
}

Answer complaint(const CLI::App& program, const CLI::ParseError& error) {
    std::string name = program.get_name();
    std::string fault = error.what();
    const CLI::App* app = &program;
    // A misspelt word explains why another one is missing.
    while (true) {
        if (const auto word = unexpectedIn(*app)) {
            fault = "unexpected '" + *word + "'" + suggestion(*word, namesIn(*app));
            break;
        }
        if (app->get_subcommands().empty())
            break;
        app = app->get_subcommands().front();
        name += " " + app->get_name();
    }
    return {"", ExitCode::unusable, name + ": " + printable(fault)};
}

}  // namespace

CommandLine readCommandLine(std::span<const std::string> words) {
    CommandLine line;
    CLI::App app("", "ygconfig");
    declareAll(app, line);
    try {
        app.parse(prepared(words));
    } catch (const CLI::CallForHelp&) {
        line.answer = {app.help()};
    } catch (const CLI::CallForVersion& version) {
        line.answer = {version.what() + std::string("\n")};
    } catch (const CLI::ParseError& error) {
        line.answer = complaint(app, error);
    }
    return line;
}

std::vector<CommandUsage> usages() {
    CommandLine line;
    CLI::App program("", "ygconfig");
    declareAll(program, line);
    std::vector<CommandUsage> all;
    for (const Command& command : commands()) {
        CLI::App* app = &program;
        if (!command.words.empty()) {
            const auto [above, word] = wordsOf(command);
            if (!above.empty())
                app = program.get_subcommand(above);
            app = app->get_subcommand(word);
        }
        CommandUsage usage{&command, below(*app), {}, {}};
        for (CLI::Option* option : app->get_options()) {
            const bool isRequired = option->get_required();
            const bool isFlag = option->get_items_expected_max() == 0;
            std::string name = option->get_name();
            if (name.starts_with('['))  // of an operand that may be missing
                name = name.substr(1, name.size() - 2);
            if (option->get_positional())
                usage.operands.push_back({name, option->get_description(), valuesOf(*option),
                                          isRequired, option->get_items_expected_max() > 1});
            else
                usage.options.push_back({namesOf(*option), isFlag ? "" : option->get_type_name(),
                                         option->get_description(), valuesOf(*option), isRequired});
        }
        all.push_back(std::move(usage));
    }
    return all;
}

}  // namespace yg::tool
