// SPDX-License-Identifier: MIT
#include <string>
#include <string_view>

#include "YGConfigManager/xml/Document.h"

#include "xml/XmlTesting.h"

namespace yg::xml {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;
using testing::StartsWith;

constexpr std::string_view head = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

std::string pretty(std::string_view text) {
    return documentOf(text).serialise(Form::pretty);
}

std::string withHead(std::string_view text) {
    return std::string(head) + std::string(text);
}

TEST(Pretty, HasOneElementToALineAndFourSpacesALevel) {
    EXPECT_EQ(pretty("<a><b x='1'><c/></b><d>text</d></a>"), withHead("<a>\n"
                                                                      "    <b x=\"1\">\n"
                                                                      "        <c></c>\n"
                                                                      "    </b>\n"
                                                                      "    <d>text</d>\n"
                                                                      "</a>\n"));
}

TEST(Pretty, DropsTheSourcesOwnIndentation) {
    EXPECT_EQ(pretty("<a>\r\n\t<b>\r\n\t</b>\r\n\r\n  <c/></a>\r\n"),
              withHead("<a>\n    <b>\n\t</b>\n    <c></c>\n</a>\n"));
}

TEST(Pretty, BeginsWithTheDeclarationWhateverTheSource) {
    for (const std::string_view source :
         {"<a/>"sv, "<?xml version='1.0'?><a/>"sv, "<?xml version='1.0' encoding='gbk'?><a/>"sv,
          "<?xml version='1.1' encoding='utf-8'?>\n\n<a/>\n\n"sv, "\xEF\xBB\xBF<a/>"sv})
        EXPECT_EQ(pretty(source), withHead("<a></a>\n")) << source;
}

TEST(Pretty, KeepsStandalone) {
    for (const std::string_view value : {"yes"sv, "no"sv}) {
        const std::string quoted = joined(" standalone=\"", value, "\"");
        const std::string expected =
            "<?xml version=\"1.0\" encoding=\"UTF-8\"" + quoted + "?>\n<a></a>\n";
        EXPECT_EQ(pretty("<?xml version=\"1.0\"" + quoted + "?><a/>"), expected);
        EXPECT_EQ(pretty("<?xml version=\"1.0\" encoding=\"utf-8\"" + quoted + " ?><a/>"),
                  expected);
        EXPECT_EQ(documentOf(expected).copy().serialise(Form::pretty), expected);
        EXPECT_EQ(
            pretty("<?xml version=\"1.0\"" + quoted + "?><!DOCTYPE a><a/>"),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"" + quoted + "?>\n<!DOCTYPE a>\n<a></a>\n");
    }
}

TEST(Pretty, AddsNothingInsideAnElementThatHoldsTextAtAnyDepth) {
    EXPECT_EQ(pretty("<a><b>x<c><d/><e/></c></b><f/></a>"),
              withHead("<a>\n    <b>x<c><d></d><e></e></c></b>\n    <f></f>\n</a>\n"));
    EXPECT_EQ(pretty("<a><b/>x</a>"), withHead("<a><b></b>x</a>\n"));
    EXPECT_EQ(pretty("<a><b><![CDATA[x]]><c><d/></c></b></a>"),
              withHead("<a>\n    <b><![CDATA[x]]><c><d></d></c></b>\n</a>\n"));
    EXPECT_EQ(pretty("<a><b><![CDATA[]]><c/></b></a>"),
              withHead("<a>\n    <b><![CDATA[]]><c></c></b>\n</a>\n"));
    EXPECT_EQ(pretty("<a>x<!--c--><?p?><b><!--d--></b></a>"),
              withHead("<a>x<!--c--><?p?><b><!--d--></b></a>\n"));
}

TEST(Pretty, GoesOnAfterAnElementThatHoldsText) {
    EXPECT_EQ(pretty("<a><b>x<c/></b><d><e/></d></a>"),
              withHead("<a>\n    <b>x<c></c></b>\n    <d>\n        <e></e>\n    </d>\n</a>\n"));
    EXPECT_EQ(pretty("<a><b><c>x</c><d><e/></d></b></a>"),
              withHead("<a>\n    <b>\n        <c>x</c>\n        <d>\n            <e></e>\n"
                       "        </d>\n    </b>\n</a>\n"));
}

TEST(Pretty, CommentsAndInstructionsBetweenElementsGetLinesOfTheirOwn) {
    EXPECT_EQ(
        pretty("<a><!--1--><b><?p x?></b><!--2--></a>"),
        withHead("<a>\n    <!--1-->\n    <b>\n        <?p x?>\n    </b>\n    <!--2-->\n</a>\n"));
}

TEST(Pretty, CommentsInstructionsAndDocumentTypeAroundTheRootAreKept) {
    EXPECT_EQ(pretty("<?xml version='1.0'?><!--1--><?p q?>\n<!DOCTYPE a  PUBLIC '-//x'\n \"x'>y\" >"
                     "<a>]&gt;'</a><!--2--><?r?>"),
              withHead("<!--1-->\n<?p q?>\n<!DOCTYPE a  PUBLIC '-//x'\n \"x'>y\" >\n"
                       "<a>]&gt;'</a>\n<!--2-->\n<?r?>\n"));
    EXPECT_EQ(pretty("<!DOCTYPE a SYSTEM '<!DOCTYPE a'><a/>"),
              withHead("<!DOCTYPE a SYSTEM '<!DOCTYPE a'>\n<a></a>\n"));
}

TEST(Pretty, TheLineBreaksOfADocumentTypeAreLineFeeds) {
    EXPECT_EQ(pretty("<!DOCTYPE\r\na\rSYSTEM\r\n'x'\r\n\r><a/>"),
              withHead("<!DOCTYPE a\nSYSTEM\n'x'\n\n>\n<a></a>\n"));
}

TEST(Pretty, OfANodeHasNoDeclaration) {
    const Document document = documentOf("<a><b><c/></b><!--d-->x</a>");
    EXPECT_EQ(document.root().childAt(0).serialise(Form::pretty), "<b>\n    <c></c>\n</b>");
    EXPECT_EQ(document.root().childAt(1).serialise(Form::pretty), "<!--d-->");
    EXPECT_EQ(document.root().childAt(2).serialise(Form::pretty), "x");
}

TEST(Writing, AnElementWithoutChildrenHasBothTags) {
    EXPECT_EQ(pretty("<a/>"), withHead("<a></a>\n"));
    EXPECT_EQ(documentOf("<a b='1'/>").serialise(Form::plain), R"(<a b="1"></a>)");
    EXPECT_EQ(plain(rootOf("<a><b/></a>")), "<a><b></b></a>");
}

TEST(Writing, AttributesStandInDoubleQuotesInTheirOrder) {
    EXPECT_EQ(plain(rootOf("<a  z = '1'\n b=\"2\"  a='3'/>")), R"(<a z="1" b="2" a="3"></a>)");
}

TEST(Writing, EscapesInText) {
    EXPECT_EQ(plain(rootOf("<a>&amp;&lt;&gt;&quot;&apos;\"'</a>")), "<a>&amp;&lt;&gt;\"'\"'</a>");
    EXPECT_EQ(plain(rootOf("<a>&#13;&#10;&#9;x</a>")), "<a>&#13;\n\tx</a>");
    EXPECT_EQ(plain(rootOf("<a>]]&gt;&#160;中</a>")), "<a>]]&gt;\xC2\xA0中</a>");
}

TEST(Writing, EscapesInAttributes) {
    EXPECT_EQ(plain(rootOf("<a b='&amp;&lt;&gt;&quot;&apos;'/>")),
              "<a b=\"&amp;&lt;&gt;&quot;'\"></a>");
    EXPECT_EQ(plain(rootOf("<a b='&#13;&#10;&#9; x'/>")), "<a b=\"&#13;&#10;&#9; x\"></a>");
}

TEST(Writing, CommentsInstructionsAndCdataAreNotEscaped) {
    EXPECT_EQ(plain(rootOf("<a><!-- <&\">' --><?p <&\">' ?><![CDATA[<&\">']]></a>")),
              "<a><!-- <&\">' --><?p <&\">' ?><![CDATA[<&\">']]></a>");
}

TEST(Writing, CdataStaysCdata) {
    EXPECT_EQ(plain(rootOf("<a>x<![CDATA[<b>]]>y<![CDATA[]]><![CDATA[ ]]></a>")),
              "<a>x<![CDATA[<b>]]>y<![CDATA[]]><![CDATA[ ]]></a>");
}

TEST(Writing, ThePlainFormAddsNothing) {
    const Document document = documentOf("<?xml version='1.0'?>\n<!--x-->\n<a> <b>y</b> </a>\n");
    EXPECT_EQ(document.serialise(Form::plain), "<!--x--><a><b>y</b></a>");
    EXPECT_EQ(document.root().serialise(), "<a><b>y</b></a>");
    EXPECT_EQ(document.root().childAt(0).serialise(Form::plain), "<b>y</b>");
}

TEST(Writing, ThePlainFormOfANodeReadsBack) {
    const Element root = rootOf("<a><b c='&lt;&#10;\"'> x<!--d-->&amp;<![CDATA[<]]></b></a>");
    const std::string written = plain(root.childAt(0));
    EXPECT_EQ(plain(rootOf(written)), written);
    EXPECT_EQ(outline(Tree::raw(rootOf(written))), outline(Tree::raw(root.childAt(0))));
}

TEST(Writing, ADocumentWithoutRootIsNothing) {
    EXPECT_EQ(Document().serialise(Form::pretty), "");
    EXPECT_EQ(Document().serialise(Form::plain), "");
    EXPECT_EQ(Document::parseText("<a>").document.serialise(Form::pretty), "");
}

constexpr std::string_view documents[] = {
    "<a/>",
    "<a></a>",
    "<a> </a>",
    "<a>\n</a>",
    "<a>&#13;</a>",
    "<a>&#13;&#10; x &#9;</a>",
    "<a> x </a>",
    "<a>x<b/> <c/>y</a>",
    "<a> <b> </b> <c>\n\n</c> </a>",
    "<a b='&#13;&#10;&#9; &quot;&apos;&lt;&gt;&amp;'/>",
    "<a b=' \t\r\n x '/>",
    "<a>&lt;b&gt; &amp;amp; ]]&gt;</a>",
    "<a><![CDATA[<b> & ]] > ]]></a>",
    "<a><![CDATA[x\r\ny]]></a>",
    "<a><![CDATA[]]></a>",
    "<a><![CDATA[ ]]><![CDATA[x]]></a>",
    "<a> <![CDATA[x]]> </a>",
    "<a><!-- x\r\n y --></a>",
    "<a><!----></a>",
    "<a><?p?><?q  r  ?></a>",
    "<a><?p x\r\ny\rz?></a>",
    "<a>x<!--c-->y<?p?>z</a>",
    "<!--b--><?p q?><a/><!--e--><?f?>",
    "<?p x\r\ny?><a/>",
    "<!DOCTYPE a><a/>",
    "<!DOCTYPE a ><a/>",
    "<!DOCTYPE\n  a\n><a/>",
    "<!DOCTYPE a SYSTEM \"x\"><a/>",
    "<!DOCTYPE a PUBLIC '-//x' \"y>z\"><a/>",
    "<!DOCTYPE\r\na\r\nSYSTEM\r\n'x'\r\n>\r\n<a>&#13;</a>",
    "<!DOCTYPE a:b><a:b/>",
    "<!-- <!DOCTYPE x> --><!DOCTYPE a><a/>",
    "<?p <!DOCTYPE x> ?><!DOCTYPE a SYSTEM '<!DOCTYPE y ['><a/>",
    "<?xml version='1.0' standalone='yes'?><a/>",
    "<?xml version='1.0' encoding='gbk' standalone='no'?>\n<a/>",
    "<a xmlns='u' p:b='c' xmlns:p='v'><p:d/></a>",
    "<配置 名='值'>文<页/></配置>",
    "<a>\xC2\xA0\xE3\x80\x80\xC2\x85\xE2\x80\xA8\x7F\xF0\xA0\x80\x80</a>",
    "<a>\r\n  <b>\r\n    x\r\n  </b>\r\n</a>\r\n",
};

TEST(SavingAndReading, GiveTheSameBytesAgain) {
    for (const std::string_view source : documents) {
        SCOPED_TRACE(source);
        const Document document = documentOf(source);
        const std::string saved = document.serialise(Form::pretty);
        EXPECT_EQ(pretty(saved), saved);
        const std::string plainly = document.serialise(Form::plain);
        EXPECT_EQ(documentOf(plainly).serialise(Form::plain), plainly);
        EXPECT_EQ(documentOf(saved).serialise(Form::plain), plainly);
    }
}

TEST(SavingAndReading, GiveTheSameTreeAgain) {
    for (const std::string_view source : documents) {
        SCOPED_TRACE(source);
        const Document document = documentOf(source);
        EXPECT_EQ(outline(documentOf(document.serialise(Form::pretty))), outline(document));
        EXPECT_EQ(outline(documentOf(document.serialise(Form::plain))), outline(document));
        EXPECT_EQ(outline(document.copy()), outline(document));
    }
}

TEST(SavingAndReading, KeepWhatCodeHasPutIn) {
    const Document document = documentOf("<a> <b> </b></a>");
    Element root = document.root();
    Element b(root.childAt(0));
    b.setAttribute("x", " \r\n\t<&>\"' ");
    b.appendChild(rootOf("<t>x</t>").firstChild());
    b.appendChild(rootOf("<t>y</t>").firstChild());
    root.insertChild(rootOf("<t><!--c--></t>").firstChild(), 0);
    Element last(root.appendChild(Element::create("c")));
    last.setContent(" ");
    const std::string saved = document.serialise(Form::pretty);
    EXPECT_EQ(pretty(saved), saved);
    EXPECT_EQ(saved, withHead("<a>\n    <!--c-->\n    <b x=\" &#13;&#10;&#9;&lt;&amp;&gt;&quot;' "
                              "\">xy</b>\n    <c> </c>\n</a>\n"));
}

}  // namespace
}  // namespace yg::xml
