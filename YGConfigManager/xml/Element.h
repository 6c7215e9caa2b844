// SPDX-License-Identifier: MIT
//
// XML elements: nodes with a name, attributes and children. What Node.h says of nodes holds for
// them.
#pragma once

#include <cstddef>
#include <iterator>
#include <memory>
#include <optional>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "YGConfigManager/export.h"
#include "YGConfigManager/text/OptionalText.h"
#include "YGConfigManager/xml/Node.h"

namespace yg::xml {

class Query;
struct RawAttribute;

/// Where something begins in the text that it was parsed from.
struct SourcePoint {
    std::string_view file;  ///< the path as it was given; lives as long as the tree
    std::size_t offset;     ///< in bytes of the text in UTF-8
};

/// One attribute as it is read. The texts live until the value is changed, and as long as there is
/// a handle, or a range of children or attributes, into the tree.
struct Attribute {
    std::string_view name;   ///< with its prefix, as written
    std::string_view value;  ///< entities resolved, never trimmed
};

/// Children of an element in document order, each as a handle of one kind. White space alone is not
/// a child. Changing the tree while going through it is not supported: collect the children first.
/// Keeps the tree alive, and so does each iterator.
template <class Handle>
class ChildRange {
public:
    class Iterator {
    public:
        using iterator_category = std::input_iterator_tag;
        using value_type = Handle;
        using difference_type = std::ptrdiff_t;
        using pointer = const Handle*;
        using reference = const Handle&;

        const Handle& operator*() const { return handle_; }
        const Handle* operator->() const { return &handle_; }
        Iterator& operator++() {
            if constexpr (std::is_same_v<Handle, Node>)
                handle_.moveToNext();
            else
                handle_.moveToNextElement();
            return *this;
        }
        friend bool operator==(const Iterator& left, const Iterator& right) {
            return left.handle_ == right.handle_;
        }

    private:
        friend class ChildRange;
        explicit Iterator(Handle handle) : handle_(std::move(handle)) {}
        Handle handle_;
    };

    /// For a loop over the range.
    Iterator begin() const { return Iterator(first_); }
    Iterator end() const { return Iterator(Handle()); }

private:
    friend class Element;
    explicit ChildRange(Handle first) : first_(std::move(first)) {}
    Handle first_;
};

using Children = ChildRange<Node>;     ///< all children, of whatever kind
using Elements = ChildRange<Element>;  ///< those that are elements

/// The attributes of an element in their order, namespace declarations included. Keeps the tree
/// alive; its iterators and what they answer do not.
class YG_EXPORT Attributes {
public:
    class YG_EXPORT Iterator {
    public:
        using iterator_category = std::input_iterator_tag;
        using value_type = Attribute;
        using difference_type = std::ptrdiff_t;
        using pointer = const Attribute*;
        using reference = Attribute;

        Attribute operator*() const;
        Iterator& operator++();
        friend bool operator==(const Iterator& left, const Iterator& right) {
            return left.attribute_ == right.attribute_;
        }

    private:
        friend class Attributes;
        explicit Iterator(RawAttribute* attribute) : attribute_(attribute) {}
        RawAttribute* attribute_;
    };

    /// For a loop over the range.
    Iterator begin() const { return Iterator(first_); }
    Iterator end() const { return Iterator(nullptr); }

private:
    friend class Element;
    Attributes(std::shared_ptr<const Tree> tree, RawAttribute* first)
        : tree_(std::move(tree)), first_(first) {}
    std::shared_ptr<const Tree> tree_;
    RawAttribute* first_;
};

class YG_EXPORT Element : public Node {
public:
    /// The empty handle.
    Element() = default;

    /// The node as an element; empty when it is none.
    explicit Element(const Node& node);

    /// A new element without attributes and children, in a tree of its own; empty when `name` is
    /// no XML name.
    static Element create(OptionalText name);

    /// The value of an attribute; absent when the element has none of that name, which is not the
    /// same as "". Lives as long as the tree and until the value is changed.
    std::optional<std::string_view> attribute(OptionalText name) const;

    /// All attributes.
    Attributes attributes() const;

    /// Adds an attribute, or replaces the value of the one that is there. Characters that XML
    /// cannot hold are left out of the value. False, and nothing changed, for an empty handle or
    /// when `name` is not an XML name.
    bool setAttribute(OptionalText name, OptionalText value);

    /// Changes the element's name. False, and nothing changed, when `name` is not an XML name.
    bool rename(OptionalText name);

    /// Removes every child, comments too, and leaves one text node, none for "". Attributes stay.
    /// Characters that XML cannot hold are left out.
    bool setContent(OptionalText text);

    /// The children that are elements.
    Elements elements() const;

    /// The children of whatever kind, whether there are any, and how many.
    Children children() const;
    bool hasChildren() const;
    std::size_t childCount() const;

    /// The first child of whatever kind; empty when there is none.
    Node firstChild() const;

    /// The first child that is an element; empty when there is none.
    Element firstElementChild() const;

    /// The child at an index from 0; empty when there are not so many.
    Node childAt(std::size_t index) const;

    /// Adds a deep copy of `child` as the last child and answers the copy in its new place; the
    /// child given stays where it is. Empty when either is empty.
    Node appendChild(const Node& child);

    /// The same before the child at `index`; at or past the end it is appended.
    Node insertChild(const Node& child, std::size_t index);

    /// The nodes that an XPath 1.0 query selects with this element as its context, in document
    /// order. An absolute query starts at the top of the tree that holds the element: its document,
    /// or the top of a copy or of a part that was taken out. A query that is invalid or whose value
    /// is not a node set selects nothing. Attributes are not answered: select their elements. Once
    /// something was taken out of the tree, a query that goes up, sideways, or down from whatever
    /// child of the top is asked of a copy of the tree, each time; others are not.
    std::vector<Node> query(const Query& query) const;
    std::vector<Node> query(OptionalText query) const;

    /// The place of the start tag alone. This and the next two are absent as place() is.
    std::optional<Place> tagPlace() const;

    /// The place of an attribute, from its name to its closing quote.
    std::optional<Place> attributePlace(OptionalText name) const;

    /// The place, between the quotes, of a part of an attribute's value: `length` bytes from
    /// `offset` on of the value as attribute() answers it, as many as there are. What reaches into
    /// a reference as "&amp;" has all of it. Absent, too, when the value was changed in code.
    std::optional<Place> valuePlace(OptionalText name, std::size_t offset = 0,
                                    std::size_t length = std::string_view::npos) const;

    /// What attributePlace() begins with, which takes much less time to find.
    std::optional<SourcePoint> attributePoint(OptionalText name) const;

private:
    friend class Node;
    friend class Document;
    template <class>
    friend class ChildRange;
    friend struct Tree;

    /// Before `next`, or as the last child when that is empty.
    Node insertBefore(const Node& next, const Node& child);

    Element(std::shared_ptr<Tree> tree, RawNode* node) : Node(std::move(tree), node) {}
};

}  // namespace yg::xml
