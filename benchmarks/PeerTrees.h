// SPDX-License-Identifier: MIT
//
// The same few questions to libxml2's own tree and to pugixml's tree as its own lenient parser
// makes it, so that a file's reading is written once and measured over both.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include <libxml/parser.h>
#include <libxml/tree.h>
#include <pugixml.hpp>

#include "YGConfigManager/files/ReadFile.h"
#include "YGConfigManager/records/AttributeTable.h"

namespace yg::benchmarks {

struct Pugixml {
    using Tree = std::shared_ptr<pugi::xml_document>;
    using Node = pugi::xml_node;

    static Tree parse(const std::string& path) {
        const files::FileReading file = files::readWholeFile(path);
        auto tree = std::make_shared<pugi::xml_document>();
        return tree->load_buffer(file.bytes.data(), file.bytes.size()) ? tree : nullptr;
    }
    static Node root(const Tree& tree) { return tree->document_element(); }
    static std::string_view name(Node node) { return node.name(); }
    static Node parent(Node node) { return node.parent(); }
    template <class Visit>
    static void forEachElement(Node node, Visit visit) {
        for (Node child : node.children()) {
            if (child.type() == pugi::node_element)
                visit(child);
        }
    }
    template <class Visit>
    static void forEachAttribute(Node node, Visit visit) {
        for (pugi::xml_attribute attribute : node.attributes())
            visit(attribute.name(), attribute.value());
    }
    static const char* attribute(Node node, const char* name) {
        const pugi::xml_attribute found = node.attribute(name);
        return found ? found.value() : nullptr;
    }
    static Tree copyOf(const Tree& tree) {
        auto copy = std::make_shared<pugi::xml_document>();
        copy->append_copy(root(tree));
        return copy;
    }
    static void append(const Tree& tree, Node child) { root(tree).append_copy(child); }
    static void replace(Node old, Node with, const char* name) {
        old.parent().insert_copy_before(with, old).set_name(name);
        old.parent().remove_child(old);
    }
};

struct Libxml2 {
    using Tree = std::shared_ptr<xmlDoc>;
    using Node = xmlNode*;

    static Tree parse(const std::string& path) {
        const files::FileReading file = files::readWholeFile(path);
        return Tree(xmlReadMemory(file.bytes.data(), static_cast<int>(file.bytes.size()), nullptr,
                                  nullptr, XML_PARSE_NONET),
                    xmlFreeDoc);
    }
    static Node root(const Tree& tree) { return xmlDocGetRootElement(tree.get()); }
    static std::string_view text(const xmlChar* text) {
        return text ? reinterpret_cast<const char*>(text) : "";
    }
    static std::string_view name(Node node) { return text(node->name); }
    static Node parent(Node node) { return node->parent; }
    template <class Visit>
    static void forEachElement(Node node, Visit visit) {
        for (Node child = node->children; child; child = child->next) {
            if (child->type == XML_ELEMENT_NODE)
                visit(child);
        }
    }
    template <class Visit>
    static void forEachAttribute(Node node, Visit visit) {
        for (xmlAttr* attribute = node->properties; attribute; attribute = attribute->next)
            visit(text(attribute->name),
                  attribute->children ? text(attribute->children->content) : std::string_view());
    }
    static const char* attribute(Node node, const char* name) {
        for (xmlAttr* attribute = node->properties; attribute; attribute = attribute->next) {
            if (text(attribute->name) == name)
                return attribute->children
                           ? reinterpret_cast<const char*>(attribute->children->content)
                           : "";
        }
        return nullptr;
    }
    static Tree copyOf(const Tree& tree) {
        Tree copy(xmlNewDoc(nullptr), xmlFreeDoc);
        xmlDocSetRootElement(copy.get(), xmlDocCopyNode(root(tree), copy.get(), 1));
        return copy;
    }
    static void append(const Tree& tree, Node child) {
        xmlAddChild(root(tree), xmlDocCopyNode(child, tree.get(), 1));
    }
    static void replace(Node old, Node with, const char* name) {
        Node copy = xmlDocCopyNode(with, old->doc, 1);
        xmlNodeSetName(copy, reinterpret_cast<const xmlChar*>(name));
        xmlFreeNode(xmlReplaceNode(old, copy));
    }
};

/// Reads the attributes of an element by a table of the library's.
template <class Library, class Record, std::size_t count>
void readAttributesOf(typename Library::Node node, const AttributeTable<Record, count>& table,
                      Record& record) {
    table.readEach(record, [&](auto&& add) { Library::forEachAttribute(node, add); });
}

}  // namespace yg::benchmarks
