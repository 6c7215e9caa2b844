// SPDX-License-Identifier: MIT
//
// Palettes, images and fonts when memory runs out.
#include "YGConfigManager/host/NotificationCenter.h"
#include "YGConfigManager/palette/YGPaletteLoad.h"
#include "YGConfigManager/xml/Document.h"

#include "memory/MemoryTest.h"
#include "palette/PaletteRoot.h"
#include "palette/TestFonts.h"

#if YG_OWN_ALLOCATION

namespace yg {
namespace {

const std::string& text = testing::longText;

std::string palette(std::string_view red) {
    return "<ROOT><SWPALETTE><COLORES><C NAME='" + text + "' R='" + std::string(red) +
           "' G='2' B='3'/></COLORES><FONTS><F NAME='" + text + "' FACE='" + testing::latinFace +
           "' HEIGHT='12'/></FONTS><BITMAPS/><APP_MAP><COLORES><K KEY='" + text + "' VALUE='" +
           text + "'/></COLORES><FONTS><K KEY='" + text + "' VALUE='" + text +
           "'/></FONTS></APP_MAP></SWPALETTE></ROOT>";
}

class PaletteMemory : public testing::MemoryTest {
protected:
    PaletteMemory() {
        put("palette_white.xml", palette("1"));
        put("palette_black.xml", palette("200"));
    }

    static std::string textOf(const std::shared_ptr<YGPaletteLoad>& loader) {
        return testing::wholeText(loader);
    }
};

TEST_F(PaletteMemory, APaletteIsLoadedOrThereIsNone) {
    for (DiagnosticsSink* const sink : testing::bothSinks)
        everyAllocationFails(Operation{
            [sink] { return YGPaletteLoad::initWithPaletteStyle(0, sink); }, textOf, "null"});
}

// What finds the fonts does not survive a malloc that fails at its first use.
constexpr auto firstUseOfFonts = testing::Allocators::operatorNew;

TEST_F(PaletteMemory, AFirstLoadThatFailsLeavesNothingBroken) {
    everyAllocationOfTheFirstCallFails(
        Operation{[] { return YGPaletteLoad::initWithPaletteStyle(0); }, textOf, "null", [] {},
                  firstUseOfFonts});
}

TEST_F(PaletteMemory, AThemeIsSwitchedAndAnnouncedOrStays) {
    const auto loader = YGPaletteLoad::initWithPaletteStyle(0);
    const std::string before = textOf(loader);
    int announced = 0;
    const auto token = NotificationCenter::standard().addObserver(
        YGUIOverallStyleDidChangeNotification, loader.get(), [&](const auto&) { ++announced; });
    const auto outcome = [&] {
        const std::string all = textOf(loader);
        runPendingMainTasks();
        EXPECT_EQ(std::exchange(announced, 0), all == before ? 0 : 1);
        loader->reloadPaletteWithOtherStyle(0);
        runPendingMainTasks();
        announced = 0;
        return all;
    };
    everyAllocationFails(
        Operation{[&] { loader->reloadPaletteWithOtherStyle(1); }, outcome, before});
}

TEST_F(PaletteMemory, AStepAddsAllOrNothing) {
    const xml::Element section =
        xml::Document::parseText(palette("1")).document.root().firstElementChild();
    put("empty.xml", "<ROOT/>");
    const auto colors = xml::Element(section.childAt(0));
    const auto fonts = xml::Element(section.childAt(1));
    const auto map = xml::Element(section.childAt(3));
    put("palette_white.xml", "<ROOT/>");
    std::shared_ptr<YGPaletteLoad> loader;
    const auto prepare = [&] { loader = YGPaletteLoad::initWithPaletteStyle(0); };
    prepare();
    const std::string before = textOf(loader);
    const auto outcome = [&] {
        const std::string all = textOf(loader);
        prepare();
        return all;
    };
    everyAllocationFails(Operation{[&] { loader->loadColor(colors); }, outcome, before, prepare});
    everyAllocationFails(Operation{[&] { loader->loadFont(fonts); }, outcome, before, prepare});
    everyAllocationFails(Operation{[&] { loader->loadKeyColorName(map.firstElementChild()); },
                                   outcome, before, prepare});
    everyAllocationFails(Operation{[&] { loader->loadKeyFontName(xml::Element(map.childAt(1))); },
                                   outcome, before, prepare});
}

TEST_F(PaletteMemory, AnImageIsThereOrNot) {
    const Image image = testing::columns(6, 2);
    root.write("images/a.png", *image.toPng());
    const auto size = [](const auto& answer) { return testing::wholeText(answer); };
    const std::string path = root.at("images/a.png");
    const std::string bytes = *image.toPng();
    everyAllocationFails(Operation{[&] { return Image::fromFile(path); }, size, "-", [] {},
                                   testing::Allocators::operatorNew, false});
    everyAllocationFails(Operation{[&] { return Image::fromBytes(bytes); }, size, "-", [] {},
                                   testing::Allocators::all, false});
    everyAllocationFails(Operation{[&] { return image.scaled(3, 1); }, size, "-", [] {},
                                   testing::Allocators::operatorNew, false});
    everyAllocationFails(Operation{[&] { return image.toPng(); }, size, "-", [] {},
                                   testing::Allocators::all, false});
    everyAllocationFails(Operation{
        [&] { return YGPaletteLoad::getImagesByImageAndGroupCount(image, 3); }, size, "null"});
    const xml::Element section =
        xml::Document::parseText("<BITMAPS><I NAME='" + text + "' PATH='a.png'/></BITMAPS>")
            .document.root();
    put("palette_white.xml", "<ROOT/>");
    std::shared_ptr<YGPaletteLoad> loader;
    const auto prepare = [&] { loader = YGPaletteLoad::initWithPaletteStyle(0); };
    prepare();
    const std::string before = textOf(loader);
    const auto outcome = [&] {
        const std::string all = textOf(loader);
        prepare();
        return all;
    };
    everyAllocationFails(Operation{[&] { loader->loadImage(section); }, outcome, before, prepare,
                                   testing::Allocators::operatorNew, false});
}

TEST_F(PaletteMemory, AFontIsFoundOrTheSystemsServes) {
    const auto textOfFont = [](const auto& font) { return testing::wholeText(font); };
    everyAllocationOfTheFirstCallFails(Operation{[] { return Font::named(testing::latinFace, 12); },
                                                 textOfFont, "-", [] {}, firstUseOfFonts});
    everyAllocationOfTheFirstCallFails(Operation{
        [] { return Font::system(12); },
        [](const Font& font) { return font.faceName() + std::to_string(font.widthOf("ab") > 0); },
        "sans-serif1", [] {}, firstUseOfFonts});
}

TEST_F(PaletteMemory, ATextIsMeasuredOrHasNoWidth) {
    const Font font = *Font::named(testing::latinFace, 12);
    bool isOdd = false;
    everyAllocationFails(Operation{[&] {
                                       // Another text each time: the last one is remembered.
                                       isOdd = !isOdd;
                                       return font.widthOf(isOdd ? "aba" : "aab");
                                   },
                                   [](double width) { return std::to_string(width); },
                                   std::to_string(0.0)});
    const std::string before = testing::wholeText(font);
    const std::string other = text + "y";
    everyAllocationFails(
        Operation{[&] {
                      isOdd = !isOdd;
                      return YGPaletteLoad::fixFontWithFont(font, isOdd ? text : other, 50);
                  },
                  [](const Font& fixed) { return testing::wholeText(fixed); }, before});
}

}  // namespace
}  // namespace yg

#endif
