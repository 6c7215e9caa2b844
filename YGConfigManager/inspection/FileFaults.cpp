// SPDX-License-Identifier: MIT
#include "YGConfigManager/inspection/FileFaults.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <utility>
#include <vector>

#include "YGConfigManager/diagnostics/RuleTable.h"
#include "YGConfigManager/inspection/OddCharacters.h"
#include "YGConfigManager/text/Characters.h"
#include "YGConfigManager/text/LineIndex.h"
#include "YGConfigManager/text/Utf8.h"
#include "YGConfigManager/xml/Decoding.h"

namespace yg {

namespace {

using namespace std::string_view_literals;

constexpr auto npos = std::string_view::npos;

FileFault faultAt(const Rule& rule, std::string_view text, std::size_t begin, std::size_t end,
                  std::string message) {
    return {&rule, text::pointAt(text, begin), text::pointAt(text, end), std::move(message),
            std::string(text.substr(begin, end - begin))};
}

std::string quoted(std::string_view text) {
    std::string made = "\"";
    return made.append(text).append("\"");
}

std::string lowered(std::string_view text) {
    std::string lower(text);
    for (char& c : lower) {
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    }
    return lower;
}

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isAscii(char c) {
    return static_cast<unsigned char>(c) < 0x80;
}

// ---- Encodings ----

bool isChinese(char32_t character) {
    const auto isIn = [&](char32_t first, char32_t last) {
        return character >= first && character <= last;
    };
    return isIn(0x4E00, 0x9FFF) || isIn(0x3400, 0x4DBF) || isIn(0x3000, 0x303F) ||
           isIn(0xFF00, 0xFFEF) || isIn(0x2010, 0x2026);
}

struct Counts {
    std::size_t chinese = 0;
    std::size_t others = 0;  ///< that are not ASCII
    std::size_t broken = 0;  ///< bytes that belong to no character
};

Counts countsOf(std::string_view text) {
    Counts counts;
    for (std::size_t at = 0; at < text.size();) {
        if (isAscii(text[at])) {
            ++at;
            continue;
        }
        const text::Character character = text::firstCharacter(text.substr(at));
        ++(!character.isValid           ? counts.broken
           : isChinese(character.value) ? counts.chinese
                                        : counts.others);
        at += character.size;
    }
    return counts;
}

/// About the file as a whole.
FileFault wholeFileIn(std::string_view encoding) {
    return {&"wrong-encoding"_rule,
            {},
            {},
            "Save the file as UTF-8: it is in " + std::string(encoding) +
                ", which cannot be read, so nothing in it counts.",
            std::string(encoding)};
}

/// Text in ASCII characters at its beginning, of two bytes each.
bool isUnmarkedUtf16(std::string_view bytes) {
    const auto isText = [](char c) { return (c > ' ' && isAscii(c)) || text::isWhiteSpace(c); };
    return bytes.size() >= 4 &&
           ((isText(bytes[0]) && bytes[1] == '\0' && isText(bytes[2]) && bytes[3] == '\0') ||
            (isText(bytes[1]) && bytes[0] == '\0' && isText(bytes[3]) && bytes[2] == '\0'));
}

/// Of bytes that should be UTF-8 and are not from `bad` on. `why` says why they should be.
FileFault notUtf8(std::string_view bytes, std::size_t bad, std::string_view otherwise,
                  std::string_view why) {
    std::string message = "Save the file as UTF-8";
    if (readAsGbk(bytes)) {
        // Characters of GBK can be UTF-8 by chance.
        bad = static_cast<std::size_t>(std::ranges::find_if_not(bytes, isAscii) - bytes.begin());
        message.append(otherwise).append(": its bytes are GBK, and ").append(why);
        FileFault fault = faultAt("wrong-encoding"_rule, bytes, bad, bad + 1,
                                  message + ", so nothing in it counts.");
        fault.value = "GBK";
        return fault;
    }
    char byte[8];
    std::snprintf(byte, sizeof byte, "0x%02X", static_cast<unsigned char>(bytes[bad]));
    message.append(": the byte ").append(byte).append(" here is not UTF-8, and ").append(why);
    FileFault fault =
        faultAt("wrong-encoding"_rule, bytes, bad, bad + 1, message + ", so nothing in it counts.");
    fault.value = byte;
    return fault;
}

}  // namespace

Found foundOf(FileFault fault, const std::string& path) {
    const Place place{path, fault.begin, fault.end};
    Found found{{*fault.rule, place, place, {}, {}, std::move(fault.value), {}},
                std::move(fault.suggestion),
                std::move(fault.message)};
    if (fault.relatedBegin.line != 0)
        found.finding.related.push_back(
            {{path, fault.relatedBegin, fault.relatedEnd}, fault.related});
    return found;
}

std::optional<std::string> readAsGbk(std::string_view bytes) {
    constexpr std::string_view declaration = R"(<?xml version="1.0" encoding="GB18030"?>)";
    xml::Decoded decoded = xml::decodeXml(std::string(declaration).append(bytes));
    if (!decoded.errors.empty())
        return std::nullopt;
    decoded.text.erase(0, declaration.size());
    const Counts asGbk = countsOf(decoded.text);
    const Counts asUtf8 = countsOf(bytes);
    if (asUtf8.broken == 0 || asGbk.chinese <= 4 * (asGbk.others + asUtf8.chinese))
        return std::nullopt;
    return std::move(decoded.text);
}

std::optional<FileFault> encodingFaultOfXml(std::string_view bytes) {
    const bool hasMark16 = bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF");
    if (!hasMark16 && isUnmarkedUtf16(bytes))
        return wholeFileIn("UTF-16 without a byte-order mark");
    const bool hasMark8 = bytes.starts_with(text::byteOrderMark);
    std::string_view declared;
    if (!hasMark16 && !hasMark8)
        declared = xml::declaredEncoding(bytes).value_or(declared);
    const std::string name = lowered(declared);
    const std::size_t valid = hasMark16 ? 0 : text::validUtf8Prefix(bytes);
    const bool isUtf8 = !hasMark16 && valid == bytes.size();
    if (!hasMark16 && (!declared.data() || name == "utf-8" || name == "utf8")) {
        if (isUtf8)
            return std::nullopt;
        return declared.data()
                   ? notUtf8(bytes, valid, "", "it declares UTF-8")
                   : notUtf8(bytes, valid, hasMark8 ? "" : ", or declare encoding=\"GBK\"",
                             "it is read as UTF-8");
    }
    const auto onDeclared = [&](std::string message) {
        const auto begin = static_cast<std::size_t>(declared.data() - bytes.data());
        FileFault fault = faultAt("wrong-encoding"_rule, bytes, begin, begin + declared.size(),
                                  std::move(message));
        if (isUtf8)
            fault.suggestion = "UTF-8";
        return fault;
    };
    if (isUtf8) {
        const Counts counts = countsOf(bytes);
        if (counts.chinese > counts.others)
            return onDeclared(
                "Declare encoding=\"UTF-8\": the file is in UTF-8, but it is read as " +
                std::string(declared) + ", so its characters become others or cannot be read.");
    }
    const xml::Decoded decoded = xml::decodeXml(std::string(bytes));
    if (decoded.errors.empty())
        return std::nullopt;
    const xml::ParseError& error = decoded.errors.front();
    if (declared.data() && error.column == 0)
        return onDeclared("Declare another encoding, best UTF-8: the file cannot be read as " +
                          std::string(declared) + ", so nothing in it counts.");
    const TextPoint begin{error.line, error.column};
    const std::string encoding(declared.data() ? declared : "UTF-16");
    return FileFault{&"wrong-encoding"_rule,
                     begin,
                     {begin.line, begin.column + 1},
                     "Save the file as UTF-8 and declare that: from here on it is not in " +
                         encoding + ", which it should be, so nothing in it counts.",
                     encoding};
}

std::optional<FileFault> encodingFaultOfJson(std::string_view bytes) {
    if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF") || isUnmarkedUtf16(bytes))
        return wholeFileIn("UTF-16");
    const std::size_t valid = text::validUtf8Prefix(bytes);
    if (valid == bytes.size())
        return std::nullopt;
    return notUtf8(bytes, valid, "", "JSON is read as UTF-8");
}

// ---- XML ----

namespace {

constexpr std::string_view notRead = ", and nothing in the file is read until then.";

/// An odd character where one of the markup is meant, in the tag or declaration that it is in.
FileFault oddMarkup(std::string_view text, std::size_t at, const OddCharacter& odd,
                    std::string_view language) {
    constexpr std::string_view quotes[] = {"“", "”", "„", "‘", "’", "＂", "＇", "\"", "'"};
    const std::size_t size = text::firstCharacter(text.substr(at)).size;
    const std::string shown = shownCharacter(odd);
    const auto fault = [&](std::size_t end, std::string message,
                           std::optional<std::string> suggestion) {
        FileFault made = faultAt("lookalike-character"_rule, text, at, end, std::move(message));
        made.suggestion = std::move(suggestion);
        return made;
    };
    if (odd.kind == OddKind::invisible)
        return fault(at + size, "Delete what cannot be seen here: " + shown + std::string(notRead),
                     {});
    if (odd.kind != OddKind::quote) {
        const std::string what = odd.kind == OddKind::blank ? "a plain blank" : quoted(odd.meant);
        return fault(at + size, "Write " + what + " here for " + shown + std::string(notRead),
                     std::string(odd.meant));
    }
    const std::string message = "Use straight quotes: here is " + shown + std::string(notRead);
    // Up to the closing quote, whichever it is, the value can be replaced whole.
    std::size_t close = npos;
    std::size_t closeSize = 0;
    const std::size_t stop = std::min(text.find_first_of("<>\n", at), text.size());
    for (const std::string_view mark : quotes) {
        const std::size_t found = text.find(mark, at + size);
        if (found < std::min(close, stop)) {
            close = found;
            closeSize = mark.size();
        }
    }
    if (close == npos)
        return fault(at + size, message, "\"");
    const std::string_view inner = text.substr(at + size, close - at - size);
    const bool isLabel = language == "XML" && inner.find('=') != npos;
    return isLabel ? fault(at + size, message, "\"")
                   : fault(close + closeSize, message, quoted(inner));
}

/// A curly quote that was to close a value, which goes on to the next straight one.
std::optional<std::size_t> swallowedQuote(std::string_view value) {
    const std::size_t last = value.find_last_not_of(text::whiteSpace);
    const bool goesOn = value.find_first_of("<>") != npos || (last != npos && value[last] == '=');
    if (!goesOn)
        return std::nullopt;
    const std::size_t at = std::min(value.find("”"), value.find("“"));
    return at == npos ? std::nullopt : std::optional(at);
}

/// Behind what ends with `end`; the end of the text without it.
std::size_t behind(std::string_view text, std::size_t from, std::string_view end) {
    const std::size_t at = text.find(end, from);
    return at == npos ? text.size() : at + end.size();
}

/// A full-width "<" that begins a tag, in a part of the text; npos without one.
std::size_t wideAngle(std::string_view text, std::size_t from, std::size_t to) {
    constexpr std::string_view angle = "＜";
    const std::string_view part = text.substr(0, to);
    for (std::size_t at = part.find(angle, from); at != npos; at = part.find(angle, at + 1)) {
        const std::size_t next = at + angle.size();
        if (next < part.size() && (isLetter(part[next]) || part[next] == '/'))
            return at;
    }
    return npos;
}

}  // namespace

std::optional<FileFault> markupFault(std::string_view text) {
    const auto oddAt = [&](std::size_t at) {
        return oddMarkup(text, at, oddCharacter(text::firstCharacter(text.substr(at)).value),
                         "XML");
    };
    std::size_t angle = npos;
    std::size_t at = 0;
    // What stops to be markup ends the search.
    const auto readTag = [&]() -> std::optional<FileFault> {
        for (++at; at < text.size() && text[at] != '>';) {
            const char c = text[at];
            if (c == '<') {
                at = text.size();
            } else if (c == '"' || c == '\'') {
                const std::size_t end = std::min(text.find(c, at + 1), text.size());
                const std::string_view value = text.substr(at + 1, end - at - 1);
                if (const auto swallowed = swallowedQuote(value)) {
                    FileFault fault = oddAt(at + 1 + *swallowed);
                    return fault;
                }
                at = value.find('<') == npos && end < text.size() ? end + 1 : text.size();
            } else if (isAscii(c)) {
                ++at;
            } else {
                const text::Character character = text::firstCharacter(text.substr(at));
                const OddCharacter odd = oddCharacter(character.value);
                if (!odd.name.empty() &&
                    (odd.kind != OddKind::sign || "=></!?-"sv.find(odd.meant) != npos))
                    return oddAt(at);
                at += character.size;
            }
        }
        return std::nullopt;
    };
    while (at < text.size()) {
        const std::size_t open = std::min(text.find('<', at), text.size());
        angle = std::min(angle, wideAngle(text, at, open));
        at = open;
        const std::string_view rest = text.substr(at);
        if (rest.starts_with("<!--")) {
            at = behind(text, at + 4, "-->");
        } else if (rest.starts_with("<![CDATA[")) {
            at = behind(text, at, "]]>");
        } else if (rest.starts_with("<?") && !rest.starts_with("<?xml ")) {
            at = behind(text, at, "?>");
        } else if (auto fault = readTag()) {
            return angle == npos ? std::move(fault) : oddAt(angle);
        }
    }
    return angle == npos ? std::nullopt : std::optional(oddAt(angle));
}

std::string plainXmlError(std::string_view parserError) {
    struct Row {
        std::string_view part;
        std::string_view sentence;
    };
    constexpr Row rows[] = {
        {"AttValue: \" or ' expected", "Put the value of the attribute in quotes."},
        {"AttValue: ' expected", "Close the value with the quote that it begins with."},
        {"AttValue: \" expected", "Close the value with the quote that it begins with."},
        {"Unescaped '<' not allowed in attributes values",
         R"(Close the quotes of the value before "<", or write "&lt;" in it.)"},
        {"error parsing attribute name",
         R"(Close the start tag before this, or write an attribute as NAME="VALUE".)"},
        {"attributes construct error",
         R"(Write each attribute as NAME="VALUE", with a blank before the next one.)"},
        {"xmlParseEntityRef: no name", R"(Write "&amp;" for "&".)"},
        {"EntityRef: expecting ';'", R"(Write "&amp;" for "&".)"},
        {"xmlParseCharRef", R"(Write "&amp;" for "&", or a character that XML can hold.)"},
        {" mandates value for attribute", R"(Give the attribute a value: NAME="VALUE".)"},
        {"Couldn't find end of Start Tag", R"(Close the start tag by ">" or "/>".)"},
        {"expected '>'", R"(Close the tag by ">".)"},
        {"Extra content at the end of the document",
         "Put everything into one root element; there is something behind its end."},
        {"Start tag expected, '<' not found", "Begin the file with its root element."},
        {"Document is empty", "Give the file its root element; it is empty."},
        {"StartTag: invalid element name",
         R"(Write "&lt;" for a "<" that begins no tag, or the name of an element behind it.)"},
        {"Double hyphen within comment", R"(Write no "--" within a comment.)"},
        {"Comment not terminated", R"(Close the comment by "-->".)"},
        {"CData section not finished", "Close the section by \"]]>\"."},
        {"XML declaration allowed only at the start of the document",
         "Put the declaration at the very beginning of the file, with nothing before it."},
        {"PCDATA invalid Char value", "Delete the control character here; XML cannot hold it."},
        {"invalid character in attribute value",
         "Delete the control character here; XML cannot hold it."},
    };
    for (const Row& row : rows) {
        if (parserError.find(row.part) != npos)
            return std::string(row.sentence);
    }
    const auto between = [&](std::string_view before, std::string_view after) {
        const std::size_t begin = parserError.find(before) + before.size();
        const std::size_t end = std::min(parserError.find(after, begin), parserError.size());
        return std::string(parserError.substr(begin, end - begin));
    };
    // "Opening and ending tag mismatch: a line 2 and b"
    constexpr std::string_view mismatch = "Opening and ending tag mismatch: ";
    if (parserError.starts_with(mismatch)) {
        const std::string line = between(" line ", " and ");
        return "Close <" + between(mismatch, " line ") + "> of line " + line + " before </" +
               between(" line " + line + " and ", "\n") + ">, or correct one of the names.";
    }
    // "Premature end of data in tag a line 1"
    constexpr std::string_view premature = "Premature end of data in tag ";
    if (parserError.starts_with(premature))
        return "Close <" + between(premature, " line ") + "> of line " + between(" line ", "\n") +
               "; the file ends before.";
    // "Attribute a redefined"
    if (parserError.starts_with("Attribute ") && parserError.ends_with(" redefined"))
        return "Delete one of the attributes " + between("Attribute ", " redefined") +
               "; the element has two of this name.";
    // "Entity 'nbsp' not defined"
    if (parserError.starts_with("Entity '"))
        return "Write the character itself for \"&" + between("Entity '", "'") +
               ";\": XML knows only &amp;, &lt;, &gt;, &quot; and &apos;.";
    return std::string(parserError) + ".";
}

// ---- JSON ----

namespace {

/// Goes through the tokens of a text and stops at the first that may not stand where it does.
class JsonScan {
public:
    JsonScan(std::string_view text, const Rule& unreadable)
        : text_(text),
          unreadable_(unreadable),
          at_(text.starts_with(text::byteOrderMark) ? text::byteOrderMark.size() : 0) {}

