// SPDX-License-Identifier: MIT
#include "ygconfig/drawing/Display.h"

#include <algorithm>
#include <array>
#include <clocale>
#include <cstdio>
#include <cwchar>
#include <utility>

#include "YGConfigManager/text/Controls.h"

namespace yg::tool {

namespace {

constexpr wchar_t replacement = 0xFFFD;

/// Has the C library take text for UTF-8 on this thread, whatever the user's locale, as long as it
/// lives. The C library brings this locale with it.
class Utf8Scope {
public:
    Utf8Scope() : before_(::uselocale(utf8())) {}
    ~Utf8Scope() { ::uselocale(before_); }
    Utf8Scope(const Utf8Scope&) = delete;
    Utf8Scope& operator=(const Utf8Scope&) = delete;

private:
    static locale_t utf8() {
        static const locale_t locale = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
        return locale;
    }

    locale_t before_;
};

/// Most texts are: each character is a byte, takes a column and reaches the terminal.
bool isPrintableAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

void append(std::string& out, wchar_t character) {
    char bytes[16];  // of which UTF-8 needs four
    std::mbstate_t state{};
    const std::size_t length = std::wcrtomb(bytes, character, &state);
    if (length != static_cast<std::size_t>(-1))
        out.append(bytes, length);
}

constexpr char escapeMark = '\x1b';
constexpr std::string_view endOfColour = "\x1b[0m";

/// How many bytes switch colours at the beginning of the text.
std::size_t sizeOfColour(std::string_view text) {
    if (text.empty() || text.front() != escapeMark)
        return 0;
    const std::size_t end = text.find('m');
    return end == std::string_view::npos ? text.size() : end + 1;
}

bool isInsideCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// Where a line ends, and the colour there; "" for none.
struct Cut {
    std::size_t size = 0;
    std::string_view colour = {};
};

/// What of the text fits into a line; at least a character. `colour` is the one at its beginning.
Cut lineOf(std::string_view text, std::size_t columns, std::string_view colour) {
    Cut at{0, colour};
    Cut blank;
    Cut mark;
    std::size_t width = 0;
    bool isBegun = false;
    while (at.size < text.size()) {
        const char first = text[at.size];
        if (first == escapeMark) {
            const std::size_t size = sizeOfColour(text.substr(at.size));
            const std::string_view code = text.substr(at.size, size);
            at.colour = code == endOfColour ? "" : code;
            at.size += size;
            continue;
        }
        std::size_t size = 1;
        while (at.size + size < text.size() && isInsideCharacter(text[at.size + size]))
            ++size;
        width += size == 1 ? 1 : displayWidth(text.substr(at.size, size));
        // A blank may stand behind the end, where it does not show.
        if (isBegun && width > columns && first != ' ')
            return blank.size > 0 ? blank : mark.size > 0 ? mark : at;
        isBegun = true;
        at.size += size;
        if (first == ' ')
            blank = at;
        else if (first == ',' || first == ';' || first == '/' || first == '|' || first == '&')
            mark = at;
    }
    return at;
}

}  // namespace

std::wstring characters(std::string_view text) {
    const Utf8Scope utf8;
    std::wstring found;
    while (!text.empty()) {
        wchar_t character = 0;
        std::mbstate_t state{};
        std::size_t length = std::mbrtowc(&character, text.data(), text.size(), &state);
        if (length > text.size()) {
            character = replacement;
            length = 1;
        }
        // A NUL character counts as no byte at all.
        text.remove_prefix(length == 0 ? 1 : length);
        found += character;
    }
    return found;
}

std::string printable(std::string_view text) {
    if (isPrintableAscii(text))
        return std::string(text);
    const std::wstring source = characters(text);
    const Utf8Scope utf8;
    std::string result;
    for (const wchar_t character : source)
        append(result, text::isControl(static_cast<char32_t>(character)) ? replacement : character);
    return result;
}

std::size_t displayWidth(std::string_view text) {
    if (isPrintableAscii(text))
        return text.size();
    const std::wstring source = characters(text);
    const Utf8Scope utf8;
    std::size_t width = 0;
    for (const wchar_t character : source) {
        const int columns = ::wcwidth(character);
        width += columns < 0 ? 1 : static_cast<std::size_t>(columns);
    }
    return width;
}

std::size_t shownWidth(std::string_view text) {
    std::size_t width = 0;
    while (!text.empty()) {
        const std::size_t escape = std::min(text.find(escapeMark), text.size());
        width += displayWidth(text.substr(0, escape));
        text.remove_prefix(escape);
        text.remove_prefix(sizeOfColour(text));
    }
    return width;
}

std::string threeDigits(double number) {
    std::array<char, 32> digits{};
    std::snprintf(digits.data(), digits.size(), "%.3g", number);
    return digits.data();
}

std::vector<std::string> folded(std::string_view text, std::size_t columns, std::size_t indent) {
    std::vector<std::string> lines;
    std::string_view colour;  // at the beginning of the line
    do {
        const std::size_t before = lines.empty() ? 0 : indent;
        const Cut cut = lineOf(text, std::max(columns, before + 2) - before, colour);
        std::string line(before, ' ');
        line.append(colour).append(text.substr(0, cut.size));
        while (cut.size < text.size() && line.size() > before && line.back() == ' ')
            line.pop_back();
        if (!cut.colour.empty() && cut.size < text.size())
            line += endOfColour;
        lines.push_back(std::move(line));
        text.remove_prefix(cut.size);
        colour = cut.colour;
    } while (!text.empty());
    return lines;
}

}  // namespace yg::tool
