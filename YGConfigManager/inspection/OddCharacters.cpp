// SPDX-License-Identifier: MIT
#include "YGConfigManager/inspection/OddCharacters.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <vector>

#include "YGConfigManager/text/Utf8.h"

namespace yg {

namespace {

using enum OddKind;

constexpr OddCharacter table[] = {
    {0x00A0, blank, "no-break space", " "},
    {0x00AD, invisible, "soft hyphen", ""},
    {0x2002, blank, "en space", " "},
    {0x2003, blank, "em space", " "},
    {0x2009, blank, "thin space", " "},
    {0x200B, invisible, "zero-width space", ""},
    {0x200E, invisible, "left-to-right mark", ""},
    {0x200F, invisible, "right-to-left mark", ""},
    {0x2013, sign, "en dash", "-"},
    {0x2018, quote, "left single quotation mark", "'"},
    {0x2019, quote, "right single quotation mark", "'"},
    {0x201C, quote, "left double quotation mark", "\""},
    {0x201D, quote, "right double quotation mark", "\""},
    {0x201E, quote, "low double quotation mark", "\""},
    {0x202A, invisible, "left-to-right embedding", ""},
    {0x202C, invisible, "pop directional formatting", ""},
    {0x202D, invisible, "left-to-right override", ""},
    {0x202F, blank, "narrow no-break space", " "},
    {0x2060, invisible, "word joiner", ""},
    {0x2212, sign, "minus sign", "-"},
    {0x3000, blank, "ideographic space", " "},
    {0x3001, sign, "ideographic comma", ","},
    {0x3002, sign, "ideographic full stop", "."},
    {0xFEFF, invisible, "byte-order mark", ""},
};

constexpr char32_t firstFullWidth = 0xFF01;
constexpr char32_t lastFullWidth = 0xFF5E;

constexpr auto ascii = [] {
    std::array<char, 0x7F> characters{};
    for (std::size_t at = 0; at < characters.size(); ++at)
        characters[at] = static_cast<char>(at);
    return characters;
}();

}  // namespace

OddCharacter oddCharacter(char32_t character) {
    if (character >= firstFullWidth && character <= lastFullWidth) {
        const std::size_t meant = character - firstFullWidth + '!';
        return {character, meant == '"' || meant == '\'' ? quote : sign, "full-width form",
                std::string_view(ascii.data() + meant, 1)};
    }
    const auto* const found = std::ranges::lower_bound(table, character, {}, &OddCharacter::value);
    if (found != std::end(table) && found->value == character)
        return *found;
    return {character, sign, {}, {}};
}

std::string shownCharacter(const OddCharacter& odd) {
    char number[16];
    const int size =
        std::snprintf(number, sizeof number, "U+%04X", static_cast<unsigned>(odd.value));
    return std::string(number, static_cast<std::size_t>(size)) + " (" + std::string(odd.name) + ")";
}

std::string withoutOddCharacters(std::string_view text) {
    std::string plain;
    while (!text.empty()) {
        const text::Character character = text::firstCharacter(text);
        const OddCharacter odd = oddCharacter(character.value);
        plain += odd.name.empty() ? text.substr(0, character.size) : odd.meant;
        text.remove_prefix(character.size);
    }
    return plain;
}

std::string hiddenCharacters(std::string_view text) {
    std::vector<char32_t> seen;
    std::string shown;
    while (!text.empty()) {
        const text::Character character = text::firstCharacter(text);
        text.remove_prefix(character.size);
        const OddCharacter odd = oddCharacter(character.value);
        if (odd.name.empty() || (odd.kind != blank && odd.kind != invisible) ||
            std::ranges::find(seen, character.value) != seen.end())
            continue;
        seen.push_back(character.value);
        shown += (shown.empty() ? "" : ", ") + shownCharacter(odd);
    }
    return shown;
}

}  // namespace yg
