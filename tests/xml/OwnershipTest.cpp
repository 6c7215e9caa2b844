// SPDX-License-Identifier: MIT
//
// How long handles live. Most of it shows under the address sanitizer only.
#include <algorithm>
#include <functional>
#include <memory>
#include <numeric>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "YGConfigManager/xml/Document.h"

#include "xml/XmlTesting.h"

namespace yg::xml {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;
using testing::ElementsAre;

TEST(Ownership, AnElementOutlivesItsDocument) {
    const Element root = Document::parseText("<a b='1'><c>x</c></a>").document.root();
    EXPECT_EQ(root.attribute("b"), "1");
    EXPECT_EQ(root.stringValue(), "x");
    EXPECT_EQ(root.query("//c").size(), 1U);
    EXPECT_EQ(plain(root), R"(<a b="1"><c>x</c></a>)");
}

TEST(Ownership, AttributesOfATemporaryCanBeGoneThrough) {
    std::vector<std::string> found;
    for (const Attribute attribute :
         Document::parseText("<a k='1' l='2'/>").document.root().attributes())
        found.push_back(std::string(attribute.name) + "=" + std::string(attribute.value));
    for (const Attribute attribute :
         Element(Document::parseText("<a><b m='3'/></a>").document.root().firstChild())
             .copy()
             .parent()
             .attributes())
        found.emplace_back(attribute.name);
    for (const Attribute attribute :
         Element(documentOf("<a><b m='3'/></a>").root().children().begin()->copy()).attributes())
        found.emplace_back(attribute.value);
    EXPECT_THAT(found, ElementsAre("k=1", "l=2", "3"));
}

TEST(Ownership, AttributesMayBeKeptAfterTheirElement) {
    Attributes attributes = Element().attributes();
    EXPECT_EQ(attributes.begin(), attributes.end());
    attributes = Document::parseText("<a k='1'/>").document.root().attributes();
    const Attribute attribute = *attributes.begin();
    EXPECT_EQ(attribute.name, "k");
    EXPECT_EQ(attribute.value, "1");
}

TEST(Ownership, ChildrenOfATemporaryCanBeGoneThrough) {
    std::string found;
    for (const Node& child : Document::parseText("<a><b/><c/></a>").document.root().children())
        found += child.name();
    EXPECT_EQ(found, "bc");
}

TEST(Ownership, ElementsOfATemporaryCanBeGoneThrough) {
    std::string found;
    for (const Element& child : Document::parseText("<a><b/><c/></a>").document.root().elements())
        found += child.name();
    EXPECT_EQ(found, "bc");
}

TEST(Ownership, OfATreeIsThatOfTheLastHandleAlone) {
    std::optional<Document> document = documentOf("<a><b/></a>");
    Element root = document->root();
    EXPECT_FALSE(root.keepsTreeAlone());
    document.reset();
    EXPECT_TRUE(root.keepsTreeAlone());
    {
        const Node child = root.firstChild();
        EXPECT_FALSE(root.keepsTreeAlone());
        EXPECT_FALSE(child.keepsTreeAlone());
    }
    EXPECT_TRUE(root.keepsTreeAlone());
    EXPECT_TRUE(root.copy().keepsTreeAlone());
    EXPECT_TRUE(Element().keepsTreeAlone());
}

TEST(Ownership, AnInnerElementKeepsTheWholeTree) {
    std::optional<Document> document = documentOf("<a><b><c/></b><d/></a>");
    Element c = elementAt(*document, "//c");
    document.reset();
    EXPECT_EQ(plain(c.parent().parent()), "<a><b><c></c></b><d></d></a>");
    EXPECT_EQ(c.query("/a/d").size(), 1U);
    c.parent().appendChild(Element::create("e"));
    EXPECT_EQ(plain(c.parent()), "<b><c></c><e></e></b>");
}

TEST(Ownership, NamesAndValuesLiveAsLongAsAHandle) {
    const Element root = Document::parseText("<name attribute='value'/>").document.root();
    const std::string_view name = root.name();
    const std::string_view value = *root.attribute("attribute");
    EXPECT_EQ(name, "name");
    EXPECT_EQ(value, "value");
}

TEST(Ownership, ACopyOfADocumentSharesNothing) {
    Document document = documentOf("<?xml version='1.0' standalone='yes'?><!--x--><a><b/></a>");
    const Document copy = document.copy();
    document.root().setContent("changed");
    EXPECT_EQ(copy.serialise(Form::pretty),
              "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n<!--x-->\n"
              "<a>\n    <b></b>\n</a>\n");
    copy.root().setAttribute("n", "1");
    EXPECT_EQ(document.root().attribute("n"), std::nullopt);
    EXPECT_FALSE(copy.root() == document.root());
}

TEST(Ownership, ACopyOfADocumentLeavesOutWhatWasTakenOut) {
    Document document = documentOf("<a><b/><c/></a>");
    document.root().childAt(0).remove();
    EXPECT_EQ(document.copy().serialise(Form::plain), "<a><c></c></a>");
    EXPECT_EQ(document.copy().query("//b").size(), 0U);
}

TEST(Ownership, ADocumentIsAValueThatSharesItsTree) {
    const Document document = documentOf("<a/>");
    const Document same = document;
    same.root().setAttribute("n", "1");
    EXPECT_EQ(document.root().attribute("n"), "1");
    EXPECT_EQ(document.root(), same.root());
}

/// Asks a handle everything that an empty one may be asked.
void expectEmpty(Element element) {
    EXPECT_FALSE(element);
    EXPECT_TRUE(element == Node());
    EXPECT_EQ(element.kind(), NodeKind::text);
    EXPECT_FALSE(element.isElement());
    EXPECT_EQ(element.name(), "");
    EXPECT_EQ(element.stringValue(), "");
    EXPECT_FALSE(element.parent());
    EXPECT_EQ(element.index(), 0U);
    EXPECT_FALSE(element.nextSibling());
    EXPECT_FALSE(element.copy());
    element.remove();
    EXPECT_FALSE(element.replaceWith(Element::create("a")));
    EXPECT_EQ(element.serialise(), "");
    EXPECT_EQ(element.place(), std::nullopt);
    EXPECT_EQ(element.attribute("a"), std::nullopt);
    EXPECT_TRUE(element.attributes().begin() == element.attributes().end());
    EXPECT_FALSE(element.setAttribute("a", "b"));
    EXPECT_FALSE(element.rename("a"));
    EXPECT_FALSE(element.setContent("a"));
    EXPECT_TRUE(element.children().begin() == element.children().end());
    EXPECT_FALSE(element.hasChildren());
    EXPECT_EQ(element.childCount(), 0U);
    EXPECT_FALSE(element.firstChild());
    EXPECT_FALSE(element.firstElementChild());
    EXPECT_FALSE(element.childAt(0));
    EXPECT_FALSE(element.appendChild(Element::create("a")));
    EXPECT_FALSE(element.insertChild(Element::create("a"), 0));
    EXPECT_TRUE(element.query("//a").empty());
    EXPECT_EQ(element.attributePlace("a"), std::nullopt);
}

TEST(Ownership, AHandleThatWasMovedFromIsEmpty) {
    expectEmpty({});
    Element element = rootOf("<a b='1'><c/></a>");
    Element moved(std::move(element));
    expectEmpty(element);
    EXPECT_EQ(plain(moved), "<a b=\"1\"><c></c></a>");
    element = std::move(moved);
    expectEmpty(moved);
    EXPECT_EQ(plain(element), "<a b=\"1\"><c></c></a>");
    Node node = std::move(element);
    expectEmpty(element);
    Node& same = node;
    node = std::move(same);
    EXPECT_EQ(plain(node), "<a b=\"1\"><c></c></a>");
}

TEST(Ownership, ADocumentThatWasMovedFromHasNoRoot) {
    Document document = documentOf("<a/>");
    Document moved(std::move(document));
    EXPECT_EQ(plain(moved.root()), "<a></a>");
    for (Document* const empty : {&document, static_cast<Document*>(nullptr)}) {
        Document other = empty ? *empty : Document();
        EXPECT_FALSE(other.root());
        EXPECT_TRUE(other.query("//a").empty());
        EXPECT_FALSE(other.copy().root());
        EXPECT_EQ(other.serialise(Form::pretty), "");
        other.releaseRemoved();
        other.root().appendChild(Element::create("a"));
        EXPECT_FALSE(other.root());
    }
    document = std::move(moved);
    EXPECT_EQ(plain(document.root()), "<a></a>");
}

TEST(Ownership, ACopyOfANodeStandsAtTheTopOfATreeOfItsOwn) {
    const Document document = documentOf("<a>x<b n='1'><c/></b><!--d--><?e f?><![CDATA[g]]></a>");
    for (const Node& node : document.root().children()) {
        const Node copy = node.copy();
        EXPECT_EQ(plain(copy), plain(node));
        EXPECT_EQ(copy.kind(), node.kind());
        EXPECT_FALSE(copy == node);
        EXPECT_FALSE(copy.parent());
        EXPECT_FALSE(copy.nextSibling());
        EXPECT_EQ(copy.index(), 0U);
    }
}

/// A document with handles into it, copies and taken out parts, each with what it must say as long
/// as it lives.
struct Handles {
    Handles() {
        Document document = documentOf("<a><b n='1'><c>x</c></b><b n='2'/><d/></a>");
        Element root = document.root();
        Element b(root.childAt(0));
        const Node c = b.childAt(0);
        const Node copy = b.copy();
        const Node copyOfInner = Element(copy).childAt(0);
        const Node replaced = root.childAt(1);
        const Node replacement = Node(replaced).replaceWith(b);
        b.remove();
        const Node copyOfRemoved = b.copy();
        const Node detachedFromCopy = Element(copyOfRemoved).childAt(0);
        Node(detachedFromCopy).remove();

        keep([document] { return document.serialise(Form::plain); },
             R"(<a><b n="1"><c>x</c></b><d></d></a>)");
        keep([b] { return plain(b) + std::to_string(b.query("/b/c").size()); },
             R"(<b n="1"><c>x</c></b>1)");
        keep([c] { return plain(c) + plain(c.parent()); }, R"(<c>x</c><b n="1"><c>x</c></b>)");
        keep([copyOfInner] { return plain(copyOfInner.parent()); }, R"(<b n="1"><c>x</c></b>)");
        keep([replaced] { return plain(replaced); }, R"(<b n="2"></b>)");
        keep([replacement] { return plain(replacement.parent().parent()) + plain(replacement); },
             R"(<b n="1"><c>x</c></b>)");
        keep([detachedFromCopy] { return plain(detachedFromCopy); }, "<c>x</c>");
    }

