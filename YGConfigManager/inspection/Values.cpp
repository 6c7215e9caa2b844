// SPDX-License-Identifier: MIT
#include "YGConfigManager/inspection/Values.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <map>
#include <span>
#include <utility>
#include <vector>

#include "YGConfigManager/formats/Format.h"
#include "YGConfigManager/inspection/OddCharacters.h"
#include "YGConfigManager/records/AttributeTable.h"
#include "YGConfigManager/text/Characters.h"
#include "YGConfigManager/text/Nearest.h"
#include "YGConfigManager/text/Numbers.h"
#include "YGConfigManager/text/Replace.h"
#include "YGConfigManager/text/Split.h"
#include "YGConfigManager/text/Utf8.h"

namespace yg {

namespace {

constexpr std::string_view wordsForTrue[] = {"true", "1",  "yes", "y",  "on",
                                             "t",    "是", "真",  "开", "对"};
constexpr std::string_view wordsForFalse[] = {"",  "false", "0",  "no", "n",  "off",
                                              "f", "否",    "假", "关", "不", "错"};

std::string_view trimmed(std::string_view text) {
    const std::size_t begin = text.find_first_not_of(text::whiteSpace);
    if (begin == std::string_view::npos)
        return {};
    return text.substr(begin, text.find_last_not_of(text::whiteSpace) - begin + 1);
}

std::string lowered(std::string_view text) {
    std::string lower(text);
    for (char& c : lower) {
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    }
    return lower;
}

bool contains(std::span<const std::string_view> words, std::string_view word) {
    return std::ranges::find(words, word) != words.end();
}

std::optional<std::string> repairedFlag(std::string_view plain) {
    const std::string word = lowered(plain);
    if (contains(wordsForTrue, word))
        return "true";
    if (contains(wordsForFalse, word))
        return "false";
    const std::string known[] = {"true", "false"};
    const std::string near = text::nearest(word, known);
    return near.empty() ? std::nullopt : std::optional<std::string>(near);
}

/// The shortest text for the number, without an exponent.
std::string textOf(double number) {
    char digits[512];
    const auto end =
        std::to_chars(std::begin(digits), std::end(digits), number, std::chars_format::fixed);
    return {digits, end.ptr};
}

std::string textOf(float number) {
    char digits[128];
    const auto end =
        std::to_chars(std::begin(digits), std::end(digits), number, std::chars_format::fixed);
    return {digits, end.ptr};
}

/// The number at the beginning, without blanks, "+" and what follows; "" when there is none.
std::string_view leadingDigits(std::string_view text, bool isDecimal) {
    std::size_t at = text.starts_with('-') ? 1 : 0;
    const auto afterDigits = [&](std::size_t from) {
        while (from < text.size() && text::isDigit(text[from]))
            ++from;
        return from;
    };
    const std::size_t first = at;
    at = afterDigits(at);
    bool hasDigits = at > first;
    if (isDecimal && text.substr(at).starts_with('.')) {
        const std::size_t end = afterDigits(at + 1);
        hasDigits = hasDigits || end > at + 1;
        at = end > at + 1 ? end : at;
    }
    return hasDigits ? text.substr(0, at) : std::string_view();
}

/// "1,000,000" without its commas, "0,5" with a point where fractions count; absent for others.
std::optional<std::string> withoutCommas(std::string_view text, bool isDecimal) {
    const std::vector<std::string> parts = text::split(text, ',');
    std::string joined;
    bool areThousands = true;
    for (std::size_t at = 0; at < parts.size(); ++at) {
        const std::string& part = parts[at];
        const std::string_view digits = at == 0 ? leadingDigits(part, false) : part;
        if (digits.empty() || digits.size() != part.size() ||
            !std::ranges::all_of(part.substr(at == 0 && part[0] == '-' ? 1 : 0), text::isDigit))
            return std::nullopt;
        areThousands = areThousands && (at == 0 ? part.size() <= 3 : part.size() == 3);
        joined += part;
    }
    if (isDecimal && parts.size() == 2)
        return areThousands ? std::nullopt : std::optional(parts[0] + "." + parts[1]);
    return areThousands ? std::optional(joined) : std::nullopt;
}

/// A number within the bounds of the attribute.
std::string bounded(const AttributeInfo& row, const std::string& number) {
    constexpr double highestComponent = 255;
    const double value = text::readLeadingDouble(number).value;
    if (row.kind != AttributeKind::decimal) {
        const std::int32_t read = text::leadingInt32(number);
        if (static_cast<float>(read) < row.least)
            return textOf(row.least);
        return static_cast<float>(read) > row.most ? textOf(row.most) : std::to_string(read);
    }
    const bool isByte = row.least == 0 && row.most == 1 && value > 1 && value <= highestComponent &&
                        value == std::floor(value);
    if (isByte)
        return textOf(std::round(value / highestComponent * 100) / 100);
    if (value < static_cast<double>(row.least))
        return textOf(row.least);
    return value > static_cast<double>(row.most) ? textOf(row.most) : number;
}

/// With digits for the letters that look like them, if there is nothing else but digits: "24O".
std::string withDigits(std::string_view text) {
    std::string digits(text);
    bool hasDigit = false;
    for (char& character : digits) {
        hasDigit = hasDigit || text::isDigit(character);
        if (character == 'O' || character == 'o')
            character = '0';
        else if (character == 'l' || character == 'I')
            character = '1';
    }
    return hasDigit && std::ranges::all_of(digits, text::isDigit) ? digits : std::string(text);
}

std::optional<std::string> repairedNumber(const AttributeInfo& row, std::string_view plain) {
    constexpr std::size_t longestUnit = 3;
    const bool isDecimal = row.kind == AttributeKind::decimal;
    std::string text = withDigits(trimmed(plain));
    if (text.starts_with('+'))
        text.erase(0, 1);
    if (text.find(',') != std::string::npos) {
        const auto without = withoutCommas(text, isDecimal);
        if (!without)
            return std::nullopt;
        text = *without;
    }
    std::string_view digits = leadingDigits(text, isDecimal);
    const std::string_view tail = trimmed(std::string_view(text).substr(digits.size()));
    // An exponent is a number as it stands.
    if (isDecimal && text::readLeadingDouble(text).oddity == text::NumberOddity::none)
        digits = text;
    else if (digits.empty() ||
             !(tail.empty() || lowered(tail) == "dp" ||
               (tail.size() <= longestUnit &&
                std::ranges::all_of(lowered(tail),
                                    [](char c) { return c >= 'a' && c <= 'z' && c != 'e'; }) &&
                tail != "x" && tail != "X") ||
               (!isDecimal && tail.starts_with('.') &&
                std::ranges::all_of(tail.substr(1), text::isDigit))))
        return std::nullopt;
    return bounded(row, std::string(digits));
}

std::string repairedList(std::string_view value) {
    std::string text(value);
    for (const std::string_view separator : {",", "，", "；", "、", "|"})
        text = text::replaceAll(text, separator, ";");
    std::string joined;
    for (const std::string& piece : text::split(text, ';')) {
        const std::string plain = withoutOddCharacters(piece);
        // Only what is around a name is left out; full-width letters may be meant.
        std::string_view name = piece;
        if (trimmed(plain) != plain || !hiddenCharacters(piece).empty())
            name = trimmed(plain);
        if (!name.empty())
            joined.append(joined.empty() ? "" : ";").append(name);
    }
    return joined;
}

/// One name of letters, digits and the like, as nearly all are.
bool isPlainName(std::string_view value) {
    static constexpr std::string_view repairable = "\"',;|";
    return std::ranges::all_of(value, [](char c) {
        return c > ' ' && c <= '~' && repairable.find(c) == std::string_view::npos;
    });
}

std::string repairedName(std::string_view value) {
    std::string name;
    for (std::string_view rest = value; !rest.empty();) {
        const text::Character character = text::firstCharacter(rest);
        const OddCharacter odd = oddCharacter(character.value);
        const bool isHidden =
            !odd.name.empty() && (odd.kind == OddKind::blank || odd.kind == OddKind::invisible);
        name += isHidden ? odd.meant : rest.substr(0, character.size);
        rest.remove_prefix(character.size);
    }
    std::string_view inner = trimmed(name);
    constexpr std::pair<std::string_view, std::string_view> quotes[] = {
        {"“", "”"}, {"‘", "’"}, {"＂", "＂"}, {"\"", "\""}, {"'", "'"}};
    for (const auto& [open, close] : quotes) {
        if (inner.size() > open.size() + close.size() && inner.starts_with(open) &&
            inner.ends_with(close)) {
            inner = inner.substr(open.size(), inner.size() - open.size() - close.size());
            break;
        }
    }
    return std::string(trimmed(inner));
}

}  // namespace

const AttributeInfo* attributeRow(std::string_view element, std::string_view attribute) {
    using Key = std::pair<std::string_view, std::string_view>;
    static const auto* const rows = [] {
        auto* const made = new std::map<Key, const AttributeInfo*>;
        for (const FormatInfo* const format : formats()) {
            for (const ElementInfo* const described : elementsOf(*format)) {
                for (const AttributeInfo& row : described->attributes) {
                    const AttributeInfo*& known =
                        made->try_emplace({described->name, row.name}, &row).first->second;
                    if (known && known->kind != row.kind)
                        known = nullptr;
                }
            }
        }
        return made;
    }();
    const auto found = rows->find({element, attribute});
    return found == rows->end() ? nullptr : found->second;
}

std::optional<std::string> repairedValue(const AttributeInfo& row, std::string_view value) {
    std::optional<std::string> repaired;
    switch (row.kind) {
        case AttributeKind::flag:
            repaired = repairedFlag(trimmed(withoutOddCharacters(value)));
            break;
        case AttributeKind::integer:
        case AttributeKind::wholeNumber:
        case AttributeKind::decimal:
            repaired = repairedNumber(row, withoutOddCharacters(value));
            break;
        case AttributeKind::nameList:
            if (!isPlainName(value))
                repaired = repairedList(value);
            break;
        case AttributeKind::text:
            if (row.names != Naming::nothing && !isPlainName(value))
                repaired = repairedName(value);
            break;
    }
    const bool isUsable =
        repaired && *repaired != value && !repaired->empty() && !oddity(row, *repaired);
    return isUsable ? repaired : std::nullopt;
}

std::string readName(std::string_view name) {
    const std::string hidden = hiddenCharacters(name);
    return hidden.empty() ? "" : "text with " + hidden;
}

std::string readValue(const AttributeInfo& row, std::string_view value) {
    switch (row.kind) {
        case AttributeKind::flag:
            return isTrueText(value) ? "true" : "false";
        case AttributeKind::integer:
        case AttributeKind::wholeNumber: {
            const auto read = static_cast<float>(text::leadingInt32(value));
            if (read < row.least || read > row.most)
                return textOf(std::clamp(read, row.least, row.most));
            return std::to_string(text::leadingInt32(value));
        }
        case AttributeKind::decimal: {
            const float read = text::leadingFloat(value);
            if (std::isinf(read))
                return read < 0 ? "-infinity" : "infinity";
            return textOf(std::clamp(read, row.least, row.most));
        }
        case AttributeKind::nameList: {
            if (value.empty())
                return "no list";
            const std::vector<std::string> names = text::split(value, ';');
            std::string shown =
                std::to_string(names.size()) + (names.size() == 1 ? " name: " : " names: ");
            for (const std::string& name : names)
                shown.append(&name == &names.front() ? "" : ", ").append("'" + name + "'");
            return shown;
        }
        case AttributeKind::text:
            return readName(value);
    }
    return "";
}

}  // namespace yg
