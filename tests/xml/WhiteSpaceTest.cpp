// SPDX-License-Identifier: MIT
#include <string>
#include <string_view>

#include "YGConfigManager/xml/Document.h"

#include "xml/XmlTesting.h"

namespace yg::xml {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;
using testing::ElementsAre;

TEST(WhiteSpace, BetweenElementsIsNoChild) {
    const Element root = rootOf("<a> \n<b/>\t\r\n <c/>\r</a>");
    EXPECT_TRUE(root.hasChildren());
    EXPECT_EQ(root.childCount(), 2U);
    EXPECT_EQ(root.firstChild().name(), "b");
    EXPECT_EQ(root.childAt(1).name(), "c");
    EXPECT_FALSE(root.childAt(2));
    EXPECT_EQ(root.childAt(1).index(), 1U);
    EXPECT_EQ(root.firstChild().nextSibling().name(), "c");
    EXPECT_FALSE(root.childAt(1).nextSibling());
    EXPECT_THAT(plain(root.children()), ElementsAre("<b></b>", "<c></c>"));
}

TEST(WhiteSpace, AloneInAnElementIsNoChild) {
    const Element root = rootOf("<styles>\n</styles>");
    EXPECT_FALSE(root.hasChildren());
    EXPECT_EQ(root.childCount(), 0U);
    EXPECT_FALSE(root.firstChild());
    EXPECT_FALSE(root.childAt(0));
    EXPECT_THAT(plain(root.children()), ElementsAre());
}

TEST(WhiteSpace, AloneInAnElementIsItsStringValue) {
    EXPECT_EQ(rootOf("<item> </item>").stringValue(), " ");
    EXPECT_EQ(rootOf("<item> \t\n </item>").stringValue(), " \t\n ");
    EXPECT_EQ(rootOf("<item>&#13;</item>").stringValue(), "\r");
    EXPECT_EQ(rootOf("<a><item> </item></a>").stringValue(), " ");
    EXPECT_EQ(plain(rootOf("<item> </item>")), "<item> </item>");
}

TEST(WhiteSpace, BesideCommentsAndInstructionsIsNoChild) {
    const Element root = rootOf("<a> <!--b--> <?c?> </a>");
    EXPECT_THAT(plain(root.children()), ElementsAre("<!--b-->", "<?c?>"));
    EXPECT_EQ(root.stringValue(), "");
}

TEST(WhiteSpace, BesideCdataIsNoChild) {
    const Element root = rootOf("<a> <![CDATA[b]]> </a>");
    EXPECT_THAT(plain(root.children()), ElementsAre("<![CDATA[b]]>"));
    EXPECT_EQ(root.stringValue(), "b");
}

TEST(WhiteSpace, IsSpaceTabAndLineBreaksOnly) {
    for (const std::string_view content :
         {"\xC2\xA0"sv, "\xE3\x80\x80"sv, "\xE2\x80\x83"sv, "\xC2\x85"sv, "\xE2\x80\xA8"sv}) {
        const Element root = rootOf(joined("<a> ", content, " </a>"));
        EXPECT_EQ(root.childCount(), 1U) << content;
        EXPECT_EQ(root.firstChild().kind(), NodeKind::text);
        EXPECT_EQ(root.stringValue(), joined(" ", content, " "));
    }
}

TEST(WhiteSpace, OfReferencesIsWhiteSpaceToo) {
    EXPECT_FALSE(rootOf("<a>&#32;&#9;&#10;&#13;</a>").hasChildren());
    EXPECT_EQ(rootOf("<a>&#32;<b/>&#x20;</a>").childCount(), 1U);
}

TEST(WhiteSpace, CommentsInstructionsAndCdataAreChildren) {
    const Element root = rootOf("<a><!----><?b?><![CDATA[]]><![CDATA[ ]]></a>");
    EXPECT_TRUE(root.hasChildren());
    EXPECT_EQ(root.childCount(), 4U);
    EXPECT_EQ(root.childAt(0).kind(), NodeKind::comment);
    EXPECT_EQ(root.childAt(1).kind(), NodeKind::processingInstruction);
    EXPECT_EQ(root.childAt(2).kind(), NodeKind::text);
    EXPECT_EQ(root.childAt(3).kind(), NodeKind::text);
    EXPECT_EQ(root.childAt(3).stringValue(), " ");
    EXPECT_EQ(root.firstElementChild(), Element());
}

TEST(WhiteSpace, AroundOtherTextIsKeptAtBothEnds) {
    const Element root = rootOf("<a> \n x y\t\n<b/> z </a>");
    EXPECT_EQ(root.childAt(0).stringValue(), " \n x y\t\n");
    EXPECT_EQ(root.childAt(2).stringValue(), " z ");
    EXPECT_EQ(root.stringValue(), " \n x y\t\n z ");
}

TEST(WhiteSpace, LineBreaksInContentBecomeLineFeeds) {
    EXPECT_EQ(rootOf("<a>x\r\ny\rz\n</a>").stringValue(), "x\ny\nz\n");
    EXPECT_EQ(rootOf("<a><![CDATA[x\r\ny\rz]]></a>").stringValue(), "x\ny\nz");
    EXPECT_EQ(rootOf("<a><!--x\r\ny\rz--></a>").firstChild().stringValue(), "x\ny\nz");
    EXPECT_EQ(rootOf("<a><?b x\r\ny\rz?></a>").firstChild().stringValue(), "x\ny\nz");
    EXPECT_EQ(rootOf("<a>x&#13;&#10;y</a>").stringValue(), "x\r\ny");
}

TEST(WhiteSpace, InAttributesBecomesSpacesAndReferencesStay) {
    const Element root = rootOf("<a b=' x\ty\nz\r\nw\rv ' c='&#9;&#10;&#13;&#32;' d='' e='  '/>");
    EXPECT_EQ(root.attribute("b"), " x y z w v ");
    EXPECT_EQ(root.attribute("c"), "\t\n\r ");
    EXPECT_EQ(root.attribute("d"), "");
    EXPECT_EQ(root.attribute("e"), "  ");
}

TEST(WhiteSpace, XmlSpaceChangesNothing) {
    EXPECT_EQ(rootOf("<a xml:space='preserve'> <b/> </a>").childCount(), 1U);
    EXPECT_EQ(rootOf("<a xml:space='default'> x </a>").stringValue(), " x ");
}

TEST(StringValue, IsAllTextAndCdataBelowInDocumentOrder) {
    EXPECT_EQ(rootOf("<a>1<b>2<c><![CDATA[3]]></c>4</b><![CDATA[<5>]]>6<d/></a>").stringValue(),
              "1234<5>6");
    EXPECT_EQ(rootOf("<a/>").stringValue(), "");
}

TEST(StringValue, CommentsAndInstructionsAddNothing) {
    EXPECT_EQ(rootOf("<a>1<!--x-->2<?y z?>3<b><!--w--></b></a>").stringValue(), "123");
}

TEST(StringValue, OfACommentOrInstructionIsItsOwnText) {
    const Element root = rootOf("<a><!-- x --><?y  z ?><?w?>t<![CDATA[c]]></a>");
    EXPECT_EQ(root.childAt(0).stringValue(), " x ");
    EXPECT_EQ(root.childAt(1).stringValue(), "z ");
    EXPECT_EQ(root.childAt(1).name(), "y");
    EXPECT_EQ(root.childAt(2).stringValue(), "");
    EXPECT_EQ(root.childAt(3).stringValue(), "t");
    EXPECT_EQ(root.childAt(4).stringValue(), "c");
}

TEST(StringValue, OfAnEntitysTextIsItsReplacement) {
    EXPECT_EQ(rootOf("<a>&lt;b&gt; &amp;amp; &quot;&apos;</a>").stringValue(), "<b> &amp; \"'");
}

TEST(Walk, NodesHaveKindNameAndParent) {
    const Element root = rootOf("<a><b/>x<!--c--><?d e?></a>");
    EXPECT_TRUE(root.isElement());
    EXPECT_EQ(root.kind(), NodeKind::element);
    EXPECT_FALSE(root.parent());
    EXPECT_FALSE(root.nextSibling());
    EXPECT_EQ(root.index(), 0U);
    for (const Node& child : root.children())
        EXPECT_EQ(child.parent(), root);
    EXPECT_EQ(root.childAt(0).name(), "b");
    EXPECT_EQ(root.childAt(1).name(), "");
    EXPECT_EQ(root.childAt(2).name(), "");
    EXPECT_EQ(root.childAt(3).name(), "d");
    EXPECT_FALSE(root.childAt(1).isElement());
    EXPECT_FALSE(Element(root.childAt(1)));
    EXPECT_EQ(Element(root.childAt(0)), root.childAt(0));
    EXPECT_EQ(root.childAt(3).index(), 3U);
}

TEST(Walk, ElementsAreTheChildrenThatAreElements) {
    const auto elementsIn = [](std::string_view text) {
        std::string found;
        for (const Element& child : rootOf(text).elements())
            found += plain(child);
        return found;
    };
    EXPECT_EQ(elementsIn("<a/>"), "");
    EXPECT_EQ(elementsIn("<a> </a>"), "");
    EXPECT_EQ(elementsIn("<a>x<!--c--><?d e?><![CDATA[f]]></a>"), "");
    EXPECT_EQ(elementsIn("<a><b/></a>"), "<b></b>");
    EXPECT_EQ(elementsIn("<a>x<b><c/></b><!--d--> <e/><?f g?></a>"), "<b><c></c></b><e></e>");

    Element root = rootOf("<a><b/><c/></a>");
    root.firstElementChild().remove();
    root.appendChild(Element::create("d"));
    const auto elements = root.elements();
    EXPECT_EQ(std::distance(elements.begin(), elements.end()), 2);
    EXPECT_EQ(elements.begin()->name(), "c");
}

TEST(Walk, AttributesComeInTheirOrder) {
    std::string seen;
    const Element root = rootOf("<a b='1' xmlns='u' c=''/>");
    for (const Attribute attribute : root.attributes())
        seen += std::string(attribute.name) + "=" + std::string(attribute.value) + ";";
    EXPECT_EQ(seen, "b=1;xmlns=u;c=;");
}

TEST(Walk, AMissingAttributeIsNotAnEmptyOne) {
    const Element root = rootOf("<a b=''/>");
    EXPECT_EQ(root.attribute("b"), "");
    EXPECT_EQ(root.attribute("B"), std::nullopt);
    EXPECT_EQ(root.attribute(""), std::nullopt);
    EXPECT_EQ(root.attribute("b\0"sv), std::nullopt);
}

TEST(Walk, AnEmptyHandleAnswersTheEmptyAnswer) {
    Element none;
    EXPECT_FALSE(none);
    EXPECT_EQ(none, Node());
    EXPECT_EQ(none.kind(), NodeKind::text);
    EXPECT_FALSE(none.isElement());
    EXPECT_EQ(none.name(), "");
    EXPECT_EQ(none.stringValue(), "");
    EXPECT_FALSE(none.parent());
    EXPECT_EQ(none.index(), 0U);
    EXPECT_FALSE(none.nextSibling());
    EXPECT_FALSE(none.copy());
    none.remove();
    EXPECT_FALSE(none.replaceWith(Element::create("a")));
    EXPECT_EQ(none.serialise(), "");
    EXPECT_EQ(none.serialise(Form::pretty), "");
    EXPECT_EQ(none.place(), std::nullopt);
    EXPECT_EQ(none.attribute("a"), std::nullopt);
    EXPECT_TRUE(none.attributes().begin() == none.attributes().end());
    EXPECT_FALSE(none.setAttribute("a", "b"));
    EXPECT_FALSE(none.rename("a"));
    EXPECT_FALSE(none.setContent("a"));
    EXPECT_TRUE(none.children().begin() == none.children().end());
    EXPECT_TRUE(none.elements().begin() == none.elements().end());
    EXPECT_FALSE(none.hasChildren());
    EXPECT_EQ(none.childCount(), 0U);
    EXPECT_FALSE(none.firstChild());
    EXPECT_FALSE(none.firstElementChild());
    EXPECT_FALSE(none.childAt(0));
    EXPECT_FALSE(none.appendChild(Element::create("a")));
    EXPECT_FALSE(none.insertChild(Element::create("a"), 0));
    EXPECT_TRUE(none.query("//*").empty());
    EXPECT_EQ(none.attributePlace("a"), std::nullopt);
    EXPECT_FALSE(Element(Node()));
}

}  // namespace
}  // namespace yg::xml
