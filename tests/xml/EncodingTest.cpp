// SPDX-License-Identifier: MIT
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "YGConfigManager/text/Utf8.h"
#include "YGConfigManager/xml/Decoding.h"
#include "YGConfigManager/xml/Document.h"

#include "files/TemporaryFolder.h"
#include "xml/XmlTesting.h"

namespace yg::xml {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;
using testing::HasSubstr;
using testing::StartsWith;

std::string declared(std::string_view encoding, std::string_view rest) {
    return joined("<?xml version=\"1.0\" encoding=\"", encoding, "\"?>", rest);
}

/// ASCII text as UTF-16, low bytes first or last.
std::string utf16(std::string_view ascii, bool littleEndian) {
    std::string bytes;
    for (const char c : ascii) {
        bytes += littleEndian ? c : '\0';
        bytes += littleEndian ? '\0' : c;
    }
    return bytes;
}

TEST(Encoding, WithoutMarkAndDeclarationItIsUtf8) {
    EXPECT_EQ(rootOf("<a>中文</a>").stringValue(), "中文");
    EXPECT_EQ(parsedBytes("<a>中文</a>").document.root().stringValue(), "中文");
    EXPECT_FALSE(parsedBytes("<a>\xD6\xD0\xCE\xC4</a>"));
    EXPECT_FALSE(parsedBytes("<?xml version='1.0'?><a>\xE9</a>"));
}

TEST(Encoding, AMarkIsAcceptedForUtf8) {
    const ParseResult result = parsedBytes("\xEF\xBB\xBF<a>中</a>");
    EXPECT_EQ(result.document.serialise(Form::plain), "<a>中</a>");
    EXPECT_TRUE(parsedText("\xEF\xBB\xBF<a/>"));
    EXPECT_TRUE(parsedBytes("\xEF\xBB\xBF<?xml version='1.0' encoding='utf-8'?><a/>"));
}

TEST(Encoding, OnlyOneMarkIsAccepted) {
    EXPECT_FALSE(parsedBytes("\xEF\xBB\xBF\xEF\xBB\xBF<a/>"));
    EXPECT_FALSE(parsedText("\xEF\xBB\xBF\xEF\xBB\xBF<a/>"));
}

TEST(Encoding, AMarkIsAcceptedForUtf16InBothOrders) {
    const std::string text = "<?xml version='1.0' encoding='UTF-16'?>\n<a b='1'>x</a>";
    for (const bool littleEndian : {true, false}) {
        const std::string mark = littleEndian ? "\xFF\xFE" : "\xFE\xFF";
        const ParseResult result = parsedBytes(mark + utf16(text, littleEndian));
        EXPECT_TRUE(result) << result.error;
        EXPECT_EQ(result.document.serialise(Form::plain), R"(<a b="1">x</a>)");
        EXPECT_TRUE(parsedBytes(mark + utf16("<a/>", littleEndian)));
    }
    EXPECT_EQ(parsedBytes("\xFF\xFE<\0a\0>\0\x2D\x4E\x40\xD8\x00\xDC<\0/\0a\0>\0"sv)
                  .document.root()
                  .stringValue(),
              "中\xF0\xA0\x80\x80");
    EXPECT_EQ(parsedBytes("\xFE\xFF\0<\0a\0>\x4E\x2D\xD8\x40\xDC\x00\0<\0/\0a\0>"sv)
                  .document.root()
                  .stringValue(),
              "中\xF0\xA0\x80\x80");
}

TEST(Encoding, Utf16WithoutMarkIsAnError) {
    for (const std::string_view text :
         {"<a/>"sv, "<?xml version='1.0'?><a/>"sv, "<?xml version='1.0' encoding='UTF-16'?><a/>"sv,
          "<?xml version='1.0' encoding='UTF-16LE'?><a/>"sv}) {
        for (const bool littleEndian : {true, false}) {
            EXPECT_FALSE(parsedBytes(utf16(text, littleEndian))) << text;
            EXPECT_FALSE(parsedText(utf16(text, littleEndian))) << text;
        }
    }
    EXPECT_FALSE(parsedBytes(declared("UTF-16", "<a/>")));
    EXPECT_FALSE(parsedBytes(declared("utf-16le", "<a/>")));
}

TEST(Encoding, Utf16ThatBreaksOffOrHoldsHalfAPairIsAnError) {
    EXPECT_FALSE(parsedBytes("\xFF\xFE<\0a\0/\0>"sv));
    EXPECT_FALSE(parsedBytes("\xFF\xFE<\0a\0>\0\x40\xD8<\0/\0a\0>\0"sv));
    EXPECT_FALSE(parsedBytes("\xFF\xFE<\0a\0>\0\x00\xDC<\0/\0a\0>\0"sv));
    EXPECT_FALSE(parsedBytes("\xFF\xFE"sv));
    EXPECT_FALSE(parsedBytes("\xFE\xFF\0"sv));
}

TEST(Encoding, OtherWideFormsAreErrors) {
    EXPECT_FALSE(parsedBytes("\xFF\xFE\0\0<\0\0\0a\0\0\0/\0\0\0>\0\0\0"sv));
    EXPECT_FALSE(parsedBytes("\0\0\xFE\xFF\0\0\0<\0\0\0a\0\0\0/\0\0\0>"sv));
    EXPECT_FALSE(parsedBytes("<\0\0\0a\0\0\0/\0\0\0>\0\0\0"sv));
    EXPECT_FALSE(parsedBytes("\0\0\0<\0\0\0a\0\0\0/\0\0\0>"sv));
    EXPECT_FALSE(parsedBytes("\x4C\x6F\xA7\x94\x93"sv));
}

// The characters are "中文", then U+9555, which GBK has and GB2312 has not, then U+20000, which
// only GB18030 has.
TEST(Encoding, TheGbkFamilyIsDecodedAsOneWhateverTheLetterCase) {
    for (const std::string_view name : {"gb2312"sv, "GB2312"sv, "Gb2312"sv, "gbk"sv, "GBK"sv,
                                        "gB18030"sv, "GB18030"sv, "gb18030"sv}) {
        const ParseResult result = parsedBytes(
            declared(name, "<\xD6\xD0 b='\xCE\xC4'>\xE9\x46\x95\x32\x82\x36</\xD6\xD0>"));
        EXPECT_TRUE(result) << name << " " << result.error;
        EXPECT_EQ(result.document.serialise(Form::plain), "<中 b=\"文\">镕\xF0\xA0\x80\x80</中>")
            << name;
    }
}

TEST(Encoding, BytesThatLookLikeMarkupInsideGbkCharactersAreNone) {
    // The second byte of a GBK character may be a bracket, a backslash or a bar.
    EXPECT_EQ(parsedBytes(declared("gbk", "<a b='\x81\x5B\x81\x5D\x81\x5C\x81\x7C'/>"))
                  .document.root()
                  .attribute("b"),
              "乕乚乗亅");
}

TEST(Encoding, Big5IsDecodedAsDeclared) {
    for (const std::string_view name : {"Big5"sv, "big5"sv, "BIG5"sv})
        EXPECT_EQ(
            parsedBytes(declared(name, "<a>\xA4\xA4\xA4\xE5</a>")).document.root().stringValue(),
            "中文")
            << name;
}

TEST(Encoding, LatinSetsAreDecodedAsDeclared) {
    EXPECT_EQ(parsedBytes(declared("ISO-8859-1", "<a>\xE9\xA4</a>")).document.root().stringValue(),
              "é¤");
    EXPECT_EQ(parsedBytes(declared("iso-8859-15", "<a>\xE9\xA4</a>")).document.root().stringValue(),
              "é€");
    EXPECT_EQ(parsedBytes(declared("latin1", "<\xE9/>")).document.root().name(), "é");
    EXPECT_EQ(parsedBytes(declared("windows-1252", "<a>\x80</a>")).document.root().stringValue(),
              "€");
    EXPECT_EQ(parsedBytes(declared("US-ASCII", "<a>b</a>")).document.root().stringValue(), "b");
}

TEST(Encoding, ADeclaredUtf8IsUtf8) {
    for (const std::string_view name : {"UTF-8"sv, "utf-8"sv, "utf8"sv, "Utf-8"sv}) {
        EXPECT_EQ(parsedBytes(declared(name, "<a>中</a>")).document.root().stringValue(), "中");
        EXPECT_FALSE(parsedBytes(declared(name, "<a>\xD6\xD0</a>"))) << name;
    }
}

TEST(Encoding, BytesThatAreNotValidInTheEncodingAreErrors) {
    for (const std::string_view bytes : {
             "<a>\xFF</a>"sv,              // never in UTF-8
             "<a>\xC0\x80</a>"sv,          // overlong
             "<a>\xE0\x80\xBC</a>"sv,      // overlong
             "<a>\xED\xA0\x80</a>"sv,      // a surrogate
             "<a>\xF4\x90\x80\x80</a>"sv,  // beyond Unicode
             "<a>\x80</a>"sv,              // a continuation byte alone
             "<a>\xE4\xB8</a>"sv,          // cut short by a tag
             "<a/>\xE4\xB8"sv,             // cut short by the end
             "<a b='\xFF'/>"sv,
             "<\xFF/>"sv,
             "<a><!--\xFF--></a>"sv,
             "<a><?b \xFF?></a>"sv,
             "<a><![CDATA[\xFF]]></a>"sv,
             "\xFF<a/>"sv,
             "<!DOCTYPE a SYSTEM '\xFF'><a/>"sv,
         }) {
        EXPECT_FALSE(parsedBytes(bytes)) << bytes;
        EXPECT_FALSE(parsedText(bytes)) << bytes;
    }
    for (const std::string& bytes : {
             declared("gbk", "<a>\xFF\xFF</a>"),
             declared("gbk", "<a>\xD6</a>"),
             declared("gb2312", "<a/><!--\xD6"),
             declared("gb18030", "<a>\x81\x30\x81</a>"),
             declared("Big5", "<a>\xFF</a>"),
             declared("Big5", "<a>\xA4</a>"),
             declared("US-ASCII", "<a>\xE9</a>"),
             declared("ISO-8859-7", "<a>\xFF</a>"),
         })
        EXPECT_FALSE(parsedBytes(bytes)) << bytes;
}

TEST(Encoding, TheDescriptionNamesTheEncodingAndTheLineOfAWrongByte) {
    EXPECT_EQ(parsedBytes("<a>\n\n\xFF</a>").error, "Line 3: Input is not proper UTF-8");
    EXPECT_THAT(parsedBytes(declared("gbk", "\n<a>\n\xD6\xD0\n\xFF</a>")).error,
                StartsWith("Line 4: Input is not proper "));
    EXPECT_THAT(parsedBytes("\xFF\xFE<\0a\0>\0\n\0\x00\xDC<\0/\0a\0>\0"sv).error,
                StartsWith("Line 2: Input is not proper "));
}

TEST(Encoding, AnUnknownNameIsAnError) {
    for (const std::string_view name : {"gbk2"sv, "chinese"sv, "x"sv, "UTF-9"sv, "gb 2312"sv,
                                        "gbk "sv, ""sv, " "sv, "utf-8;"sv, "\xE4\xB8\xAD"sv}) {
        const ParseResult result = parsedBytes(declared(name, "<a/>"));
        EXPECT_FALSE(result) << name;
        EXPECT_THAT(result.error, StartsWith("Line 1: ")) << name;
    }
}

TEST(Encoding, NamesThatMeanSomethingToTheConverterAreNoEncodings) {
    for (const std::string_view name :
         {"GBK//IGNORE"sv, "GBK//TRANSLIT"sv, "ASCII//IGNORE"sv, "utf-8//"sv, "../../lib"sv,
          "GBK,UTF-8"sv, "UTF-16"sv, "UCS-4"sv, "UCS-2"sv, "UTF-32"sv})
        EXPECT_FALSE(parsedBytes(declared(name, "<a>b</a>"))) << name;
}

TEST(Encoding, TheDescriptionOfAnOddNameIsOneShortLineOfUtf8) {
    for (const std::string& name :
         {"a\nb"s, "a\r\nb"s, "\xFF\xFE"s, "a\0b"s, "\x1B[0m"s, repeated("x", 100'000)}) {
        const std::string error = parsedBytes(declared(name, "<a/>")).error;
        EXPECT_THAT(error, StartsWith("Line 1: "));
        EXPECT_EQ(error.find_first_of("\r\n\x1B\0"sv), std::string::npos) << error;
        EXPECT_LT(error.size(), 4096U);
        EXPECT_FALSE(Document::parseText(joined("<a>", error.substr(0, 4096), "\xFF</a>")));
        EXPECT_TRUE(Element::create("a").setAttribute("b", error));
        Element echo = Element::create("a");
        echo.setAttribute("b", error);
        EXPECT_EQ(echo.attribute("b"), error) << "holds what is not UTF-8";
    }
}

TEST(Encoding, TheDeclarationIsReadHoweverItIsWritten) {
    for (const std::string_view declaration :
         {"<?xml version='1.0' encoding='gbk'?>"sv, "<?xml version='1.0'\n encoding = \"gbk\" ?>"sv,
          "<?xml\tversion='1.0'\r\nencoding\n=\n'gbk' standalone='no'?>"sv})
        EXPECT_EQ(
            parsedBytes(std::string(declaration) + "<a>\xD6\xD0</a>").document.root().stringValue(),
            "中")
            << declaration;
}

TEST(Encoding, OnlyTheDeclarationNamesTheEncoding) {
    EXPECT_TRUE(parsedBytes("<a encoding='gbk'>中</a>"));
    EXPECT_TRUE(parsedBytes("<?xml version='1.0'?><?x encoding='gbk'?><a>中</a>"));
    EXPECT_TRUE(parsedBytes("<!-- <?xml version='1.0' encoding='gbk'?> --><a>中</a>"));
    EXPECT_TRUE(parsedBytes("<?xml-x encoding='gbk'?><a>中</a>"));
}

TEST(Encoding, TextIsUtf8WhateverItDeclares) {
    for (const std::string_view name :
         {"gbk"sv, "GB2312"sv, "UTF-16"sv, "ISO-8859-1"sv, "Big5"sv, "x-unknown"sv, "UCS-4"sv}) {
        const ParseResult result = parsedText(declared(name, "<a>中</a>"));
        EXPECT_TRUE(result) << name << " " << result.error;
        EXPECT_EQ(result.document.root().stringValue(), "中");
    }
}

TEST(Encoding, AFileIsDecodedAsItsBytesAre) {
    const files::TemporaryFolder folder;
    files::put(folder / "a.xml", declared("gb2312", "<a>\xD6\xD0\xE9\x46</a>"));
    EXPECT_EQ(Document::parseFile(folder / "a.xml").document.root().stringValue(), "中镕");
    files::put(folder / "a.xml", joined("\xFF\xFE", utf16("<a>x</a>", true)));
    EXPECT_EQ(Document::parseFile(folder / "a.xml").document.root().stringValue(), "x");
}

TEST(Encoding, WhateverTheSourceTheResultIsWrittenInUtf8WithoutMark) {
    for (const std::string& bytes :
         {declared("gbk", "<a>\xD6\xD0</a>"), declared("Big5", "<a>\xA4\xA4</a>"),
          "\xEF\xBB\xBF<a>中</a>"s, "\xFF\xFE<\0a\0>\0\x2D\x4E<\0/\0a\0>\0"s})
        EXPECT_EQ(parsedBytes(bytes).document.serialise(Form::pretty),
                  "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<a>中</a>\n");
}

// Encodings in which ASCII is ASCII, one for each converter that keeps something between bytes, and
// some that do not.
constexpr std::string_view asciiCompatible[] = {
    "ARMSCII-8",
    "BIG5",
    "BIG5-HKSCS",
    "CP1252",
    "CP1255",
    "CP1258",
    "CP932",
    "CP949",
    "EUC-CN",
    "EUC-JISX0213",
    "EUC-JP",
    "EUC-JP-MS",
    "EUC-KR",
    "EUC-TW",
    "GBK",
    "GEORGIAN-PS",

    "ISO-2022-CN",
    "ISO-2022-CN-EXT",
    "ISO-2022-JP",
    "ISO-2022-JP-3",
    "ISO-2022-KR",
    "ISO-8859-1",
    "ISO-8859-8",
    "ISO_6937",
    "ISO_6937-2",
    "JOHAB",
    "KOI8-R",
    "MACINTOSH",
    "MS-HEBR",
    "SHIFT_JIS",
    "SHIFT_JISX0213",
    "T.61",
    "TCVN",
    "TCVN5712-1",
    "TSCII",
    "UHC",
    "UTF-7",
    "WINDOWS-1255",
    "WINDOWS-1258",
};

TEST(Encoding, TextAfterTheRootIsAnErrorInEveryEncoding) {
    for (const std::string_view name : asciiCompatible) {
        const std::string document = declared(name, "<a>b</a>");
        EXPECT_TRUE(parsedBytes(document)) << name;
        EXPECT_TRUE(parsedBytes(document + "\n")) << name;
        for (int byte = 0; byte < 256; ++byte) {
            const std::string after = document + static_cast<char>(byte);
            const bool isShift =
                byte == 0x0F && (name == "ISO-2022-KR" || name.substr(0, 11) == "ISO-2022-CN");
            const bool isNothing = isShift || " \t\r\n"sv.find(after.back()) < 4;
            EXPECT_EQ(static_cast<bool>(Document::parseBytes(after)), isNothing) << name << byte;
            // What is held back for a next character comes out without one, too.
            const Decoded alone = decodeXml(after);
            const Decoded followed = decodeXml(after + "\n");
            if (alone.errors.empty() && followed.errors.empty()) {
                EXPECT_EQ(alone.text + "\n", followed.text) << name << " " << byte;
            }
        }
    }
}

TEST(Encoding, TheLastCharacterCountsThoughAnAccentCouldFollow) {
    const struct {
        std::string_view encoding, bytes, text;
    } cases[] = {
        {"CP1255", "\xE1", "\u05D1"}, {"CP1258", "a", "a"},
        {"CP1258", "\xEA", "ê"},      {"TCVN", "A", "A"},
        {"TSCII", "\xAB", "\u0B85"},  {"BIG5-HKSCS", "\x88\x62", "\u00CA\u0304"},
    };
    for (const auto& one : cases) {
        const std::string declaration = declared(one.encoding, "");
        EXPECT_EQ(decodeXml(declaration + std::string(one.bytes)).text,
                  declaration + std::string(one.text))
            << one.encoding;
        EXPECT_EQ(parsedBytes(declared(one.encoding, joined("<a>", one.bytes, "</a>")))
                      .document.root()
                      .stringValue(),
                  one.text);
    }
}

TEST(Encoding, ATextThatEndsWithinAShiftSequenceIsAnError) {
    for (const auto& [name, bytes] : {
             std::pair("UTF-7"sv, "<a/>+AG"sv),
             std::pair("UTF-7"sv, "<a/>+2ADc"sv),
             std::pair("ISO-2022-KR"sv, "<a/>\x0E"sv),
             std::pair("ISO-2022-CN"sv, "<a/>\x1B$)A\x0E"sv),
             std::pair("ISO-2022-JP"sv, "<a/>\x1B$"sv),
         }) {
        const std::string error = parsedBytes(declared(name, bytes)).error;
        EXPECT_EQ(error, joined("Line 1: Input is not proper ", name)) << bytes;
    }
    EXPECT_TRUE(parsedBytes(declared("UTF-7", "<a>+ThZlhw-</a>")));
    EXPECT_TRUE(parsedBytes(declared("UTF-7", "<a/><!--+ThZlhw--->")));
    EXPECT_TRUE(parsedBytes(declared("ISO-2022-JP", "<a>\x1B$BCf\x1B(B</a>")));
}

TEST(Encoding, ADeclarationThatReadsOtherwiseInItsOwnEncodingIsAnError) {
    for (const std::string_view name :
         {"EBCDIC-CP-US"sv, "IBM037"sv,        "IBM1047"sv,    "CP500"sv,  "IBM1388"sv,
          "IBM930"sv,       "KOI-7"sv,         "GREEK7"sv,     "INIS"sv,   "UNICODE"sv,
          "CSUNICODE"sv,    "UNICODELITTLE"sv, "UNICODEBIG"sv, "UTF16"sv,  "UTF16LE"sv,
          "UTF32"sv,        "UTF32BE"sv,       "ISO-10646"sv,  "CSUCS4"sv, "WCHAR_T"sv,
          "OSF00010101"sv,  "OSF00010104"sv}) {
        // Of every length that a wider character divides or does not.
        for (std::size_t blanks = 0; blanks < 4; ++blanks) {
            const std::string error =
                parsedBytes(declared(name, joined("<a/>", repeated(" ", blanks)))).error;
            EXPECT_EQ(error, joined("Line 1: Input is labelled ", name, " but is not encoded so"));
        }
    }
}

TEST(Encoding, WhatIsDecodedIsUtf8WithoutNulOrAnError) {
    // An alias of UTF-8 that the converter takes up to 0x7FFFFFFF, and bytes that mean NUL.
    EXPECT_EQ(parsedBytes(declared("OSF05010001", "\n<a>\xF4\x90\x80\x80</a>")).error,
              "Line 2: Input is not proper OSF05010001");
    EXPECT_FALSE(parsedBytes(declared("OSF05010001", "<a>\xED\xA0\x80</a>")));
    EXPECT_TRUE(parsedBytes(declared("OSF05010001", "<a>\xF4\x8F\xBF\xBF</a>")));
    EXPECT_FALSE(parsedBytes(declared("UTF-7", "<a>+AAA-</a>")));
    EXPECT_FALSE(parsedBytes(declared("UTF-7", "<a>+2AA-</a>")));
    EXPECT_FALSE(parsedBytes(declared("ISIRI-3342", "<a>\x80</a>")));

    // The same characters again and again, with every offset to whatever is read at once.
    for (const std::string_view name : asciiCompatible) {
        std::uint32_t random = 1;
        for (std::size_t round = 0; round < 20; ++round) {
            std::string bytes = declared(name, repeated(" ", round) + "<a>");
            while (bytes.size() < 3000) {
                random = random * 1664525 + 1013904223;
                bytes += static_cast<char>(random >> 24);
                bytes += static_cast<char>(random >> 16);
            }
            const Decoded decoded = decodeXml(bytes);
            EXPECT_TRUE(text::isValidUtf8(decoded.text)) << name;
            for (const ParseError& error : decoded.errors) {
                EXPECT_TRUE(text::isValidUtf8(error.message)) << name;
                EXPECT_LT(error.message.size(), 100U);
            }
        }
    }
}

// Two converters that go wrong when their output runs full: one repeats a character until memory
// ends, the other answers one character where there are several.
TEST(Encoding, CharactersThatMakeSeveralAreDecodedWhereverTheyStand) {
    const struct {
        std::string_view encoding, bytes, text;
    } cases[] = {
        {"SHIFT_JISX0213", "\x83\x9B\x83\xF6\x82\xF5", ""},
        {"EUC-JISX0213", "\xA4\xF7\xA5\xF7", "\u304B\u309A\u30AB\u309A"},
        {"TSCII", "\xAA\xAB", ""},
        {"TSCII", "\x82\xA6\xAB", ""},
        {"BIG5-HKSCS", "\x88\x62\x88\xA5", "\u00CA\u0304\u00EA\u030C"},
    };
    for (const auto& one : cases) {
        const std::string once = decodeXml(declared(one.encoding, one.bytes)).text;
        const std::size_t declaration = declared(one.encoding, "").size();
        ASSERT_GT(once.size(), declaration) << one.encoding;
        const std::string expected = once.substr(declaration);
        if (!one.text.empty()) {
            EXPECT_EQ(expected, one.text);
        }
        for (std::size_t blanks = 0; blanks < 8; ++blanks) {
            const Decoded decoded = decodeXml(
                declared(one.encoding, joined(repeated(" ", blanks), repeated(one.bytes, 2000))));
            EXPECT_TRUE(decoded.errors.empty()) << one.encoding;
            EXPECT_TRUE(decoded.text.substr(declaration + blanks) == repeated(expected, 2000))
                << one.encoding << " after " << blanks;
        }
    }
}

TEST(Encoding, ALargeFileIsDecodedWhole) {
    std::string gbk = declared("gbk", "<a>");
    std::string expected;
    for (int i = 0; i < 200'000; ++i) {
        gbk += "\xD6\xD0\xCE\xC4x";
        expected += "中文x";
    }
    EXPECT_TRUE(parsedBytes(gbk + "</a>").document.root().stringValue() == expected);
}

}  // namespace
}  // namespace yg::xml
