// SPDX-License-Identifier: MIT
#include "ygconfig/commandline/Arguments.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <type_traits>

#include <CLI/CLI.hpp>

namespace yg::tool {

namespace {

template <class Number>
std::string rangeOf() {
    using Limits = std::numeric_limits<Number>;
    if constexpr (std::is_floating_point_v<Number>)
        return "no number";
    else
        return "no whole number from " + std::to_string(Limits::min()) + " to " +
               std::to_string(Limits::max());
}

template <class Number>
void declareAnyNumber(CLI::App& app, const char* option, const char* valueName,
                      std::optional<Number>& field, const char* help) {
    const auto read = [&field, option](const CLI::results_t& texts) {
        const std::string& text = texts.back();
        Number number{};
        const auto end = std::from_chars(text.data(), text.data() + text.size(), number);
        bool isNumber = end.ec == std::errc() && end.ptr == text.data() + text.size();
        if constexpr (std::is_floating_point_v<Number>)
            isNumber = isNumber && std::isfinite(number);
        if (!isNumber)
            throw CLI::ValidationError(option, "'" + text + "' is " + rangeOf<Number>());
        field = number;
        return true;
    };
    app.add_option(option, CLI::callback_t(read), help)->option_text(valueName)->take_last();
}

}  // namespace

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

void declareText(CLI::App& app, const char* option, const char* valueName,
                 std::optional<std::string>& field, const char* help) {
    app.add_option(option, field, help)->option_text(valueName)->take_last();
}

void declareNumber(CLI::App& app, const char* option, const char* valueName,
                   std::optional<std::int8_t>& field, const char* help) {
    declareAnyNumber(app, option, valueName, field, help);
}

void declareNumber(CLI::App& app, const char* option, const char* valueName,
                   std::optional<std::uint64_t>& field, const char* help) {
    declareAnyNumber(app, option, valueName, field, help);
}

void declareNumber(CLI::App& app, const char* option, const char* valueName,
                   std::optional<double>& field, const char* help) {
    declareAnyNumber(app, option, valueName, field, help);
}

void declareFlag(CLI::App& app, const char* option, bool& field, const char* help) {
    app.add_flag(option, field, help);
}

void declareOperand(CLI::App& app, const char* name, std::string& field, const char* help) {
    app.add_option(name, field, help)->required();
}

void declareOptionalOperand(CLI::App& app, const char* name, std::optional<std::string>& field,
                            const char* help) {
    app.add_option(name, field, help);
}

void declareOperands(CLI::App& app, const char* name, std::vector<std::string>& field,
                     const char* help) {
    const auto keep = [&field](const CLI::results_t& texts) {
        field = texts;
        return true;
    };
    // A list of any length would be taken apart: CLI11 reads "[a,b]" as two items and "{}" as none.
    // So it is one of very many items, which may end early.
    app.add_option(name, CLI::callback_t(keep), help)
        ->expected(CLI::detail::expected_max_vector_size, CLI::detail::expected_max_vector_size)
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

void declareCommon(CLI::App& app, Arguments& arguments) {
    app.add_option("--root", arguments.root, "the root folder; the current folder if not given")
        ->option_text("ROOT")
        ->take_last();
    declareText(app, "--right", "LEVEL", arguments.right,
                "the user's right level, instead of the one in host.json");
}

}  // namespace yg::tool