    std::optional<FileFault> fault() {
        while (true) {
            at_ = std::min(text_.find_first_not_of(text::whiteSpace, at_), text_.size());
            if (at_ == text_.size())
                return wants_ == Wants::nothing ? std::nullopt : std::optional(atEnd());
            if (auto found = notOfJson())
                return found;
            const std::size_t begin = at_;
            if (auto found = readToken())
                return found;
            lastBegin_ = begin;
            lastEnd_ = at_;
        }
    }

private:
    enum class Wants { value, valueOrEnd, name, nameOrEnd, colon, commaOrEnd, nothing };

    FileFault made(std::size_t begin, std::size_t end, std::string message,
                   std::optional<std::string> suggestion = {}) const {
        FileFault fault = faultAt(unreadable_, text_, begin, end, std::move(message));
        fault.suggestion = std::move(suggestion);
        return fault;
    }

    FileFault relatedTo(FileFault fault, std::size_t opening) const {
        fault.relatedBegin = text::pointAt(text_, opening);
        fault.relatedEnd = text::pointAt(text_, opening + 1);
        fault.related = "the opening bracket";
        return fault;
    }

    FileFault atEnd() const {
        if (lastEnd_ == 0)
            return made(at_, at_, "Write a JSON object, \"{}\" at least: the file is empty.");
        if (open_.empty())
            return made(lastEnd_, lastEnd_, "Complete the text, which ends too early.");
        const char bracket = text_[open_.back()];
        return relatedTo(made(lastEnd_, lastEnd_,
                              std::string("Close \"") + bracket + "\" by \"" + closing(bracket) +
                                  "\"; the text ends before."),
                         open_.back());
    }

