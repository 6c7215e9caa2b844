// SPDX-License-Identifier: MIT
#include "ygconfig/commandline/Arguments.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <type_traits>
#include <utility>

#include <CLI/CLI.hpp>

namespace yg::tool {

namespace {

template <class Number>
std::string rangeOf(Number least, Number most) {
    if constexpr (std::is_floating_point_v<Number>)
        return "a number";
    else
        return "a whole number from " + std::to_string(least) + " to " + std::to_string(most);
}

/// CLI11 keeps nothing for us beside an option but its checks, so that the values are the name of
/// one that checks nothing.
CLI::Option* withValues(CLI::Option* option, const Values& values) {
    return option->check(CLI::Validator().name(values));
}

/// Declares an option or an operand whose word is read by `read`.
template <class Reader>
CLI::Option* declareWord(CLI::App& app, const char* name, const char* help, const Values& values,
                         Reader read) {
    const std::function<void(const std::string&)> whole = [read](const std::string& word) {
        read(unmarked(word));
    };
    return withValues(app.add_option_function(name, whole, help), values);
}

/// Declares what takes all words that it is given, as they stand.
CLI::Option* declareWords(CLI::App& app, const char* name, std::vector<std::string>& field,
                          const char* help, const Values& values) {
    const std::function<void(const std::vector<std::string>&)> read =
        [&field](const std::vector<std::string>& words) {
            for (const std::string& word : words)
                field.push_back(unmarked(word));
        };
    return withValues(app.add_option_function(name, read, help)->take_all(), values);
}

}  // namespace

std::string marked(std::string word) {
    if (!word.empty() && std::string_view("=]}+").find(word.back()) != std::string_view::npos)
        word += '\0';
    return word;
}

std::string unmarked(std::string word) {
    if (!word.empty() && word.back() == '\0')
        word.pop_back();
    return word;
}

Values named(std::initializer_list<NameKind> kinds) {
    Values values = "name";
    for (const NameKind kind : kinds)
        values.append(" ").append(wordOf(kind));
    return values;
}

Values oneOf(const std::vector<std::string_view>& choices) {
    Values values = "choice";
    for (const std::string_view choice : choices)
        values.append(" ").append(choice);
    return values;
}

Values valuesOf(CLI::Option& option) {
    // A flag has no value and no check.
    return option.get_items_expected_max() == 0 ? "" : option.get_validator(0)->get_name();
}

std::string Arguments::inRoot(std::string_view path) const {
    const std::size_t end = root.find_last_not_of('/');
    std::string joined = root.substr(0, end == std::string::npos ? 0 : end + 1);
    joined += '/';
    joined += path;
    return joined;
}

std::optional<std::string> Arguments::withoutRoot(const std::optional<std::string>& path) const {
    const std::string folder = inRoot("");
    if (!path || path->compare(0, folder.size(), folder) != 0)
        return path;
    return path->substr(folder.size());
}

CLI::Option* declareText(CLI::App& app, const char* name, const char* valueName,
                         std::optional<std::string>& field, const char* help,
                         const Values& values) {
    return declareWord(app, name, help, values,
                       [&field](std::string word) { field = std::move(word); })
        ->type_name(valueName);
}

template <class Number>
CLI::Option* declareNumber(CLI::App& app, const char* option, const char* valueName,
                           std::optional<Number>& field, const char* help, Number least,
                           Number most) {
    const auto read = [&field, option, least, most](const std::string& text) {
        Number number{};
        const auto end = std::from_chars(text.data(), text.data() + text.size(), number);
        bool isNumber = end.ec == std::errc() && end.ptr == text.data() + text.size();
        if constexpr (std::is_floating_point_v<Number>)
            isNumber = isNumber && std::isfinite(number);
        if (!isNumber || number < least || number > most)
            throw CLI::ValidationError(option, "'" + text + "' is not " + rangeOf(least, most));
        field = number;
    };
    return declareWord(app, option, help, "", read)->type_name(valueName);
}

template CLI::Option* declareNumber(CLI::App&, const char*, const char*,
                                    std::optional<std::int8_t>&, const char*, std::int8_t,
                                    std::int8_t);
template CLI::Option* declareNumber(CLI::App&, const char*, const char*,
                                    std::optional<std::uint16_t>&, const char*, std::uint16_t,
                                    std::uint16_t);
template CLI::Option* declareNumber(CLI::App&, const char*, const char*,
                                    std::optional<std::uint64_t>&, const char*, std::uint64_t,
                                    std::uint64_t);
template CLI::Option* declareNumber(CLI::App&, const char*, const char*, std::optional<double>&,
                                    const char*, double, double);

CLI::Option* declareChoice(CLI::App& app, const char* option, const char* valueName,
                           std::string& field, std::vector<std::string_view> choices,
                           const char* help) {
    const Values values = oneOf(choices);
    const auto read = [&field, option, choices = std::move(choices)](const std::string& word) {
        if (std::ranges::find(choices, word) == choices.end()) {
            std::string list;
            for (const std::string_view& choice : choices)
                list.append(list.empty()                 ? ""
                            : &choice == &choices.back() ? " or "
                                                         : ", ")
                    .append(choice);
            throw CLI::ValidationError(option, "'" + word + "' is not " + list);
        }
        field = word;
    };
    return declareWord(app, option, help, values, read)->type_name(valueName);
}

void declareFlag(CLI::App& app, const char* option, bool& field, const char* help) {
    app.add_flag(option, field, help);
}

void declareOperand(CLI::App& app, const char* name, std::string& field, const char* help,
                    const Values& values) {
    declareWord(app, name, help, values, [&field](std::string word) { field = std::move(word); })
        ->required()
        ->type_name("");
}

void declareOperands(CLI::App& app, const char* name, std::vector<std::string>& field,
                     const char* help, const Values& values) {
    declareWords(app, name, field, help, values)->type_name("");
}

void declareTexts(CLI::App& app, const char* option, const char* valueName,
                  std::vector<std::string>& field, const char* help, const Values& values) {
    declareWords(app, option, field, help, values)
        ->expected(1)
        ->allow_extra_args(false)
        ->type_name(valueName);
}

void declareCommon(CLI::App& app, Arguments& arguments) {
    declareWord(app, "--root", "the root folder; the current folder if not given", anyFolder,
                [&](std::string word) { arguments.root = std::move(word); })
        ->type_name("ROOT");
    declareText(app, "--right", "LEVEL", arguments.right,
                "the user's right level, instead of the one in host.json");
    declareChoice(app, "--color", "WHEN", arguments.color, {"always", "never", "auto"},
                  "colours in text: always, never or auto, on a terminal; auto if not given");
}

}  // namespace yg::tool
