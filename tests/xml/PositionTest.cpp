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

std::string said(const std::optional<Position>& position) {
    return position ? std::to_string(position->line) + ":" + std::to_string(position->column)
                    : "none";
}

/// "name line:column attribute@line:column …" for each element from this one on.
std::string placesBelow(const Element& top) {
    std::string all;
    for (const Node& node : top.query("descendant-or-self::*")) {
        const Element element(node);
        all += (all.empty() ? "" : "; ") + std::string(element.name()) + " " +
               said(element.position());
        for (const Attribute attribute : element.attributes())
            all +=
                joined(" ", attribute.name, "@", said(element.attributePosition(attribute.name)));
    }
    return all;
}

std::string places(std::string_view bytes) {
    const ParseResult result = Document::parseBytes(bytes, withPositions);
    EXPECT_TRUE(result) << result.error;
    EXPECT_EQ(outline(result.document), outline(Document::parseBytes(bytes).document));
    return placesBelow(result.document.root());
}

Document kept(std::string_view text) {
    return Document::parseText(text, withPositions).document;
}

TEST(Position, IsWhereATagAndAnAttributeBegin) {
    EXPECT_EQ(places("<a/>"), "a 1:1");
    EXPECT_EQ(places("<a b='1' c='2'/>"), "a 1:1 b@1:4 c@1:10");
    EXPECT_EQ(places("<a>\n  <b c='1'/>x<d/>\n</a>"), "a 1:1; b 2:3 c@2:6; d 2:14");
    EXPECT_EQ(places("<?xml version='1.0'?>\n<!--\n-->\n <a/>"), "a 4:2");
    EXPECT_EQ(places("<a><b></b><c></c\n><d/></a>"), "a 1:1; b 1:4; c 1:11; d 2:2");
}

TEST(Position, OfAttributesOverSeveralLines) {
    EXPECT_EQ(places("<a\n  b='1'\n\n  c\n=\n'2' d='x\ny' e='3'\n/>"),
              "a 1:1 b@2:3 c@4:3 d@6:5 e@7:4");
}

TEST(Position, OfAttributesWhoseValuesLookLikeMarkup) {
    EXPECT_EQ(places("<a b='x>y' c=\"'\" d='\"' e='f=\"g\"'><h i='/>' j=';'/></a>"),
              "a 1:1 b@1:4 c@1:12 d@1:18 e@1:24; h 1:34 i@1:37 j@1:44");
    EXPECT_EQ(places("<a b='&lt;c d=&quot;e&quot;&gt;' f='&#65;'/>"), "a 1:1 b@1:4 f@1:34");
}

TEST(Position, CountsCrLfAsOneLineBreak) {
    EXPECT_EQ(places("<a>\r\n\r\n<b\r\n c='1'/>\r\n<d/></a>"), "a 1:1; b 3:1 c@4:2; d 5:1");
}

TEST(Position, CountsATabAsOneColumn) {
    EXPECT_EQ(places("\t<a>\n\t\t<b\tc='1'/></a>"), "a 1:2; b 2:3 c@2:6");
}

TEST(Position, CountsCharactersNotBytes) {
    EXPECT_EQ(places("<a>中文<b 键='值' c='1'/>\n\xF0\xA0\x80\x80<页/></a>"),
              "a 1:1; b 1:6 键@1:9 c@1:15; 页 2:2");
}

TEST(Position, IsTheOneInAFileOfAnyEncoding) {
    EXPECT_EQ(places("<?xml version='1.0' encoding='gbk'?>\r\n<a>\r\n\xD6\xD0<\xD6\xD0 "
                     "\xCE\xC4='\xD6\xD0' c='1'/></a>"),
              "a 2:1; 中 3:2 文@3:5 c@3:11");
    EXPECT_EQ(places("\xFF\xFE<\0a\0>\0\r\0\n\0\x2D\x4E<\0b\0 \0c\0=\0'\0'\0/\0>\0<\0/\0a\0>\0"sv),
              "a 1:1; b 2:2 c@2:5");
    EXPECT_EQ(places("\xFE\xFF\0<\0a\0>\0\n\x4E\x2D\0<\0b\0/\0>\0<\0/\0a\0>"sv), "a 1:1; b 2:2");
    EXPECT_EQ(places("\xEF\xBB\xBF<a b=''/>"), "a 1:1 b@1:4");
}

TEST(Position, IsRightWithNamespaces) {
    EXPECT_EQ(places("<a xmlns='u'\n p:b='1' xmlns:p='v'><p:c d=''/></a>"),
              "a 1:1 xmlns@1:4 p:b@2:2 xmlns:p@2:10; p:c 2:22 d@2:27");
}

TEST(Position, IsRightAfterTheDocumentType) {
    EXPECT_EQ(places("<!DOCTYPE a\nSYSTEM '<b c=\"d\"/>'\n>\n<!-- <b/> --><a b='1'/>"),
              "a 4:14 b@4:17");
}

