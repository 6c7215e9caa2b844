// SPDX-License-Identifier: MIT
//
// Bytes as an XML document: both ways of building a tree agree, what is written reads back to the
// same bytes, every lookup answers, and changes leave a document that can be read.
#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/xml/Builder.h"
#include "YGConfigManager/xml/Decoding.h"
#include "YGConfigManager/xml/Document.h"
#include "YGConfigManager/xml/Parser.h"
#include "YGConfigManager/xml/Query.h"
#include "YGConfigManager/xml/Tree.h"

#include "Target.h"

namespace {

using namespace yg::xml;
using yg::fuzz::require;
using yg::fuzz::textOf;

constexpr ParseOptions withPositions{.positions = true};

/// Beyond it the answers are right, but take too long to compare.
constexpr std::size_t largestDocument = 1'000'000;

void expectSame(const Node& left, const Node& right) {
    require(left.kind() == right.kind(), "both builders make the same kinds");
    require(left.name() == right.name(), "both builders make the same names");
    require(left.stringValue() == right.stringValue(), "both builders make the same values");
    const Element leftElement(left);
    const Element rightElement(right);
    auto other = rightElement.attributes().begin();
    for (const Attribute attribute : leftElement.attributes()) {
        require(!(other == rightElement.attributes().end()), "as many attributes");
        require(attribute.name == (*other).name && attribute.value == (*other).value,
                "both builders make the same attributes");
        require(leftElement.attribute(attribute.name) == attribute.value, "an attribute is found");
        ++other;
    }
    require(leftElement.childCount() == rightElement.childCount(), "as many children");
}

/// The places of the tree that was parsed with positions, beside those that a scan in step with
/// the tree by callbacks gives.
void expectSamePlaces(const Node& kept, const Node& built) {
    require(kept.place().has_value(), "a node has a place");
    require(kept.place() == built.place(), "both builders give a node the same place");
    const Element element(kept);
    const Element other(built);
    require(element.tagPlace() == other.tagPlace(), "a tag has the same place");
    for (const Attribute attribute : element.attributes()) {
        require(element.attributePlace(attribute.name).has_value(), "an attribute has a place");
        require(element.attributePlace(attribute.name) == other.attributePlace(attribute.name),
                "an attribute has the same place");
        require(element.valuePlace(attribute.name) == other.valuePlace(attribute.name),
                "a value has the same place");
    }
}

void expectReadsBack(const Document& document) {
    const std::string pretty = document.serialise(Form::pretty);
    const ParseResult again = Document::parseText(pretty);
    require(static_cast<bool>(again), "what is written can be read");
    require(again.document.serialise(Form::pretty) == pretty, "writing again gives the same bytes");
    require(again.document.serialise(Form::plain) == document.serialise(Form::plain),
            "what is written is the same document");
}

/// The levels of elements, so that changes do not nest deeper than can be read.
std::size_t depthOf(const Document& document) {
    std::size_t deepest = 0;
    for (const Node& node : document.query("//*[not(*)]")) {
        std::size_t depth = 1;
        for (Element above = node.parent(); above; above = above.parent())
            ++depth;
        deepest = std::max(deepest, depth);
    }
    return deepest;
}

void lookUp(const Document& document) {
    const std::vector<Node> elements = document.query("//*");
    const std::vector<Node> nodes = document.query("//node()");
    require(elements.size() <= nodes.size(), "elements are nodes");
    require(!elements.empty() && elements.front() == document.root(), "the root comes first");
    for (const Node& node : elements) {
        const Element element(node);
        std::size_t index = 0;
        for (const Node& child : element.children()) {
            require(child.parent() == element, "a child knows its parent");
            require(index >= 32 || (child.index() == index && element.childAt(index) == child),
                    "a child is found by its index");
            ++index;
        }
        require(index == element.childCount(), "children are counted");
        require(element.hasChildren() == (index > 0), "an element knows whether it has children");
        require(!element.query("..").empty() == static_cast<bool>(element.parent()),
                "a query goes up");
    }
    const Node copy = document.root().copy();
    require(copy.serialise() == document.root().serialise(), "a copy is the same");
    require(document.copy().serialise(Form::pretty) == document.serialise(Form::pretty),
            "a copy of the document is the same");
}

/// Changes elements as the bytes say, and keeps hold of everything that was taken out.
void change(Document& document, std::string_view script) {
    std::vector<Node> held;
    for (std::size_t step = 0; step < 12 && script.size() >= 4; ++step) {
        const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(script[i]); };
        const std::vector<Node> nodes = document.query("//node()");
        Node node = nodes[byte(1) % nodes.size()];
        const Node other = nodes[byte(2) % nodes.size()];
        const std::string_view text = script.substr(3, byte(3) % 24);
        Element element(node);
        held.push_back(node);
        switch (byte(0) % 9) {
            case 0:
                if (element.setAttribute(text, text))
                    require(element.attribute(text).has_value(),
                            "an attribute that was set is there");
                break;
            case 1:
                element.setContent(text);
                require(element.childCount() <= 1, "content is one text");
                break;
            case 2:
                element.appendChild(other);
                break;
            case 3:
                element.insertChild(other, byte(3));
                break;
            case 4:
                node.replaceWith(other);
                break;
            case 5:
                node.remove();
                break;
            case 6:
                element.rename(text);
                break;
            case 7:
                held.clear();
                break;
            default:
                element.appendChild(Element::create(text));
        }
        script.remove_prefix(4);
        if (depthOf(document) > 200)
            return;
    }
    for (const Node& node : held)
        static_cast<void>(node.stringValue().size() + Element(node).query("//*|..").size());
    if (document.serialise(Form::plain).size() < largestDocument)
        expectReadsBack(document);
    held.clear();
    document.releaseRemoved();
    require(static_cast<bool>(document.root()), "the root stays");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes = textOf(data, size);
    ParseResult quick = Document::parseBytes(bytes);
    const ParseResult kept = Document::parseBytes(bytes, withPositions);
    require(static_cast<bool>(quick) == static_cast<bool>(kept), "positions change nothing");
    require(static_cast<bool>(quick) == static_cast<bool>(quick.document.root()),
            "success means a root");
    if (!quick) {
        require(quick.error.find_first_of("\r\n") == std::string::npos, "an error is one line");
        require(kept.error == quick.error, "positions change no description");
        const Decoded decoded = decodeXml(std::string(bytes));
        require(!decoded.errors.empty() || !isReadable(decoded.text),
                "what is well-formed is read");
        return 0;
    }
    const std::string plain = quick.document.serialise(Form::plain);
    require(plain == kept.document.serialise(Form::plain), "positions change no document");
    const std::string text = decodeXml(std::string(bytes)).text;
    const std::shared_ptr<Tree> tree = buildByCallbacks(text).tree;
    require(tree != nullptr, "both builders take the same");
    notePlaces(*tree, std::make_shared<const Source>("", text));
    std::string built;
    serialiseDocument(built, *tree, Form::plain);
    require(plain == built, "both builders make the same document");
    if (plain.size() > largestDocument)
        return 0;

    const std::vector<Node> nodes = quick.document.query("//node()");
    const std::vector<Node> keptNodes = kept.document.query("//node()");
    const std::vector<Node> builtNodes = Tree::select(tree, {}, Query("//node()"));
    require(nodes.size() == keptNodes.size() && nodes.size() == builtNodes.size(),
            "both builders make as many nodes");
    if (nodes.size() > 2'000)
        return 0;
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        expectSame(nodes[i], builtNodes[i]);
        expectSamePlaces(keptNodes[i], builtNodes[i]);
    }
    expectReadsBack(quick.document);
    lookUp(quick.document);
    change(quick.document, bytes.substr(bytes.size() - std::min<std::size_t>(bytes.size(), 48)));
    return 0;
}
