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
using testing::ElementsAre;
using testing::HasSubstr;

std::string withSubset(std::string_view subset, std::string_view rest) {
    return joined("<!DOCTYPE a [", subset, "]>", rest);
}

TEST(Entity, AnInternalOneIsExpandedInText) {
    EXPECT_EQ(plain(rootOf(withSubset("<!ENTITY e 'x'>", "<a>1&e;2&e;</a>"))), "<a>1x2x</a>");
    EXPECT_EQ(plain(rootOf(withSubset("<!ENTITY 实体 '中文'>", "<a>&实体;</a>"))), "<a>中文</a>");
    EXPECT_EQ(plain(rootOf(withSubset("<!ENTITY e ''>", "<a>1&e;2</a>"))), "<a>12</a>");
}

TEST(Entity, AnInternalOneIsExpandedInAttributes) {
    EXPECT_EQ(rootOf(withSubset("<!ENTITY e 'x'>", "<a b='1&e;2&e;'/>")).attribute("b"), "1x2x");
    EXPECT_EQ(rootOf(withSubset("<!ENTITY e 'x\n\ty'>", "<a b='&e;'/>")).attribute("b"), "x  y");
    EXPECT_EQ(rootOf(withSubset("<!ENTITY e '&#10;'>", "<a b='&e;'/>")).attribute("b"), " ");
}

TEST(Entity, MarkupInOneBecomesNodes) {
    const Element root = rootOf(
        withSubset("<!ENTITY e '<b c=\"1\">x</b><!--y--><?z?><![CDATA[w]]>'>", "<a>&e;</a>"));
    EXPECT_THAT(plain(root.children()),
                ElementsAre(R"(<b c="1">x</b>)", "<!--y-->", "<?z?>", "<![CDATA[w]]>"));
}

TEST(Entity, OneInsideAnotherIsExpandedToo) {
    const std::string subset = "<!ENTITY inner 'x&#60;y'><!ENTITY outer '<b>&inner;</b>'>";
    EXPECT_FALSE(parsedText(withSubset(subset, "<a>&outer;</a>")));
    EXPECT_EQ(plain(rootOf(withSubset("<!ENTITY inner 'x'><!ENTITY outer '<b c=\"&inner;\">"
                                      "&inner;</b>'>",
                                      "<a>&outer;</a>"))),
              R"(<a><b c="x">x</b></a>)");
    EXPECT_EQ(
        rootOf(withSubset("<!ENTITY i 'x'><!ENTITY o '1&i;2'>", "<a b='&o;'/>")).attribute("b"),
        "1x2");
}

TEST(Entity, DeclaredAfterItsUseInAnotherIsFound) {
    EXPECT_EQ(plain(rootOf(withSubset("<!ENTITY o '1&i;2'><!ENTITY i 'x'>", "<a>&o;</a>"))),
              "<a>1x2</a>");
}

TEST(Entity, TheFirstDeclarationCounts) {
    EXPECT_EQ(plain(rootOf(withSubset("<!ENTITY e 'first'><!ENTITY e 'second'>", "<a>&e;</a>"))),
              "<a>first</a>");
}

TEST(Entity, AnInternalParameterEntityIsExpandedInTheDocumentType) {
    EXPECT_EQ(plain(rootOf(withSubset("<!ENTITY % p \"<!ENTITY e 'x'>\">%p;", "<a>&e;</a>"))),
              "<a>x</a>");
}

TEST(Entity, TheFiveThatNeedNoDeclarationMayHaveOne) {
    EXPECT_EQ(rootOf(withSubset("<!ENTITY lt '&#38;#60;'><!ENTITY amp '&#38;#38;'>",
                                "<a>&lt;&amp;&gt;</a>"))
                  .stringValue(),
              "<&>");
}

TEST(Entity, AnExpandedTextIsOneTextAndItsBlanksCount) {
    const Element root = rootOf(withSubset("<!ENTITY e ' '>", "<a>x&e;y<b>&e;</b></a>"));
    EXPECT_EQ(root.childCount(), 2U);
    EXPECT_EQ(root.childAt(0).stringValue(), "x y");
    EXPECT_FALSE(Element(root.childAt(1)).hasChildren());
    EXPECT_EQ(root.childAt(1).stringValue(), " ");
}

