// SPDX-License-Identifier: MIT
//
// Writes the fonts that tests measure with, so that a width is known before it is measured:
//
//   makeTestFonts FOLDER
//
//   square.ttf       "YG Test Square", also "方测试体": every character is as wide as it is high
//   square_bold.ttf  the same family in bold: a quarter wider
//   latin.ttf        "YG Test Latin": printable ASCII only, half as wide as it is high
//   light.ttf, black.ttf   "YG Test Weights", which has no regular face: a quarter and three
//                          quarters as wide as high
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr unsigned unitsPerEm = 1000;

/// Bytes, the highest of a number first.
class Bytes {
public:
    Bytes& u8(unsigned value) {
        bytes_ += static_cast<char>(value & 0xFF);
        return *this;
    }
    Bytes& u16(unsigned value) { return u8(value >> 8).u8(value); }
    Bytes& u32(std::uint32_t value) { return u16(value >> 16).u16(value & 0xFFFF); }
    Bytes& zeros(std::size_t count) {
        bytes_.append(count, '\0');
        return *this;
    }
    Bytes& text(std::string_view text) {
        bytes_ += text;
        return *this;
    }
    std::size_t size() const { return bytes_.size(); }
    const std::string& str() const { return bytes_; }

private:
    std::string bytes_;
};

struct FontDescription {
    std::string file;
    std::u16string family;
    std::u16string chineseFamily;
    std::u16string style;
    unsigned weight;
    unsigned advance;
    std::vector<std::pair<std::uint32_t, std::uint32_t>> characters;
};

bool isRegular(const FontDescription& font) {
    return font.weight == 400;
}

bool isBold(const FontDescription& font) {
    return font.weight == 700;
}

std::string head(const FontDescription& font) {
    return Bytes()
        .u32(0x00010000)
        .u32(0x00010000)
        .u32(0)  // the sum over the file, put in at the end
        .u32(0x5F0F3CF5)
        .u16(0)
        .u16(unitsPerEm)
        .zeros(16)
        .u16(0)
        .u16(0)
        .u16(font.advance)
        .u16(800)
        .u16(isBold(font) ? 1 : 0)
        .u16(8)
        .u16(2)
        .u16(0)
        .u16(0)
        .str();
}

std::string hhea(const FontDescription& font) {
    return Bytes()
        .u32(0x00010000)
        .u16(800)
        .u16(0x10000 - 200)
        .u16(0)
        .u16(font.advance)
        .zeros(6)
        .u16(1)
        .zeros(14)
        .u16(1)  // one width for all glyphs
        .str();
}

std::string hmtx(const FontDescription& font) {
    return Bytes().u16(font.advance).u16(0).u16(0).str();
}

std::string maxp() {
    return Bytes().u32(0x00010000).u16(2).u16(4).u16(1).zeros(22).str();
}

/// A box of four points.
std::string box(const FontDescription& font) {
    Bytes glyph;
    glyph.u16(1).u16(0).u16(0).u16(font.advance).u16(800);
    glyph.u16(3).u16(0);
    glyph.u8(1).u8(1).u8(1).u8(1);
    glyph.u16(0).u16(0).u16(font.advance).u16(0);
    glyph.u16(0).u16(800).u16(0).u16(0x10000 - 800);
    return glyph.zeros(glyph.size() % 2).str();
}

std::string glyf(const FontDescription& font) {
    return box(font) + box(font);
}

std::string loca(const FontDescription& font) {
    const auto half = static_cast<unsigned>(box(font).size() / 2);
    return Bytes().u16(0).u16(half).u16(2 * half).str();
}

/// All characters show one glyph: the format for that names ranges only.
std::string cmap(const FontDescription& font) {
    const auto count = static_cast<std::uint32_t>(font.characters.size());
    Bytes table;
    table.u16(0).u16(1).u16(3).u16(10).u32(12);
    table.u16(13).u16(0).u32(16 + 12 * count).u32(0).u32(count);
    for (const auto& [first, last] : font.characters)
        table.u32(first).u32(last).u32(1);
    return table.str();
}

std::string utf16(const std::u16string& text) {
    Bytes bytes;
    for (const char16_t unit : text)
        bytes.u16(unit);
    return bytes.str();
}

