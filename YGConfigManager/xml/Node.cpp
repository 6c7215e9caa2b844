// SPDX-License-Identifier: MIT
#include "YGConfigManager/xml/Node.h"

#include <utility>

#include "YGConfigManager/xml/Query.h"
#include "YGConfigManager/xml/Tree.h"

namespace yg::xml {

namespace {

bool isBlank(std::string_view text) {
    return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

bool isText(pugi::xml_node node) {
    return node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata;
}

std::shared_ptr<Tree> treeWithCopyOf(const Tree& source, pugi::xml_node node) {
    auto tree = std::make_shared<Tree>();
    tree->copyPlaces(source, node, tree->memory.append_copy(node));
    return tree;
}

/// White space that was an element's only content goes when the element gets children. No handle
/// can stand for it.
void dropBlankText(pugi::xml_node element) {
    for (pugi::xml_node child = element.first_child(); child;) {
        const pugi::xml_node next = child.next_sibling();
        if (isBlankText(child))
            element.remove_child(child);
        child = next;
    }
}

pugi::xml_attribute rawAttribute(RawAttribute* attribute) {
    return pugi::xml_attribute(reinterpret_cast<pugi::xml_attribute_struct*>(attribute));
}

RawAttribute* handle(pugi::xml_attribute attribute) {
    return reinterpret_cast<RawAttribute*>(attribute.internal_object());
}

pugi::xml_attribute findAttribute(pugi::xml_node node, std::string_view name) {
    pugi::xml_attribute attribute = node.first_attribute();
    while (attribute && attribute.name() != name)
        attribute = attribute.next_attribute();
    return attribute;
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

Node Node::copy() const {
    if (!node_)
        return {};
    auto tree = treeWithCopyOf(*tree_, Tree::raw(*this));
    const pugi::xml_node top = tree->memory.first_child();
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
    const pugi::xml_node copy = here.parent().insert_copy_before(source, here);
    tree_->copyPlaces(*Tree::treeOf(replacement), source, copy);
    tree_->takeOut(here);
    return Tree::node(tree_, copy);
}

std::string Node::serialise(Form form) const {
    std::string out;
    if (node_)
        serialiseNode(out, Tree::raw(*this), form);
    return out;
}

std::optional<Position> Node::position() const {
    return node_ ? tree_->position(Tree::raw(*this).internal_object()) : std::nullopt;
}

Children::Iterator& Children::Iterator::operator++() {
    node_.node_ = Tree::handle(firstChildFrom(Tree::raw(node_).next_sibling()));
    return *this;
}

Attribute Attributes::Iterator::operator*() const {
    const pugi::xml_attribute attribute = rawAttribute(attribute_);
    return {attribute.name(), attribute.value()};
}

Attributes::Iterator& Attributes::Iterator::operator++() {
    attribute_ = handle(rawAttribute(attribute_).next_attribute());
    return *this;
}

Element::Element(const Node& node) : Node(node.isElement() ? node : Node()) {}

Element Element::create(std::string_view name) {
    if (!isXmlName(name))
        return {};
    auto tree = std::make_shared<Tree>();
    const pugi::xml_node top = tree->memory.append_child(std::string(name).c_str());
    return Tree::element(std::move(tree), top);
}

std::optional<std::string_view> Element::attribute(std::string_view name) const {
    const pugi::xml_attribute found = findAttribute(Tree::raw(*this), name);
    if (!found)
        return std::nullopt;
    return found.value();
}

Attributes Element::attributes() const {
    return Attributes(handle(Tree::raw(*this).first_attribute()));
}

bool Element::setAttribute(std::string_view name, std::string_view value) {
    if (!node_ || !isXmlName(name))
        return false;
    pugi::xml_node element = Tree::raw(*this);
    pugi::xml_attribute attribute = findAttribute(element, name);
    if (!attribute)
        attribute = element.append_attribute(std::string(name).c_str());
    const std::string stored = storableText(value);
    return attribute.set_value(stored.data(), stored.size());
}

bool Element::rename(std::string_view name) {
    return node_ && isXmlName(name) && Tree::raw(*this).set_name(std::string(name).c_str());
}

bool Element::setContent(std::string_view text) {
    if (!node_)
        return false;
    pugi::xml_node element = Tree::raw(*this);
    const std::string stored = storableText(text);
    dropBlankText(element);

    // One text for another is the common case, and needs no node to be taken out. Blank text is
    // hidden, so a handle must not come to stand on it.
    pugi::xml_node only = element.first_child();
    if (only.type() == pugi::node_pcdata && !only.next_sibling() && !isBlank(stored))
        return only.set_value(stored.data(), stored.size());

    while (const pugi::xml_node child = element.first_child())
        tree_->takeOut(child);
    return stored.empty() ||
           element.append_child(pugi::node_pcdata).set_value(stored.data(), stored.size());
}

Children Element::children() const {
    return Children(firstChild());
}

bool Element::hasChildren() const {
    return static_cast<bool>(firstChildFrom(Tree::raw(*this).first_child()));
}

std::size_t Element::childCount() const {
    std::size_t count = 0;
    for (pugi::xml_node child : Tree::raw(*this).children()) {
        if (isChild(child))
            ++count;
    }
    return count;
}

Node Element::firstChild() const {
    const pugi::xml_node first = firstChildFrom(Tree::raw(*this).first_child());
    return first ? Tree::node(tree_, first) : Node();
}

Element Element::firstElementChild() const {
    for (pugi::xml_node child : Tree::raw(*this).children()) {
        if (child.type() == pugi::node_element)
            return {tree_, Tree::handle(child)};
    }
    return {};
}

Node Element::childAt(std::size_t index) const {
    pugi::xml_node child = firstChildFrom(Tree::raw(*this).first_child());
    while (child && index-- > 0)
        child = firstChildFrom(child.next_sibling());
    return child ? Tree::node(tree_, child) : Node();
}

Node Element::appendChild(const Node& child) {
    return insertChild(child, static_cast<std::size_t>(-1));
}

Node Element::insertChild(const Node& child, std::size_t index) {
    if (!node_ || !child)
        return {};
    // Positions are copied side by side, which a copy inside its own source would confuse.
    if (Tree::treeOf(child) == tree_ && !tree_->places.empty())
        return insertChild(child.copy(), index);
    pugi::xml_node element = Tree::raw(*this);
    dropBlankText(element);
    const pugi::xml_node source = Tree::raw(child);
    const Node before = childAt(index);
    const pugi::xml_node copy = before ? element.insert_copy_before(source, Tree::raw(before))
                                       : element.append_copy(source);
    tree_->copyPlaces(*Tree::treeOf(child), source, copy);
    return Tree::node(tree_, copy);
}

std::vector<Node> Element::query(const Query& query) const {
    return node_ ? Tree::select(tree_, Tree::raw(*this), query) : std::vector<Node>();
}

std::vector<Node> Element::query(std::string_view query) const {
    return this->query(Query(query));
}

std::optional<Position> Element::attributePosition(std::string_view name) const {
    const pugi::xml_attribute found = findAttribute(Tree::raw(*this), name);
    return found ? tree_->position(found.internal_object()) : std::nullopt;
}

}  // namespace yg::xml
