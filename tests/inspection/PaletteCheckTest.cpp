// SPDX-License-Identifier: MIT
//
// What an inspection says of palettes, images and contrast beyond the loaders' findings.
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/inspection/Contrast.h"

#include "inspection/Inspected.h"

namespace yg::testing {
namespace {

using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;

const std::string light = "storage/palette_white.xml";
const std::string dark = "storage/palette_black.xml";

/// A palette of these sections, which begin in line 2.
std::string palette(std::string_view sections) {
    return "<ROOT><SWPALETTE>\n" + std::string(sections) + "\n</SWPALETTE></ROOT>";
}

/// Colours that a key each shows.
std::string colors(std::string_view entries, std::string_view keys) {
    return palette("<COLORES>" + std::string(entries) + "</COLORES>\n<APP_MAP><COLORES>" +
                   std::string(keys) + "</COLORES></APP_MAP>");
}

std::string images(std::string_view entries) {
    return palette("<BITMAPS>" + std::string(entries) + "</BITMAPS>");
}

/// An image of the sample.
std::string imageBytes(const std::string& name) {
    std::ifstream file(std::string(YG_SAMPLE_FOLDER) + "/images/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> messagesOf(const Files& files, std::string_view rule) {
    const files::TemporaryFolder folder;
    for (const auto& [name, bytes] : files)
        folder.write(name, bytes);
    std::vector<std::string> messages;
    const auto inspection = inspected(folder.path());
    for (const RootFinding& finding : inspection->findings()) {
        if (finding.rule->name == rule)
            messages.push_back(finding.message);
    }
    return messages;
}

// ---- Themes ----

const std::string inkOf =
    colors(R"(<C NAME="ink" R="9" G="9" B="9"/>)", R"(<I KEY="Grid.text" VALUE="ink"/>)");

TEST(PaletteThemes, TwoSpellingsOfAKeyAreOneFindingWithBothPlaces) {
    const Files files{{light, inkOf},
                      {dark, colors(R"(<C NAME="ink" R="9" G="9" B="9"/>)",
                                    R"(<I KEY="Grid.txt" VALUE="ink"/>)")}};
    EXPECT_THAT(linesOf(files, "missing-in-other-theme"),
                ElementsAre(dark + ":3:27 warning missing-in-other-theme Grid.txt -> Grid.text (" +
                            light + ":3:27)"));
    EXPECT_THAT(messagesOf(files, "missing-in-other-theme"),
                ElementsAre("The key 'Grid.txt' is missing in the light theme, "
                            "storage/palette_white.xml: the key shows red there."));
    EXPECT_THAT(linesOf({{light, inkOf}, {dark, inkOf}}, "missing-in-other-theme"), IsEmpty());
}

TEST(PaletteThemes, TheSpellingWithFewerKeysLikeItIsTheMistake) {
    const std::string ink = R"(<C NAME="ink" R="9" G="9" B="9"/>)";
    const std::string first = R"(<I KEY="Tabs.text" VALUE="ink"/>)";
    EXPECT_THAT(linesOf({{light, colors(ink, first + R"(<I KEY="Tab.mark" VALUE="ink"/>)")},
                         {dark, colors(ink, first + R"(<I KEY="Tabs.mark" VALUE="ink"/>)")}},
                        "missing-in-other-theme"),
                ElementsAre(light + ":3:59 warning missing-in-other-theme Tab.mark -> Tabs.mark (" +
                            dark + ":3:59)"));
}

TEST(PaletteThemes, AKeyFarFromAllOthersPointsAtTheSectionThatLacksIt) {
    EXPECT_THAT(
        linesOf({{light, colors(R"(<C NAME="ink" R="9" G="9" B="9"/>)",
                                R"(<I KEY="Grid.text" VALUE="ink"/><I KEY="Menu" VALUE="ink"/>)")},
                 {dark, inkOf}},
                "missing-in-other-theme"),
        ElementsAre(light + ":3:59 warning missing-in-other-theme Menu (" + dark + ":3:10)"));
}

TEST(PaletteThemes, FontKeysAndImagesAreAskedForInBothThemesToo) {
    const std::string fonts = R"(<FONTS><F NAME="f" HEIGHT="12"/></FONTS><APP_MAP><FONTS>)";
    EXPECT_THAT(
        linesOf({{light, palette(fonts + R"(<I KEY="a" VALUE="f"/></FONTS></APP_MAP>)")},
                 {dark, palette(fonts + R"(<I KEY="a" VALUE="f"/><I KEY="window" VALUE="f"/>
                                                   </FONTS></APP_MAP>)")}},
                "missing-in-other-theme"),
        ElementsAre(HasSubstr(dark + ":2:87 warning missing-in-other-theme window (" + light)));
    const std::string logo = R"(<B NAME="logo" PATH="logo.png"/>)";
    EXPECT_THAT(linesOf({{light, images(logo + R"(<B NAME="search" PATH="logo.png"/>)")},
                         {dark, images(logo)},
                         {"images/logo.png", imageBytes("common/logo.png")}},
                        "missing-in-other-theme"),
                ElementsAre(HasSubstr(light + ":2:51 warning missing-in-other-theme search")));
}

TEST(PaletteThemes, ASectionThatIsMissingIsOneFinding) {
    const std::string three = colors(R"(<C NAME="ink" R="9" G="9" B="9"/>)",
                                     R"(<I KEY="a" VALUE="ink"/><I KEY="b" VALUE="ink"/>)");
    EXPECT_THAT(linesOf({{light, three}, {dark, palette("")}}, "missing-in-other-theme"),
                ElementsAre(light + ":3:10 warning missing-in-other-theme"));
    // The loader has said which section it is.
    EXPECT_THAT(linesOf({{light, three}, {dark, palette("<APP_MAPS/>")}}, "missing-in-other-theme"),
                IsEmpty());
}

TEST(PaletteThemes, AKeyThatIsThereButLostHasOnlyTheFindingOfTheLoader) {
    const Files files{{light, colors(R"(<C NAME="ink" R="9" G="9" B="9"/>)",
                                     R"(<I KEY="a" VALUE="ink"/><I KEY="b" VALUE="ink"/>)")},
                      {dark, colors(R"(<C NAME="ink" R="9" G="9" B="9"/>)",
                                    R"(<I KEY="a" VALUE="ink"/><I KEY="b"/>)")}};
    EXPECT_THAT(linesOf(files, "missing-in-other-theme"), IsEmpty());
    EXPECT_THAT(linesOf(files, "incomplete-palette-key"), SizeIs(1));
}

TEST(PaletteThemes, AUsersPaletteIsComparedWithTheOtherThemeThatCounts) {
    const std::string more =
        colors(R"(<C NAME="ink" R="9" G="9" B="9"/>)",
               R"(<I KEY="Grid.text" VALUE="ink"/><I KEY="Menu" VALUE="ink"/>)");
    EXPECT_THAT(linesOf({{light, inkOf}, {dark, inkOf}, {"user/palette_black.xml", more}},
                        "missing-in-other-theme"),
                ElementsAre("user/palette_black.xml:3:59 warning missing-in-other-theme Menu (" +
                            light + ":3:10)"));
    EXPECT_THAT(linesOf({{light, inkOf},
                         {dark, inkOf},
                         {"user/palette_white.xml", more},
                         {"user/palette_black.xml", more}},
                        "missing-in-other-theme"),
                IsEmpty());
}

TEST(PaletteThemes, NamesMayDifferSoThatIsOnlyWorthKnowing) {
    const std::string blue =
        colors(R"(<C NAME="blue" R="9" G="9" B="99"/>)", R"(<I KEY="Grid.text" VALUE="blue"/>)");
    EXPECT_THAT(linesOf({{light, blue}, {dark, inkOf}}, "name-in-one-theme"),
                ElementsAre(dark + ":2:19 info name-in-one-theme ink (" + light + ":2:1)",
                            light + ":2:19 info name-in-one-theme blue (" + dark + ":2:1)"));
    // A reference to the other theme's name is an error by itself.
    EXPECT_THAT(linesOf({{light, blue},
                         {dark, colors(R"(<C NAME="ink" R="9" G="9" B="9"/>)",
                                       R"(<I KEY="Grid.text" VALUE="blue"/>)")}},
                        "name-in-one-theme"),
                IsEmpty());
}

TEST(PaletteThemes, StripsHaveAsManyPiecesInBothThemes) {
    const auto files = [](const std::string& ofLight, const std::string& ofDark) {
        return Files{{light, images(R"(<B NAME="tool" PATH="light.png"/>)")},
                     {dark, images(R"(<B NAME="tool" PATH="dark.png"/>)")},
                     {"images/light.png", imageBytes(ofLight)},
                     {"images/dark.png", imageBytes(ofDark)}};
    };
    // 10 × 10, and 72 × 18.
    EXPECT_THAT(linesOf(files("white/sort_asc.png", "black/tool_draw.png"), "uneven-strips"),
                ElementsAre(HasSubstr(light + ":2:31 warning uneven-strips light.png (" + dark)));
    EXPECT_THAT(messagesOf(files("white/sort_asc.png", "black/tool_draw.png"), "uneven-strips"),
                ElementsAre("Image 'tool' has 10 × 10 pixels; that of the dark theme has 72 × 18, "
                            "a strip of 4 pieces, and this width does not divide by 4."));
    EXPECT_THAT(linesOf(files("white/tool_draw.png", "black/sort_asc.png"), "uneven-strips"),
                ElementsAre(HasSubstr(dark + ":2:31 warning uneven-strips dark.png (" + light)));
    // 72 × 18 and 80 × 20 are the same in another size.
    EXPECT_THAT(linesOf(files("white/tool_draw.png", "black/nav_news.png"), "uneven-strips"),
                IsEmpty());
    EXPECT_THAT(linesOf(files("white/sort_asc.png", "common/logo.png"), "uneven-strips"),
                IsEmpty());
}

// ---- Names that nothing uses ----

TEST(PaletteNames, AColorWithoutAKeyIsUnused) {
    const std::string unused =
        colors(R"(<C NAME="ink" R="9" G="9" B="9"/><C NAME="sky" R="9" G="9" B="99"/>)",
               R"(<I KEY="Grid.text" VALUE="ink"/>)");
    EXPECT_THAT(linesOf({{light, unused}, {dark, inkOf}}, "unused-palette-color"),
                ElementsAre(light + ":2:52 info unused-palette-color sky"));
    EXPECT_THAT(linesOf({{light, inkOf}, {dark, inkOf}}, "unused-palette-color"), IsEmpty());
}

TEST(PaletteNames, ANameThatAMisspeltKeyMeansIsNotUnusedToo) {
    const Files files{
        {light,
         colors(R"(<C NAME="text_quiet" R="9" G="9" B="9"/><C NAME="ink" R="1" G="1" B="1"/>)",
                R"(<I KEY="a" VALUE="text_quite"/><I KEY="b" VALUE="ink"/>)")},
        {dark, palette("")}};
    EXPECT_THAT(linesOf(files, "unused-palette-color"), IsEmpty());
    EXPECT_THAT(linesOf(files, "unknown-palette-color"),
                ElementsAre(light + ":3:37 error unknown-palette-color text_quite -> text_quiet"));
}

TEST(PaletteNames, AFontWithoutAKeyIsUnusedUnlessNoFontHasKeys) {
    const std::string fonts =
        R"(<FONTS><F NAME="a" HEIGHT="12"/><F NAME="title" HEIGHT="15"/></FONTS>)";
    EXPECT_THAT(
        linesOf({{light,
                  palette(fonts + R"(<APP_MAP><FONTS><I KEY="k" VALUE="a"/></FONTS></APP_MAP>)")},
                 {dark, palette("")}},
                "unused-palette-font"),
        ElementsAre(light + ":2:42 info unused-palette-font title"));
    EXPECT_THAT(linesOf({{light, palette(fonts)}, {dark, palette("")}}, "unused-palette-font"),
                IsEmpty());
}

// ---- Numbers ----

/// The findings on one colour.
std::vector<std::string> numberLines(const std::string& attributes) {
    std::vector<std::string> lines;
    for (const std::string& line :
         linesOf({{light, palette("<COLORES><C NAME=\"a\" " + attributes + "/></COLORES>")}})) {
        if (line.starts_with(light + ":2:"))
            lines.push_back(line.substr(light.size() + 1));
    }
    return lines;
}

TEST(PaletteNumbers, HexadecimalComponentsAreTurnedIntoDecimalOnes) {
    EXPECT_THAT(
        numberLines(R"(R="#1F2A37" G="#1F2A37" B="#1f2a37")"),
        ElementsAre("2:25 error odd-number #1F2A37 -> 31", "2:37 error odd-number #1F2A37 -> 42",
                    "2:49 error odd-number #1f2a37 -> 55"));
    EXPECT_THAT(numberLines(R"(R="0xFF" G="#f80" B="1F")"),
                ElementsAre("2:25 error odd-number 0xFF -> 255",
                            "2:34 error odd-number #f80 -> 136", "2:43 error odd-number 1F -> 31"));
    // Nobody knows which digit is missing.
    EXPECT_THAT(numberLines(R"(R="#12345" G="0" B="0")"),
                ElementsAre("2:25 error odd-number #12345"));
}

TEST(PaletteNumbers, AnAlphaUpTo255BecomesAShare) {
    EXPECT_THAT(numberLines(R"(R="1" G="2" B="3" A="255")"),
                ElementsAre("2:43 error number-out-of-range 255 -> 1"));
    EXPECT_THAT(numberLines(R"(R="1" G="2" B="3" A="128")"),
                ElementsAre("2:43 error number-out-of-range 128 -> 0.5"));
    EXPECT_THAT(numberLines(R"(R="1" G="2" B="3" A="50%")"),
                ElementsAre("2:43 error odd-number 50% -> 0.5"));
    EXPECT_THAT(numberLines(R"(R="1" G="2" B="3" A="#80")"),
                ElementsAre("2:43 error odd-number #80 -> 0.5"));
    EXPECT_THAT(numberLines(R"(R="1" G="2" B="3" A="0,18")"),
                ElementsAre("2:43 error odd-number 0,18 -> 0.18"));
    // Of 255, or percent.
    EXPECT_THAT(numberLines(R"(R="1" G="2" B="3" A="60")"),
                ElementsAre("2:43 error number-out-of-range 60"));
    EXPECT_THAT(numberLines(R"(R="1" G="2" B="3" A="1")"), IsEmpty());
    EXPECT_THAT(
        messagesOf(
            {{light, palette(R"(<COLORES><C NAME="a" R="1" G="2" B="3" A="60"/></COLORES>)")}},
            "number-out-of-range"),
        ElementsAre("A=\"60\": A goes from 0 to 1; 0.24 is 60 of 255, and 0.6 is 60 percent."));
}

TEST(PaletteNumbers, ComponentsOutOfRangeBecomeTheNearestBound) {
    EXPECT_THAT(numberLines(R"(R="300" G="-1" B="3")"),
                ElementsAre("2:25 error number-out-of-range 300 -> 255",
                            "2:33 error number-out-of-range -1 -> 0"));
    EXPECT_THAT(
        numberLines(R"(R="50%" G="1" B="100%")"),
        ElementsAre("2:25 error odd-number 50% -> 128", "2:39 error odd-number 100% -> 255"));
}

TEST(PaletteNumbers, FractionsOfOneAreNearlyBlack) {
    EXPECT_THAT(numberLines(R"(R="0.4" G="0.6" B="1")"),
                ElementsAre("2:25 warning color-in-fractions 0.4 -> 102"));
    EXPECT_THAT(numberLines(R"(R="1" G="1" B="1")"), IsEmpty());
    EXPECT_THAT(numberLines(R"(R="0.0" G="0.0" B="0.0")"), IsEmpty());
    EXPECT_THAT(numberLines(R"(R="0.5" G="12" B="1")"), IsEmpty());
}

TEST(PaletteNumbers, AFontsSizeHasNoUnit) {
    const auto lines = [](const std::string& height) {
        return linesOf({{light, palette("<FONTS><F NAME=\"a\" FACE=\"\" HEIGHT=\"" + height +
                                        "\"/></FONTS>")}},
                       "odd-number");
    };
    EXPECT_THAT(lines("12px"), ElementsAre(light + ":2:36 error odd-number 12px -> 12"));
    EXPECT_THAT(lines("14.5 pt"), ElementsAre(light + ":2:36 error odd-number 14.5 pt -> 14.5"));
    EXPECT_THAT(lines("9,5"), ElementsAre(light + ":2:36 error odd-number 9,5 -> 9.5"));
    EXPECT_THAT(lines("12"), IsEmpty());
}

// ---- Images ----

/// The finding on one image beside white/Search.png.
std::vector<std::string> imageLines(const std::string& path) {
    return linesOf({{light, images("<B NAME=\"a\" PATH=\"" + path + "\"/>")},
                    {"images/white/Search.png", imageBytes("common/logo.png")},
                    {"images/white/notes.png", "GIF89a"}},
                   "unreadable-image");
}

TEST(Images, AMissingFileIsSuggestedUnderItsRealName) {
    const auto line = [](const std::string& path, const std::string& suggestion) {
        return light + ":2:28 error unreadable-image " + path + " -> " + suggestion;
    };
    for (const char* const path :
         {"white/search.png", "White/Search.PNG", "white\\Search.png", "images/white/Search.png",
          " white/Search.png", "white/Serch.png"})
        EXPECT_THAT(imageLines(path), ElementsAre(line(path, "white/Search.png")));
    EXPECT_THAT(imageLines("white/Search.png"), IsEmpty());
    EXPECT_THAT(imageLines("white/logo.png"),
                ElementsAre(light + ":2:28 error unreadable-image white/logo.png"));
}

TEST(Images, TheMessageSaysWhyAFileCannotBeRead) {
    const auto message = [](const std::string& path) {
        return messagesOf({{light, images("<B NAME=\"a\" PATH=\"" + path + "\"/>")},
                           {"images/Logo.png", imageBytes("common/logo.png")},
                           {"images/gif.png", "GIF89a"},
                           {"images/empty.png", ""},
                           {"images/damaged.png", "\x89PNG\r\n"}},
                          "unreadable-image");
    };
    EXPECT_THAT(message("logo.png"),
                ElementsAre("PATH=\"logo.png\": the file's name has other letter case, which "
                            "counts, so the image is missing."));
    EXPECT_THAT(message("nothing.svg"),
                ElementsAre("PATH=\"nothing.svg\": there is no such file in images/, so the image "
                            "is missing."));
    EXPECT_THAT(message("gif.png"),
                ElementsAre("PATH=\"gif.png\": the file is a GIF file; PNG and JPEG are read, so "
                            "the image is missing."));
    EXPECT_THAT(message("empty.png"),
                ElementsAre("PATH=\"empty.png\": the file is empty, so the image is missing."));
    EXPECT_THAT(message("damaged.png"),
                ElementsAre("PATH=\"damaged.png\": the file is a damaged PNG file, or one that is "
                            "too large, so the image is missing."));
    EXPECT_THAT(message(""), ElementsAre("PATH=\"\": it names no file, so the image is missing."));
}

TEST(Images, FilesThatNoPaletteNamesAreWorthKnowing) {
    const std::string logo = imageBytes("common/logo.png");
    const std::string both = images(R"(<B NAME="logo" PATH="logo.png"/>)");
    const Files files{{light, both},
                      {dark, both},
                      {"images/logo.png", logo},
                      {"images/logo@2x.png", logo},
                      {"images/old/arrow.JPG", "?"},
                      {"images/readme.txt", ""}};
    EXPECT_THAT(linesOf(files, "unused-image-file"),
                ElementsAre("images/logo@2x.png:1:1 info unused-image-file",
                            "images/old/arrow.JPG:1:1 info unused-image-file"));
    EXPECT_THAT(messagesOf(files, "unused-image-file"),
                Contains("images/logo@2x.png: no palette names this file. Variants for other "
                         "resolutions are not looked for."));
}

TEST(Images, AFileIsNotUnusedWhereAPathProbablyMeansItOrNotAllPathsAreKnown) {
    const std::string logo = imageBytes("common/logo.png");
    const std::string both = images(R"(<B NAME="logo" PATH="logo.png"/>)");
    const std::string wrong =
        images(R"(<B NAME="logo" PATH="logo.png"/><B NAME="more" PATH="Arrow.png"/>)");
    EXPECT_THAT(
        linesOf(
            {{light, wrong}, {dark, wrong}, {"images/logo.png", logo}, {"images/arrow.png", logo}},
            "unused-image-file"),
        IsEmpty());
    for (const std::string& other : {std::string("<ROOT>"), palette("<BITMAP/>")})
        EXPECT_THAT(linesOf({{light, both},
                             {dark, other},
                             {"images/logo.png", logo},
                             {"images/arrow.png", logo}},
                            "unused-image-file"),
                    IsEmpty());
}

TEST(Images, OfManyUnusedFilesTheFirstTwentyAreNamed) {
    const std::string both = images(R"(<B NAME="logo" PATH="logo.png"/>)");
    Files files{{light, both}, {dark, both}, {"images/logo.png", imageBytes("common/logo.png")}};
    for (int i = 10; i < 45; ++i)
        files["images/" + std::to_string(i) + ".png"] = "?";
    const auto messages = messagesOf(files, "unused-image-file");
    ASSERT_THAT(messages, SizeIs(20));
    EXPECT_EQ(messages.back(),
              "images/29.png: no palette names this file. There are 15 more that "
              "none names.");
}

// ---- Contrast ----

constexpr Color black{0, 0, 0, 1};
constexpr Color white{1, 1, 1, 1};

Color gray(double of255, double alpha = 1) {
    return {of255 / 255, of255 / 255, of255 / 255, alpha};
}

TEST(Contrast, IsThatOfTheGuidelines) {
    EXPECT_DOUBLE_EQ(contrastRatio(black, white), 21);
    EXPECT_DOUBLE_EQ(contrastRatio(white, black), 21);
    EXPECT_DOUBLE_EQ(contrastRatio(white, white), 1);
    // 0x76 is the last grey that reaches 4.5 on white.
    EXPECT_NEAR(contrastRatio(gray(0x76), white), 4.5422, 0.0001);
    EXPECT_NEAR(contrastRatio(gray(0x77), white), 4.4781, 0.0001);
    // The linear part: 10 / 255 / 12.92.
    EXPECT_NEAR(relativeLuminance(gray(10)), 0.0030353, 0.0000001);
    EXPECT_NEAR(relativeLuminance({1, 0, 0, 1}), 0.2126, 0.0000001);
    EXPECT_NEAR(relativeLuminance({0, 1, 0, 1}), 0.7152, 0.0000001);
    EXPECT_NEAR(relativeLuminance({0, 0, 1, 1}), 0.0722, 0.0000001);
}

TEST(Contrast, ATranslucentColorIsDrawnOverTheOneBelow) {
    EXPECT_EQ(drawnOver({0, 0, 0, 0.5}, white), (Color{0.5, 0.5, 0.5, 1}));
    EXPECT_EQ(drawnOver({1, 0, 0, 0}, white), white);
    EXPECT_EQ(drawnOver({1, 0, 0, 1}, white), (Color{1, 0, 0, 1}));
    EXPECT_EQ(drawnOver({1, 1, 1, 0}, {0, 0, 0, 0}), (Color{0, 0, 0, 0}));
    EXPECT_EQ(drawnOver({1, 1, 1, 0.5}, {0, 0, 0, 0.5}).alpha, 0.75);
}

/// Palettes alike, with a text and a ground, and the pairs.
std::vector<std::string> contrastLines(const std::string& text, const std::string& ground,
                                       const std::string& sidecar) {
    const std::string both = colors("<C NAME=\"text\" " + text + "/>\n<C NAME=\"ground\" " +
                                        ground + "/>\n<C NAME=\"deep\" R=\"0\" G=\"0\" B=\"0\"/>",
                                    R"(<I KEY="T" VALUE="text"/><I KEY="G" VALUE="ground"/>
                                       <I KEY="D" VALUE="deep"/>)");
    std::vector<std::string> lines;
    for (const std::string& line :
         linesOf({{light, both}, {dark, both}, {"contrast.json", sidecar}})) {
        if (line.find("contrast") != std::string::npos)
            lines.push_back(line);
    }
    return lines;
}

constexpr const char* textOnGround = R"({"pairs": [
  {"text": "T", "ground": "G", "minimum": 4.5}]})";

TEST(Contrast, APairBelowItsMinimumIsFoundInEachThemeWithItsPlaces) {
    EXPECT_THAT(
        contrastLines(R"(R="119" G="119" B="119")", R"(R="255" G="255" B="255")", textOnGround),
        ElementsAre(
            dark + ":2:10 warning low-contrast T on G (" + dark + ":3:1) (contrast.json:2:3)",
            light + ":2:10 warning low-contrast T on G (" + light + ":3:1) (contrast.json:2:3)"));
    EXPECT_THAT(
        contrastLines(R"(R="118" G="118" B="118")", R"(R="255" G="255" B="255")", textOnGround),
        IsEmpty());
}

TEST(Contrast, TheWholeRangeCanBeAskedFor) {
    EXPECT_THAT(contrastLines(R"(R="0" G="0" B="0")", R"(R="255" G="255" B="255")",
                              R"({"pairs": [{"text": "T", "ground": "G", "minimum": 21}]})"),
                IsEmpty());
    EXPECT_THAT(contrastLines(R"(R="0" G="0" B="0")", R"(R="0" G="0" B="0")",
                              R"({"pairs": [{"text": "T", "ground": "G", "minimum": 1}]})"),
                IsEmpty());
}

TEST(Contrast, ATranslucentGroundStandsOnWhiteInTheLightThemeAndOnBlackInTheDarkOne) {
    // Hardly anything of the ground is seen, so white text is lost on white.
    EXPECT_THAT(
        contrastLines(R"(R="255" G="255" B="255")", R"(R="0" G="0" B="0" A="0.1")", textOnGround),
        ElementsAre(HasSubstr(light)));
    EXPECT_THAT(
        contrastLines(R"(R="0" G="0" B="0")", R"(R="255" G="255" B="255" A="0.1")", textOnGround),
        ElementsAre(HasSubstr(dark)));
    // With "over" it stands on that in both.
    EXPECT_THAT(
        contrastLines(R"(R="255" G="255" B="255")", R"(R="0" G="0" B="0" A="0.1")",
                      R"({"pairs": [{"text": "T", "ground": "G", "minimum": 4.5, "over": "D"}]})"),
        IsEmpty());
}

TEST(Contrast, TheMessageHasBothRatios) {
    const std::string both = colors(
        R"(<C NAME="text" R="119" G="119" B="119"/><C NAME="ground" R="255" G="255" B="255"/>)",
        R"(<I KEY="T" VALUE="text"/><I KEY="G" VALUE="ground"/>)");
    EXPECT_THAT(
        messagesOf({{light, both}, {dark, both}, {"contrast.json", textOnGround}}, "low-contrast"),
        Each("Colour 'text': T on G has a contrast of 4.47:1, below 4.50:1."));
}

TEST(Contrast, ASidecarIsReadWithAllItsMembersAccountedFor) {
    const auto lines = [](const std::string& sidecar) {
        std::vector<std::string> found;
        for (const std::string& line :
             linesOf({{light, inkOf}, {dark, inkOf}, {"contrast.json", sidecar}})) {
            if (line.starts_with("contrast.json"))
                found.push_back(line.substr(14));
        }
        return found;
    };
    EXPECT_THAT(lines(R"({"pairs": []})"), IsEmpty());
    EXPECT_THAT(lines("[]"), ElementsAre("1:1 error unreadable-contrast-file not a JSON object"));
    EXPECT_THAT(lines("{\"pairs\": [\n1,]}"),
                ElementsAre(HasSubstr("2:2 error unreadable-contrast-file ,")));
    EXPECT_THAT(lines("{}"), ElementsAre("1:1 error incomplete-contrast-pair pairs"));
    EXPECT_THAT(lines(R"({"pair": []})"), ElementsAre("1:2 error unknown-member []"));
    EXPECT_THAT(lines(R"({"pairs": [{"text": "Grid.text", "ground": "Grid.text"}]})"),
                ElementsAre("1:12 error incomplete-contrast-pair minimum"));
    EXPECT_THAT(lines(R"({"pairs": [{"text": "Grid.txt", "ground": "Grid.text", "minimum": 1}]})"),
                ElementsAre(R"(1:21 error unknown-contrast-key "Grid.txt" -> "Grid.text")"));
    EXPECT_THAT(
        lines(R"({"pairs": [{"text": "Grid.text", "ground": "Grid.text", "minimum": 45}]})"),
        ElementsAre(HasSubstr("1:68 error contrast-minimum-out-of-range")));
    EXPECT_THAT(
        lines(R"({"pairs": [{"text": "Grid.text", "ground": "Grid.text", "minimum": "1"}]})"),
        ElementsAre(HasSubstr(R"(1:68 error member-of-wrong-type "1")")));
}

TEST(Contrast, AKeyThatAnUnreadableThemeMayHaveIsNotUnknown) {
    EXPECT_THAT(
        linesOf({{light, inkOf},
                 {dark, "<ROOT>"},
                 {"contrast.json", R"({"pairs": [{"text": "a", "ground": "b", "minimum": 3}]})"}},
                "unknown-contrast-key"),
        IsEmpty());
}

// ---- All ----

TEST(PaletteRules, TheSampleKeepsThemAll) {
    const auto inspection = inspected(YG_SAMPLE_FOLDER);
    for (const RootFinding& finding : inspection->findings()) {
        EXPECT_FALSE(finding.file.starts_with("storage/palette_") &&
                     finding.rule->name != "unknown-font-face")
            << lineOf(finding);
        EXPECT_FALSE(finding.file.starts_with("images/")) << lineOf(finding);
    }
}

}  // namespace
}  // namespace yg::testing
