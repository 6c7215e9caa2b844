// SPDX-License-Identifier: MIT
//
// The tree behind documents and elements: one pugixml document as memory, and what belongs to it.
// Internal: only this folder's sources include it.
//
// pugixml frees a removed node at once and moves nothing between documents. So whatever is taken
// out moves below a hidden `keep` element of the same memory, where handles to it stay valid; each
// child of `keep` is the top of a tree of its own.
#pragma once

#include <bit>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <pugixml.hpp>

#include "YGConfigManager/xml/Element.h"
#include "YGConfigManager/xml/Names.h"
#include "YGConfigManager/xml/Places.h"
#include "YGConfigManager/xml/Query.h"

namespace yg::xml {

/// Which nodes the evaluation of a query looks at.
struct QueryReach {
    bool isAbsolute = false;
    /// It looks at nodes above or beside its context, or at other children of the top than those of
    /// a name.
    bool leavesSubtree = false;
    /// A step from the context itself takes children whatever their name.
    bool beginsWithAnyChild = false;
};

struct YG_HIDDEN Query::Compiled {
    Compiled(const char* expression, QueryReach itsReach) : query(expression), reach(itsReach) {}

    /// The nodes selected in document order, but for attributes and hidden white space.
    std::vector<pugi::xml_node> select(pugi::xml_node context) const;

    pugi::xpath_query query;
    QueryReach reach;
};

struct Tree {
    /// The text that pugixml parsed in place, "" for a tree that was built in another way. What was
    /// not changed since has its names and values there, at the offsets that they have in the
    /// source.
    std::string inPlace;

    pugi::xml_document memory;
    pugi::xml_node keep;
    std::optional<bool> standalone;

    /// The document type as written, "" for none, and the node at the top that it stands before.
    /// Not a node of the tree, because queries do not see it.
    std::string doctype;
    pugi::xml_node nodeAfterDoctype;

    /// Where nodes and attributes begin, by their address, unless their names and values tell that;
    /// empty unless a parse was asked for positions.
    std::unordered_map<const void*, Origin> origins;
    std::vector<std::shared_ptr<const Source>> sources;
    const Source* ownSource = nullptr;  ///< of the text parsed in place; null without positions

    bool isBuiltInPlace() const { return !inPlace.empty(); }

    /// pugixml's own constructor is a call into another library.
    static pugi::xml_node raw(const Node& node) {
        return std::bit_cast<pugi::xml_node>(node.node_);
    }
    static RawNode* handle(pugi::xml_node node) { return std::bit_cast<RawNode*>(node); }
    static Node node(std::shared_ptr<Tree> tree, pugi::xml_node node) {
        return node ? Node(std::move(tree), handle(node)) : Node();
    }
    static Element element(std::shared_ptr<Tree> tree, pugi::xml_node node) {
        return node ? Element(std::move(tree), handle(node)) : Element();
    }
    static const std::shared_ptr<Tree>& treeOf(const Node& node) { return node.tree_; }

    /// The root element; not what was taken out.
    pugi::xml_node root() const;

    /// Makes sure that nothing fails when nodes are taken out.
    void prepareTakingOut();

    /// Moves a node that has an element above it out of its tree.
    void takeOut(pugi::xml_node node);

    /// Adds a deep copy of a node to `parent`, before its child `before`, at the end when that is
    /// empty. The copy stands where its source stands. `parent` is not inside of `source`.
    pugi::xml_node insertCopy(pugi::xml_node parent, pugi::xml_node before, const Tree& from,
                              pugi::xml_node source);

    /// Without a source for what was made in code, and when no positions were asked for.
    template <class Holder>
    static Origin originIn(const std::shared_ptr<Tree>& tree, Holder holder) {
        return tree ? tree->originOf(holder) : Origin();
    }
    Origin originOf(pugi::xml_node node) const;
    Origin originOf(pugi::xml_attribute attribute) const;

    /// The origin as it is noted from now on, before a change of the name or the value. Null when
    /// there is none.
    template <class Holder>
    Origin* noteOrigin(Holder holder) {
        const Origin origin = originOf(holder);
        return origin.source ? &(origins[holder.internal_object()] = origin) : nullptr;
    }

    /// Frees what was taken out. No handle into it may be left.
    void freeRemoved();

    /// Evaluates a query with `context`, or with the document node when that is empty.
    static std::vector<Node> select(const std::shared_ptr<Tree>& tree, pugi::xml_node context,
                                    const Query& query);

private:
    void freeSubtree(pugi::xml_node top);
    Origin originOf(const void* holder, const char* written, std::size_t markup) const;
    void copyOrigins(const Tree& from, pugi::xml_node source, pugi::xml_node copy);
};

/// pugixml answers nothing, or false, when memory does not suffice. These throw std::bad_alloc
/// then.
template <class Made>
Made made(Made node) {
    if (!node)
        throw std::bad_alloc();
    return node;
}
template <class Holder>
void setName(Holder holder, const char* name) {
    if (!holder.set_name(name))
        throw std::bad_alloc();
}
template <class Holder>
void setValue(Holder holder, std::string_view value) {
    if (!holder.set_value(value.data(), value.size()))
        throw std::bad_alloc();
}

/// A text node of white space alone. It is kept as the only content of an element, for its string
/// value, but never counts as a child.
bool isBlankText(pugi::xml_node node);

/// True for the nodes that count as children.
bool isChild(pugi::xml_node node);

/// The node itself or the first sibling after it that counts as a child.
pugi::xml_node firstChildFrom(pugi::xml_node node);

/// The node itself or the first sibling after it that is an element.
pugi::xml_node firstElementFrom(pugi::xml_node node);

/// Whether a node is `top` or below it.
bool isInside(pugi::xml_node node, pugi::xml_node top);

/// The node after `node` in document order within the subtree of `top`; empty after the last.
pugi::xml_node nextInSubtree(pugi::xml_node node, pugi::xml_node top);

/// The text without what XML cannot hold: control characters, U+FFFE, U+FFFF, invalid UTF-8.
std::string storableText(std::string_view text);

/// The text with each line break as one line feed.
std::string withLineFeeds(std::string_view text);

/// Appends a node with everything below it as XML text.
void serialiseNode(std::string& out, pugi::xml_node top, Form form);

/// Appends a whole document; nothing when it has no root element.
void serialiseDocument(std::string& out, const Tree& tree, Form form);

}  // namespace yg::xml
