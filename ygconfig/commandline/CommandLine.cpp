// SPDX-License-Identifier: MIT
#include "ygconfig/commandline/CommandLine.h"

#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "YGConfigManager/version.h"

#include "ygconfig/commandline/Help.h"
#include "ygconfig/commandline/Suggestion.h"
#include "ygconfig/drawing/Display.h"

namespace yg::tool {

namespace {

constexpr std::string_view program = "ygconfig";
constexpr std::string_view endOfOptions = "--";

/// "ygconfig dump style" for "dump style".
std::string fullName(std::string_view words) {
    std::string name(program);
    if (!words.empty())
        name.append(" ").append(words);
    return name;
}

Answer complaint(std::string_view words, std::string_view what) {
    return {"", ExitCode::unusable, fullName(words) + ": " + printable(what)};
}

/// "-" alone is a name.
bool isOption(std::string_view word) {
    return word.size() > 1 && word.front() == '-';
}

/// The reader of what a command takes beside its own words.
std::unique_ptr<CLI::App> readerFor(const Command& command, Arguments& arguments) {
    auto app = std::make_unique<CLI::App>();
    app->set_help_flag();
    if (command.declare)
        command.declare(*app, arguments);
    declareCommon(*app, arguments);
    app->set_help_flag("-h,--help", "this help");
    return app;
}

/// The same for a group: only what every command takes.
std::unique_ptr<CLI::App> readerFor(const Group& group, Arguments& arguments) {
    auto app = std::make_unique<CLI::App>();
    app->set_help_flag();
    declareCommon(*app, arguments);
    if (group.words.empty())
        app->add_flag("--version")->description("the library's version");
    app->set_help_flag("-h,--help", "this help");
    return app;
}

/// "-h" and "--help"; none for an operand.
std::vector<std::string> namesOf(const CLI::Option& option) {
    std::vector<std::string> names;
    for (const std::string& name : option.get_snames())
        names.push_back("-" + name);
    for (const std::string& name : option.get_lnames())
        names.push_back("--" + name);
    return names;
}

bool takesValue(const CLI::Option& option) {
    return option.nonpositional() && option.get_items_expected_min() > 0;
}

/// All options of all commands and groups by name, and whether a value follows them.
std::map<std::string, bool, std::less<>> everyOption() {
    std::map<std::string, bool, std::less<>> options;
    const auto addFrom = [&](const auto& topics) {
        for (const auto& topic : topics) {
            Arguments unused;
            const auto reader = readerFor(topic, unused);
            for (const CLI::Option* option : reader->get_options()) {
                for (const std::string& name : namesOf(*option))
                    options[name] = takesValue(*option);
            }
        }
    };
    addFrom(commands());
    addFrom(groups());
    return options;
}

struct SeparatedWords {
    std::string commandWords;       ///< joined by blanks; the last may be unknown
    std::vector<std::string> rest;  ///< in order, "--option=VALUE" as two words
    std::string unknownOption;      ///< one that no command knows; empty for none
    bool asksForHelp = false;
    bool asksForVersion = false;
};

/// Tells the words of the command from the rest.
SeparatedWords separate(std::span<const std::string> words) {
    const auto options = everyOption();
    SeparatedWords found;
    bool optionsEnded = false;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (!optionsEnded && word == endOfOptions) {
            optionsEnded = true;
            found.rest.push_back(word);
        } else if (!optionsEnded && isOption(word)) {
            const std::size_t equals = word.find('=');
            const std::string name = word.substr(0, equals);
            const auto option = options.find(name);
            if (option == options.end() && found.unknownOption.empty())
                found.unknownOption = name;
            const bool hasValue = option != options.end() && option->second;
            found.rest.push_back(hasValue ? name : word);
            if (hasValue && equals != std::string::npos)
                found.rest.push_back(word.substr(equals + 1));
            else if (hasValue && i + 1 < words.size())
                found.rest.push_back(words[++i]);
            found.asksForHelp |= word == "--help" || word == "-h";
            found.asksForVersion |= word == "--version";
        } else if (groupNamed(found.commandWords)) {
            if (!found.commandWords.empty())
                found.commandWords += ' ';
            // One word with a blank in it is not two words, and none is not one.
            const bool isWord = !word.empty() && word.find(' ') == std::string::npos;
            found.commandWords += isWord ? word : '"' + word + '"';
        } else {
            found.rest.push_back(word);
        }
    }
    return found;
}

std::string noOption(const std::string& word, std::span<const std::string> known) {
    return "no option '" + word + "'" + suggestion(word, known);
}

/// What is wrong with the options of the rest, if anything is.
std::optional<std::string> faultInOptions(const CLI::App& reader,
                                          const std::vector<std::string>& rest) {
    for (std::size_t i = 0; i < rest.size() && rest[i] != endOfOptions; ++i) {
        const std::string& word = rest[i];
        if (!isOption(word))
            continue;
        const CLI::Option* option = reader.get_option_no_throw(word);
        if (!option) {
            const std::string given = word.substr(0, word.find('='));
            if (reader.get_option_no_throw(given))
                return "option '" + given + "' takes no value";
            std::vector<std::string> known;
            for (const CLI::Option* each : reader.get_options()) {
                for (std::string& name : namesOf(*each))
                    known.push_back(std::move(name));
            }
            return noOption(given, known);
        }
        if (takesValue(*option) && ++i == rest.size())
            return "option '" + word + "' needs a value";
    }
    return std::nullopt;
}

/// Reads the rest into the arguments to which the reader is bound; answers what is wrong with it,
/// if anything is.
std::optional<std::string> read(CLI::App& reader, std::vector<std::string> rest) {
    if (auto fault = faultInOptions(reader, rest))
        return fault;
    std::reverse(rest.begin(), rest.end());
    try {
        reader.parse(rest);
    } catch (const CLI::ExtrasError&) {
        return "unexpected '" + reader.remaining().back() + "'";
    } catch (const CLI::ParseError& error) {
        return error.what();
    }
    return std::nullopt;
}

/// For words that are neither a command nor a group.
Answer unknownCommand(const std::string& words) {
    const auto wordCount = [](std::string_view text) {
        return std::count(text.begin(), text.end(), ' ');
    };
    std::vector<std::string> known;
    const auto consider = [&](std::string_view name) {
        if (!name.empty() && wordCount(name) == wordCount(words))
            known.emplace_back(name);
    };
    for (const Group& group : groups())
        consider(group.words);
    for (const Command& command : commands())
        consider(command.words);
    const std::string meant = suggestion(words, known);
    return complaint(
        "", "no command '" + words + "'" + (meant.empty() ? "; see " + fullName("--help") : meant));
}

}  // namespace

