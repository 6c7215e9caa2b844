// SPDX-License-Identifier: MIT
//
// XML nodes as small values: a share in the tree that holds them and a place in it.
// A handle keeps its whole tree alive, also when the document that was parsed is gone, and stays
// valid when its node, or one above it, is taken out of the tree. An empty handle may be asked
// everything and answers the empty answer. Reading one tree from several threads is safe as long
// as none of them changes it. What makes a text, a list or nodes throws std::bad_alloc when memory
// does not suffice, and has changed nothing then.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "YGConfigManager/export.h"
#include "YGConfigManager/text/Place.h"

namespace yg::xml {

class Element;
struct Tree;
struct RawNode;

/// What a node is. A CDATA section is text.
enum class NodeKind { element, text, comment, processingInstruction };

/// How a node or document is written.
enum class Form {
    plain,   ///< no declaration, no white space added
    pretty,  ///< one element to a line, four spaces a level
};

class YG_EXPORT Node {
public:
    /// The empty handle; one that was moved from is empty, too.
    Node() = default;
    Node(const Node&) = default;
    Node& operator=(const Node&) = default;
    Node(Node&& other) noexcept
        : tree_(std::move(other.tree_)), node_(std::exchange(other.node_, nullptr)) {}
    Node& operator=(Node&& other) noexcept {
        // In two steps, so that an assignment to itself changes nothing.
        RawNode* const node = std::exchange(other.node_, nullptr);
        tree_ = std::shared_ptr<Tree>(std::move(other.tree_));
        node_ = node;
        return *this;
    }
    ~Node() = default;

    /// True when there is a node.
    explicit operator bool() const { return node_ != nullptr; }

    /// True when both are the same node of the same tree, or both are empty.
    friend bool operator==(const Node& left, const Node& right) {
        return left.node_ == right.node_;
    }

    /// What the node is; text for an empty handle.
    NodeKind kind() const;
    bool isElement() const;

    /// The qualified name of an element, the target of a processing instruction, otherwise "".
    /// Lives as long as the tree and until the element is renamed.
    std::string_view name() const;

    /// All text and CDATA in and below the node in document order; for a comment or a processing
    /// instruction its own text.
    std::string stringValue() const;

    /// The element that holds the node; empty at the top of a tree.
    Element parent() const;

    /// The position among the parent's children, from 0; 0 at the top of a tree.
    std::size_t index() const;

    /// The next child of the same parent; empty after the last.
    Node nextSibling() const;

    /// Whether no other handle, range or document has the tree; true for an empty handle.
    bool keepsTreeAlone() const { return tree_.use_count() < 2; }

    /// A deep copy at the top of a tree of its own; empty for an empty handle.
    Node copy() const;

    /// Takes the node with all below it out of its tree, into a tree of its own. This handle and
    /// all others into that part stay valid. Nothing happens at the top of a tree of its own.
    void remove();

    /// Puts a deep copy of `replacement` exactly where the node stands, takes the node out as
    /// remove() does, and answers the copy in its place. At the top of a tree, or with an empty
    /// replacement, nothing changes and the answer is empty.
    Node replaceWith(const Node& replacement);

    /// The node as XML text, without a declaration; "" for an empty handle.
    std::string serialise(Form form = Form::plain) const;

    /// Where the node stands, when its parse was asked to keep positions: an element from its start
    /// tag to its end tag, a text with the white space around it, all others with their delimiters.
    /// A copy has the place of its source. Absent for what was made in code, and for a text that
    /// was changed there.
    std::optional<Place> place() const;

protected:
    friend class Document;
    template <class>
    friend class ChildRange;
    friend struct Tree;
    Node(std::shared_ptr<Tree> tree, RawNode* node) : tree_(std::move(tree)), node_(node) {}

    /// Along the children of an element, to none after the last.
    void moveToNext();
    void moveToNextElement();

    std::shared_ptr<Tree> tree_;
    RawNode* node_ = nullptr;
};

}  // namespace yg::xml
