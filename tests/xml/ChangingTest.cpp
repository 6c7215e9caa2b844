// SPDX-License-Identifier: MIT
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/xml/Document.h"

#include "xml/XmlTesting.h"

namespace yg::xml {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;
using testing::ElementsAre;

std::size_t attributeCount(const Element& element) {
    std::size_t count = 0;
    for (const Attribute attribute : element.attributes()) {
        static_cast<void>(attribute);
        ++count;
    }
    return count;
}

TEST(SetAttribute, AddsAtTheEnd) {
    Element root = rootOf("<a b='1'/>");
    EXPECT_TRUE(root.setAttribute("c", "2"));
    EXPECT_EQ(plain(root), R"(<a b="1" c="2"></a>)");
}

TEST(SetAttribute, ReplacesTheValueInPlaceAndNeverMakesASecondOne) {
    Element root = rootOf("<a b='1' c='2' p:b='3'/>");
    EXPECT_TRUE(root.setAttribute("b", "4"));
    EXPECT_TRUE(root.setAttribute("b", "5"));
    EXPECT_TRUE(root.setAttribute("p:b", "6"));
    EXPECT_EQ(plain(root), R"(<a b="5" c="2" p:b="6"></a>)");
    EXPECT_EQ(attributeCount(root), 3U);
    Element made = Element::create("a");
    for (int i = 0; i < 100; ++i)
        made.setAttribute("b", std::to_string(i));
    EXPECT_EQ(plain(made), R"(<a b="99"></a>)");
}

TEST(SetAttribute, OfAnEmptyValueIsNotAMissingOne) {
    Element element = Element::create("a");
    EXPECT_TRUE(element.setAttribute("b", ""));
    EXPECT_EQ(element.attribute("b"), "");
    EXPECT_EQ(plain(element), R"(<a b=""></a>)");
}

constexpr std::string_view values[] = {"a & b",         "&amp;",     "&#65;",    "<b>",
                                       "</a>",          "]]>",       "\"'",      " x ",
                                       "\t\n\r",        "\r\n",      "<!--",     "%x;",
                                       "中文",          "\x7F",      "\xC2\x85", "\xF0\xA0\x80\x80",
                                       "\xEF\xBB\xBFx", "\xC2\xA0 ", "a=b&c=d;", "<?xml?>",
                                       "&none;"};

TEST(SetAttribute, StoresTextsAsGivenAndTheyReadBack) {
    for (const std::string_view value : values) {
        Element element = Element::create("a");
        EXPECT_TRUE(element.setAttribute("b", value));
        EXPECT_EQ(element.attribute("b"), value);
        EXPECT_EQ(rootOf(plain(element)).attribute("b"), value) << plain(element);
        EXPECT_EQ(rootOf(element.serialise(Form::pretty)).attribute("b"), value);
    }
}

TEST(SetContent, StoresTextsAsGivenAndTheyReadBack) {
    for (const std::string_view value : values) {
        Element element = Element::create("a");
        EXPECT_TRUE(element.setContent(value));
        EXPECT_EQ(element.stringValue(), value);
        EXPECT_EQ(rootOf(plain(element)).stringValue(), value) << plain(element);
        EXPECT_EQ(rootOf(element.serialise(Form::pretty)).stringValue(), value);
    }
}

TEST(SetContent, RemovesEveryChildAndLeavesOneText) {
    Element root = rootOf("<a b='1'>x<!--c--><d>y</d><?e?><![CDATA[z]]> </a>");
    EXPECT_TRUE(root.setContent("new"));
    EXPECT_EQ(plain(root), R"(<a b="1">new</a>)");
    EXPECT_EQ(root.childCount(), 1U);
    EXPECT_EQ(root.firstChild().kind(), NodeKind::text);
    for (const std::string_view text : {"<a>old</a>"sv, "<a><![CDATA[old]]></a>"sv, "<a> </a>"sv,
                                        "<a/>"sv, "<a><!--c--></a>"sv, "<a>x<b/>y</a>"sv}) {
        Element other = rootOf(text);
        other.setContent("new");
        EXPECT_EQ(plain(other), "<a>new</a>") << text;
    }
}

TEST(SetContent, OfAnEmptyTextLeavesNoChild) {
    for (const std::string_view text :
         {"<a b='1'>x<!--c--></a>"sv, "<a b='1'>x</a>"sv, "<a b='1'> </a>"sv, "<a b='1'/>"sv}) {
        Element root = rootOf(text);
        EXPECT_TRUE(root.setContent(""));
        EXPECT_EQ(plain(root), R"(<a b="1"></a>)");
        EXPECT_FALSE(root.hasChildren());
        EXPECT_EQ(root.stringValue(), "");
    }
}

TEST(SetContent, OfWhiteSpaceIsKept) {
    Element root = rootOf("<a>x</a>");
    EXPECT_TRUE(root.setContent(" \n"));
    EXPECT_EQ(root.stringValue(), " \n");
    EXPECT_FALSE(root.hasChildren());
    EXPECT_EQ(rootOf(root.serialise(Form::pretty)).stringValue(), " \n");
}

// Control characters but tab and line breaks, U+FFFE, U+FFFF, and bytes that are not UTF-8.
TEST(Storing, LeavesOutWhatXmlCannotHold) {
    struct Row {
        std::string_view given;
        std::string_view stored;
    };
    for (const auto& [given, stored] : {
             Row{"a\x01\x02z", "az"},
             Row{"a\0z"sv, "az"},
             Row{"\x1B[0m", "[0m"},
             Row{"\x0B\x0C\x08\x1F", ""},
             Row{"\t\n\r ", "\t\n\r "},
             Row{"a\xEF\xBF\xBE\xEF\xBF\xBFz", "az"},
             Row{"\xEF\xBF\xBD", "\xEF\xBF\xBD"},
             Row{"a\xFFz", "az"},
             Row{"a\xE4\xB8z", "az"},
             Row{"a\xE4\xB8", "a"},
             Row{"\xC0\x80z", "z"},
             Row{"\xED\xA0\x80z", "z"},
             Row{"\xF4\x90\x80\x80z", "z"},
             Row{"中\xFF文", "中文"},
             Row{"\xF0\x9F\xBF\xBF", "\xF0\x9F\xBF\xBF"},
         }) {
        Element element = Element::create("a");
        EXPECT_TRUE(element.setAttribute("b", given));
        EXPECT_TRUE(element.setContent(given));
        EXPECT_EQ(element.attribute("b"), stored);
        EXPECT_EQ(element.stringValue(), stored);
        EXPECT_EQ(rootOf(plain(element)).stringValue(), stored);
        EXPECT_EQ(rootOf(plain(element)).attribute("b"), stored);
    }
}

TEST(Storing, WhateverTheBytesTheDocumentStaysReadable) {
    std::string all;
    for (int i = 0; i < 256; ++i) {
        for (int k = 0; k < 256; k += 51) {
            all += static_cast<char>(i);
            all += static_cast<char>(k);
        }
    }
    Element element = Element::create("a");
    element.setAttribute("b", all);
    element.setContent(all);
    const Element read = rootOf(plain(element));
    EXPECT_EQ(read.attribute("b"), element.attribute("b"));
    EXPECT_EQ(read.stringValue(), element.stringValue());
}

constexpr std::string_view noNames[] = {"",
                                        " ",
                                        "1",
                                        "1a",
                                        "-a",
                                        ".a",
                                        "a b",
                                        "a\n",
                                        " a",
                                        "a/",
                                        "<a>",
                                        "a>",
                                        "a&b",
                                        "a=b",
                                        "a\"",
                                        "a'",
                                        "a;",
                                        "!a",
                                        "?a",
                                        "a(b)",
                                        "a,b",
                                        "a@b",
                                        "a#",
                                        "a%",
                                        "a+b",
                                        "a\0"sv,
                                        "\0"sv,
                                        "a\0b"sv,
                                        "a\xFF",
                                        "\xE4\xB8",
                                        "·a",
                                        "×",
                                        "÷",
                                        "a÷",
                                        "a\xC2\xA0"
                                        "b",
                                        "a　b",
                                        "“a”",
                                        "\x7F",
                                        "a\x01",
                                        "[a]",
                                        "{a}",
                                        "a|b",
                                        "a\\b",
                                        "a^",
                                        "`a",
                                        "~a",
                                        "$a",
                                        "\xEF\xBF\xBE",
                                        "\xEF\xBB\xBF\xEF\xBF\xBF"};

constexpr std::string_view someNames[] = {"a",     "A-b.c_d:e1", "_",  ":",
                                          "a:b:c", "中文",       "é",  "a·",
                                          "xml",   "a\xCC\x81",  "ａ", "\xF0\xA0\x80\x80"};

TEST(Names, NoElementIsCreatedUnderANameThatXmlDoesNotKnow) {
    for (const std::string_view name : noNames)
        EXPECT_FALSE(Element::create(name)) << name;
}

TEST(Names, NoElementIsRenamedToOne) {
    for (const std::string_view name : noNames) {
        Element element = rootOf("<a b='1'>x</a>");
        EXPECT_FALSE(element.rename(name)) << name;
        EXPECT_EQ(plain(element), R"(<a b="1">x</a>)");
    }
}

TEST(Names, NoAttributeIsAddedUnderOne) {
    for (const std::string_view name : noNames) {
        Element element = rootOf("<a b='1'>x</a>");
        EXPECT_FALSE(element.setAttribute(name, "v")) << name;
        EXPECT_EQ(plain(element), R"(<a b="1">x</a>)");
    }
}

TEST(Names, ThatXmlKnowsAreTakenAndReadBack) {
    for (const std::string_view name : someNames) {
        Element element = Element::create(name);
        EXPECT_TRUE(element) << name;
        EXPECT_EQ(element.name(), name);
        EXPECT_TRUE(element.setAttribute(name, "v"));
        EXPECT_EQ(rootOf(plain(element)).name(), name);
        EXPECT_EQ(rootOf(plain(element)).attribute(name), "v");
        EXPECT_TRUE(element.rename("x"));
        EXPECT_EQ(element.name(), "x");
        EXPECT_TRUE(element.rename(name));
        EXPECT_EQ(element.name(), name);
    }
}

std::string utf8(char32_t c) {
    std::string text;
    if (c < 0x80) {
        text += static_cast<char>(c);
        return text;
    }
    const int tails = c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
    const char32_t lead = tails == 1 ? 0xC0 : tails == 2 ? 0xE0 : 0xF0;
    text += static_cast<char>(lead | (c >> (6 * tails)));
    for (int i = tails - 1; i >= 0; --i)
        text += static_cast<char>(0x80 | ((c >> (6 * i)) & 0x3F));
    return text;
}

// What is created must be read, and what is read may be created.
TEST(Names, AreThoseThatTheReaderTakes) {
    std::vector<char32_t> characters;
    for (char32_t c = 1; c < 0x400; ++c)
        characters.push_back(c);
    for (const char32_t edge :
         {0x1FFFU, 0x200CU, 0x200DU, 0x203FU, 0x2040U, 0x2070U, 0x218FU, 0x2C00U, 0x2FEFU, 0x3001U,
          0xD7FFU, 0xF900U, 0xFDCFU, 0xFDF0U, 0xFFFDU, 0x10000U, 0xEFFFFU, 0xF0000U, 0x10FFFFU}) {
        for (char32_t c = edge - 1; c <= edge + 1; ++c) {
            if ((c < 0xD800 || c > 0xDFFF) && c <= 0x10FFFF)
                characters.push_back(c);
        }
    }
    for (const char32_t c : characters) {
        for (const std::string& name : {utf8(c), joined("a", utf8(c))}) {
            const ParseResult read = Document::parseText(joined("<", name, "></", name, ">"));
            const bool isWhole = read && read.document.root().name() == name;
            EXPECT_EQ(static_cast<bool>(Element::create(name)), isWhole)
                << name << " U+" << std::hex << static_cast<unsigned>(c);
        }
    }
}

TEST(Children, AnIndexCountsTheChildrenThatAreDefined) {
    Element root = rootOf("<a> <!--0--> <b/> <?p?> x <c/> </a>");
    EXPECT_EQ(root.childAt(0).kind(), NodeKind::comment);
    EXPECT_EQ(root.childAt(1).name(), "b");
    EXPECT_EQ(root.childAt(3).stringValue(), " x ");
    EXPECT_EQ(root.childAt(4).index(), 4U);
    root.insertChild(Element::create("new"), 1);
    EXPECT_THAT(plain(root.children()),
                ElementsAre("<!--0-->", "<new></new>", "<b></b>", "<?p?>", " x ", "<c></c>"));
}

TEST(Children, AreInsertedAtEachIndexAndAppendedPastTheEnd) {
    for (std::size_t index = 0; index < 6; ++index) {
        Element root = rootOf("<a><b0/><b1/><b2/></a>");
        const Node added = root.insertChild(Element::create("new"), index);
        const std::size_t expected = std::min<std::size_t>(index, 3);
        EXPECT_EQ(added.index(), expected);
        EXPECT_EQ(added.parent(), root);
        EXPECT_EQ(root.childAt(expected), added);
        EXPECT_EQ(root.childCount(), 4U);
    }
}

TEST(Children, AreAddedAsCopiesAndTheGivenOnesStay) {
    const Document source = documentOf("<s><b n='1'><c/>x</b></s>");
    Element root = rootOf("<a/>");
    const Element added(root.appendChild(source.root().childAt(0)));
    EXPECT_EQ(plain(added), R"(<b n="1"><c></c>x</b>)");
    EXPECT_EQ(source.serialise(Form::plain), R"(<s><b n="1"><c></c>x</b></s>)");
    Element(source.root().childAt(0)).setAttribute("n", "2");
    EXPECT_EQ(added.attribute("n"), "1");
    EXPECT_FALSE(added == source.root().childAt(0));
}

TEST(Children, OfEveryKindCanBeAdded) {
    Element root = rootOf("<a/>");
    for (const Node& child : rootOf("<s>x<!--c--><?p q?><![CDATA[d]]><e/></s>").children())
        EXPECT_TRUE(root.appendChild(child));
    EXPECT_EQ(plain(root), "<a>x<!--c--><?p q?><![CDATA[d]]><e></e></a>");
    EXPECT_FALSE(root.appendChild(Node()));
    EXPECT_EQ(root.childCount(), 5U);
}

TEST(Children, TakeThePlaceOfWhiteSpaceAlone) {
    Element root = rootOf("<a> <b> </b> </a>");
    Element b(root.childAt(0));
    b.appendChild(Element::create("c"));
    EXPECT_EQ(plain(root), "<a><b><c></c></b></a>");
    EXPECT_EQ(b.stringValue(), "");
}

TEST(Children, AnElementCanBeAddedToItself) {
    Element root = rootOf("<a><b>x</b></a>");
    root.appendChild(root);
    EXPECT_EQ(plain(root), "<a><b>x</b><a><b>x</b></a></a>");
    Element inner(root.childAt(0));
    inner.insertChild(root, 0);
    EXPECT_EQ(plain(inner), "<b><a><b>x</b><a><b>x</b></a></a>x</b>");
}

TEST(Children, AnElementAddedToItselfKeepsItsWhiteSpaceInTheCopy) {
    Element element = rootOf("<e> </e>");
    element.appendChild(element);
    EXPECT_EQ(plain(element), "<e><e> </e></e>");
    Element outer = rootOf("<a>\n<b>\t</b></a>");
    outer.childAt(0).copy();
    Element(outer.childAt(0)).appendChild(outer);
    EXPECT_EQ(plain(outer), "<a><b><a><b>\t</b></a></b></a>");
    Element inserted = rootOf("<e> </e>");
    inserted.insertChild(inserted, 0);
    EXPECT_EQ(plain(inserted), "<e><e> </e></e>");
}

TEST(Children, CopiesStandWhereTheirSourcesStandEvenInsideThem) {
    const auto positions = [](const Document& document) {
        std::string all;
        for (const Node& node : document.query("//*")) {
            const auto place = node.place();
            all += joined(node.name(), std::to_string(place->begin.line), " ");
        }
        return all;
    };
    const std::string_view text = "<a>\n<b>\n<c/>\n<d/></b>\n<e/></a>";
    Document replaced = Document::parseText(text, withPositions).document;
    elementAt(replaced, "//c").replaceWith(replaced.root());
    EXPECT_EQ(positions(replaced), "a1 b2 a1 b2 c3 d4 e5 d4 e5 ");
    Document appended = Document::parseText(text, withPositions).document;
    elementAt(appended, "//c").appendChild(elementAt(appended, "//b"));
    EXPECT_EQ(positions(appended), "a1 b2 c3 b2 c3 d4 d4 e5 ");
}

TEST(Replacing, PutsTheNewOneExactlyWhereTheOldOneStood) {
    for (std::size_t index = 0; index < 5; ++index) {
        Element root = rootOf("<a><!--0--> <b1/> x2 <?p3?><![CDATA[4]]></a>");
        std::vector<std::string> expected = plain(root.children());
        expected[index] = "<new></new>";
        Node old = root.childAt(index);
        const std::string before = plain(old);
        const Node added = old.replaceWith(Element::create("new"));
        EXPECT_EQ(added.index(), index);
        EXPECT_EQ(plain(root.children()), expected);
        EXPECT_EQ(plain(old), before);
        EXPECT_FALSE(old.parent());
    }
}

TEST(Replacing, PutsACopyAndTheGivenOneStays) {
    const Document source = documentOf("<s><b><c/></b></s>");
    const Document document = documentOf("<a><old/></a>");
    Node old = document.root().childAt(0);
    const Node added = old.replaceWith(source.root().childAt(0));
    EXPECT_EQ(added.parent(), document.root());
    EXPECT_EQ(document.serialise(Form::plain), "<a><b><c></c></b></a>");
    EXPECT_EQ(source.serialise(Form::plain), "<s><b><c></c></b></s>");
}

TEST(Replacing, WorksWithANodeOfTheSameTreeAndWithItself) {
    const Document document = documentOf("<a><b n='1'/><c><d/></c></a>");
    document.root().childAt(0).replaceWith(document.root().childAt(1));
    EXPECT_EQ(document.serialise(Form::plain), "<a><c><d></d></c><c><d></d></c></a>");
    Node second = document.root().childAt(1);
    second.replaceWith(second);
    EXPECT_EQ(document.serialise(Form::plain), "<a><c><d></d></c><c><d></d></c></a>");
    Node inner = elementAt(document, "//d");
    inner.replaceWith(document.root());
    EXPECT_EQ(document.serialise(Form::plain),
              "<a><c><a><c><d></d></c><c><d></d></c></a></c><c><d></d></c></a>");
}

TEST(Replacing, AtTheTopOrWithNothingChangesNothing) {
    const Document document = documentOf("<a><b/></a>");
    EXPECT_FALSE(document.root().replaceWith(Element::create("c")));
    EXPECT_FALSE(document.root().childAt(0).replaceWith(Node()));
    Node copy = document.root().copy();
    EXPECT_FALSE(copy.replaceWith(Element::create("c")));
    EXPECT_EQ(document.serialise(Form::plain), "<a><b></b></a>");
    EXPECT_EQ(plain(copy), "<a><b></b></a>");
}

TEST(Replacing, SeveralReferencesByTheSameDefinition) {
    const Document document = documentOf("<a><r n='1'/><p><r n='1'/></p><r n='2'/></a>");
    const Element definition = rootOf("<d><e/></d>");
    for (Node& reference : document.query("//r[@n='1']"))
        Element(reference.replaceWith(definition)).rename("panel");
    EXPECT_EQ(document.serialise(Form::plain),
              "<a><panel><e></e></panel><p><panel><e></e></panel></p><r n=\"2\"></r></a>");
    EXPECT_EQ(definition.name(), "d");
}

TEST(Removing, TakesTheNodeAndAllBelowItOut) {
    const Document document = documentOf("<a><b><c/></b>x<d/></a>");
    Node b = document.root().childAt(0);
    b.remove();
    EXPECT_EQ(document.serialise(Form::plain), "<a>x<d></d></a>");
    EXPECT_EQ(plain(b), "<b><c></c></b>");
    EXPECT_FALSE(b.parent());
    EXPECT_FALSE(b.nextSibling());
    EXPECT_EQ(b.index(), 0U);
    document.root().childAt(0).remove();
    document.root().childAt(0).remove();
    EXPECT_EQ(document.serialise(Form::plain), "<a></a>");
    EXPECT_FALSE(document.root().hasChildren());
}

TEST(Removing, AtTheTopOfATreeOfItsOwnChangesNothing) {
    Document document = documentOf("<a><b/></a>");
    Node copy = document.root().copy();
    copy.remove();
    EXPECT_EQ(plain(copy), "<a><b></b></a>");
    Node removed = document.root().childAt(0);
    removed.remove();
    removed.remove();
    EXPECT_EQ(plain(removed), "<b></b>");
    document.root().remove();
    EXPECT_EQ(document.serialise(Form::plain), "<a></a>");
}

TEST(Removing, ARemovedPartCanBeChangedAndAddedAgain) {
    const Document document = documentOf("<a><b><c/></b></a>");
    Element b(document.root().childAt(0));
    b.remove();
    b.setAttribute("n", "1");
    b.appendChild(Element::create("d"));
    b.childAt(0).remove();
    EXPECT_EQ(plain(b), R"(<b n="1"><d></d></b>)");
    document.root().appendChild(b);
    document.root().appendChild(b);
    EXPECT_EQ(document.serialise(Form::plain),
              R"(<a><b n="1"><d></d></b><b n="1"><d></d></b></a>)");
    EXPECT_FALSE(b.parent());
}

TEST(Creating, GivesAnElementInATreeOfItsOwn) {
    const Element element = Element::create("a");
    EXPECT_EQ(element.name(), "a");
    EXPECT_FALSE(element.parent());
    EXPECT_FALSE(element.hasChildren());
    EXPECT_EQ(attributeCount(element), 0U);
    EXPECT_EQ(element.query("/*").at(0), element);
}

}  // namespace
}  // namespace yg::xml
