// SPDX-License-Identifier: MIT
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "YGConfigManager/graphics/FontContent.h"

#include "files/TemporaryFolder.h"
#include "graphics/ImageFiles.h"

namespace yg {
namespace {

constexpr std::size_t limit = std::size_t{1} << 20;

std::string number(std::size_t value) {
    return testing::bigEndian(static_cast<std::uint32_t>(value));
}

struct Table {
    std::string name;
    std::string content;
};

/// A font file of these tables, as if it lay at `place` in a larger one.
std::string fontOf(const std::vector<Table>& tables, std::size_t place = 0) {
    std::string header = number(0x10000) + '\0' + static_cast<char>(tables.size()) + "123456";
    std::string content;
    for (const Table& table : tables) {
        header += table.name + "sum." + number(place + 12 + 16 * tables.size() + content.size()) +
                  number(table.content.size());
        content += table.content;
    }
    return header + content;
}

/// What is read of a file.
std::string read(const std::string& file) {
    const files::TemporaryFolder folder;
    folder.write("font", file);
    const auto content = FontContent::read(folder.at("font"), limit);
    return content ? std::string(content->bytes()) : "nothing";
}

const std::string letters = "abcdefgh";
const std::string zeros(8, '\0');

TEST(FontContent, LeavesOutOutlinesAndNamesOfGlyphs) {
    EXPECT_EQ(
        read(fontOf({{"cmap", letters}, {"glyf", letters}, {"hmtx", letters}, {"post", letters}})),
        fontOf({{"cmap", letters}, {"glyf", zeros}, {"hmtx", letters}, {"post", zeros}}));
}

TEST(FontContent, LeavesThemOutOfEachFaceOfAFile) {
    const auto fileOf = [](const std::string& glyphs) {
        const std::vector<Table> tables{{"glyf", glyphs}, {"hmtx", letters}};
        const std::string header = "ttcf" + number(0x10000) + number(2) + number(20) + number(80);
        return header + fontOf(tables, 20) + fontOf(tables, 80);
    };
    EXPECT_EQ(read(fileOf(letters)), fileOf(zeros));
}

TEST(FontContent, IsWholeWhereWidthsMayDependOnThem) {
    const std::string varies = fontOf({{"fvar", letters}, {"glyf", letters}, {"post", letters}});
    const std::string ofAnotherKind = fontOf({{"CFF ", letters}, {"post", letters}});
    EXPECT_EQ(read(varies), varies);
    EXPECT_EQ(read(ofAnotherKind), ofAnotherKind);
}

TEST(FontContent, IsWholeWhereTablesOverlap) {
    std::string file = fontOf({{"glyf", letters}, {"hmtx", letters}});
    // The second one begins in the first.
    file.replace(12 + 16 + 8, 4, number(12 + 32 + 7));
    EXPECT_EQ(read(file), file);
}

TEST(FontContent, IsThatOfAnyFile) {
    for (const std::string& file :
         {std::string(), std::string("no font"), "ttcf" + number(1) + number(0xFFFFFFFF),
          "ttcf" + number(1) + number(1) + number(0xFFFFFFFF), fontOf({}),
          number(0x10000) + "\xFF\xFF" + std::string(100, 'x')})
        EXPECT_EQ(read(file), file);
}

TEST(FontContent, EndsWithTheFile) {
    std::string file = fontOf({{"hmtx", letters}, {"glyf", letters}});
    file.resize(file.size() - 3);
    EXPECT_EQ(read(file), fontOf({{"hmtx", letters}, {"glyf", zeros}}).substr(0, file.size()));
}

TEST(FontContent, IsNoneOfWhatCannotBeRead) {
    const files::TemporaryFolder folder;
    folder.write("font", std::string(limit + 1, ' '));
    EXPECT_FALSE(FontContent::read(folder.at("font"), limit));
    EXPECT_TRUE(FontContent::read(folder.at("font"), limit + 1));
    EXPECT_FALSE(FontContent::read(folder.path(), limit));
    EXPECT_FALSE(FontContent::read(folder.at("missing"), limit));
}

}  // namespace
}  // namespace yg