TEST(Position, IsRightBeyondLine65535) {
    EXPECT_EQ(places(joined("<a>", repeated("\n", 200'000), " <b/></a>")), "a 1:1; b 200001:2");
}

TEST(Position, NamesTheFileAsItWasGiven) {
    const files::TemporaryFolder folder;
    files::put(folder / "a.xml", "<a><b/></a>");
    const std::string path = folder / "./a.xml";
    const Element root = Document::parseFile(path, withPositions).document.root();
    EXPECT_EQ(root.position()->file, path);
    EXPECT_EQ(Element(root.childAt(0)).position()->file, path);
    EXPECT_EQ(kept("<a/>").root().position()->file, "");
}

TEST(Position, IsAbsentWhenNobodyAsked) {
    const Element root = documentOf("<a b='1'/>").root();
    EXPECT_EQ(root.position(), std::nullopt);
    EXPECT_EQ(root.attributePosition("b"), std::nullopt);
}

TEST(Position, IsAbsentForOtherKindsAndMissingAttributes) {
    const Element root = kept("<a b='1'>x<!--c--><?d?><![CDATA[e]]></a>").root();
    for (const Node& node : root.children())
        EXPECT_EQ(node.position(), std::nullopt);
    EXPECT_EQ(root.attributePosition("c"), std::nullopt);
}

TEST(Position, OfWhatCodeMadeIsAbsent) {
    Element root = kept("<a b='1'/>").root();
    root.setAttribute("c", "2");
    root.setAttribute("b", "3");
    EXPECT_EQ(root.attributePosition("c"), std::nullopt);
    EXPECT_EQ(said(root.attributePosition("b")), "1:4");
    EXPECT_EQ(root.appendChild(Element::create("d")).position(), std::nullopt);
    EXPECT_EQ(Element::create("a").position(), std::nullopt);
}

TEST(Position, StaysAfterRenaming) {
    Element root = kept("\n<a b='1'/>").root();
    root.rename("longer");
    EXPECT_EQ(placesBelow(root), "longer 2:1 b@2:4");
}

TEST(Position, OfACopyIsThatOfItsSource) {
    const Document document = kept("<a>\n<b c='1'><d/></b></a>");
    const std::string expected = placesBelow(document.root());
    EXPECT_EQ(placesBelow(Element(document.root().copy())), expected);
    EXPECT_EQ(placesBelow(document.copy().root()), expected);
    EXPECT_EQ(placesBelow(Element(Element(document.root().copy()).childAt(0).copy())),
              "b 2:1 c@2:4; d 2:10");
}

TEST(Position, OfAnAddedOneIsThatOfItsSource) {
    const files::TemporaryFolder folder;
    files::put(folder / "1.xml", "<a>\n<old/></a>");
    files::put(folder / "2.xml", "<b>\n\n<c d='1'/></b>");
    const Document first = Document::parseFile(folder / "1.xml", withPositions).document;
    Element root = first.root();
    {
        const Element source = Document::parseFile(folder / "2.xml", withPositions).document.root();
        root.appendChild(source.childAt(0));
        root.insertChild(source, 0);
        Node old = elementAt(first, "//old");
        old.replaceWith(source.childAt(0));
        EXPECT_EQ(placesBelow(Element(old)), "old 2:1");
    }
    EXPECT_EQ(placesBelow(root), "a 1:1; b 1:1; c 3:1 d@3:4; c 3:1 d@3:4; c 3:1 d@3:4");
    for (const Node& node : root.query("//c|//b"))
        EXPECT_EQ(node.position()->file, folder / "2.xml");
    EXPECT_EQ(root.position()->file, folder / "1.xml");
}

TEST(Position, OfAnAddedOneFromATreeWithoutPositionsIsAbsent) {
    Element root = kept("<a/>").root();
    EXPECT_EQ(root.appendChild(documentOf("<b/>").root()).position(), std::nullopt);
    Element other = documentOf("<b/>").root();
    EXPECT_EQ(said(other.appendChild(root).position()), "1:1");
    EXPECT_EQ(other.position(), std::nullopt);
}

TEST(Position, OfATakenOutPartStays) {
    const Document document = kept("<a>\n<b c='1'><d/></b></a>");
    Element b(document.root().childAt(0));
    b.remove();
    EXPECT_EQ(placesBelow(b), "b 2:1 c@2:4; d 2:10");
}

TEST(Position, OfAnElementAddedToItselfIsThatOfItsSource) {
    for (const std::size_t index : {0U, 1U, 2U}) {
        const Document document = kept("<a>\n<b/>\n\n<c><d/></c></a>");
        Element root = document.root();
        const Element added(root.insertChild(root, index));
        EXPECT_EQ(placesBelow(added), "a 1:1; b 2:1; c 4:1; d 4:4") << index;
    }
}

// The memory of what is freed is used again, and places must not be found under it.
TEST(Position, OfANewElementIsAbsentAlsoAfterRemovedOnesWereFreed) {
    Document document = kept(joined("<a>", repeated("<b x='1'/>", 5'000), "</a>"));
    for (Node& node : document.query("//b"))
        node.remove();
    document.releaseRemoved();
    Element root = document.root();
    std::size_t wrong = 0;
    for (int i = 0; i < 5'000; ++i) {
        Element added(root.appendChild(Element::create("new")));
        added.setAttribute("y", "2");
        wrong += added.position() || added.attributePosition("y") ? 1 : 0;
    }
    EXPECT_EQ(wrong, 0U);
    EXPECT_EQ(said(root.position()), "1:1");
}

TEST(Position, CopyingBackAndForthKeepsEachFileOnce) {
    Element left = kept("<a><x/></a>").root();
    Element right = kept("<b><y/></b>").root();
    for (int i = 0; i < 12; ++i) {
        left.appendChild(right.childAt(0));
        right.appendChild(left.childAt(0));
    }
    EXPECT_LE(Tree::treeOf(left)->files.size(), 2U);
    EXPECT_LE(Tree::treeOf(right)->files.size(), 2U);
}

}  // namespace
}  // namespace yg::xml
