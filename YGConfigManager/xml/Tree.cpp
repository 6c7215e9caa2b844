// SPDX-License-Identifier: MIT
#include "YGConfigManager/xml/Tree.h"

#include <algorithm>
#include <utility>

#include "YGConfigManager/text/Utf8.h"

namespace yg::xml {

namespace {

bool isStorable(char32_t c) {
    return c == '\t' || c == '\n' || c == '\r' || (c >= 0x20 && c != 0xFFFE && c != 0xFFFF);
}

/// Goes through two trees of the same shape side by side.
template <class Visit>
void forEachPair(pugi::xml_node left, pugi::xml_node right, Visit visit) {
    const pugi::xml_node leftTop = left;
    const pugi::xml_node rightTop = right;
    while (left && right) {
        visit(left, right);
        left = nextInSubtree(left, leftTop);
        right = nextInSubtree(right, rightTop);
    }
}

/// Makes a node that was just made a copy of another, but for its children.
void fill(pugi::xml_node copy, pugi::xml_node source) {
    if (*source.name() != '\0')
        setName(copy, source.name());
    if (*source.value() != '\0')
        setValue(copy, source.value());
    for (pugi::xml_attribute attribute : source.attributes()) {
        const pugi::xml_attribute added = made(copy.append_attribute(""));
        setName(added, attribute.name());
        setValue(added, attribute.value());
    }
}

/// Fills a node that was just made with a copy of all of another. pugixml's own copies lack what
/// memory did not suffice for, without a word.
void fillDeeply(pugi::xml_node copy, pugi::xml_node source) {
    const pugi::xml_node top = source;
    fill(copy, source);
    while (true) {
        if (const pugi::xml_node child = source.first_child()) {
            source = child;
        } else {
            while (source != top && !source.next_sibling()) {
                source = source.parent();
                copy = copy.parent();
            }
            if (source == top)
                return;
            source = source.next_sibling();
            copy = copy.parent();
        }
        copy = made(copy.append_child(source.type()));
        fill(copy, source);
    }
}

}  // namespace

bool isBlankText(pugi::xml_node node) {
    if (node.type() != pugi::node_pcdata)
        return false;
    const char* value = node.value();
    while (text::isWhiteSpace(*value))
        ++value;
    return *value == '\0';
}

bool isChild(pugi::xml_node node) {
    switch (node.type()) {
        case pugi::node_element:
        case pugi::node_cdata:
        case pugi::node_comment:
        case pugi::node_pi:
            return true;
        case pugi::node_pcdata:
            return !isBlankText(node);
        default:
            return false;
    }
}

pugi::xml_node firstChildFrom(pugi::xml_node node) {
    while (node && !isChild(node))
        node = node.next_sibling();
    return node;
}

bool isInside(pugi::xml_node node, pugi::xml_node top) {
    while (node && node != top)
        node = node.parent();
    return static_cast<bool>(node);
}

pugi::xml_node nextInSubtree(pugi::xml_node node, pugi::xml_node top) {
    if (const pugi::xml_node child = node.first_child())
        return child;
    while (node != top) {
        if (const pugi::xml_node sibling = node.next_sibling())
            return sibling;
        node = node.parent();
    }
    return {};
}

std::string storableText(std::string_view text) {
    std::string kept;
    kept.reserve(text.size());
    while (!text.empty()) {
        const text::Character c = text::firstCharacter(text);
        if (c.isValid && isStorable(c.value))
            kept.append(text.substr(0, c.size));
        text.remove_prefix(c.size);
    }
    return kept;
}

std::string withLineFeeds(std::string_view text) {
    std::string kept;
    kept.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '\r')
            kept += text[at];
        else if (text.substr(at + 1, 1) != "\n")
            kept += '\n';
    }
    return kept;
}

pugi::xml_node Tree::root() const {
    for (pugi::xml_node child : memory.children()) {
        if (child.type() == pugi::node_element && child != keep)
            return child;
    }
    return {};
}

void Tree::prepareTakingOut() {
    if (!keep)
        keep = made(memory.append_child(pugi::node_element));
}

void Tree::takeOut(pugi::xml_node node) {
    prepareTakingOut();
    made(keep.append_move(node));
}

