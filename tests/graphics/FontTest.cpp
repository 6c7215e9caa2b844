// SPDX-License-Identifier: MIT
#include <atomic>
#include <cmath>
#include <cstdint>
#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <fontconfig/fontconfig.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/graphics/Font.h"
#include "YGConfigManager/graphics/FontServices.h"

#include "files/TemporaryFolder.h"
#include "graphics/CountedMemory.h"
#include "graphics/ImageFiles.h"
#include "graphics/TestFonts.h"

namespace {

/// How often fontconfig has gone through all fonts.
std::atomic<int> listings = 0;

/// How often it has looked for a character in a face.
std::atomic<int> lookups = 0;

template <class Function>
Function* fontconfigs(const char* name) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

}  // namespace

// These take the place of fontconfig's own, for the whole program.

extern "C" FcBool FcCharSetHasChar(const FcCharSet* characters, FcChar32 character) {
    ++lookups;
    static auto* const has = fontconfigs<decltype(FcCharSetHasChar)>("FcCharSetHasChar");
    return has(characters, character);
}

extern "C" FcFontSet* FcFontList(FcConfig* configuration, FcPattern* pattern,
                                 FcObjectSet* objects) {
    ++listings;
    static auto* const list = fontconfigs<decltype(FcFontList)>("FcFontList");
    return list(configuration, pattern, objects);
}

namespace {

using yg::FontServices;
using yg::testing::testFontPath;

class Font : public testing::Test {
protected:
    double width(std::string_view face, double size, std::optional<std::string_view> text) {
        const std::optional<yg::Font> font = fonts.named(face, size);
        return font ? font->widthOf(text) : std::nan("");
    }

