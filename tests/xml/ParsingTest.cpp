// SPDX-License-Identifier: MIT
#include <filesystem>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "YGConfigManager/xml/Document.h"

#include "files/TemporaryFolder.h"
#include "xml/XmlTesting.h"

namespace yg::xml {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

struct Row {
    const char* what;
    std::string_view input;
};

constexpr Row notXml[] = {
    {"no bytes", ""},
    {"white space alone", " \r\n\t"},
    {"a byte-order mark alone", "\xEF\xBB\xBF"},
    {"a declaration alone", R"(<?xml version="1.0"?>)"},
    {"a comment alone", "<!-- nothing -->"},
    {"a declaration and comments", "<?xml version='1.0'?>\n<!-- a -->\n<!-- b -->"},
    {"an instruction alone", "<?go on?>"},
    {"a document type alone", "<!DOCTYPE a>"},
    {"plain text", "text"},
    {"JSON", R"({"a": 1})"},
    {"a repeated attribute", "<a b='1' b='2'/>"},
    {"a repeated attribute among others", "<a b='1' c='2' b='1'/>"},
    {"a repeated attribute with prefix", "<a p:b='1' p:b='2'/>"},
    {"a repeated namespace declaration", "<a xmlns:p='u' xmlns:p='v'/>"},
    {"a raw ampersand in text", "<a>b & c</a>"},
    {"a raw ampersand at the end", "<a>b &</a>"},
    {"a raw ampersand in an attribute", "<a b='c & d'/>"},
    {"an ampersand before a word without semicolon", "<a>&amp</a>"},
    {"a query string in an attribute", "<a url='http://h/?x=1&y=2'/>"},
    {"a raw less-than sign in an attribute", "<a b='<'/>"},
    {"a raw less-than sign in text", "<a>1 < 2</a>"},
    {"an undefined entity", "<a>&nbsp;</a>"},
    {"an undefined entity in an attribute", "<a b='&nbsp;'/>"},
    {"a character reference to nothing", "<a>&#0;</a>"},
    {"a character reference to a control character", "<a>&#1;</a>"},
    {"a character reference to half a pair", "<a>&#xD800;</a>"},
    {"a character reference to U+FFFE", "<a>&#xFFFE;</a>"},
    {"a character reference beyond Unicode", "<a>&#x110000;</a>"},
    {"an empty character reference", "<a>&#;</a>"},
    {"letters in a decimal reference", "<a>&#1a;</a>"},
    {"two roots", "<a/><b/>"},
    {"two roots on two lines", "<a/>\n<b/>\n"},
    {"text before the root", "x<a/>"},
    {"text after the root", "<a/>x"},
    {"an entity after the root", "<a/>&amp;"},
    {"CDATA before the root", "<![CDATA[x]]><a/>"},
    {"CDATA after the root", "<a/><![CDATA[x]]>"},
    {"mismatched tags", "<a></b>"},
    {"mismatched case", "<a></A>"},
    {"crossed tags", "<a><b></a></b>"},
    {"an end tag too many", "<a></a></a>"},
    {"an end tag first", "</a>"},
    {"a tag left open", "<a>"},
    {"an inner tag left open", "<a><b></a>"},
    {"an attribute in an end tag", "<a></a b='1'>"},
    {"a tag cut off", "<a b='1'"},
    {"a value cut off", "<a b='1"},
    {"an attribute without value", "<a b/>"},
    {"an attribute without quotes", "<a b=1/>"},
    {"different quotes", "<a b='1\"/>"},
    {"attributes without space", "<a b='1'c='2'/>"},
    {"a space before the name", "< a/>"},
    {"a name that begins with a digit", "<1a/>"},
    {"a name that begins with a dash", "<-a/>"},
    {"a name with a bracket", "<a(b)/>"},
    {"no name", "<></>"},
    {"the end of CDATA in text", "<a>]]></a>"},
    {"an open CDATA section", "<a><![CDATA[x]]</a>"},
    {"two dashes in a comment", "<a><!-- b -- c --></a>"},
    {"three dashes at a comment's end", "<a><!-- b ---></a>"},
    {"an open comment", "<a><!-- b </a>"},
    {"an open instruction", "<a><?b </a>"},
    {"an instruction without target", "<a><? b?></a>"},
    {"a declaration inside", "<a><?xml version='1.0'?></a>"},
    {"a declaration after a comment", "<!-- a --><?xml version='1.0'?><a/>"},
    {"a declaration after a line break", "\n<?xml version='1.0'?><a/>"},
    {"two declarations", "<?xml version='1.0'?><?xml version='1.0'?><a/>"},
    {"an instruction named XML", "<a><?XML b?></a>"},
    {"a declaration without version", "<?xml encoding='UTF-8'?><a/>"},
    {"another version", "<?xml version='2.0'?><a/>"},
    {"a declaration in the wrong order", "<?xml encoding='UTF-8' version='1.0'?><a/>"},
    {"standalone neither yes nor no", "<?xml version='1.0' standalone='perhaps'?><a/>"},
    {"a document type after the root", "<a/><!DOCTYPE a>"},
    {"a document type inside", "<a><!DOCTYPE a></a>"},
    {"two document types", "<!DOCTYPE a><!DOCTYPE a><a/>"},
    {"an open document type", "<!DOCTYPE a [<a/>"},
    {"a control character in text", "<a>\x01</a>"},
    {"an escape character in text", "<a>\x1B[0m</a>"},
    {"a form feed", "<a>\f</a>"},
    {"a control character in an attribute", "<a b='\x02'/>"},
    {"a control character in a comment", "<a><!--\x03--></a>"},
    {"a control character in CDATA", "<a><![CDATA[\x04]]></a>"},
    {"a control character in an instruction", "<a><?b \x05?></a>"},
    {"a NUL byte in text", "<a>\0</a>"sv},
    {"a NUL byte in an attribute", "<a b='\0'/>"sv},
    {"a NUL byte in a comment", "<a><!--\0--></a>"sv},
    {"a NUL byte before the root", "\0<a/>"sv},
    {"a NUL byte after the root", "<a/>\0"sv},
    {"a root after a NUL byte", "<a/>\0<b/>"sv},
    {"a NUL byte after a line break", "<a/>\n\0x"sv},
    {"U+FFFE in text", "<a>\xEF\xBF\xBE</a>"},
    {"U+FFFF in text", "<a>\xEF\xBF\xBF</a>"},
};

TEST(Parsing, RefusesWhatIsNotXmlAndGivesNoDocument) {
    for (const auto& [what, input] : notXml) {
        SCOPED_TRACE(what);
        const ParseResult text = parsedText(input);
        EXPECT_FALSE(text);
        EXPECT_FALSE(text.document.root());
        EXPECT_EQ(text.document.serialise(Form::plain), "");
        EXPECT_NE(text.error, "");
        EXPECT_EQ(parsedBytes(input).error, text.error);
    }
}

TEST(Parsing, RefusesTheSameInAFile) {
    const files::TemporaryFolder folder;
    const std::string path = folder / "a.xml";
    for (const auto& [what, input] : notXml) {
        SCOPED_TRACE(what);
        files::put(path, input);
        const ParseResult result = Document::parseFile(path);
        EXPECT_FALSE(result);
        EXPECT_FALSE(result.document.root());
        EXPECT_EQ(result.error, Document::parseBytes(input).error);
    }
}

constexpr Row isXml[] = {
    {"an empty element", "<a/>"},
    {"a start and an end tag", "<a></a>"},
    {"white space round the root", " \r\n\t<a/> \r\n\t"},
    {"white space in tags", "<a  b = 'c'\n\td\r\n=\n\"e\" ></a  >"},
    {"a declaration", "<?xml version='1.0'?><a/>"},
    {"a declaration with everything",
     "<?xml version=\"1.0\" encoding='utf-8' standalone = 'yes' ?>\n<a/>"},
    {"a newer minor version", "<?xml version='1.1'?><a/>"},
    {"comments and instructions round the root", "<!--b--><?c d?><a/><!--e--><?f?>"},
    {"a document type", "<!DOCTYPE a PUBLIC '-//a' 'a.dtd'><a/>"},
    {"the five entities", "<a b='&lt;&gt;&amp;&quot;&apos;'>&lt;&gt;&amp;&quot;&apos;</a>"},
    {"character references", "<a b='&#65;&#x4E2D;'>&#65;&#x4E2D;&#x1F600;</a>"},
    {"a greater-than sign", "<a b='>'>> ]] ></a>"},
    {"quotes in text and in each other", "<a b='\"' c=\"'\">\"'</a>"},
    {"CDATA with markup", "<a><![CDATA[<b> & ]] > ]]]></a>"},
    {"a dash in a comment", "<a><!-- b - c --></a>"},
    {"an instruction with question marks", "<a><?b ? > ?></a>"},
    {"names of all kinds", "<_a-b.c:d1 \xC3\xA9='' \xE4\xB8\xAD\xE6\x96\x87=''/>"},
    {"characters beyond the first plane", "<a>\xF0\xA0\x80\x80</a>"},
    {"delete and C1 control characters", "<a>\x7F\xC2\x85</a>"},
};

TEST(Parsing, AcceptsWhatIsXml) {
    for (const auto& [what, input] : isXml) {
        SCOPED_TRACE(what);
        const ParseResult result = parsedText(input);
        EXPECT_TRUE(result);
        EXPECT_EQ(result.error, "");
        EXPECT_TRUE(result.document.root());
    }
}

TEST(Parsing, WarningsAreNoErrors) {
    for (const auto& [what, input] : {
             Row{"an unknown minor version", "<?xml version='1.9'?><a/>"},
             Row{"an odd language", "<a xml:lang='not a language'/>"},
             Row{"an odd white space attribute", "<a xml:space='whatever'/>"},
             Row{"a relative namespace name", "<a xmlns='relative'/>"},
             Row{"an instruction whose name begins with xml", "<a><?xml-odd b?></a>"},
         }) {
        SCOPED_TRACE(what);
        EXPECT_TRUE(parsedText(input)) << parsedText(input).error;
    }
}

TEST(Parsing, PrefixesNeedNoDeclarationAndNamesAreQualified) {
    const Element root = rootOf("<p:a q:b='1' b='2'><p:c/><c/></p:a>");
    EXPECT_EQ(root.name(), "p:a");
    EXPECT_EQ(root.attribute("q:b"), "1");
    EXPECT_EQ(root.attribute("b"), "2");
    EXPECT_EQ(root.childAt(0).name(), "p:c");
    EXPECT_EQ(root.childAt(1).name(), "c");
}

TEST(Parsing, NamespaceDeclarationsAreAttributesInTheirPlace) {
    EXPECT_EQ(plain(rootOf("<a z='1' xmlns:p='u' b='2' xmlns='v' p:c='3'/>")),
              R"(<a z="1" xmlns:p="u" b="2" xmlns="v" p:c="3"></a>)");
}

TEST(Parsing, NothingAboutNamespacesIsAnError) {
    for (const std::string_view input :
         {"<a xmlns:p='u' xmlns:q='u' p:x='1' q:x='2'/>"sv, "<a xmlns:p=''/>"sv,
          "<a xmlns:xml='u'/>"sv, "<a xmlns:xmlns='u'/>"sv,
          "<a xmlns='http://www.w3.org/2000/xmlns/'/>"sv, "<a:b:c/>"sv, "<:a/>"sv, "<a:/>"sv,
          "<a:1b x:2c=''/>"sv, "<a xmlns:='u'/>"sv, "<?a:b c?><r/>"sv, "<r><?a:b c?>&#65;</r>"sv,
          "<xmlns:a/>"sv, "<!DOCTYPE p:r><p:r/>"sv}) {
        const ParseResult result = parsedText(input);
        EXPECT_TRUE(result) << input << "\n" << result.error;
        EXPECT_TRUE(result.document.root()) << input;
    }
    EXPECT_EQ(plain(rootOf("<a:1b x:2c='d'/>")), R"(<a:1b x:2c="d"></a:1b>)");
    EXPECT_EQ(plain(rootOf("<r><?a:b c?>&#65;</r>")), "<r><?a:b c?>A</r>");
}

TEST(Parsing, ReadsAFile) {
    const files::TemporaryFolder folder;
    files::put(folder / "a b%20#.xml", "<a>\xE4\xB8\xAD</a>");
    const ParseResult result = Document::parseFile(folder / "a b%20#.xml");
    EXPECT_TRUE(result);
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(result.document.root().stringValue(), "\xE4\xB8\xAD");
}

TEST(Parsing, AFileThatCannotBeReadIsNamedWithTheCause) {
    const files::TemporaryFolder folder;
    const std::string missing = folder / "missing.xml";
    EXPECT_EQ(Document::parseFile(missing).error, missing + ": No such file or directory");
    EXPECT_EQ(Document::parseFile(folder.path()).error, folder.path() + ": Is a directory");
    EXPECT_FALSE(Document::parseFile(""));
    EXPECT_FALSE(Document::parseFile(missing).document.root());
    EXPECT_TRUE(Document::parseFile(missing).errors.empty());
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_THAT(Document::parseFile(folder / "pipe").error, StartsWith(folder / "pipe: "));
    if (::geteuid() != 0) {
        files::put(folder / "private.xml", "<a/>");
        ::chmod((folder / "private.xml").c_str(), 0);
        EXPECT_EQ(Document::parseFile(folder / "private.xml").error,
                  folder / "private.xml" + ": Permission denied");
    }
}

TEST(Parsing, TheDescriptionNamesTheLineOfEachError) {
    EXPECT_EQ(parsedText("<a>\n<b>\n</c>\n</a>").error,
              "Line 3: Opening and ending tag mismatch: b line 2 and c");
    EXPECT_THAT(parsedText("<a>\n &x;\n &y;\n</a>").error,
                MatchesRegex("Line 2: Entity 'x' not defined; Line 3: Entity 'y' not defined"));
    EXPECT_THAT(parsedText("<a\nb='&x;'\nc='<'/>").error, HasSubstr("; Line 3: "));
    EXPECT_EQ(parsedText("").error, "Line 1: Document is empty");
}

TEST(Parsing, TheDescriptionIsOneLineWhateverTheInput) {
    const auto expectOneLine = [](const std::string& error) {
        EXPECT_THAT(error, MatchesRegex("Line [0-9]+: [^\n\r]+"));
    };
    for (const auto& [what, input] : notXml) {
        SCOPED_TRACE(what);
        expectOneLine(Document::parseText(input).error);
        expectOneLine(Document::parseText(input, withPositions).error);
    }
    expectOneLine(Document::parseText(joined("<a>", repeated("&x; ", 10'000), "</a>")).error);
    expectOneLine(Document::parseText(joined("<a>", repeated("\n<b></c>", 10'000), "</a>")).error);
    expectOneLine(Document::parseText(joined("<a>&", repeated("x", 40'000), ";</a>")).error);
    expectOneLine(Document::parseText(joined("<", repeated("x", 40'000), "></y>")).error);
    expectOneLine(Document::parseText("<!DOCTYPE a SYSTEM 'c\nd\r\ne\\'><a>&b;</a>").error);
}

/// "line:column message" for each error.
std::vector<std::string> errorsOf(const ParseResult& result) {
    std::vector<std::string> all;
    for (const ParseError& error : result.errors)
        all.push_back(joined(std::to_string(error.line), ":", std::to_string(error.column), " ",
                             error.message));
    return all;
}

TEST(Parsing, ListsEachErrorWithTheLineAndColumnWhereItShows) {
    const auto errors = [](std::string_view bytes) { return errorsOf(parsedBytes(bytes)); };
    EXPECT_THAT(errors("<a>\n  <b></c>\n</a>"),
                ElementsAre("2:10 Opening and ending tag mismatch: b line 2 and c"));
    EXPECT_THAT(errors("<a>\r\n\t行情 & c &x;</a>"),
                ElementsAre("2:6 xmlParseEntityRef: no name", "2:12 Entity 'x' not defined"));
    EXPECT_THAT(errors("<?xml version='1.0' encoding='gbk'?>\n<a b='\xD6\xD0\xCE\xC4' b='2'/>"),
                ElementsAre("2:16 Attribute b redefined"));
    EXPECT_THAT(errors("<a/>\n<!-- -->\n<b/>"),
                ElementsAre("3:1 Extra content at the end of the document"));
    EXPECT_THAT(errors("<a>\n<b>\xE8\xA1\x8C\xFF</b></a>"),
                ElementsAre("2:5 Input is not proper UTF-8"));
    EXPECT_THAT(errors("<a>\n<b>\0</b></a>"sv), ElementsAre("2:4 Input holds a NUL character"));
    EXPECT_THAT(errors("\n<!DOCTYPE a [\n]><a/>"),
                ElementsAre("2:13 A document type with an internal subset is not allowed"));
    EXPECT_THAT(errors(""), ElementsAre("1:1 Document is empty"));
    EXPECT_THAT(errors("<?xml version='1.0' encoding='x'?><a/>"),
                ElementsAre("1:0 Unsupported encoding x"));
    EXPECT_THAT(errors("<a/>"), ElementsAre());
}

TEST(Parsing, TheDescriptionIsTheListAndEachErrorIsInTheText) {
    for (const auto& [what, input] : notXml) {
        SCOPED_TRACE(what);
        const ParseResult result = parsedBytes(input);
        std::string description;
        for (const ParseError& error : result.errors) {
            description += joined(description.empty() ? "Line " : "; Line ",
                                  std::to_string(error.line), ": ", error.message);
            std::string_view line = input;
            for (std::uint32_t before = 1; before < error.line; ++before) {
                ASSERT_NE(line.find('\n'), std::string_view::npos);
                line.remove_prefix(line.find('\n') + 1);
            }
            EXPECT_LE(error.column, line.substr(0, line.find('\n')).size() + 1);
        }
        EXPECT_EQ(result.error, description);
        EXPECT_FALSE(result.errors.empty());
    }
}

TEST(Parsing, PrintsNothing) {
    CapturedOutput output;
    for (const auto& [what, input] : notXml) {
        static_cast<void>(Document::parseText(input));
        static_cast<void>(Document::parseText(input, withPositions));
        static_cast<void>(Document::parseBytes(input));
    }
    for (const auto& [what, input] : isXml) {
        static_cast<void>(Document::parseText(input));
        static_cast<void>(Document::parseText(input, withPositions));
    }
    for (const std::string_view input : {
             "<\0\0\0a\0\0\0"sv,
             "\0\0\0<\0\0\0a"sv,
             "<\0?\0x\0m\0l\0 \0"sv,
             "\0<\0?\0x\0m\0l\0 "sv,
             "\x4C\x6F\xA7\x94\x93"sv,
             "\xFF\xFE<\0a\0/\0>\0\0\xD8"sv,
             "\xFE\xFF\xDC\0\0<"sv,
             "\xFF\xFE\0\0<\0\0\0"sv,
             "<?xml version='1.0' encoding='GBK'?><a>\xFF\xFF</a>"sv,
             "<?xml version='1.0' encoding='UCS-4'?><a/>"sv,
             "<?xml version='1.0' encoding='no such thing'?><a/>"sv,
             "<a>\xFF</a>"sv,
             "<!DOCTYPE a [<!ENTITY lt 'x'><!ENTITY amp SYSTEM 'y'>]><a>&lt;&amp;</a>"sv,
             "<!DOCTYPE a [<!ENTITY b '&#60;c>'>]><a>&b;</a>"sv,
             "<!DOCTYPE a PUBLIC '-//x' 'http://localhost/x.dtd'><a>&b;</a>"sv,
         }) {
        static_cast<void>(Document::parseBytes(input));
        static_cast<void>(Document::parseBytes(input, withPositions));
    }
    static_cast<void>(Document::parseFile("no/such/file.xml"));
    EXPECT_EQ(output.text(), "");
}

TEST(Parsing, ADefaultDocumentHasNoRoot) {
    const Document document;
    EXPECT_FALSE(document.root());
    EXPECT_EQ(document.serialise(Form::pretty), "");
    EXPECT_EQ(document.serialise(Form::plain), "");
    EXPECT_TRUE(document.query("//*").empty());
    EXPECT_FALSE(document.copy().root());
}

TEST(Parsing, TextParsedAsAnElementMustBeOneElement) {
    EXPECT_EQ(plain(rootOf("<panel name='&amp;'><element/></panel>")),
              R"(<panel name="&amp;"><element></element></panel>)");
    for (const std::string_view input : {"<!-- a comment -->"sv, "plain text"sv, ""sv, "<a/><b/>"sv,
                                         "<?go?>"sv, "<![CDATA[x]]>"sv, "x<a/>"sv, "<a/>x"sv}) {
        const ParseResult result = parsedText(input);
        EXPECT_FALSE(result) << input;
        EXPECT_FALSE(result.document.root()) << input;
    }
}

TEST(Parsing, TheRootComesAfterWhateverStandsBeforeIt) {
    const Document document =
        documentOf("<?xml version='1.0'?>\n<!--x--><?y?>\n<!DOCTYPE a>\n<!--z-->\n<a/><!--b-->");
    EXPECT_EQ(document.root().name(), "a");
    document.root().appendChild(Element::create("section"));
    EXPECT_EQ(document.serialise(Form::plain),
              "<!--x--><?y?><!DOCTYPE a><!--z--><a><section></section></a><!--b-->");
}

TEST(Parsing, AppendingToADocumentWithoutRootDoesNothing) {
    const Document document;
    EXPECT_FALSE(document.root().appendChild(Element::create("section")));
    EXPECT_FALSE(document.root());
    EXPECT_EQ(document.serialise(Form::plain), "");
}

}  // namespace
}  // namespace yg::xml