    static char closing(char bracket) { return bracket == '{' ? '}' : ']'; }
    char here() const { return text_[at_]; }
    bool wantsText() const { return wants_ != Wants::commaOrEnd && wants_ != Wants::colon; }

    /// Comments, quotes and characters that JSON does not know.
    std::optional<FileFault> notOfJson() const {
        const std::string_view rest = text_.substr(at_);
        if (rest.starts_with("//") || rest.starts_with('#') || rest.starts_with("/*")) {
            const std::size_t end = rest.starts_with("/*")
                                        ? behind(text_, at_, "*/")
                                        : std::min(text_.find_first_of("\r\n", at_), text_.size());
            return made(at_, end, "Delete the comment; JSON has none.");
        }
        if (here() == '\'' && wantsText()) {
            const std::size_t end = text_.find_first_of("'\n", at_ + 1);
            constexpr std::string_view message = "Use double quotes; JSON knows no single ones.";
            if (end == npos || text_[end] == '\n')
                return made(at_, at_ + 1, std::string(message), "\"");
            return made(at_, end + 1, std::string(message),
                        quoted(text_.substr(at_ + 1, end - at_ - 1)));
        }
        const text::Character character = text::firstCharacter(rest);
        const OddCharacter odd = oddCharacter(character.value);
        if (odd.name.empty())
            return std::nullopt;
        return oddMarkup(text_, at_, odd, "JSON");
    }

