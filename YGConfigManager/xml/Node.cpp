// SPDX-License-Identifier: MIT
#include "YGConfigManager/xml/Node.h"

#include <utility>

#include "YGConfigManager/xml/Element.h"
#include "YGConfigManager/xml/Tree.h"

namespace yg::xml {

namespace {

bool isText(pugi::xml_node node) {
    return node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata;
}

}  // namespace

NodeKind Node::kind() const {
    switch (Tree::raw(*this).type()) {
        case pugi::node_element:
            return NodeKind::element;
        case pugi::node_comment:
            return NodeKind::comment;
        case pugi::node_pi:
            return NodeKind::processingInstruction;
        default:
            return NodeKind::text;
    }
}

bool Node::isElement() const {
    return Tree::raw(*this).type() == pugi::node_element;
}

std::string_view Node::name() const {
    return Tree::raw(*this).name();
}

std::string Node::stringValue() const {
    const pugi::xml_node top = Tree::raw(*this);
    if (top.type() != pugi::node_element)
        return top.value();
    std::string value;
    for (pugi::xml_node node = top; node; node = nextInSubtree(node, top)) {
        if (isText(node))
            value += node.value();
    }
    return value;
}

Element Node::parent() const {
    if (!node_)
        return {};
    const pugi::xml_node parent = Tree::raw(*this).parent();
    if (parent.type() != pugi::node_element || parent == tree_->keep)
        return {};
    return Tree::element(tree_, parent);
}

std::size_t Node::index() const {
    if (!parent())
        return 0;
    std::size_t index = 0;
    for (pugi::xml_node before = Tree::raw(*this).previous_sibling(); before;
         before = before.previous_sibling()) {
        if (isChild(before))
            ++index;
    }
    return index;
}

Node Node::nextSibling() const {
    return parent() ? Tree::node(tree_, firstChildFrom(Tree::raw(*this).next_sibling())) : Node();
}

void Node::moveToNext() {
    node_ = Tree::handle(firstChildFrom(Tree::raw(*this).next_sibling()));
}

void Node::moveToNextElement() {
    node_ = Tree::handle(firstElementFrom(Tree::raw(*this).next_sibling()));
}

Node Node::copy() const {
    if (!node_)
        return {};
    auto tree = std::make_shared<Tree>();
    const pugi::xml_node top = tree->insertCopy(tree->memory, {}, *tree_, Tree::raw(*this));
    return Tree::node(std::move(tree), top);
}

void Node::remove() {
    if (parent())
        tree_->takeOut(Tree::raw(*this));
}

Node Node::replaceWith(const Node& replacement) {
    if (!replacement || !parent())
        return {};
    pugi::xml_node here = Tree::raw(*this);
    const pugi::xml_node source = Tree::raw(replacement);
    if (Tree::treeOf(replacement) == tree_ && isInside(here, source))
        return replaceWith(replacement.copy());
    const pugi::xml_node copy =
        tree_->insertCopy(here.parent(), here, *Tree::treeOf(replacement), source);
    tree_->takeOut(here);
    return Tree::node(tree_, copy);
}

std::string Node::serialise(Form form) const {
    std::string out;
    if (node_)
        serialiseNode(out, Tree::raw(*this), form);
    return out;
}

std::optional<Place> Node::place() const {
    const Origin origin = Tree::originIn(tree_, Tree::raw(*this));
    return origin.source ? std::optional(origin.source->nodePlace(origin.begin)) : std::nullopt;
}

}  // namespace yg::xml