TEST(Entity, AReferenceToAnUndeclaredOneIsAnError) {
    for (const std::string_view text : {
             "<a>&e;</a>"sv,
             "<a b='&e;'/>"sv,
             "<!DOCTYPE a><a>&e;</a>"sv,
             "<!DOCTYPE a []><a>&e;</a>"sv,
             "<!DOCTYPE a SYSTEM 'a.dtd'><a>&e;</a>"sv,
             "<!DOCTYPE a SYSTEM 'a.dtd'><a b='&e;'/>"sv,
             "<!DOCTYPE a PUBLIC '-//x' 'a.dtd'><a>&e;</a>"sv,
             "<?xml version='1.0' standalone='yes'?><!DOCTYPE a SYSTEM 'a.dtd'><a>&e;</a>"sv,
             "<?xml version='1.0' standalone='no'?><!DOCTYPE a SYSTEM 'a.dtd'><a>&e;</a>"sv,
             "<!DOCTYPE a [<!ENTITY f '&e;'>]><a>&f;</a>"sv,
             "<!DOCTYPE a [<!ENTITY f '&e;'>]><a b='&f;'/>"sv,
             "<!DOCTYPE a SYSTEM 'a.dtd' [<!ENTITY f '&e;'>]><a>&f;</a>"sv,
             "<!DOCTYPE a [<!ENTITY % p ''> %p;]><a>&e;</a>"sv,
             "<!DOCTYPE a [%p;]><a/>"sv,
             "<!DOCTYPE a [<!ENTITY % p ''> %p; %q;]><a/>"sv,
         }) {
        const ParseResult result = parsedText(text);
        EXPECT_FALSE(result) << text;
        EXPECT_FALSE(result.document.root()) << text;
    }
}

/// A file that entities could name, and what a document says that names it.
class ExternalEntity : public testing::Test {
protected:
    ExternalEntity() { files::put(path_, "secret"); }

    /// The text with "FILE" replaced by the file's location.
    ParseResult parsed(std::string_view text) const {
        std::string whole(text);
        for (std::size_t at = whole.find("FILE"); at != std::string::npos; at = whole.find("FILE"))
            whole.replace(at, 4, path_);
        const ParseResult result = parsedText(whole);
        EXPECT_EQ(result.document.serialise(Form::plain).find("secret"), std::string::npos) << text;
        EXPECT_EQ(result.error.find("secret"), std::string::npos) << text;

        // The same as a file beside the one that is named.
        files::put(folder_ / "document.xml", whole);
        EXPECT_EQ(static_cast<bool>(Document::parseFile(folder_ / "document.xml")),
                  static_cast<bool>(result))
            << text;
        return result;
    }

    files::TemporaryFolder folder_;
    std::string path_ = folder_ / "named.txt";
};

TEST_F(ExternalEntity, AReferenceToAGeneralOneIsAnError) {
    for (const std::string_view text : {
             "<!DOCTYPE a [<!ENTITY e SYSTEM 'FILE'>]><a>&e;</a>"sv,
             "<!DOCTYPE a [<!ENTITY e SYSTEM 'file://FILE'>]><a>&e;</a>"sv,
             "<!DOCTYPE a [<!ENTITY e SYSTEM 'named.txt'>]><a>&e;</a>"sv,
             "<!DOCTYPE a [<!ENTITY e PUBLIC '-//x' 'FILE'>]><a>&e;</a>"sv,
             "<!DOCTYPE a [<!ENTITY e SYSTEM 'file:///etc/hostname'>]><a>&e;</a>"sv,
             "<!DOCTYPE a [<!ENTITY e SYSTEM 'http://127.0.0.1:9/x'>]><a>&e;</a>"sv,
             "<!DOCTYPE a [<!ENTITY e SYSTEM 'FILE'>]><a b='&e;'/>"sv,
             "<!DOCTYPE a [<!ENTITY e SYSTEM 'FILE'><!ENTITY f '&e;'>]><a>&f;</a>"sv,
             "<!DOCTYPE a [<!ENTITY e SYSTEM 'FILE'><!ENTITY f '&e;'>]><a b='&f;'/>"sv,
             "<!DOCTYPE a [<!ENTITY e SYSTEM 'FILE' NDATA n>]><a>&e;</a>"sv,
             "<!DOCTYPE a [<!NOTATION n SYSTEM 'x'><!ENTITY e SYSTEM 'FILE' NDATA n>]><a>&e;</a>"sv,
             "<!DOCTYPE a SYSTEM 'x.dtd' [<!ENTITY e SYSTEM 'FILE'>]><a>&e;</a>"sv,
             "<?xml version='1.0' standalone='no'?><!DOCTYPE a [<!ENTITY e SYSTEM 'FILE'>]>"
             "<a>&e;</a>"sv,
         }) {
        const ParseResult result = parsed(text);
        EXPECT_FALSE(result) << text;
        EXPECT_FALSE(result.document.root()) << text;
    }
}