    std::optional<FileFault> readToken() {
        switch (wants_) {
            case Wants::nothing:
                return made(at_, text_.size(), "Delete what follows the end of the JSON text.");
            case Wants::colon:
                if (here() == ':') {
                    ++at_;
                    wants_ = Wants::value;
                    return std::nullopt;
                }
                if (here() == '=')
                    return made(at_, at_ + 1, "Write \":\" between name and value.", ":");
                return made(lastBegin_, lastEnd_, "Write \":\" behind the name of the member.",
                            last() + ":");
            case Wants::commaOrEnd:
                return readCommaOrEnd();
            case Wants::name:
            case Wants::nameOrEnd:
                return readName();
            case Wants::value:
            case Wants::valueOrEnd:
                return readValue();
        }
        return std::nullopt;
    }

    std::string last() const {
        return std::string(text_.substr(lastBegin_, lastEnd_ - lastBegin_));
    }

    void endValue() { wants_ = open_.empty() ? Wants::nothing : Wants::commaOrEnd; }

    std::optional<FileFault> close() {
        if (closing(text_[open_.back()]) != here())
            return relatedTo(made(at_, at_ + 1,
                                  std::string("Close \"") + text_[open_.back()] + "\" by \"" +
                                      closing(text_[open_.back()]) + "\" first."),
                             open_.back());
        open_.pop_back();
        ++at_;
        endValue();
        return std::nullopt;
    }