CommandLine readCommandLine(std::span<const std::string> words) {
    const SeparatedWords separated = separate(words);
    CommandLine line;
    const Command* command = commandNamed(separated.commandWords);

    if (const Group* group = groupNamed(separated.commandWords)) {
        const auto reader = readerFor(*group, line.arguments);
        if (separated.asksForHelp)
            line.answer = {groupHelp(*group, *reader)};
        else if (separated.asksForVersion && group->words.empty())
            line.answer = {fullName(YGConfigManagerVersionString) + '\n'};
        else if (!group->meaning.empty())
            command = commandNamed(group->meaning);
        else if (const auto fault = read(*reader, separated.rest))
            line.answer = complaint(group->words, *fault);
        else
            line.answer = complaint(group->words, "a further word is needed; see " +
                                                      fullName(group->words) + " --help");
    } else if (!command && !separated.unknownOption.empty()) {
        // Its value, more likely than not, has been taken for a word of the command.
        std::vector<std::string> known;
        for (const auto& [name, hasValue] : everyOption())
            known.push_back(name);
        line.answer = complaint("", noOption(separated.unknownOption, known));
    } else if (!command) {
        line.answer = unknownCommand(separated.commandWords);
    }

    if (command) {
        const auto reader = readerFor(*command, line.arguments);
        if (separated.asksForHelp)
            line.answer = {commandHelp(*command, *reader)};
        else if (const auto fault = read(*reader, separated.rest))
            line.answer = complaint(command->words, *fault);
        else
            line.command = command;
    }
    return line;
}

}  // namespace yg::tool
