// SPDX-License-Identifier: MIT
//
// The findings about a palette.
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/palette/YGPaletteLoad.h"
#include "YGConfigManager/xml/Document.h"

#include "diagnostics/RecordingSink.h"
#include "palette/PaletteRoot.h"
#include "palette/TestFonts.h"
#include "records/RecordText.h"

namespace yg {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using yg::testing::PaletteRoot;
using yg::testing::RecordingSink;
using yg::testing::wholeText;

std::vector<std::string> findings(std::string_view xml) {
    const PaletteRoot files;
    files.writeImage("a.png", 4, 2);
    files.writeImage("b/c.png", 4, 2);
    files.writeImage("../out.png", 4, 2);
    files.writeLight(xml);
    RecordingSink sink;
    YGPaletteLoad::initWithPaletteStyle(0, &sink);
    EXPECT_THAT(sink.unaccounted(), IsEmpty());
    std::vector<std::string> lines = sink.lines();
    for (std::string& line : lines) {
        if (const std::size_t at = line.find(files.root.path()); at != std::string::npos)
            line.replace(at, files.root.path().size(), "ROOT");
    }
    return lines;
}

/// The findings of a palette with this content; its first line is line 1.
std::vector<std::string> findingsIn(std::string_view content) {
    return findings(yg::testing::palette(content));
}

TEST(PaletteDiagnostics, APaletteInOrderHasNoFindings) {
    EXPECT_THAT(findings(R"(<?xml version="1.0"?><!-- comment -->
<ROOT><!-- comment --><SWPALETTE>
    <COLORES><!-- comment --><c R="0" G="255" B="1.5" A="0" NAME="c"/><c R="0" G="0" B="0" NAME="d"/>
    </COLORES>
    <FONTS><f NAME="f" HEIGHT="12" FACE="YG Test Latin"/></FONTS>
    <BITMAPS><i NAME="i" PATH="a.png"/><i NAME="" PATH="./b/../a.png"/></BITMAPS>
    <APP_MAP><COLORES><k KEY="k" VALUE="c"/></COLORES><FONTS><k KEY="" VALUE="f"/></FONTS></APP_MAP>
</SWPALETTE></ROOT>)"),
                IsEmpty());
}

TEST(PaletteDiagnostics, NameTheFileReadAndTheReasonWhenItCannotBe) {
    const PaletteRoot files;
    RecordingSink sink;
    EXPECT_EQ(YGPaletteLoad::initWithPaletteStyle(0, &sink), nullptr);
    const std::string path = files.root.at("storage/palette_white.xml");
    EXPECT_THAT(sink.files, ElementsAre(path));
    EXPECT_THAT(sink.lines(), ElementsAre("unreadable-file =No such file or directory"));
}

TEST(PaletteDiagnostics, AStyleWithoutAFile) {
    const PaletteRoot files;
    RecordingSink sink;
    EXPECT_EQ(YGPaletteLoad::initWithPaletteStyle(-2, &sink), nullptr);
    EXPECT_THAT(sink.files, IsEmpty());
    EXPECT_THAT(sink.lines(), ElementsAre("no-palette-path =-2"));
}

TEST(PaletteDiagnostics, ARootOfAnotherName) {
    EXPECT_THAT(findings("<Root><SWPALETTE><COLORES/></SWPALETTE></Root>"),
                ElementsAre("1: palette-root-name =Root"));
}

TEST(PaletteDiagnostics, MisspeltSections) {
    EXPECT_THAT(
        findings(R"(<ROOT>
<PALETTE/><SWPALETTE>
<COLORS><c/></COLORS><FONT/>
<APP_MAP>
<COLORS/><BITMAPS/><APP_MAP/></APP_MAP></SWPALETTE></ROOT>)"),
        ElementsAre("2: unknown-palette-section =PALETTE", "3: unknown-palette-section =COLORS",
                    "3: unknown-palette-section =FONT", "5: unknown-palette-section =COLORS",
                    "5: unknown-palette-section =BITMAPS", "5: unknown-palette-section =APP_MAP"));
}

TEST(PaletteDiagnostics, SecondSections) {
    EXPECT_THAT(findingsIn(R"(
<COLORES/><FONTS/><BITMAPS/><APP_MAP><COLORES/><FONTS/></APP_MAP>
<COLORES><c/></COLORES>
<FONTS/>
<BITMAPS/>
<APP_MAP><COLORES/>
<FONTS/></APP_MAP>)"),
                ElementsAre("3: second-palette-section", "4: second-palette-section",
                            "5: second-palette-section", "6: second-palette-section",
                            "7: second-palette-section"));
}

TEST(PaletteDiagnostics, UnknownAttributesAndStrayContent) {
    EXPECT_THAT(
        findings(R"(<ROOT version="1">text<SWPALETTE a="1">text
<COLORES a="1">text<c NAME="c" R="0" G="0" B="0" name="c">text<c/></c></COLORES>
<APP_MAP a="1">text</APP_MAP></SWPALETTE></ROOT>)"),
        ElementsAre("1: unknown-attribute version=1", "1: stray-text =text",
                    "1: unknown-attribute a=1", "1: stray-text =text\n", "3: unknown-attribute a=1",
                    "3: stray-text =text", "2: unknown-attribute a=1", "2: stray-text =text",
                    "2: unknown-attribute name=c", "2: stray-text =text", "2: unread-content =c"));
}

TEST(PaletteDiagnostics, EntriesWithoutNameKeyOrValue) {
    EXPECT_THAT(findingsIn(R"(
<COLORES><c R="1"/></COLORES><FONTS><f FACE="f"/></FONTS><BITMAPS><i PATH="a.png"/></BITMAPS>
<APP_MAP><COLORES><k VALUE="c"/><k KEY="k"/></COLORES><FONTS><k/></FONTS></APP_MAP>)"),
                ElementsAre("2: palette-entry-without-name", "3: incomplete-palette-key =KEY",
                            "3: incomplete-palette-key =VALUE", "2: palette-entry-without-name",
                            "3: incomplete-palette-key =KEY", "2: palette-entry-without-name"));
}

TEST(PaletteDiagnostics, EmptyAndRepeatedNames) {
    EXPECT_THAT(
        findingsIn(R"(
<COLORES><c NAME="" R="0" G="0" B="0"/><c NAME="" R="0" G="0" B="0"/></COLORES>
<FONTS><f NAME="" HEIGHT="9" FACE="YG Test Latin"/><f NAME="" HEIGHT="9" FACE="YG Test Latin"/></FONTS>
<BITMAPS><i NAME="i" PATH="a.png"/><i NAME="i" PATH="a.png"/></BITMAPS>
<APP_MAP><COLORES><k KEY="" VALUE=""/><k KEY="" VALUE=""/></COLORES></APP_MAP>)"),
        ElementsAre("2: unreachable-palette-name NAME=", "2: unreachable-palette-name NAME=",
                    "2: duplicate-palette-name NAME=", "5: unknown-palette-color VALUE=",
                    "5: unknown-palette-color VALUE=", "5: duplicate-palette-key KEY=",
                    "3: unreachable-palette-name NAME=", "3: unreachable-palette-name NAME=",
                    "3: duplicate-palette-name NAME=", "4: duplicate-palette-name NAME=i"));
}

TEST(PaletteDiagnostics, ARepeatedNameOrKeyLeadsToTheEarlierOne) {
    const PaletteRoot files;
    files.writeImage("a.png", 4, 2);
    files.writeLight(yg::testing::palette(R"(<COLORES><c NAME="n" R="0" G="0" B="0"/>
<c NAME="n" R="0" G="0" B="0"/>
<c NAME="n" R="0" G="0" B="0"/></COLORES><APP_MAP><COLORES>
<k KEY="k" VALUE="n"/>
<k KEY="k" VALUE="n"/></COLORES></APP_MAP><BITMAPS>
<i NAME="n" PATH="a.png"/>
<i NAME="n"/></BITMAPS>)"));
    RecordingSink sink;
    YGPaletteLoad::initWithPaletteStyle(0, &sink);
    EXPECT_THAT(sink.unaccounted(), IsEmpty());
    std::vector<std::string> earlier;
    for (const Finding& finding : sink.findings) {
        for (const RelatedPlace& related : finding.related)
            earlier.push_back(std::to_string(related.place.begin.line) + ": " +
                              std::string(related.meaning));
    }
    EXPECT_THAT(sink.lines(),
                ElementsAre("2: duplicate-palette-name NAME=n", "3: duplicate-palette-name NAME=n",
                            "5: duplicate-palette-key KEY=k", "7: duplicate-palette-name NAME=n",
                            "7: missing-attribute =PATH"));
    EXPECT_THAT(earlier, ElementsAre("1: the earlier definition", "2: the earlier definition",
                                     "4: the earlier definition", "6: the earlier definition"));
}

TEST(PaletteDiagnostics, AnImageWithoutAFileIsReportedAsAWhole) {
    EXPECT_THAT(findingsIn(R"(<BITMAPS><i NAME="a" PATH="none.png" SIZE="1">text</i></BITMAPS>)"),
                ElementsAre("1: unreadable-image PATH=ROOT/images/none.png"));
}

TEST(PaletteDiagnostics, NumbersThatAreNoneOrOutOfRange) {
    EXPECT_THAT(findingsIn(R"(<COLORES>
<c NAME="a" R="x" G="256" B="-1" A="128"/>
<c NAME="b" R="1,5" G="" B="1e99" A="-0.1"/>
<c NAME="c" G="0"/></COLORES>)"),
                ElementsAre("2: odd-number R=x", "2: number-out-of-range G=256",
                            "2: number-out-of-range B=-1", "2: number-out-of-range A=128",
                            "3: odd-number R=1,5", "3: odd-number G=", "3: odd-number B=1e99",
                            "3: number-out-of-range A=-0.1", "4: missing-attribute =R",
                            "4: missing-attribute =B"));
}

TEST(PaletteDiagnostics, FontsWithoutSizeOrFace) {
    EXPECT_THAT(
        findingsIn(R"(<FONTS>
<f NAME="a" HEIGHT="0" FACE="No Such Face"/>
<f NAME="b" HEIGHT="-1" FACE=""/>
<f NAME="c" HEIGHT="x" FACE="YG Test Latin"/>
<f NAME="d"/></FONTS>)"),
        ElementsAre("2: font-without-size HEIGHT=0", "2: unknown-font-face FACE=No Such Face",
                    "3: font-without-size HEIGHT=-1",
                    "3: unknown-font-face FACE=", "4: font-without-size HEIGHT=x",
                    "5: missing-attribute =HEIGHT", "5: missing-attribute =FACE"));
}

TEST(PaletteDiagnostics, KeysWhoseColourOrFontDoesNotExist) {
    EXPECT_THAT(findingsIn(R"(<COLORES><c NAME="c" R="0" G="0" B="0"/></COLORES>
<APP_MAP><COLORES><k KEY="a" VALUE="C"/><k KEY="b" VALUE="c"/></COLORES>
<FONTS><k KEY="a" VALUE="c"/></FONTS></APP_MAP>)"),
                ElementsAre("2: unknown-palette-color VALUE=C", "3: unknown-palette-font VALUE=c"));
}

TEST(PaletteDiagnostics, ImagesThatCannotBeLoadedOrLieOutside) {
    EXPECT_THAT(findingsIn(R"(<BITMAPS>
<i NAME="a" PATH="none.png"/>
<i NAME="b"/>
<i NAME="c" PATH="../out.png"/>
<i NAME="d" PATH="x/../../none.png"/>
<i NAME="e" PATH="/../images/a.png"/></BITMAPS>)"),
                ElementsAre("2: unreadable-image PATH=ROOT/images/none.png",
                            "3: missing-attribute =PATH", "4: image-outside-folder PATH=../out.png",
                            "5: image-outside-folder PATH=x/../../none.png",
                            "5: unreadable-image PATH=ROOT/images/x/../../none.png",
                            "6: image-outside-folder PATH=/../images/a.png"));
}

TEST(PaletteDiagnostics, AHostWithoutAnImageFolder) {
    PaletteRoot files;
    files.host->defualtFolders.clear();
    files.writeLight(yg::testing::palette("<BITMAPS><i NAME='a' PATH='a.png'/></BITMAPS>"));
    RecordingSink sink;
    YGPaletteLoad::initWithPaletteStyle(0, &sink);
    EXPECT_THAT(sink.lines(), ElementsAre("1: no-image-folder"));
    EXPECT_THAT(sink.unaccounted(), IsEmpty());
}

TEST(PaletteDiagnostics, ASinkChangesNeitherAnswersNorLog) {
    const PaletteRoot files;
    files.writeImage("a.png", 4, 2);
    files.writeLight(R"(<ROOT x="y">text<SWPALETTE><COLORS/>
        <COLORES><c NAME="a" R="300" A="9"/><c/><c NAME="a" G="x"/></COLORES><COLORES/>
        <FONTS><f NAME="f" HEIGHT="-1"/><f NAME="g" FACE="No Such Face" HEIGHT="7"/></FONTS>
        <BITMAPS><i NAME="a" PATH="a.png"/><i NAME="b" PATH="a.png"/><i NAME="a" PATH="../x"/></BITMAPS>
        <APP_MAP><COLORES><k KEY="k" VALUE="x"/></COLORES><FONTS><k KEY="k"/></FONTS></APP_MAP>
    </SWPALETTE></ROOT>)");
    RecordingSink sink;
    const auto with = YGPaletteLoad::initWithPaletteStyle(0, &sink);
    const auto log = files.host->log();
    files.host->clear();
    const auto without = YGPaletteLoad::initWithPaletteStyle(0);
    EXPECT_FALSE(sink.found.empty());
    EXPECT_EQ(wholeText(*with), wholeText(*without));
    EXPECT_EQ(log, files.host->log());
}

TEST(PaletteDiagnostics, ASwitchOfTheThemeReportsToTheSameSink) {
    const PaletteRoot files;
    files.writeLight(yg::testing::palette("<COLORS/>"));
    files.writeDark(yg::testing::palette("\n<FONT/>"));
    RecordingSink sink;
    const auto loader = YGPaletteLoad::initWithPaletteStyle(0, &sink);
    loader->reloadPaletteWithOtherStyle(1);
    EXPECT_THAT(sink.lines(), ElementsAre("1: unknown-palette-section =COLORS",
                                          "2: unknown-palette-section =FONT"));
    EXPECT_THAT(sink.unaccounted(), IsEmpty());
}

TEST(PaletteDiagnostics, TheStepsReportToTheSinkToo) {
    const PaletteRoot files;
    files.writeLight(yg::testing::palette(""));
    RecordingSink sink;
    const auto loader = YGPaletteLoad::initWithPaletteStyle(0, &sink);
    const xml::Element section =
        xml::Document::parseText("<COLORES><c/></COLORES>").document.root();
    loader->loadColor(section);
    loader->loadKeyColorName(section);
    loader->loadFont(section);
    loader->loadKeyFontName(section);
    loader->loadImage(section);
    EXPECT_THAT(sink.rules(), ElementsAre("palette-entry-without-name", "incomplete-palette-key",
                                          "palette-entry-without-name", "incomplete-palette-key",
                                          "palette-entry-without-name"));
}

}  // namespace
}  // namespace yg
