// SPDX-License-Identifier: MIT
#include <string>
#include <string_view>

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
        EXPECT_EQ(echo.attribute("b"), error) << "holds what is no UTF-8";
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