    std::optional<FileFault> readCommaOrEnd() {
        const bool isObject = text_[open_.back()] == '{';
        if (here() == ',') {
            ++at_;
            wants_ = isObject ? Wants::name : Wants::value;
            return std::nullopt;
        }
        if (here() == '}' || here() == ']')
            return close();
        if (here() == ';')
            return made(at_, at_ + 1, "Write a comma for the semicolon.", ",");
        if (here() == ':' || here() == '=')
            return made(at_, at_ + 1, "Write a name in quotes before the value, and one \":\".");
        return made(lastBegin_, lastEnd_, "Write a comma behind this.", last() + ",");
    }

    /// Where a name or a value is due and a comma or a closing bracket stands.
    std::optional<FileFault> surplusComma() const {
        if (here() == ',')
            return made(at_, at_ + 1, "Delete the comma; nothing stands before it.");
        return made(lastBegin_, lastEnd_,
                    std::string("Delete the comma before \"") + here() +
                        "\"; JSON has none behind the last one.");
    }

    std::optional<FileFault> readName() {
        if (here() == '"') {
            wants_ = Wants::colon;
            return readText();
        }
        if ((here() == '}' || here() == ']') && wants_ == Wants::nameOrEnd)
            return close();
        if (here() == ',' || here() == '}')
            return surplusComma();
        const std::size_t end = endOfWord();
        return made(at_, end, "Put the name of the member in double quotes.",
                    isLetter(here()) || here() == '_'
                        ? std::optional(quoted(text_.substr(at_, end - at_)))
                        : std::nullopt);
    }

