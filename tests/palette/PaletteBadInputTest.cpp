// SPDX-License-Identifier: MIT
//
// Palettes and images that are missing, cut short, or made to cost a lot.
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/palette/YGPaletteLoad.h"

#include "diagnostics/RecordingSink.h"
#include "graphics/CountedMemory.h"
#include "graphics/ImageFiles.h"
#include "palette/PaletteRoot.h"
#include "records/RecordText.h"

namespace yg {
namespace {

using ::testing::ElementsAre;
using ::testing::StartsWith;
using yg::testing::palette;
using yg::testing::PaletteRoot;
using yg::testing::RecordingSink;

TEST(PaletteBadInput, MissingOrUnreadableFilesGiveNoLoader) {
    const PaletteRoot files;
    EXPECT_EQ(YGPaletteLoad::initWithPaletteStyle(0), nullptr);
    EXPECT_THAT(files.host->runtimeLog(), ElementsAre("load palette config fail:" +
                                                      files.root.at("storage/palette_white.xml") +
                                                      ": No such file or directory"));
    files.root.makeFolder("storage/palette_white.xml");
    EXPECT_EQ(YGPaletteLoad::initWithPaletteStyle(0), nullptr);
}

TEST(PaletteBadInput, WhatIsNoXmlGivesNoLoader) {
    const PaletteRoot files;
    for (const std::string_view text :
         {"", "no palette", "{}", "<ROOT>", "<ROOT/><ROOT/>", "<ROOT a='1' a='2'/>",
          "<ROOT>&x;</ROOT>", "<ROOT>\xff</ROOT>"}) {
        files.host->clear();
        files.writeLight(text);
        EXPECT_EQ(YGPaletteLoad::initWithPaletteStyle(0), nullptr) << text;
        EXPECT_THAT(files.host->runtimeLog(), ElementsAre(StartsWith("load palette config fail:")))
            << text;
    }
}

TEST(PaletteBadInput, APaletteCutShortAnywhereGivesNoLoader) {
    const PaletteRoot files;
    const std::string whole = palette("<COLORES><c NAME='价格.涨' R='1'/></COLORES>");
    for (std::size_t size = 0; size < whole.size(); ++size) {
        files.writeLight(whole.substr(0, size));
        EXPECT_EQ(YGPaletteLoad::initWithPaletteStyle(0), nullptr) << size;
    }
}

TEST(PaletteBadInput, AnyOtherXmlGivesAnEmptyPalette) {
    const PaletteRoot files;
    for (const std::string_view text :
         {"<root/>", "<SWPALETTE><COLORES><c NAME='c'/></COLORES></SWPALETTE>"}) {
        files.writeLight(text);
        EXPECT_EQ(yg::testing::wholeText(*YGPaletteLoad::initWithPaletteStyle(0)),
                  yg::testing::emptyPalette);
    }
}

TEST(PaletteBadInput, FilesThatAreNoImageGiveNone) {
    const PaletteRoot files;
    files.root.write("images/empty.png", "");
    files.root.write("images/text.png", "no image");
    files.root.write("images/short.png", yg::testing::columns(9, 9).toPng()->substr(0, 50));
    files.root.makeFolder("images/folder.png");
    files.writeLight(palette(R"(<BITMAPS>
        <i NAME="a" PATH="empty.png"/><i NAME="b" PATH="text.png"/><i NAME="c" PATH="short.png"/>
        <i NAME="d" PATH="folder.png"/><i NAME="e" PATH="/dev/zero"/><i NAME="f" PATH="~"/>
    </BITMAPS>)"));
    const auto loader = YGPaletteLoad::initWithPaletteStyle(0);
    EXPECT_TRUE(loader->customImages().empty());
}

TEST(PaletteBadInput, ImagesStopWhereTheirPixelsAreTooMany) {
    const PaletteRoot files;
    constexpr std::uint32_t side = 8192;
    // One bit a pixel, and a byte before each row.
    files.root.write("images/large.png",
                     yg::testing::pngHeader(side, side, yg::testing::PngColor::gray, 1) +
                         yg::testing::pngEnd(std::string((side / 8 + 1) * side, '\0')));
    files.writeImage("small.png", 4, 2);
    files.writeLight(palette(R"(<BITMAPS><i NAME="a" PATH="small.png"/>
        <i NAME="b" PATH="large.png"/><i NAME="c" PATH="small.png"/><i NAME="a" PATH="small.png"/>
    </BITMAPS>)"));
    RecordingSink sink;
    const auto loader = YGPaletteLoad::initWithPaletteStyle(0, &sink);
    EXPECT_THAT(yg::testing::keysOf(loader->customImages()), ElementsAre("b"));
    EXPECT_THAT(sink.rules(), ElementsAre("too-many-image-pixels", "duplicate-palette-name",
                                          "too-many-image-pixels"));
}

TEST(PaletteBadInput, ADamagedImageCountsWithThePixelsThatItDeclares) {
    const PaletteRoot files;
    files.root.write("images/damaged.png",
                     yg::testing::pngHeader(8192, 8192, yg::testing::PngColor::gray, 1) +
                         yg::testing::pngChunk("IDAT", std::string(9000, 'x')) +
                         yg::testing::pngChunk("IEND", ""));
    files.writeImage("small.png", 4, 2);
    files.writeLight(palette(R"(<BITMAPS><i NAME="a" PATH="small.png"/>
        <i NAME="b" PATH="damaged.png"/><i NAME="c" PATH="damaged.png"/>
        <i NAME="d" PATH="small.png"/></BITMAPS>)"));
    RecordingSink sink;
    const auto loader = YGPaletteLoad::initWithPaletteStyle(0, &sink);
    EXPECT_THAT(yg::testing::keysOf(loader->customImages()), ElementsAre("a"));
    EXPECT_THAT(sink.rules(),
                ElementsAre("unreadable-image", "too-many-image-pixels", "too-many-image-pixels"));
}

TEST(PaletteBadInput, ImagesStopWhereTheirFilesAreTooLarge) {
    const PaletteRoot files;
    std::string entries;
    for (const char* name : {"a", "b", "c", "d"}) {
        files.root.write(std::string("images/") + name, "no image");
        std::filesystem::resize_file(files.root.at(std::string("images/") + name), 64 << 20);
        entries += std::string("<i NAME='") + name + "' PATH='" + name + "'/>";
    }
    files.writeImage("small.png", 4, 2);
    files.writeLight(palette("<BITMAPS><i NAME='first' PATH='small.png'/>" + entries +
                             "<i NAME='last' PATH='small.png'/></BITMAPS>"));
    RecordingSink sink;
    const auto loader = YGPaletteLoad::initWithPaletteStyle(0, &sink);
    EXPECT_THAT(yg::testing::keysOf(loader->customImages()), ElementsAre("first"));
    EXPECT_THAT(sink.rules(),
                ElementsAre("unreadable-image", "unreadable-image", "unreadable-image",
                            "unreadable-image", "too-many-image-bytes"));
}

TEST(PaletteBadInput, NamesOfOneFileShareItsPixels) {
    const PaletteRoot files;
    files.writeImage("a.png", 4, 2);
    files.root.makeFolder("images/b");
    std::filesystem::create_symlink("a.png", files.root.at("images/link.png"));
    std::filesystem::create_hard_link(files.root.at("images/a.png"),
                                      files.root.at("images/other.png"));
    files.writeLight(palette(R"(<BITMAPS><i NAME="a" PATH="a.png"/><i NAME="b" PATH="b/../a.png"/>
        <i NAME="c" PATH="./a.png"/><i NAME="d" PATH="link.png"/><i NAME="e" PATH="other.png"/>
        </BITMAPS>)"));
    const auto loader = YGPaletteLoad::initWithPaletteStyle(0);
    ASSERT_THAT(loader->customImages(), ::testing::SizeIs(5));
    for (const auto& [name, image] : loader->customImages())
        EXPECT_EQ(image.row(0).data(), loader->getCustomImage("a")->row(0).data()) << name;
}

#ifndef YG_NO_COUNTED_MEMORY
TEST(PaletteBadInput, MemoryGrowsAsTheNumberOfEntries) {
    const PaletteRoot files;
    const auto takenFor = [&](int count) {
        std::string sections[5];
        for (int i = 0; i < count; ++i) {
            const std::string number = std::to_string(100'000 + i);
            sections[0] += "<c NAME='n" + number + "' R='1' G='2' B='3'/>";
            sections[1] += "<f NAME='n" + number + "' HEIGHT='12' FACE='f" + number + "'/>";
            sections[2] += "<i NAME='n" + number + "' PATH='p" + number + "'/>";
            sections[3] += "<k KEY='k" + number + "' VALUE='n" + number + "'/>";
            sections[4] += "<k KEY='k" + number + "' VALUE='n" + number + "'/>";
        }
        files.writeLight(palette("<COLORES>" + sections[0] + "</COLORES><FONTS>" + sections[1] +
                                 "</FONTS><BITMAPS>" + sections[2] +
                                 "</BITMAPS><APP_MAP><COLORES>" + sections[3] +
                                 "</COLORES><FONTS>" + sections[4] + "</FONTS></APP_MAP>"));
        const std::size_t before = yg::testing::bytesTaken();
        EXPECT_THAT(YGPaletteLoad::initWithPaletteStyle(0)->keyFontNames(),
                    ::testing::SizeIs(count));
        return yg::testing::bytesTaken() - before;
    };
    takenFor(1);
    const std::size_t some = takenFor(1024);
    EXPECT_LT(takenFor(8 * 1024), 9 * some);
}
#endif

}  // namespace
}  // namespace yg
