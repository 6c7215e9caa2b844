// SPDX-License-Identifier: MIT
//
// What a command line says, as plain values: one struct for all commands, of which each declares
// and reads its own part. An option that was not given is absent, an empty one is empty.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ygconfig/commandline/NameKind.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace yg::tool {

struct Arguments {
    std::string root = ".";            ///< --root
    std::optional<std::string> right;  ///< --right
    std::string color = "auto";        ///< --color: "always", "never" or "auto"
    bool log = false;                  ///< --log, of drawings

    std::optional<std::string> style;  ///< --style, the main style file
    std::optional<std::string> tab;    ///< --tab, the tab style file
    std::optional<std::string> magic;  ///< --magic, the magic panel file

    std::optional<std::string> events;  ///< --events, the event file
    bool gray = false;                  ///< --gray, a grey-release user
    bool weighted = false;              ///< --weighted
    bool simulate = false;              ///< --simulate

    std::optional<std::uint16_t> port;  ///< --port

    std::optional<std::uint64_t> clients;  ///< --clients, of a fleet
    std::optional<std::uint64_t> reloads;  ///< --reloads, of each client
    std::vector<std::string> without;      ///< --without, addresses

    std::optional<std::int8_t> paletteStyle;    ///< --palette-style, the theme
    std::optional<std::uint64_t> groupCount;    ///< --group, the pieces of a strip
    std::optional<std::uint64_t> indexInGroup;  ///< --index
    std::optional<double> width;                ///< --width, in points
    std::optional<double> height;               ///< --height, in points
    std::optional<std::string> output;          ///< -o, a file's path

    bool readonly = false;                   ///< --readonly
    bool refresh = false;                    ///< --refresh
    std::optional<std::string> description;  ///< --description, of a settings item
    std::optional<std::string> replacement;  ///< --replace, a file's path

    std::string format = "text";          ///< --format
    std::string failOn = "error";         ///< --fail-on
    std::optional<std::string> baseline;  ///< --baseline, a file's path
    bool writeBaseline = false;           ///< --write-baseline
    bool rules = false;                   ///< --rules
    bool templates = false;               ///< --templates
    bool git = false;                     ///< --git
    std::optional<std::string> rule;      ///< --rule, a rule's name

    std::string file;                ///< FILE, a name in the storage
    std::string section;             ///< SECTION
    std::string item;                ///< ITEM
    std::string text;                ///< TEXT
    std::optional<std::string> key;  ///< KEY or FILE where it may be missing

    std::string name;                ///< NAME
    std::string group;               ///< GROUP
    std::string data;                ///< DATA, a file's path
    std::string md5;                 ///< MD5
    std::vector<std::string> items;  ///< ITEM… or NAME…

    /// A path below the root folder, joined with exactly one slash.
    std::string inRoot(std::string_view path) const;

    /// A path as it is below the root folder; as it stands when it is elsewhere.
    std::optional<std::string> withoutRoot(const std::optional<std::string>& path) const;
};

/// The word as CLI11 takes it as it stands: without the mark "--option=" has the next word as its
/// value, "[a,b]" is two words, and "++" ends a command. No word of a command line has a NUL in it.
std::string marked(std::string word);
std::string unmarked(std::string word);

/// What a value may be, in words for shells: "file", "folder", "choice text json", or "name page
/// panel", where words that may be repeated have a kind of name each; empty for any text.
using Values = std::string;

inline constexpr const char* anyFile = "file";
inline constexpr const char* anyFolder = "folder";
Values named(std::initializer_list<NameKind> kinds);
Values oneOf(const std::vector<std::string_view>& choices);

/// What an option or an operand was declared with.
Values valuesOf(CLI::Option& option);

/// Declares an option that takes a text, an empty one too, or an operand that may be missing, whose
/// name is in brackets and whose value has no name. Given twice, the last one counts.
CLI::Option* declareText(CLI::App& app, const char* name, const char* valueName,
                         std::optional<std::string>& field, const char* help,
                         const Values& values = {});

/// Declares an option that takes a text and may be given any number of times.
void declareTexts(CLI::App& app, const char* option, const char* valueName,
                  std::vector<std::string>& field, const char* help, const Values& values = {});

/// Declares an option that takes a plain number of the field's type, int8_t, uint16_t, uint64_t or
/// double,
/// within the limits. Given twice, the last one counts.
template <class Number>
CLI::Option* declareNumber(CLI::App& app, const char* option, const char* valueName,
                           std::optional<Number>& field, const char* help,
                           Number least = std::numeric_limits<Number>::lowest(),
                           Number most = std::numeric_limits<Number>::max());

/// Declares an option that takes one of these words, given twice the last one; or an operand.
CLI::Option* declareChoice(CLI::App& app, const char* option, const char* valueName,
                           std::string& field, std::vector<std::string_view> choices,
                           const char* help);

/// Declares an option without a value.
void declareFlag(CLI::App& app, const char* option, bool& field, const char* help);

/// Declares an operand that must be given.
void declareOperand(CLI::App& app, const char* name, std::string& field, const char* help,
                    const Values& values = {});

/// Declares an operand that may be given any number of times, none included. Each text is kept as
/// it stands.
void declareOperands(CLI::App& app, const char* name, std::vector<std::string>& field,
                     const char* help, const Values& values = {});

/// Declares what every command takes: --root, --right and --color.
void declareCommon(CLI::App& app, Arguments& arguments);

}  // namespace yg::tool