    void keep(std::function<std::string()> says, std::string expected) {
        kept.push_back({std::move(says), std::move(expected)});
    }

    struct One {
        std::function<std::string()> says;
        std::string expected;
    };
    std::vector<One> kept;
};

TEST(Ownership, HandlesMayGoInEveryOrder) {
    std::vector<std::size_t> order(Handles().kept.size());
    std::iota(order.begin(), order.end(), 0U);
    ASSERT_EQ(order.size(), 7U);
    std::size_t orders = 0;
    do {
        Handles handles;
        for (const std::size_t next : order) {
            handles.kept[next].says = nullptr;
            for (const auto& [says, expected] : handles.kept) {
                if (says) {
                    ASSERT_EQ(says(), expected);
                }
            }
        }
        ++orders;
    } while (std::next_permutation(order.begin(), order.end()));
    EXPECT_EQ(orders, 5040U);
}

TEST(Ownership, NodesCollectedEarlierStayValidWhenANodeAboveIsTakenOut) {
    const Document document = documentOf("<a><b><c><d>x</d></c></b></a>");
    const std::vector<Node> nodes = document.query("//*");
    ASSERT_THAT(namesOf(nodes), ElementsAre("a", "b", "c", "d"));
    Node(nodes[1]).remove();
    EXPECT_EQ(plain(nodes[0]), "<a></a>");
    EXPECT_EQ(plain(nodes[1]), "<b><c><d>x</d></c></b>");
    EXPECT_EQ(nodes[3].parent(), nodes[2]);
    Node(nodes[2]).replaceWith(Element::create("e"));
    EXPECT_EQ(plain(nodes[1]), "<b><e></e></b>");
    EXPECT_EQ(plain(nodes[2]), "<c><d>x</d></c>");
    Node(nodes[3]).remove();
    EXPECT_EQ(plain(nodes[2]), "<c></c>");
    EXPECT_EQ(plain(nodes[3]), "<d>x</d>");
    Element(nodes[0]).setContent("new");
    EXPECT_EQ(plain(nodes[0]), "<a>new</a>");
    EXPECT_EQ(nodes[3].stringValue(), "x");
}

TEST(Ownership, NestedReferencesAreReplacedOuterFirst) {
    const Document document =
        documentOf("<s><slot n='1'><slot n='2'><slot n='3'/></slot></slot><slot n='4'/></s>");
    std::vector<Node> slots = document.query("//slot");
    ASSERT_EQ(slots.size(), 4U);
    for (Node& slot : slots)
        slot.replaceWith(Element::create("panel"));
    EXPECT_EQ(document.serialise(Form::plain), "<s><panel></panel><panel></panel></s>");
    EXPECT_EQ(plain(slots[0]), R"(<slot n="1"><panel></panel></slot>)");
    EXPECT_EQ(plain(slots[1]), R"(<slot n="2"><panel></panel></slot>)");
    EXPECT_EQ(plain(slots[2]), R"(<slot n="3"></slot>)");
}

TEST(Ownership, NestedReferencesAreReplacedInnerFirst) {
    const Document document = documentOf("<s><slot n='1'><slot n='2'/></slot></s>");
    std::vector<Node> slots = document.query("//slot");
    for (auto slot = slots.rbegin(); slot != slots.rend(); ++slot)
        slot->replaceWith(Element::create("panel"));
    EXPECT_EQ(document.serialise(Form::plain), "<s><panel></panel></s>");
    EXPECT_EQ(plain(slots[0]), R"(<slot n="1"><panel></panel></slot>)");
}

TEST(Ownership, ATextCollectedEarlierStaysValidWhateverBecomesOfItsElement) {
    for (const std::string_view first : {"new"sv, " "sv, ""sv}) {
        for (const std::string_view second : {"newer"sv, " "sv, ""sv}) {
            Element element = rootOf("<a>old</a>");
            const Node text = element.firstChild();
            element.setContent(first);
            element.setContent(second);
            element.appendChild(Element::create("b"));
            element.setContent("x");
            EXPECT_EQ(text.kind(), NodeKind::text) << first << "," << second;
            EXPECT_EQ(text.name(), "");
            static_cast<void>(text.stringValue());
        }
    }
}

// The memory of a node that is freed is used again only when a whole page is free, so the text has
// to stand where a page begins.
TEST(Ownership, TheMemoryOfATextThatAHandleStandsForIsNotUsedAgain) {
    for (std::size_t fill = 0; fill < 900; ++fill) {
        Element top = Element::create("top");
        const Element filler =
            Document::parseText(joined("<f>", repeated("<b/>", fill), "</f>")).document.root();
        top.appendChild(filler);
        Element element(top.appendChild(Element::create("a")));
        element.setContent("old");
        const Node text = element.firstChild();
        element.setContent(" ");
        element.appendChild(Element::create("b"));
        element.setContent("new");
        for (int i = 0; i < 3; ++i)
            element.appendChild(Element::create("c"));
        ASSERT_EQ(text.kind(), NodeKind::text) << fill;
        ASSERT_EQ(text.name(), "") << fill;
        ASSERT_FALSE(text.isElement());
    }
}

TEST(Ownership, ABlankTextThatAHandleStandsForAddsNoChild) {
    Element element = rootOf("<a>old</a>");
    const Node text = element.firstChild();
    element.setContent(" ");
    Element other = rootOf("<o/>");
    other.appendChild(text);
    other.appendChild(Element::create("b"));
    const std::string pretty = other.serialise(Form::pretty);
    EXPECT_EQ(rootOf(pretty).serialise(Form::pretty), pretty);
}

TEST(ReleaseRemoved, FreesWhatWasTakenOutAndTheDocumentStays) {
    Document document = documentOf("<a><b/><c/></a>");
    document.root().childAt(0).remove();
    document.releaseRemoved();
    EXPECT_EQ(document.serialise(Form::plain), "<a><c></c></a>");
    EXPECT_EQ(document.query("//*").size(), 2U);
    document.root().appendChild(Element::create("d"));
    document.root().childAt(0).remove();
    document.releaseRemoved();
    document.releaseRemoved();
    EXPECT_EQ(document.serialise(Form::plain), "<a><d></d></a>");
}

TEST(ReleaseRemoved, DoesNothingWhileAHandleIsLeft) {
    Document document = documentOf("<a><b>x</b><c/></a>");
    {
        Node removed = document.root().childAt(0);
        removed.remove();
        document.releaseRemoved();
        EXPECT_EQ(plain(removed), "<b>x</b>");
        const Document second = document;
        removed = Node();
        document.releaseRemoved();
        EXPECT_EQ(second.serialise(Form::plain), "<a><c></c></a>");
        const Element other = document.root();
        document.releaseRemoved();
        EXPECT_EQ(plain(other), "<a><c></c></a>");
    }
    document.releaseRemoved();
    EXPECT_EQ(document.serialise(Form::plain), "<a><c></c></a>");
}

TEST(ReleaseRemoved, WithNothingTakenOutDoesNothing) {
    Document document = documentOf("<a/>");
    document.releaseRemoved();
    EXPECT_EQ(document.serialise(Form::plain), "<a></a>");
    Document none;
    none.releaseRemoved();
    EXPECT_FALSE(none.root());
}

TEST(ReleaseRemoved, AnElementNamedKeepIsLikeAnyOther) {
    Document document = documentOf("<keep><keep/><b/></keep>");
    document.root().childAt(1).remove();
    EXPECT_EQ(document.query("//keep").size(), 2U);
    document.releaseRemoved();
    EXPECT_EQ(document.serialise(Form::plain), "<keep><keep></keep></keep>");
}

TEST(ReleaseRemoved, LetsADocumentThatChangesOftenStaySmall) {
    Document document = documentOf("<a/>");
    std::size_t largest = 0;
    for (int round = 0; round < 2'000; ++round) {
        {
            Element root = document.root();
            root.setContent("");
            for (int i = 0; i < 50; ++i)
                root.appendChild(Element::create("b"));
        }
        document.releaseRemoved();
        std::size_t nodes = 0;
        for (pugi::xml_node node = Tree::raw(document.root()).root(); node;
             node = nextInSubtree(node, Tree::raw(document.root()).root()))
            ++nodes;
        largest = std::max(largest, nodes);
    }
    EXPECT_LT(largest, 200U);
}

}  // namespace
}  // namespace yg::xml