    std::optional<FileFault> readValue() {
        const char c = here();
        if (c == '{' || c == '[') {
            open_.push_back(at_++);
            wants_ = c == '{' ? Wants::nameOrEnd : Wants::valueOrEnd;
            return std::nullopt;
        }
        if (c == ']' && wants_ == Wants::valueOrEnd)
            return close();
        if (c == ',' || c == '}' || c == ']') {
            if (lastEnd_ > 0 && text_[lastEnd_ - 1] == ':')
                return made(lastBegin_, lastEnd_, "Write a value behind \":\".");
            return surplusComma();
        }
        endValue();
        return c == '"' ? readText() : readWord();
    }

    std::size_t endOfWord() const {
        const std::size_t end =
            std::min(text_.find_first_of(" \t\r\n,:;{}[]\"'/#=", at_), text_.size());
        return std::max(end, at_ + 1);
    }

    /// A number, true, false or null.
    std::optional<FileFault> readWord() {
        const std::size_t begin = std::exchange(at_, endOfWord());
        const std::string_view word = text_.substr(begin, at_ - begin);
        const std::string lower = lowered(word);
        const bool isNull = lower == "null" || lower == "none" || lower == "nil";
        if (isNull || lower == "true" || lower == "false") {
            const std::string meant = isNull ? "null" : lower;
            if (word == meant)
                return std::nullopt;
            return made(begin, at_, "Write " + quoted(meant) + " in small letters.", meant);
        }
        if (isLetter(word.front()) || !isAscii(word.front()))
            return made(begin, at_, "Put the text in double quotes.", quoted(word));
        if (isNumber(word))
            return std::nullopt;
        return made(begin, at_,
                    "This is not a value that JSON knows: put a text in double quotes, "
                    "and write a number in digits, without \"+\" and zeros before it.");
    }

