// SPDX-License-Identifier: MIT
#include "ygconfig/drawing/Display.h"

#include <algorithm>
#include <clocale>
#include <cwchar>

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

}  // namespace yg::tool
