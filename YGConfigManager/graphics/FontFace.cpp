// SPDX-License-Identifier: MIT
#include "YGConfigManager/graphics/FontFace.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

#include <hb.h>

#include "YGConfigManager/graphics/FontServices.h"
#include "YGConfigManager/text/Utf8.h"

namespace yg {

namespace {

/// A longer text is not remembered.
constexpr std::size_t longestRemembered = 4096;

/// More characters are measured in pieces, so that a text of any length takes bounded memory.
constexpr std::size_t longestPiece = 16384;

/// Held for ever: HarfBuzz lets go of them at the end of the process, while threads may measure.
hb_unicode_funcs_t* unicode() {
    static hb_unicode_funcs_t* const held =
        hb_unicode_funcs_reference(hb_unicode_funcs_get_default());
    return held;
}

/// Takes one character off the front of a text; of what is not UTF-8, one byte.
char32_t takeCharacter(std::string_view& text) {
    const text::Character first = text::firstCharacter(text);
    text.remove_prefix(first.size);
    return first.value;
}

bool endsLine(char32_t character) {
    return character == '\n' || character == '\r' || character == 0x85 || character == 0x2028 ||
           character == 0x2029;
}

/// Whether a character is drawn on the one before, or not at all.
bool isMark(char32_t character) {
    switch (hb_unicode_general_category(unicode(), character)) {
        case HB_UNICODE_GENERAL_CATEGORY_ENCLOSING_MARK:
        case HB_UNICODE_GENERAL_CATEGORY_FORMAT:
        case HB_UNICODE_GENERAL_CATEGORY_NON_SPACING_MARK:
            return true;
        default:
            return false;
    }
}

bool isControl(char32_t character) {
    return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

/// Whether East Asian text gives the character a whole square.
bool isWide(char32_t character) {
    constexpr std::array<std::pair<char32_t, char32_t>, 10> ranges = {{
        {0x1100, 0x115F},    // Hangul letters that begin a syllable
        {0x2E80, 0x303E},    // radicals, punctuation
        {0x3041, 0xA4CF},    // kana, ideographs, Yi
        {0xA960, 0xA97C},    // more such Hangul letters
        {0xAC00, 0xD7A3},    // Hangul syllables
        {0xF900, 0xFAFF},    // compatibility ideographs
        {0xFE30, 0xFE6F},    // vertical and small forms
        {0xFF01, 0xFF60},    // full-width forms
        {0xFFE0, 0xFFE6},    // full-width signs
        {0x1F300, 0x3FFFD},  // pictures, ideographs of the planes behind
    }};
    return std::any_of(ranges.begin(), ranges.end(), [character](const auto& range) {
        return character >= range.first && character <= range.second;
    });
}

/// The script of a character; none for those that take the script of what stands beside them.
std::optional<hb_script_t> scriptOf(char32_t character) {
    const hb_script_t script = hb_unicode_script(unicode(), character);
    if (script == HB_SCRIPT_COMMON || script == HB_SCRIPT_INHERITED || script == HB_SCRIPT_UNKNOWN)
        return std::nullopt;
    return script;
}

}  // namespace

void TextExtent::add(std::int64_t units, unsigned unitsPerEm) {
    for (Part& part : parts_) {
        if (part.unitsPerEm == unitsPerEm) {
            part.units += units;
            return;
        }
    }
    parts_.push_back({units, unitsPerEm});
}

double TextExtent::at(double size) const {
    double width = 0;
    for (const Part& part : parts_) {
        // Nothing stays nothing, at an infinite size too.
        if (part.units != 0)
            width += static_cast<double>(part.units) * size / part.unitsPerEm;
    }
    return width;
}

FontFace::FontFace(std::string name, std::shared_ptr<const FontFile> file,
                   std::shared_ptr<FontFallbacks> fallbacks, FontServices& services)
    : name_(std::move(name)),
      file_(std::move(file)),
      fallbacks_(std::move(fallbacks)),
      services_(services) {}

double FontFace::widthByRule(std::string_view text, double size) {
    constexpr unsigned halvesPerEm = 2;
    std::int64_t widest = 0;
    std::int64_t halves = 0;
    while (!text.empty()) {
        const char32_t character = takeCharacter(text);
        if (endsLine(character)) {
            halves = 0;
        } else if (character == '\t' || (!isControl(character) && !isMark(character))) {
            halves += isWide(character) ? 2 : 1;
            widest = std::max(widest, halves);
        }
    }
    // Nothing stays nothing, at an infinite size too.
    return widest == 0 ? 0 : static_cast<double>(widest) * size / halvesPerEm;
}

double FontFace::widthOf(std::string_view text, double size) const {
    if (!file_)
        return widthByRule(text, size);
    if (text.size() > longestRemembered)
        return extentOf(text).at(size);
    {
        const std::unique_lock lock(mutex_, std::try_to_lock);
        if (lock && lastText_ == text)
            return lastExtent_.at(size);
    }
    TextExtent extent = extentOf(text);
    const double width = extent.at(size);
    const std::unique_lock lock(mutex_, std::try_to_lock);
    if (lock) {
        lastText_ = text;
        lastExtent_ = std::move(extent);
    }
    return width;
}

TextExtent FontFace::extentOf(std::string_view text) const {
    TextExtent widest;
    std::vector<char32_t> line;
    while (true) {
        const char32_t character = text.empty() ? U'\n' : takeCharacter(text);
        if (endsLine(character)) {
            TextExtent extent = extentOfLine(line);
            if (extent.at(1) > widest.at(1))
                widest = std::move(extent);
            line.clear();
            if (text.empty())
                return widest;
        } else if (character == '\t') {
            line.push_back(' ');
        } else if (!isControl(character)) {
            line.push_back(character);
        }
    }
}

TextExtent FontFace::extentOfLine(const std::vector<char32_t>& line) const {
    TextExtent extent;
    const FontFile* file = file_.get();
    std::optional<hb_script_t> script;
    std::size_t first = 0;
    const auto finish = [&](std::size_t end) {
        if (end > first) {
            extent.add(file->widthOf(line, first, end - first, script.value_or(HB_SCRIPT_COMMON)),
                       file->unitsPerEm());
        }
        first = end;
    };
    for (std::size_t i = 0; i < line.size(); ++i) {
        // A mark stays with what it is drawn on.
        const FontFile* const next = i > 0 && isMark(line[i]) ? file : &fileFor(line[i]);
        const std::optional<hb_script_t> nextScript = scriptOf(line[i]);
        const bool changesScript = script && nextScript && *nextScript != *script;
        if (next != file || changesScript || i - first >= longestPiece) {
            finish(i);
            file = next;
            script = nextScript;
        } else if (!script) {
            script = nextScript;
        }
    }
    finish(line.size());
    return extent;
}

const FontFile& FontFace::fileFor(char32_t character) const {
    if (file_->hasCharacter(character))
        return *file_;
    const std::shared_ptr<const FontFile> other = services_.fallback(*fallbacks_, character);
    // Opened files stay open. A character that no face has is measured as this one shows it.
    return other ? *other : *file_;
}

}  // namespace yg
