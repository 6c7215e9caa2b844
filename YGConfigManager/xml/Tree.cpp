// SPDX-License-Identifier: MIT
#include "YGConfigManager/xml/Tree.h"

#include <algorithm>
#include <functional>
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
    while (!isChild(node) && node)
        node = node.next_sibling();
    return node;
}

pugi::xml_node firstElementFrom(pugi::xml_node node) {
    while (node.type() != pugi::node_element && node)
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
        copyOrigins(from, source, copy);
    } catch (...) {
        freeSubtree(copy);
        throw;
    }
    return copy;
}

void Tree::copyOrigins(const Tree& from, pugi::xml_node source, pugi::xml_node copy) {
    if (from.sources.empty())
        return;
    if (this != &from) {
        for (const auto& file : from.sources) {
            if (std::find(sources.begin(), sources.end(), file) == sources.end())
                sources.push_back(file);
        }
    }
    const auto copyOrigin = [&](auto of, auto to) {
        if (const Origin origin = from.originOf(of); origin.source)
            origins[to.internal_object()] = origin;
    };
    forEachPair(source, copy, [&](pugi::xml_node left, pugi::xml_node right) {
        copyOrigin(left, right);
        pugi::xml_attribute to = right.first_attribute();
        for (pugi::xml_attribute of = left.first_attribute(); of && to;
             of = of.next_attribute(), to = to.next_attribute())
            copyOrigin(of, to);
    });
}

Origin Tree::originOf(pugi::xml_node node) const {
    const auto behind = [&](std::string_view markup, const char* written) {
        return originOf(node.internal_object(), written, markup.size());
    };
    switch (node.type()) {
        case pugi::node_element:
            return behind("<", node.name());
        case pugi::node_pi:
            return behind("<?", node.name());
        case pugi::node_comment:
            return behind("<!--", node.value());
        case pugi::node_cdata:
            return behind("<![CDATA[", node.value());
        default:
            // No handle can stand for hidden white space, which is freed at once when it goes.
            return isBlankText(node) ? Origin() : behind("", node.value());
    }
}

Origin Tree::originOf(pugi::xml_attribute attribute) const {
    return originOf(attribute.internal_object(), attribute.name(), 0);
}

/// `markup` is the size of what stands before the text that was written first.
Origin Tree::originOf(const void* holder, const char* written, std::size_t markup) const {
    if (sources.empty())
        return {};
    if (const auto noted = origins.find(holder); noted != origins.end())
        return noted->second;
    const char* const begin = inPlace.data();
    if (!ownSource || std::less<>()(written, begin) ||
        !std::less<>()(written, begin + inPlace.size()))
        return {};
    return {ownSource,
            static_cast<std::uint32_t>(static_cast<std::size_t>(written - begin) - markup)};
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
        origins.erase(node.internal_object());
        for (pugi::xml_attribute attribute : node.attributes())
            origins.erase(attribute.internal_object());
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