TEST_F(ExternalEntity, ALaterInternalOneOfTheSameNameDoesNotTakeItsPlace) {
    EXPECT_FALSE(parsed("<!DOCTYPE a [<!ENTITY e SYSTEM 'FILE'><!ENTITY e 'x'>]><a>&e;</a>"));
    EXPECT_TRUE(parsed("<!DOCTYPE a [<!ENTITY e 'x'><!ENTITY e SYSTEM 'FILE'>]><a>&e;</a>"));
}

TEST_F(ExternalEntity, AReferenceToAParameterOneIsAnError) {
    files::put(path_, "<!ENTITY e 'secret'>");
    for (const std::string_view text : {
             "<!DOCTYPE a [<!ENTITY % p SYSTEM 'FILE'>%p;]><a/>"sv,
             "<!DOCTYPE a [<!ENTITY % p SYSTEM 'FILE'>%p;]><a>&e;</a>"sv,
             "<!DOCTYPE a [<!ENTITY % p SYSTEM 'file:///etc/hostname'>%p;]><a/>"sv,
             "<!DOCTYPE a [<!ENTITY % p PUBLIC '-//x' 'FILE'>%p;]><a/>"sv,
             "<!DOCTYPE a [<!ENTITY % i ''>%i;<!ENTITY % p SYSTEM 'FILE'>%p;]><a/>"sv,
             "<!DOCTYPE a SYSTEM 'x.dtd' [<!ENTITY % p SYSTEM 'FILE'>%p;]><a/>"sv,
             "<!DOCTYPE a SYSTEM 'x.dtd' [<!ENTITY % p SYSTEM 'FILE'>%p;]><a>&e;</a>"sv,
             "<!DOCTYPE a [<!ENTITY % p SYSTEM 'FILE'><!ENTITY % q '&#37;p;'>%q;]><a/>"sv,
         })
        EXPECT_FALSE(parsed(text)) << text;
}

TEST_F(ExternalEntity, OneThatNothingRefersToIsNoError) {
    EXPECT_TRUE(parsed("<!DOCTYPE a [<!ENTITY e SYSTEM 'FILE'><!ENTITY % p SYSTEM 'FILE'>]><a/>"));
}

TEST_F(ExternalEntity, AnExternalDocumentTypeIsNotRead) {
    files::put(path_, "<!ENTITY e 'secret'><!ATTLIST a b CDATA 'secret'>");
    EXPECT_TRUE(parsed("<!DOCTYPE a SYSTEM 'FILE'><a/>"));
    EXPECT_TRUE(parsed("<!DOCTYPE a SYSTEM 'http://127.0.0.1:9/x.dtd'><a/>"));
    EXPECT_FALSE(parsed("<!DOCTYPE a SYSTEM 'FILE'><a>&e;</a>"));
    files::put(path_, "this is no document type <");
    EXPECT_TRUE(parsed("<!DOCTYPE a SYSTEM 'FILE'><a/>"));
}

TEST_F(ExternalEntity, InclusionsAndStyleSheetsAreNotFollowed) {
    EXPECT_EQ(plain(rootOf("<a xmlns:x='http://www.w3.org/2001/XInclude'>"
                           "<x:include href='file:///etc/hostname' parse='text'/></a>")),
              R"(<a xmlns:x="http://www.w3.org/2001/XInclude">)"
              R"(<x:include href="file:///etc/hostname" parse="text"></x:include></a>)");
    EXPECT_TRUE(parsed("<?xml-stylesheet href='FILE'?><a/>"));
}

}  // namespace
}  // namespace yg::xml