    FontServices fonts{
        {testFontPath("square.ttf"), testFontPath("square_bold.ttf"), testFontPath("latin.ttf")}};
};

using FontNames = Font;
using FontWidths = Font;

TEST_F(FontNames, AFaceIsKnownByEachOfItsNames) {
    const std::vector<std::pair<std::string, std::string>> spellings = {
        {"YGTestSquare-Regular", "YGTestSquare-Regular"},
        {"YG Test Square", "YG Test Square"},
        {"方测试体", "方测试体"},
        {"yg test square", "YG Test Square"},
        {"YGTestSquare", "YG Test Square"},
        {"YG Test Square Bold", "YG Test Square Bold"},
        {"方测试体 Bold", "方测试体 Bold"},
        {"ygtestsquare-bold", "YGTestSquare-Bold"},
        {"YG Test Latin", "YG Test Latin"},
    };
    for (const auto& [asked, answered] : spellings) {
        const std::optional<yg::Font> font = fonts.named(asked, 12);
        ASSERT_TRUE(font) << asked;
        EXPECT_EQ(font->faceName(), answered);
        EXPECT_EQ(fonts.named(font->faceName(), 12), font);
    }
}

TEST_F(FontNames, AnUnknownNameIsNoFontAndHasNoSubstitute) {
    using namespace std::string_view_literals;
    for (const std::string_view name :
         {""sv, " "sv, "No Such Face"sv, "YG Test"sv, "sans-serif"sv, "system-ui"sv,
          "YG Test Square\0"sv, "YG Test Square:bold"sv, "YG Test Square,x"sv, "\xFF"sv, "*"sv}) {
        EXPECT_FALSE(fonts.named(name, 12)) << name;
    }
}

TEST_F(FontNames, OfAFamilyTheRegularFaceIsTaken) {
    EXPECT_EQ(width("YG Test Square", 12, "a"), 12);
    EXPECT_EQ(width("YG Test Square Bold", 12, "a"), 15);
    EXPECT_EQ(width("YGTestSquare-Bold", 12, "a"), 15);
}

TEST_F(FontNames, OfAFamilyWithoutARegularFaceTheNearestIsTaken) {
    for (const auto& files : {std::vector{testFontPath("light.ttf"), testFontPath("black.ttf")},
                              std::vector{testFontPath("black.ttf"), testFontPath("light.ttf")}}) {
        FontServices weights{files};
        const std::optional<yg::Font> font = weights.named("YG Test Weights", 12);
        ASSERT_TRUE(font);
        EXPECT_EQ(font->faceName(), "YG Test Weights");
        EXPECT_EQ(font->widthOf("a"), 3);
        EXPECT_EQ(weights.named("YG Test Weights Black", 12)->widthOf("a"), 9);
    }
}

TEST_F(FontNames, TheSizeIsKeptAndNoneMeansTwelve) {
    const double infinity = std::numeric_limits<double>::infinity();
    const std::vector<std::pair<double, double>> sizes = {
        {12.5, 12.5}, {0.25, 0.25}, {0, 12}, {-3, 12}, {std::nan(""), 12}, {infinity, infinity}};
    for (const auto& [asked, answered] : sizes) {
        EXPECT_EQ(fonts.named("YG Test Square", asked)->pointSize(), answered);
        EXPECT_EQ(fonts.system(asked).pointSize(), answered);
    }
}

TEST_F(FontNames, TheSystemFontHasAFaceThatIsFoundAgain) {
    const yg::Font font = fonts.system(9);
    EXPECT_EQ(font.faceName(), "YG Test Square");
    EXPECT_EQ(fonts.named(font.faceName(), 9), font);
    EXPECT_EQ(font.widthOf("abc"), 27);
}

TEST_F(FontNames, FontsAreEqualByFaceNameAndSize) {
    EXPECT_EQ(fonts.named("YG Test Square", 12), fonts.named("yg test square", 12));
    EXPECT_NE(fonts.named("YG Test Square", 12), fonts.named("YG Test Square", 13));
    EXPECT_NE(fonts.named("YG Test Square", 12), fonts.named("YG Test Latin", 12));
}

TEST_F(FontNames, MoreSpellingsThanAreRememberedAreStillFound) {
    std::string name = "ygtestsquare";
    for (int spelling = 0; spelling < 1 << 11; ++spelling) {
        for (std::size_t i = 0; i < 11; ++i) {
            name[i] =
                static_cast<char>((spelling >> i & 1) != 0 ? name[i] & ~0x20 : name[i] | 0x20);
        }
        ASSERT_TRUE(fonts.named(name, 12)) << name;
    }
}

TEST_F(FontNames, OfMoreThanAThousandBytesAreUnknown) {
    const std::string name = "YG Test Square";
    EXPECT_TRUE(fonts.named(name + std::string(1024 - name.size(), ' '), 12));
    EXPECT_FALSE(fonts.named(name + std::string(1025 - name.size(), ' '), 12));
}

TEST_F(FontNames, AreListedOnceForAllThatAreAsked) {
    const int before = listings;
    FontServices other{{testFontPath("latin.ttf")}};
    for (int i = 0; i < 100; ++i) {
        EXPECT_FALSE(other.named("No Such Face " + std::to_string(i), 12));
        EXPECT_TRUE(
            other.named("YG Test" + std::string(static_cast<std::size_t>(i), ' ') + "Latin", 12));
    }
    EXPECT_EQ(listings - before, 1);
}

TEST_F(FontWidths, FiveCharactersAtTwelveAreExactlySixtyPointsWide) {
    EXPECT_EQ(width("YG Test Square", 12, "price"), 60);
    EXPECT_EQ(width("YG Test Square", 12, "涨跌幅限制"), 60);
    EXPECT_EQ(width("YG Test Square", 12, "a涨b跌c"), 60);
}

TEST_F(FontWidths, GrowExactlyWithTheSize) {
    for (int size = 1; size <= 200; ++size) {
        EXPECT_EQ(width("YG Test Square", size, "a价 😀"), 4.0 * size);
        EXPECT_EQ(width("YG Test Latin", size, "abc"), 1.5 * size);
    }
    EXPECT_EQ(width("YG Test Square", 12.5, "ab"), 25);
    EXPECT_EQ(width("YG Test Square", 1e300, "a"), 1e300);
}

TEST_F(FontWidths, AbsentAndEmptyTextHaveNone) {
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(width("YG Test Square", 12, std::nullopt), 0);
    EXPECT_EQ(width("YG Test Square", 12, ""), 0);
    EXPECT_EQ(width("YG Test Square", infinity, ""), 0);
    EXPECT_EQ(width("YG Test Square", infinity, "a"), infinity);
}

TEST_F(FontWidths, OfSeveralLinesTheWidestCounts) {
    for (const std::string_view text : {"ab\nabc\na", "abc\n", "\nabc", "ab\r\nabc", "a\rabc\rab",
                                        "ab\xE2\x80\xA8"
                                        "abc",
                                        "ab\xE2\x80\xA9"
                                        "abc",
                                        "ab\xC2\x85"
                                        "abc"}) {
        EXPECT_EQ(width("YG Test Square", 10, text), 30) << text;
    }
    EXPECT_EQ(width("YG Test Square", 10, "\n\n"), 0);
}

TEST_F(FontWidths, CharactersThatTheFaceLacksComeFromAnother) {
    EXPECT_EQ(width("YG Test Latin", 12, "ab"), 12);
    EXPECT_EQ(width("YG Test Latin", 12, "ab价格"), 12 + 24);
    EXPECT_EQ(width("YG Test Latin", 12, "价a格"), 24 + 6);
    EXPECT_EQ(width("YG Test Latin", 12, "价 格"), 24 + 6);
}

TEST_F(FontWidths, WhatStandsInForACharacterIsLookedUpOnce) {
    FontServices latin{{testFontPath("latin.ttf"), testFontPath("square.ttf")}};
    const yg::Font font = latin.named("YG Test Latin", 12).value();
    const int before = lookups;
    for (int i = 1; i <= 100; ++i) {
        // The one is in the other face, the other in none.
        std::string text(static_cast<std::size_t>(i), 'a');
        text += "价\xF3\xB0\x80\x80";
        EXPECT_EQ(font.widthOf(text), i * 6 + 12 + 6);
    }
    EXPECT_GT(lookups - before, 0);
    EXPECT_LE(lookups - before, 2 * 2);
}

TEST_F(FontWidths, MoreMissingCharactersThanAreRememberedAreStillMeasured) {
    for (unsigned character = 0x4E00; character < 0x4E00 + 9000; ++character) {
        const std::string text{static_cast<char>(0xE0 | character >> 12),
                               static_cast<char>(0x80 | (character >> 6 & 0x3F)),
                               static_cast<char>(0x80 | (character & 0x3F))};
        ASSERT_EQ(width("YG Test Latin", 12, text + "a"), 18) << character;
    }
}

TEST_F(FontWidths, ACharacterOfNoFaceIsAsWideAsTheFacesBox) {
    FontServices latin{{testFontPath("latin.ttf")}};
    EXPECT_EQ(latin.named("YG Test Latin", 12)->widthOf("a价b"), 18);
}

TEST_F(FontWidths, AMarkStaysWithTheCharacterThatItIsDrawnOn) {
    // A circle around it, which the Latin face lacks and so shows as its box.
    EXPECT_EQ(width("YG Test Latin", 12, "a\xE2\x83\x9D"), 12);
    // Joined by an invisible character that the Latin face lacks.
    EXPECT_EQ(width("YG Test Latin", 12,
                    "a\xE2\x80\x8D"
                    "b"),
              12);
    EXPECT_EQ(width("YG Test Latin", 12,
                    "价\xEF\xB8\x80"
                    "b"),
              12 + 6);
}

TEST_F(FontWidths, ATabCountsAsABlankAndOtherControlsAsNothing) {
    EXPECT_EQ(width("YG Test Square", 10, "a\tb"), 30);
    EXPECT_EQ(width("YG Test Square", 10,
                    "a\x01\x1F\x7F\xC2\x9F"
                    "b"),
              20);
}

TEST_F(FontWidths, BrokenBytesCountAsReplacementCharacters) {
    EXPECT_EQ(width("YG Test Square", 10,
                    "a\xFF"
                    "b"),
              30);
    EXPECT_EQ(width("YG Test Square", 10, "\xE4\xBB"), 20);
    EXPECT_EQ(width("YG Test Square", 10, "\xED\xA0\x80"), 30);
}

TEST_F(FontWidths, TextsOfAnyLengthAreMeasured) {
    for (const std::size_t length : {4096U, 4097U, 16384U, 16385U, 100'000U}) {
        EXPECT_EQ(width("YG Test Square", 1, std::string(length, 'a')), length);
    }
}

TEST_F(FontWidths, ATextIsMeasuredAgainAfterAnother) {
    const yg::Font font = fonts.system(10);
    EXPECT_EQ(font.widthOf("ab"), 20);
    EXPECT_EQ(font.widthOf("abc"), 30);
    EXPECT_EQ(font.widthOf("价"), 10);
    EXPECT_EQ(fonts.system(20).widthOf("abc"), 60);
    EXPECT_EQ(font.widthOf("ab"), 20);
}

TEST_F(FontWidths, WithNoFontAtAllARuleMeasures) {
    FontServices none{std::vector<std::string>()};
    EXPECT_FALSE(none.named("YG Test Square", 12));
    EXPECT_FALSE(none.named("sans-serif", 12));
    const yg::Font font = none.system(12);
    EXPECT_EQ(font.faceName(), "sans-serif");
    EXPECT_EQ(font.widthOf("abcd"), 24);
    EXPECT_EQ(font.widthOf("价格"), 24);
    EXPECT_EQ(font.widthOf("e\xCC\x81"), 6);
    EXPECT_EQ(font.widthOf("a\n价格"), 24);
    EXPECT_EQ(font.widthOf(std::nullopt), 0);
}

TEST_F(FontWidths, FilesThatAreNoFontsAreNoFonts) {
    FontServices none{{testFontPath("fonts.conf"), testFontPath("missing.ttf")}};
    EXPECT_EQ(none.system(12).faceName(), "sans-serif");
}

TEST_F(FontWidths, MeasuringFromSeveralThreadsGivesTheSameWidths) {
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([this, thread] {
            for (int round = 0; round < 200; ++round) {
                const auto count = static_cast<std::size_t>((thread + round) % 7);
                const yg::Font font =
                    round % 2 == 0 ? *fonts.named("YG Test Latin", 10) : fonts.system(10);
                const double character = round % 2 == 0 ? 5 : 10;
                EXPECT_EQ(font.widthOf(std::string(count, 'x') + "价"),
                          static_cast<double>(count) * character + 10);
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}

std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(FontFiles, AFileThatIsShortenedWhileItIsOpenChangesNothing) {
    const yg::files::TemporaryFolder root;
    root.write("font.ttf", contentOf(testFontPath("latin.ttf")));
    FontServices fonts{{root.at("font.ttf")}};
    const yg::Font font = fonts.named("YG Test Latin", 12).value();
    EXPECT_EQ(font.widthOf("a"), 6);
    std::filesystem::resize_file(root.at("font.ttf"), 0);
    EXPECT_EQ(font.widthOf("another text"), 72);
    EXPECT_EQ(fonts.named("YGTestLatin-Regular", 12)->widthOf("ab"), 12);
}

TEST(FontFiles, AFileThatIsShortenedBeforeItIsOpenedIsNoFont) {
    const yg::files::TemporaryFolder root;
    const std::string whole = contentOf(testFontPath("latin.ttf"));
    for (const std::size_t size : {std::size_t{0}, std::size_t{11}, whole.size() / 2}) {
        root.write("font.ttf", whole);
        FontServices fonts{{root.at("font.ttf")}};
        std::filesystem::resize_file(root.at("font.ttf"), size);
        EXPECT_FALSE(fonts.named("YG Test Latin", 12)) << size;
        EXPECT_EQ(fonts.system(12).faceName(), "sans-serif") << size;
    }
}

/// Both fonts as faces of one file. Where a font's tables begin is counted from the file's start.
std::string collectionOf(const std::vector<std::string>& fonts) {
    const auto number = [](std::size_t value) {
        return yg::testing::bigEndian(static_cast<std::uint32_t>(value));
    };
    std::string header = "ttcf" + number(0x10000) + number(fonts.size());
    const std::size_t start = header.size() + 4 * fonts.size();
    std::string content;
    for (std::string font : fonts) {
        const std::size_t place = start + content.size();
        header += number(place);
        for (std::size_t at = 12 + 8; at < 12 + 16 * static_cast<std::size_t>(font[5]); at += 16) {
            std::size_t table = 0;
            for (std::size_t i = 0; i < 4; ++i)
                table = table << 8 | static_cast<unsigned char>(font[at + i]);
            font.replace(at, 4, number(table + place));
        }
        content += font;
    }
    return header + content;
}

TEST(FontFiles, AreInMemoryOnceForAllTheirFaces) {
    const yg::files::TemporaryFolder root;
    const std::string both =
        collectionOf({contentOf(testFontPath("latin.ttf")), contentOf(testFontPath("light.ttf"))});
    root.write("both.ttc", both);
    FontServices fonts{{root.at("both.ttc")}, both.size()};
    EXPECT_EQ(fonts.named("YG Test Latin", 12)->widthOf("a"), 6);
    EXPECT_EQ(fonts.named("YG Test Weights", 12)->widthOf("a"), 3);
}

TEST(FontFiles, AreOpenedUpToALimitOfTheirBytesTogether) {
    const std::string latin = testFontPath("latin.ttf");
    const std::string square = testFontPath("square.ttf");
    const std::size_t both = contentOf(latin).size() + contentOf(square).size();
    FontServices enough{{latin, square}, both};
    EXPECT_TRUE(enough.named("YG Test Latin", 12));
    EXPECT_TRUE(enough.named("YG Test Square", 12));
    FontServices few{{latin, square}, both - 1};
    EXPECT_TRUE(few.named("YG Test Latin", 12));
    EXPECT_FALSE(few.named("YG Test Square", 12));
    // As wide as the face's box, for no other face can be opened.
    EXPECT_EQ(few.named("YG Test Latin", 12)->widthOf("价"), 6);
}

// The machine's own fonts: those that the packages for the tests bring.

TEST(InstalledFonts, LatinAndChineseFacesAreKnownAndMeasured) {
    const std::optional<yg::Font> latin = yg::Font::named("DejaVu Sans", 12);
    ASSERT_TRUE(latin) << "the package fonts-dejavu-core is missing";
    EXPECT_EQ(latin->faceName(), "DejaVu Sans");
    EXPECT_EQ(yg::Font::named("DejaVuSans-Bold", 12)->faceName(), "DejaVuSans-Bold");
    // Kerning makes AV narrower than A and V.
    EXPECT_LT(latin->widthOf("AV"), latin->widthOf("A") + latin->widthOf("V"));
    EXPECT_NEAR(latin->widthOf("AVAWAToTe fi ffi"), 93.02, 0.01);
    EXPECT_DOUBLE_EQ(yg::Font::named("DejaVu Sans", 36)->widthOf("AVA"), 3 * latin->widthOf("AVA"));

    const std::optional<yg::Font> chinese = yg::Font::named("文泉驿微米黑", 12);
    ASSERT_TRUE(chinese) << "the package fonts-wqy-microhei is missing";
    EXPECT_EQ(chinese->faceName(), "文泉驿微米黑");
    EXPECT_EQ(chinese->widthOf("涨跌幅"), 36);
    // From some face with Chinese characters, which all are square.
    EXPECT_NEAR(latin->widthOf("A涨跌幅"), latin->widthOf("A") + 36, 0.5);
}

TEST(InstalledFonts, TheSystemFontIsFoundAgainByItsName) {
    const yg::Font font = yg::Font::system(12);
    ASSERT_TRUE(yg::Font::named(font.faceName(), 12)) << font.faceName();
    EXPECT_EQ(yg::Font::named(font.faceName(), 12)->widthOf("Price 12.50"),
              font.widthOf("Price 12.50"));
    EXPECT_FALSE(yg::Font::named("system-ui", 12));
}

}  // namespace