pugi::xml_node Tree::insertCopy(pugi::xml_node parent, pugi::xml_node before, const Tree& from,
                                pugi::xml_node source) {
    const pugi::xml_node copy = made(before ? parent.insert_child_before(source.type(), before)
                                            : parent.append_child(source.type()));
    try {
        fillDeeply(copy, source);
        copyRanges(from, source, copy);
    } catch (...) {
        freeSubtree(copy);
        throw;
    }
    return copy;
}

void Tree::copyRanges(const Tree& from, pugi::xml_node source, pugi::xml_node copy) {
    if (from.ranges.empty())
        return;
    if (this != &from) {
        for (const auto& file : from.sources) {
            if (std::find(sources.begin(), sources.end(), file) == sources.end())
                sources.push_back(file);
        }
    }
    const auto copyRange = [&](const void* of, const void* to) {
        if (const Range range = from.rangeOf(of); range.source)
            ranges[to] = range;
    };
    forEachPair(source, copy, [&](pugi::xml_node left, pugi::xml_node right) {
        copyRange(left.internal_object(), right.internal_object());
        pugi::xml_attribute to = right.first_attribute();
        for (pugi::xml_attribute of = left.first_attribute(); of && to;
             of = of.next_attribute(), to = to.next_attribute())
            copyRange(of.internal_object(), to.internal_object());
    });
}

Range Tree::rangeOf(const void* holder) const {
    const auto found = ranges.find(holder);
    return found == ranges.end() ? Range() : found->second;
}

void Tree::forgetValue(pugi::xml_attribute attribute) {
    if (const auto found = ranges.find(attribute.internal_object()); found != ranges.end())
        found->second.inner = 0;
}

void Tree::freeRemoved() {
    if (keep)
        freeSubtree(keep);
    keep = {};
}

/// From the leaves up: pugixml would go down a deep tree in a recursion.
void Tree::freeSubtree(pugi::xml_node top) {
    for (pugi::xml_node node = top; node;) {
        if (const pugi::xml_node child = node.first_child()) {
            node = child;
            continue;
        }
        ranges.erase(node.internal_object());
        for (pugi::xml_attribute attribute : node.attributes())
            ranges.erase(attribute.internal_object());
        pugi::xml_node above = node.parent();
        above.remove_child(node);
        node = node == top ? pugi::xml_node() : above;
    }
}

std::vector<Node> Tree::select(const std::shared_ptr<Tree>& tree, pugi::xml_node context,
                               const Query& query) {
    std::vector<Node> answer;
    if (!query)
        return answer;
    const Query::Compiled& compiled = *query.compiled_;
    const auto selectHere = [&] {
        for (pugi::xml_node found : compiled.select(context ? context : tree->memory))
            answer.push_back(node(tree, found));
        return answer;
    };
    if (!tree->keep)
        return selectHere();

    // Something was taken out, which stands beside the document now, without a name. A query that
    // does not come near it needs no more.
    pugi::xml_node top = context;
    while (top && top.parent() && top.parent() != tree->keep && top.parent() != tree->memory)
        top = top.parent();
    const bool inDocument = !top || top.parent() == tree->memory;
    const QueryReach reach = compiled.reach;
    if (!reach.leavesSubtree && (!reach.isAbsolute || inDocument) &&
        (context || !reach.beginsWithAnyChild))
        return selectHere();

    // Any other is asked of a copy of the one side that the context belongs to.
    pugi::xml_document side;
    std::unordered_map<const void*, pugi::xml_node> original;
    pugi::xml_node sideContext = side;
    const auto copySide = [&](pugi::xml_node source) {
        const pugi::xml_node copy = made(side.append_child(source.type()));
        fillDeeply(copy, source);
        forEachPair(source, copy, [&](pugi::xml_node left, pugi::xml_node right) {
            original.emplace(right.internal_object(), left);
            if (left == context)
                sideContext = right;
        });
    };
    if (inDocument) {
        for (pugi::xml_node child : tree->memory.children()) {
            if (child != tree->keep)
                copySide(child);
        }
    } else {
        copySide(top);
    }
    for (pugi::xml_node found : compiled.select(sideContext)) {
        const auto source = original.find(found.internal_object());
        if (source != original.end())
            answer.push_back(node(tree, source->second));
    }
    return answer;
}

}  // namespace yg::xml
