// SPDX-License-Identifier: MIT
//
// A palette from the outside: what its sections give, lookups, the log, the switch of the theme.
#include <array>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/host/NotificationCenter.h"
#include "YGConfigManager/palette/YGPaletteLoad.h"
#include "YGConfigManager/xml/Document.h"
#include "YGConfigManager/xml/Query.h"

#include "palette/PaletteRoot.h"
#include "palette/TestFonts.h"
#include "records/RecordText.h"

namespace yg {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using yg::testing::keysOf;
using yg::testing::latinFace;
using yg::testing::loadPalette;
using yg::testing::palette;
using yg::testing::PaletteRoot;
using yg::testing::wholeText;

const Color red{1, 0, 0, 1};

/// The colour of an entry with these attributes.
Color colorOf(const std::string& attributes) {
    const auto loader = loadPalette("<COLORES><c NAME='c' " + attributes + "/></COLORES>");
    const Color* color = loader->customColors().find("c");
    return color ? *color : Color{-1, -1, -1, -1};
}

/// The font of an entry with these attributes.
Font fontOf(const std::string& attributes) {
    return *loadPalette("<FONTS><f NAME='f' " + attributes + "/></FONTS>")->customFonts().find("f");
}

// ---- Colours -----------------------------------------------------------------------------------

TEST(PaletteColor, WithoutAnAlphaIsOpaque) {
    EXPECT_EQ(colorOf("R='255' G='0' B='0'"), red);
}

TEST(PaletteColor, HasItsAlphaFromZeroToOne) {
    EXPECT_EQ(colorOf("R='255' G='0' B='0' A='0.5'"), (Color{1, 0, 0, 0.5}));
    EXPECT_EQ(colorOf("R='255' G='0' B='0' A='128'"), red);
    EXPECT_EQ(colorOf("R='255' G='0' B='0' A=''"), (Color{1, 0, 0, 0}));
    EXPECT_EQ(colorOf("R='255' G='0' B='0' A='-1'"), (Color{1, 0, 0, 0}));
}

TEST(PaletteColor, WithoutAComponentReadsItAsZero) {
    EXPECT_EQ(colorOf("R='255' B='255'"), (Color{1, 0, 1, 1}));
    EXPECT_EQ(colorOf(""), (Color{0, 0, 0, 1}));
}

TEST(PaletteColor, ReadsTheNumberThatATextBeginsWith) {
    EXPECT_EQ(colorOf("R=' 255x' G='x255' B='1e2,5'"),
              (Color{1, 0, static_cast<double>(100.0f / 255.0f), 1}));
    EXPECT_EQ(colorOf("R='1e99' G='-1e99' B='0x10' A='inf'"), (Color{1, 0, 0, 0}));
}

TEST(PaletteColor, IsDividedInFloats) {
    EXPECT_EQ(colorOf("R='51.5'").red, static_cast<double>(51.5f / 255.0f));
    EXPECT_NE(colorOf("R='51.5'").red, 51.5 / 255.0);
}

TEST(PaletteColor, OfAKeyThatLeadsNowhereIsRed) {
    const auto loader = loadPalette(R"(
        <COLORES><c NAME="blue" B="255"/><c NAME="" B="255"/></COLORES>
        <APP_MAP><COLORES>
            <k KEY="good" VALUE="blue"/><k KEY="empty" VALUE=""/><k KEY="wrong" VALUE="Blue"/>
            <k KEY="" VALUE="blue"/>
        </COLORES></APP_MAP>)");
    EXPECT_EQ(loader->getCustomColor("good"), (Color{0, 0, 1, 1}));
    EXPECT_EQ(loader->getCustomColor(""), (Color{0, 0, 1, 1}));
    for (const char* key : {"unknown", "empty", "wrong", "blue", "Good", "good "})
        EXPECT_EQ(loader->getCustomColor(key), red) << key;
    EXPECT_EQ(loader->getCustomColor(std::nullopt), red);
}

// ---- Fonts -------------------------------------------------------------------------------------

TEST(PaletteFont, HasTheFaceAndTheSizeOfItsEntry) {
    EXPECT_EQ(fontOf("FACE='" + std::string(latinFace) + "' HEIGHT='14.5'"),
              *Font::named(latinFace, 14.5));
    EXPECT_EQ(fontOf("FACE='" + std::string(latinFace) + "' HEIGHT='14.5'").faceName(), latinFace);
}

TEST(PaletteFont, OfAnUnknownFaceIsTheSystemFontInItsSize) {
    EXPECT_EQ(fontOf("FACE='No Such Face' HEIGHT='17'"), Font::system(17));
    EXPECT_EQ(fontOf("FACE='' HEIGHT='17'"), Font::system(17));
    EXPECT_EQ(fontOf("HEIGHT='17'"), Font::system(17));
}

TEST(PaletteFont, WithoutASizeAboveZeroHasTheDefaultSize) {
    for (const char* height : {"", "HEIGHT='0'", "HEIGHT='-3'", "HEIGHT='x'"})
        EXPECT_EQ(fontOf("FACE='" + std::string(latinFace) + "' " + height).pointSize(), 12)
            << height;
}

TEST(PaletteFont, OfAKeyThatLeadsNowhereIsTheSystemFontOfTwelvePoints) {
    const auto loader = loadPalette(R"(
        <FONTS><f NAME="large" HEIGHT="30"/><f NAME="" HEIGHT="30"/></FONTS>
        <APP_MAP><FONTS>
            <k KEY="good" VALUE="large"/><k KEY="empty" VALUE=""/><k KEY="wrong" VALUE="Large"/>
        </FONTS></APP_MAP>)");
    EXPECT_EQ(loader->getCustomFont("good"), Font::system(30));
    for (const char* key : {"unknown", "empty", "wrong", "large", ""})
        EXPECT_EQ(loader->getCustomFont(key), Font::system(12)) << key;
    EXPECT_EQ(loader->getCustomFont(std::nullopt), Font::system(12));
}

// ---- Images ------------------------------------------------------------------------------------

TEST(PaletteImage, IsLookedUpByItsName) {
    const PaletteRoot files;
    files.writeImage("a/按钮.png", 8, 2);
    files.writeLight(
        palette("<BITMAPS><i NAME='按钮' PATH='a/按钮.png'/><i NAME='' PATH='/a/按钮.png'/>"
                "</BITMAPS>"));
    const auto loader = YGPaletteLoad::initWithPaletteStyle(0);
    EXPECT_EQ(loader->getCustomImage("按钮")->width(), 8);
    EXPECT_EQ(loader->getCustomImage("")->width(), 8);
    EXPECT_EQ(loader->getCustomImage("a/按钮.png"), std::nullopt);
    EXPECT_EQ(loader->getCustomImage(std::nullopt), std::nullopt);
}

TEST(PaletteImage, ThatCannotBeLoadedTakesAnEarlierOneAway) {
    const PaletteRoot files;
    files.writeImage("a.png", 8, 2);
    files.root.write("images/broken.png", "\x89PNG");
    files.writeLight(palette(R"(<BITMAPS>
        <i NAME="kept" PATH="a.png"/>
        <i NAME="lost" PATH="a.png"/><i NAME="lost" PATH="none.png"/>
        <i NAME="broken" PATH="a.png"/><i NAME="broken" PATH="broken.png"/>
        <i NAME="folder" PATH="a.png"/><i NAME="folder" PATH=""/>
        <i NAME="pathless" PATH="a.png"/><i NAME="pathless"/>
        <i NAME="found" PATH="none.png"/><i NAME="found" PATH="a.png"/>
    </BITMAPS>)"));
    const auto loader = YGPaletteLoad::initWithPaletteStyle(0);
    EXPECT_THAT(keysOf(loader->customImages()), ElementsAre("kept", "found"));
}

TEST(PaletteImage, IsReadFromOutsideOfTheFolderToo) {
    const PaletteRoot files;
    files.writeImage("../other/a.png", 8, 2);
    files.root.makeFolder("images");
    files.writeLight(palette("<BITMAPS><i NAME='a' PATH='../other/a.png'/></BITMAPS>"));
    EXPECT_TRUE(YGPaletteLoad::initWithPaletteStyle(0)->getCustomImage("a"));
}

TEST(PaletteImage, IsNotLoadedWithoutAFolder) {
    PaletteRoot files;
    files.writeImage("a.png", 8, 2);
    files.writeLight(
        palette("<COLORES><c NAME='c'/></COLORES>"
                "<BITMAPS><i NAME='a' PATH='a.png'/></BITMAPS>"));
    files.host->defualtFolders.clear();
    const auto loader = YGPaletteLoad::initWithPaletteStyle(0);
    EXPECT_THAT(keysOf(loader->customImages()), IsEmpty());
    EXPECT_THAT(keysOf(loader->customColors()), ElementsAre("c"));
    files.host->defualtFolders[4] = "";
    EXPECT_THAT(keysOf(YGPaletteLoad::initWithPaletteStyle(0)->customImages()), IsEmpty());
}

TEST(PaletteImage, IsScaledByItsName) {
    const PaletteRoot files;
    files.writeImage("a.png", 40, 20);
    files.writeLight(palette("<BITMAPS><i NAME='a' PATH='a.png'/></BITMAPS>"));
    const auto loader = YGPaletteLoad::initWithPaletteStyle(0);
    EXPECT_EQ(loader->getImageByScale("a", 0, 20)->height(), 10);
    EXPECT_EQ(loader->getImageByScale("a", 0, 0), std::nullopt);
    EXPECT_EQ(loader->getImageByScale("b", 0, 20), std::nullopt);
    EXPECT_EQ(loader->getImageByScale(std::nullopt, 0, 20), std::nullopt);
}

// ---- Sections ----------------------------------------------------------------------------------

TEST(PaletteSection, OnlyTheFirstOfItsNameIsRead) {
    const auto loader = loadPalette(R"(
        <COLORES><c NAME="one"/></COLORES><COLORES><c NAME="two"/></COLORES>
        <FONTS><f NAME="one"/></FONTS><FONTS><f NAME="two"/></FONTS>
        <APP_MAP><COLORES><k KEY="one" VALUE=""/></COLORES></APP_MAP>
        <APP_MAP>
            <COLORES><k KEY="two" VALUE=""/></COLORES><FONTS><k KEY="two" VALUE=""/></FONTS>
        </APP_MAP>)");
    EXPECT_THAT(keysOf(loader->customColors()), ElementsAre("one"));
    EXPECT_THAT(keysOf(loader->customFonts()), ElementsAre("one"));
    EXPECT_THAT(keysOf(loader->keyColorNames()), ElementsAre("one"));
    EXPECT_THAT(keysOf(loader->keyFontNames()), ElementsAre("two"));
}

TEST(PaletteSection, MayStandInASecondPalette) {
    const PaletteRoot files;
    files.writeLight(
        "<ROOT><SWPALETTE/><SWPALETTE><COLORES><c NAME='c'/></COLORES></SWPALETTE>"
        "</ROOT>");
    EXPECT_THAT(keysOf(YGPaletteLoad::initWithPaletteStyle(0)->customColors()), ElementsAre("c"));
}

/// Elements inside each other by chance, with names from palettes, each with another NAME and KEY.
std::string elements(std::minstd_rand& random, int depth) {
    std::string text;
    for (auto count = random() % 4 + 1; depth > 0 && count > 0; --count) {
        const std::string name = std::array{"ROOT",    "SWPALETTE", "SWPALETTE", "APP_MAP",
                                            "COLORES", "FONTS",     "x"}[random() % 7];
        const std::string number = std::to_string(random());
        text += '<' + name + " NAME='" + number + "' KEY='" + number + "' VALUE=''>" +
                elements(random, depth - 1) + "</" + name + '>';
    }
    return text;
}

TEST(PaletteSection, IsTheFirstInTheFileThatAQueryFinds) {
    const PaletteRoot files;
    std::minstd_rand random;
    int found = 0;
    for (int round = 0; round < 300; ++round) {
        const std::string text = "<ROOT>" + elements(random, 4) + "</ROOT>";
        files.writeLight(text);
        const auto loader = YGPaletteLoad::initWithPaletteStyle(0);
        const xml::ParseResult parsed = xml::Document::parseText(text);
        const auto entriesOf = [&](const char* path) {
            std::vector<std::string> names;
            const auto sections = parsed.document.query(xml::Query(path));
            const xml::Element first(sections.empty() ? xml::Node() : sections.front());
            for (const xml::Node& entry : first.children())
                names.emplace_back(*xml::Element(entry).attribute("NAME"));
            found += names.empty() ? 0 : 1;
            return names;
        };
        EXPECT_EQ(keysOf(loader->customColors()), entriesOf("/ROOT/SWPALETTE/COLORES")) << text;
        EXPECT_EQ(keysOf(loader->customFonts()), entriesOf("/ROOT/SWPALETTE/FONTS")) << text;
        EXPECT_EQ(keysOf(loader->keyColorNames()), entriesOf("/ROOT/SWPALETTE/APP_MAP/COLORES"))
            << text;
        EXPECT_EQ(keysOf(loader->keyFontNames()), entriesOf("/ROOT/SWPALETTE/APP_MAP/FONTS"))
            << text;
    }
    EXPECT_GT(found, 100);
}

TEST(PaletteSection, TakesEveryElementForAnEntryAndNothingElse) {
    const auto loader = loadPalette(R"(<COLORES>text<!-- comment -->
        <color NAME="a"/><COLORES NAME="b"/><颜色 NAME="c"><d NAME="d"/></颜色><x:y NAME="e"/>
    </COLORES>)");
    EXPECT_THAT(keysOf(loader->customColors()), ElementsAre("a", "b", "c", "e"));
}

TEST(PaletteSection, LetsTheLaterEntryWin) {
    const auto loader = loadPalette(R"(
        <COLORES><c NAME="c" R="255"/><c NAME="d"/><c NAME="c" B="255"/></COLORES>
        <APP_MAP><COLORES><k KEY="k" VALUE="d"/><k KEY="k" VALUE="c"/></COLORES></APP_MAP>)");
    EXPECT_THAT(keysOf(loader->customColors()), ElementsAre("c", "d"));
    EXPECT_EQ(loader->getCustomColor("k"), (Color{0, 0, 1, 1}));
}

TEST(PaletteSection, IgnoresEntriesWithoutAName) {
    const auto loader = loadPalette(R"(
        <COLORES><c R="1"/><c NAME="c"/></COLORES><FONTS><f HEIGHT="1"/><f NAME="f"/></FONTS>
        <BITMAPS><i PATH="a.png"/></BITMAPS>)");
    EXPECT_THAT(keysOf(loader->customColors()), ElementsAre("c"));
    EXPECT_THAT(keysOf(loader->customFonts()), ElementsAre("f"));
}

TEST(PaletteSection, IgnoresKeysWithoutAValue) {
    const auto loader = loadPalette(R"(<APP_MAP>
        <COLORES><k KEY="a"/><k VALUE="b"/><k KEY="c" VALUE="d"/></COLORES>
        <FONTS><k KEY="a"/><k VALUE="b"/><k KEY="c" VALUE="d"/></FONTS></APP_MAP>)");
    EXPECT_THAT(keysOf(loader->keyColorNames()), ElementsAre("c"));
    EXPECT_THAT(keysOf(loader->keyFontNames()), ElementsAre("c"));
}

TEST(PaletteSection, ReadAloneAddsToWhatIsThere) {
    const auto loader = loadPalette("<COLORES><c NAME='a'/></COLORES>");
    const auto parsed =
        xml::Document::parseText("<any><c NAME='b'/><f NAME='f' KEY='k' VALUE='v'/></any>");
    loader->loadColor(parsed.document.root());
    EXPECT_THAT(keysOf(loader->customColors()), ElementsAre("a", "b", "f"));
    loader->loadFont(parsed.document.root());
    EXPECT_THAT(keysOf(loader->customFonts()), ElementsAre("b", "f"));
    loader->loadKeyFontName(parsed.document.root());
    loader->loadKeyColorName(parsed.document.root());
    EXPECT_THAT(keysOf(loader->keyFontNames()), ElementsAre("k"));
    EXPECT_THAT(keysOf(loader->keyColorNames()), ElementsAre("k"));
}

TEST(PaletteSection, ThatIsAbsentAddsNothing) {
    const auto loader = loadPalette("<COLORES><c NAME='a'/></COLORES>");
    const std::string before = wholeText(*loader);
    loader->loadColor({});
    loader->loadKeyColorName({});
    loader->loadFont({});
    loader->loadKeyFontName({});
    loader->loadImage({});
    EXPECT_EQ(wholeText(*loader), before);
}

// ---- The load ----------------------------------------------------------------------------------

TEST(PaletteLoad, AsksTheHostForTheFileOfTheStyleAndForTheImageFolder) {
    const PaletteRoot files;
    files.writeLight(palette("<BITMAPS/>"));
    files.writeDark(palette(""));
    EXPECT_EQ(YGPaletteLoad::initWithPaletteStyle(0)->currentPaletteStyle(), 0);
    EXPECT_EQ(YGPaletteLoad::initWithPaletteStyle(1)->currentPaletteStyle(), 1);
    EXPECT_EQ(YGPaletteLoad::initWithPaletteStyle(2), nullptr);
    EXPECT_EQ(YGPaletteLoad::initWithPaletteStyle(-1), nullptr);
    EXPECT_THAT(files.host->questions(),
                ElementsAre("getStorageFilePath(1, (null), palette_white.xml, 0)",
                            "getDefualtFolderPath(4)",
                            "getStorageFilePath(1, (null), palette_black.xml, 0)",
                            "getStorageFilePath(1, (null), (null), 0)",
                            "getStorageFilePath(1, (null), (null), 0)"));
    EXPECT_THAT(files.host->log(), IsEmpty());
}

TEST(PaletteLoad, FailsSilentlyWithoutAPath) {
    PaletteRoot files;
    files.writeLight(palette(""));
    for (const auto& path : {std::optional<std::string>(), std::optional<std::string>("")}) {
        files.host->paths["palette_white.xml"] = path;
        EXPECT_EQ(YGPaletteLoad::initWithPaletteStyle(0), nullptr);
    }
    EXPECT_THAT(files.host->log(), IsEmpty());
}

TEST(PaletteLoad, LogsThatFontsAreEmptyWhenTheyAreThere) {
    const PaletteRoot files;
    files.writeLight(palette("<COLORES/><BITMAPS/><APP_MAP><COLORES/></APP_MAP>"));
    YGPaletteLoad::initWithPaletteStyle(0);
    EXPECT_THAT(files.host->log(), IsEmpty());
    files.writeLight(palette("<FONTS><f NAME='f'/></FONTS>"));
    YGPaletteLoad::initWithPaletteStyle(0);
    EXPECT_THAT(files.host->runtimeLog(), ElementsAre("palette fonts is empty"));
    files.host->clear();
    files.writeLight(palette("<APP_MAP><FONTS/></APP_MAP><FONTS/>"));
    YGPaletteLoad::initWithPaletteStyle(0);
    EXPECT_THAT(files.host->runtimeLog(),
                ElementsAre("palette fonts is empty", "palette font names is empty"));
}

TEST(PaletteLoad, LeavesTheMapsOfMissingSectionsEmpty) {
    const PaletteRoot files;
    files.writeImage("a.png", 1, 1);
    files.writeLight(palette(R"(<COLORES><c NAME="c"/></COLORES><FONTS><f NAME="f"/></FONTS>
        <BITMAPS><i NAME="i" PATH="a.png"/></BITMAPS>
        <APP_MAP><COLORES><k KEY="k" VALUE="c"/></COLORES><FONTS><k KEY="k" VALUE="f"/></FONTS></APP_MAP>)"));
    files.writeDark("<other/>");
    const auto loader = YGPaletteLoad::initWithPaletteStyle(0);
    EXPECT_EQ(loader->customImages().size(), 1);
    EXPECT_TRUE(loader->loadConfig(1));
    EXPECT_EQ(wholeText(*loader), yg::testing::emptyPalette);
}

// ---- The switch of the theme -------------------------------------------------------------------

/// Both themes in a folder, and an observer of the switch.
class Switch : public ::testing::Test {
protected:
    Switch() {
        files.writeLight(
            palette("<COLORES><c NAME='c' R='255' G='255' B='255'/></COLORES>" + keys));
        files.writeDark(palette("<COLORES><c NAME='c'/></COLORES>" + keys));
        loader = YGPaletteLoad::initWithPaletteStyle(0);
        files.host->clear();
        token = NotificationCenter::standard().addObserver(
            "YGUIOverallStyleDidChangeNotification", nullptr,
            [this](const Notification& notification) {
                senders.push_back(notification.sender.get());
                const auto sender = std::static_pointer_cast<YGPaletteLoad>(notification.sender);
                seen.push_back(sender->currentPaletteStyle());
                seenColors.push_back(sender->getCustomColor("k"));
            });
    }

    /// Expects that the loader is as it was made, and that nothing waits to be posted.
    void expectUnchanged() {
        EXPECT_EQ(loader->currentPaletteStyle(), 0);
        EXPECT_EQ(loader->getCustomColor("k"), white);
        EXPECT_EQ(files.queue->size(), 0);
    }

    const std::string keys = "<APP_MAP><COLORES><k KEY='k' VALUE='c'/></COLORES></APP_MAP>";
    const Color white{1, 1, 1, 1};
    const Color black{0, 0, 0, 1};
    PaletteRoot files;
    std::shared_ptr<YGPaletteLoad> loader;
    NotificationCenter::Token token;
    std::vector<void*> senders;
    std::vector<int> seen;
    std::vector<Color> seenColors;
};

TEST_F(Switch, ToTheCurrentStyleLoadsNothingAndPostsNothing) {
    files.writeLight(palette(""));
    loader->reloadPaletteWithOtherStyle(0);
    expectUnchanged();
    EXPECT_THAT(files.host->questions(), IsEmpty());
}

TEST_F(Switch, LoadsAtOnceAndPostsLaterFromTheMainQueue) {
    loader->reloadPaletteWithOtherStyle(1);
    EXPECT_EQ(loader->currentPaletteStyle(), 1);
    EXPECT_EQ(loader->getCustomColor("k"), black);
    EXPECT_THAT(seen, IsEmpty());
    EXPECT_EQ(files.queue->size(), 1);
    files.queue->run();
    EXPECT_THAT(senders, ElementsAre(loader.get()));
    EXPECT_THAT(seen, ElementsAre(1));
    EXPECT_THAT(seenColors, ElementsAre(black));
}

TEST_F(Switch, BackAndForthPostsEachTimeAndShowsTheLast) {
    loader->reloadPaletteWithOtherStyle(1);
    loader->reloadPaletteWithOtherStyle(0);
    files.queue->run();
    EXPECT_THAT(seen, ElementsAre(0, 0));
}

TEST_F(Switch, ToAMissingFileKeepsStyleAndColoursAndPostsNothing) {
    std::filesystem::remove(files.root.at("storage/palette_black.xml"));
    loader->reloadPaletteWithOtherStyle(1);
    expectUnchanged();
    EXPECT_THAT(files.host->runtimeLog(), ElementsAre("load palette config fail:" +
                                                      files.root.at("storage/palette_black.xml") +
                                                      ": No such file or directory"));
    loader->reloadPaletteWithOtherStyle(7);
    expectUnchanged();
}

TEST_F(Switch, ToABrokenFileKeepsEverythingAndPostsNothing) {
    for (const char* broken : {"", "<ROOT><SWPALETTE>", "no palette", "<ROOT/><ROOT/>"}) {
        files.host->clear();
        files.writeDark(broken);
        loader->reloadPaletteWithOtherStyle(1);
        expectUnchanged();
        EXPECT_THAT(files.host->runtimeLog(),
                    ElementsAre(::testing::StartsWith("load palette config fail:")));
    }
}

TEST_F(Switch, KeepsTheLoaderAliveUntilItHasPosted) {
    const std::weak_ptr<YGPaletteLoad> watched = loader;
    loader->reloadPaletteWithOtherStyle(1);
    loader.reset();
    EXPECT_FALSE(watched.expired());
    files.queue->run();
    EXPECT_THAT(seen, ElementsAre(1));
    EXPECT_TRUE(watched.expired());
}

TEST_F(Switch, PostsToTheProcessesQueueOfAHostWithoutItsOwn) {
    files.host->queue = nullptr;
    loader->reloadPaletteWithOtherStyle(1);
    EXPECT_THAT(seen, IsEmpty());
    EXPECT_EQ(runPendingMainTasks(), 1);
    EXPECT_THAT(seen, ElementsAre(1));
}

}  // namespace
}  // namespace yg