std::string name(const FontDescription& font) {
    const std::u16string ending = isRegular(font) ? u"" : u" " + font.style;
    const std::u16string full = font.family + ending;
    std::u16string postScript = font.family;
    std::erase(postScript, u' ');
    postScript += u"-" + font.style;

    constexpr unsigned english = 0x0409;
    constexpr unsigned chinese = 0x0804;
    std::map<std::pair<unsigned, unsigned>, std::u16string> texts = {
        {{english, 1}, font.family}, {{english, 2}, font.style}, {{english, 3}, full + u" 1"},
        {{english, 4}, full},        {{english, 5}, u"1"},       {{english, 6}, postScript},
    };
    if (!font.chineseFamily.empty()) {
        texts[{chinese, 1}] = font.chineseFamily;
        texts[{chinese, 2}] = font.style;
        texts[{chinese, 4}] = font.chineseFamily + ending;
    }
    Bytes records;
    std::string storage;
    for (const auto& [key, text] : texts) {
        const std::string bytes = utf16(text);
        records.u16(3).u16(1).u16(key.first).u16(key.second);
        records.u16(static_cast<unsigned>(bytes.size())).u16(static_cast<unsigned>(storage.size()));
        storage += bytes;
    }
    const auto count = static_cast<unsigned>(texts.size());
    return Bytes().u16(0).u16(count).u16(6 + 12 * count).text(records.str()).text(storage).str();
}

std::string os2(const FontDescription& font) {
    return Bytes()
        .u16(4)
        .u16(font.advance)
        .u16(font.weight)
        .u16(5)
        .zeros(2 + 20 + 2 + 10 + 16)
        .text("YGTS")
        .u16(isBold(font)      ? 0x20
             : isRegular(font) ? 0x40
                               : 0)
        .u16(static_cast<unsigned>(std::min<std::uint32_t>(font.characters.front().first, 0xFFFF)))
        .u16(static_cast<unsigned>(std::min<std::uint32_t>(font.characters.back().second, 0xFFFF)))
        .u16(800)
        .u16(0x10000 - 200)
        .u16(0)
        .u16(800)
        .u16(200)
        .zeros(8)
        .u16(500)
        .u16(800)
        .zeros(6)
        .str();
}

std::string post() {
    return Bytes().u32(0x00030000).zeros(28).str();
}

std::uint32_t sumOf(const std::string& bytes) {
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const auto byte = static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i]));
        sum += byte << (8 * (3 - i % 4));
    }
    return sum;
}

std::string fontFile(const FontDescription& font) {
    const std::map<std::string, std::string> tables = {
        {"OS/2", os2(font)},  {"cmap", cmap(font)}, {"glyf", glyf(font)}, {"head", head(font)},
        {"hhea", hhea(font)}, {"hmtx", hmtx(font)}, {"loca", loca(font)}, {"maxp", maxp()},
        {"name", name(font)}, {"post", post()},
    };
    const auto count = static_cast<unsigned>(tables.size());
    Bytes directory;
    // Eight of the ten tables are found by halving.
    directory.u32(0x00010000).u16(count).u16(8 * 16).u16(3).u16((count - 8) * 16);
    std::string content;
    std::size_t headAt = 0;
    const std::size_t start = 12 + 16 * std::size_t{count};
    for (const auto& [tag, table] : tables) {
        if (tag == "head")
            headAt = start + content.size();
        directory.text(tag).u32(sumOf(table));
        directory.u32(static_cast<std::uint32_t>(start + content.size()));
        directory.u32(static_cast<std::uint32_t>(table.size()));
        content += table;
        content.resize((content.size() + 3) / 4 * 4, '\0');
    }
    std::string file = directory.str() + content;
    file.replace(headAt + 8, 4, Bytes().u32(0xB1B0AFBA - sumOf(file)).str());
    return file;
}

}  // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 2) {
        std::fprintf(stderr, "usage: makeTestFonts FOLDER\n");
        return 2;
    }
    const std::vector<std::pair<std::uint32_t, std::uint32_t>> all = {
        {0x20, 0x7E}, {0xA0, 0xD7FF}, {0xE000, 0xFFFD}, {0x10000, 0x2FFFD}};
    const std::vector<std::pair<std::uint32_t, std::uint32_t>> ascii = {{0x20, 0x7E}};
    const std::vector<FontDescription> fonts = {
        {"square.ttf", u"YG Test Square", u"方测试体", u"Regular", 400, unitsPerEm, all},
        {"square_bold.ttf", u"YG Test Square", u"方测试体", u"Bold", 700, unitsPerEm * 5 / 4, all},
        {"latin.ttf", u"YG Test Latin", u"", u"Regular", 400, unitsPerEm / 2, ascii},
        {"light.ttf", u"YG Test Weights", u"", u"Light", 300, unitsPerEm / 4, ascii},
        {"black.ttf", u"YG Test Weights", u"", u"Black", 900, unitsPerEm * 3 / 4, ascii},
    };
    return std::all_of(fonts.begin(), fonts.end(),
                       [&](const FontDescription& font) {
                           std::ofstream file(std::string(arguments[1]) + "/" + font.file,
                                              std::ios::binary);
                           file << fontFile(font);
                           return file.good();
                       })
               ? 0
               : 1;
}
