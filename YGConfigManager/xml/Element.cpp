// SPDX-License-Identifier: MIT
#include "YGConfigManager/xml/Element.h"

#include <bit>
#include <string>
#include <utility>

#include "YGConfigManager/xml/Query.h"
#include "YGConfigManager/xml/Tree.h"

namespace yg::xml {

namespace {

/// The white space alone that is an element's only content; empty when there is none. No handle can
/// stand for it.
pugi::xml_node blankContent(pugi::xml_node element) {
    const pugi::xml_node first = element.first_child();
    return !first.next_sibling() && isBlankText(first) ? first : pugi::xml_node();
}

pugi::xml_attribute rawAttribute(RawAttribute* attribute) {
    return std::bit_cast<pugi::xml_attribute>(attribute);
}

RawAttribute* handle(pugi::xml_attribute attribute) {
    return std::bit_cast<RawAttribute*>(attribute);
}

pugi::xml_attribute findAttribute(pugi::xml_node node, std::string_view name) {
    pugi::xml_attribute attribute = node.first_attribute();
    while (attribute && attribute.name() != name)
        attribute = attribute.next_attribute();
    return attribute;
}

}  // namespace

Attribute Attributes::Iterator::operator*() const {
    const pugi::xml_attribute attribute = rawAttribute(attribute_);
    return {attribute.name(), attribute.value()};
}

Attributes::Iterator& Attributes::Iterator::operator++() {
    attribute_ = handle(rawAttribute(attribute_).next_attribute());
    return *this;
}

Element::Element(const Node& node) : Node(node.isElement() ? node : Node()) {}

Element Element::create(OptionalText name) {
    if (!isXmlName(*name))
        return {};
    auto tree = std::make_shared<Tree>();
    const pugi::xml_node top = made(tree->memory.append_child(pugi::node_element));
    setName(top, std::string(*name).c_str());
    return Tree::element(std::move(tree), top);
}

std::optional<std::string_view> Element::attribute(OptionalText name) const {
    const pugi::xml_attribute found = findAttribute(Tree::raw(*this), *name);
    if (!found)
        return std::nullopt;
    return found.value();
}

Attributes Element::attributes() const {
    return {tree_, handle(Tree::raw(*this).first_attribute())};
}

bool Element::setAttribute(OptionalText name, OptionalText value) {
    if (!node_ || !isXmlName(*name))
        return false;
    const std::string stored = storableText(*value);
    pugi::xml_node element = Tree::raw(*this);
    if (const pugi::xml_attribute attribute = findAttribute(element, *name)) {
        Origin* const origin = tree_->noteOrigin(attribute);
        setValue(attribute, stored);
        if (origin)
            origin->hasNewValue = true;
        return true;
    }
    pugi::xml_attribute added = made(element.append_attribute(""));
    if (!added.set_name(std::string(*name).c_str()) ||
        !added.set_value(stored.data(), stored.size())) {
        element.remove_attribute(added);
        throw std::bad_alloc();
    }
    return true;
}

bool Element::rename(OptionalText name) {
    if (!node_ || !isXmlName(*name))
        return false;
    tree_->noteOrigin(Tree::raw(*this));
    setName(Tree::raw(*this), std::string(*name).c_str());
    return true;
}

bool Element::setContent(OptionalText text) {
    if (!node_)
        return false;
    pugi::xml_node element = Tree::raw(*this);
    const std::string stored = storableText(*text);

    // One text for another is the common case, and needs no node to be taken out. Blank text is
    // hidden, so a handle must not come to stand on it.
    const pugi::xml_node only = element.first_child();
    if (only.type() == pugi::node_pcdata && !only.next_sibling() && !isBlank(stored)) {
        Origin* const origin = tree_->noteOrigin(only);
        setValue(only, stored);
        if (origin)
            *origin = {};
        return true;
    }

    // What can fail comes first.
    if (firstChildFrom(element.first_child()))
        tree_->prepareTakingOut();
    pugi::xml_node content;
    if (!stored.empty()) {
        content = made(element.append_child(pugi::node_pcdata));
        if (!content.set_value(stored.data(), stored.size())) {
            element.remove_child(content);
            throw std::bad_alloc();
        }
    }
    for (pugi::xml_node child = element.first_child(); child != content;) {
        const pugi::xml_node next = child.next_sibling();
        if (isBlankText(child))
            element.remove_child(child);
        else
            tree_->takeOut(child);
        child = next;
    }
    return true;
}

Elements Element::elements() const {
    return Elements(firstElementChild());
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
    const pugi::xml_node first = firstElementFrom(Tree::raw(*this).first_child());
    return first ? Tree::element(tree_, first) : Element();
}

Node Element::childAt(std::size_t index) const {
    pugi::xml_node child = firstChildFrom(Tree::raw(*this).first_child());
    while (child && index-- > 0)
        child = firstChildFrom(child.next_sibling());
    return child ? Tree::node(tree_, child) : Node();
}

Node Element::appendChild(const Node& child) {
    return insertBefore({}, child);
}

Node Element::insertChild(const Node& child, std::size_t index) {
    return insertBefore(childAt(index), child);
}

Node Element::insertBefore(const Node& next, const Node& child) {
    if (!node_ || !child)
        return {};
    pugi::xml_node element = Tree::raw(*this);
    const pugi::xml_node source = Tree::raw(child);
    if (Tree::treeOf(child) == tree_ && isInside(element, source))
        return insertBefore(next, child.copy());
    const pugi::xml_node blank = blankContent(element);
    const pugi::xml_node copy =
        tree_->insertCopy(element, Tree::raw(next), *Tree::treeOf(child), source);
    // White space is content only as long as there is nothing else.
    if (blank)
        element.remove_child(blank);
    return Tree::node(tree_, copy);
}

std::vector<Node> Element::query(const Query& query) const {
    return node_ ? Tree::select(tree_, Tree::raw(*this), query) : std::vector<Node>();
}

std::vector<Node> Element::query(OptionalText query) const {
    return this->query(Query(query));
}

std::optional<Place> Element::tagPlace() const {
    const Origin origin = Tree::originIn(tree_, Tree::raw(*this));
    return origin.source ? std::optional(origin.source->tagPlace(origin.begin)) : std::nullopt;
}

std::optional<Place> Element::attributePlace(OptionalText name) const {
    const Origin origin = Tree::originIn(tree_, findAttribute(Tree::raw(*this), *name));
    return origin.source ? std::optional(origin.source->attributePlace(origin.begin))
                         : std::nullopt;
}

std::optional<SourcePoint> Element::attributePoint(OptionalText name) const {
    const Origin origin = Tree::originIn(tree_, findAttribute(Tree::raw(*this), *name));
    return origin.source ? std::optional(SourcePoint{origin.source->file(), origin.begin})
                         : std::nullopt;
}

std::optional<Place> Element::valuePlace(OptionalText name, std::size_t offset,
                                         std::size_t length) const {
    const Origin origin = Tree::originIn(tree_, findAttribute(Tree::raw(*this), *name));
    if (!origin.source || origin.hasNewValue)
        return std::nullopt;
    return origin.source->valuePlace(origin.begin, offset, length);
}

}  // namespace yg::xml