    static bool isNumber(std::string_view word) {
        const auto takeDigits = [&] {
            const std::size_t size = std::min(word.find_first_not_of("0123456789"), word.size());
            word.remove_prefix(size);
            return size;
        };
        if (word.starts_with('-'))
            word.remove_prefix(1);
        const bool isZero = word.starts_with('0');
        const std::size_t digits = takeDigits();
        if (digits == 0 || (isZero && digits > 1))
            return false;
        if (word.starts_with('.')) {
            word.remove_prefix(1);
            if (takeDigits() == 0)
                return false;
        }
        if (word.starts_with('e') || word.starts_with('E')) {
            word.remove_prefix(1);
            if (word.starts_with('+') || word.starts_with('-'))
                word.remove_prefix(1);
            if (takeDigits() == 0)
                return false;
        }
        return word.empty();
    }

    std::optional<FileFault> readText() {
        const std::size_t begin = at_++;
        for (; at_ < text_.size() && here() != '"'; ++at_) {
            if (here() == '\n' || here() == '\r')
                return unclosed(begin);
            if (static_cast<unsigned char>(here()) < ' ')
                return made(at_, at_ + 1,
                            "Write the control character as an escape, a tab as "
                            "\"\\t\".");
            if (here() != '\\')
                continue;
            if (at_ + 1 < text_.size() && R"("\/bfnrtu)"sv.find(text_[at_ + 1]) == npos)
                return made(at_, at_ + 1, "Write the backslash twice.", R"(\\)");
            ++at_;
        }
        if (at_ >= text_.size())
            return unclosed(begin);
        ++at_;
        return std::nullopt;
    }

    /// The closing quote may be a curly one.
    FileFault unclosed(std::size_t begin) const {
        const std::size_t end = std::min(text_.find_first_of("\r\n", begin), text_.size());
        const std::size_t curly = std::min(text_.find("”", begin), text_.find("“", begin));
        if (curly < end)
            return oddMarkup(text_, curly,
                             oddCharacter(text::firstCharacter(text_.substr(curly)).value), "JSON");
        return made(begin, end, "Close the text with a double quote on the same line.");
    }

    std::string_view text_;
    const Rule& unreadable_;
    std::size_t at_;
    Wants wants_ = Wants::value;
    std::vector<std::size_t> open_;  ///< where the brackets around it stand
    std::size_t lastBegin_ = 0;      ///< of the token before
    std::size_t lastEnd_ = 0;
};

}  // namespace

std::optional<FileFault> jsonFault(std::string_view text, const Rule& unreadable) {
    return JsonScan(text, unreadable).fault();
}

}  // namespace yg
