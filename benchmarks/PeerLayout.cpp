// SPDX-License-Identifier: MIT
#include "benchmarks/PeerLayout.h"

#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <unordered_map>

#include <libxml/parser.h>
#include <libxml/tree.h>
#include <pugixml.hpp>

#include "YGConfigManager/files/ReadFile.h"
#include "YGConfigManager/layout/LayoutAttributes.h"

namespace yg::benchmarks {

namespace {

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

template <class Library>
class Loader {
public:
    using Node = typename Library::Node;
    using Tree = typename Library::Tree;

    explicit Loader(const Skeleton& skeleton) {
        const Tree reuse = Library::parse(skeleton.reusePath());
        const Tree magic = Library::parse(skeleton.magicPath());
        const Tree styles = Library::parse(skeleton.stylePath());
        const Tree softMagic = Library::parse(skeleton.softMagicPath());
        const Tree softStyles = Library::parse(skeleton.softStylePath());
        const Tree tabs = Library::parse(skeleton.tabPath());

        auto reusePanels = std::make_shared<PanelMap>();
        Library::forEachElement(Library::root(reuse), [&](Node element) {
            auto panel = readPanel(element, {}, {});
            walkContent(element, nullptr, panel, {}, {});
            reusePanels->set(Library::attribute(element, "name"), panel);
        });
        layout_.reusePanelInfos = reusePanels;
        layout_.magicPanelInfos = readMagic(magic);
        layout_.styleInfos = readStyles(styles);
        const auto softGroups = readMagic(softMagic);
        const auto softPages = readStyles(softStyles);
        for (const auto& [name, group] : *softGroups)
            layout_.magicPanelInfos->set(name, group);
        for (const auto& [name, style] : *softPages)
            layout_.styleInfos->set(name, style);
        layout_.tabStyleInfos = readStyles(tabs);

        const Tree templates = Library::copyOf(softStyles);
        Library::forEachElement(Library::root(styles),
                                [&](Node style) { Library::append(templates, style); });
        layout_.templateTree = templates;
        layout_.magicTree = expand(magic, reuse);
    }

    PeerLayout take() { return std::move(layout_); }

private:
    template <class Record, std::size_t size>
    static void read(Node node, const AttributeRow<Record> (&table)[size], Record& record) {
        std::uint64_t seen = 0;
        Library::forEachAttribute(node, [&](std::string_view name, std::string_view value) {
            const std::size_t row = rowOf(table, name);
            if (row == size)
                return;
            table[row].read(record, value);
            seen |= std::uint64_t{1} << row;
        });
        for (std::size_t row = 0; row < size; ++row) {
            if (table[row].setMissing && (seen & (std::uint64_t{1} << row)) == 0)
                table[row].setMissing(record);
        }
    }

    static std::shared_ptr<PanelConfigInfo> readPanel(Node node, std::string_view member,
                                                      std::string_view group) {
        auto panel = std::make_shared<PanelConfigInfo>();
        read(node, panelAttributes, *panel);
        if (panel->isEditable() && !member.empty() && !group.empty())
            panel->setPanelName(std::string(group) + "-" + std::string(member) + "-" +
                                panel->panelName().value_or("(null)"));
        return panel;
    }

    std::shared_ptr<StyleMap> readStyles(const Tree& tree) {
        auto styles = std::make_shared<StyleMap>();
        Library::forEachElement(Library::root(tree), [&](Node element) {
            auto style = std::make_shared<StyleConfigInfo>();
            read(element, styleAttributes, *style);
            walkContent(element, style, nullptr, {}, {});
            styles->set(*style->styleName(), style);
        });
        return styles;
    }

    std::shared_ptr<MagicPanelMap> readMagic(const Tree& tree) {
        auto groups = std::make_shared<MagicPanelMap>();
        Library::forEachElement(Library::root(tree), [&](Node group) {
            const std::string_view groupName = Library::attribute(group, "name");
            auto members = std::make_shared<PanelMap>();
            Library::forEachElement(group, [&](Node member) {
                const std::string_view memberName = Library::attribute(member, "name");
                bool first = true;
                Library::forEachElement(member, [&](Node content) {
                    if (!std::exchange(first, false))
                        return;
                    auto panel = readPanel(content, {}, {});
                    panel->setIsMagicPanels(true);
                    walkContent(content, nullptr, panel, memberName, groupName);
                    members->set(memberName, panel);
                });
            });
            groups->set(groupName, members);
        });
        return groups;
    }

    void walkContent(Node node, const std::shared_ptr<StyleConfigInfo>& style,
                     const std::shared_ptr<PanelConfigInfo>& panel, std::string_view member,
                     std::string_view group) {
        Library::forEachElement(node,
                                [&](Node child) { walk(child, style, panel, member, group); });
    }

    void walk(Node node, const std::shared_ptr<StyleConfigInfo>& style,
              const std::shared_ptr<PanelConfigInfo>& parent, std::string_view member,
              std::string_view group) {
        const std::string_view name = Library::name(node);
        const std::string_view above = Library::name(Library::parent(node));
        if (name == "panel") {
            const auto panel = readPanel(node, member, group);
            if (style && above == "style")
                style->stylePanes()->push_back(panel);
            else if (parent && (above == "panel" || above == "reuse_panel"))
                parent->panePanes()->push_back(panel);
            else
                return;
            walkContent(node, style, panel, member, group);
        } else if (name == "element") {
            auto element = std::make_shared<ElementConfigInfo>();
            read(node, elementAttributes, *element);
            if (parent && element->elementName() && !element->elementName()->empty())
                parent->paneElements()->push_back(element);
        } else if (name == "magic_panels") {
            const std::string_view groupName = Library::attribute(node, "name");
            const auto* members =
                layout_.magicPanelInfos ? layout_.magicPanelInfos->find(groupName) : nullptr;
            if (!members || (*members)->empty())
                return;
            const auto& panel = (*members)->begin()->value;
            panel->setMagicPanelsName(std::string(groupName));
            if (style && above == "style")
                style->stylePanes()->push_back(panel);
            if (parent && above == "panel")
                parent->panePanes()->push_back(panel);
        } else if (name == "reuse_panel") {
            const auto* panel =
                layout_.reusePanelInfos
                    ? layout_.reusePanelInfos->find(Library::attribute(node, "name"))
                    : nullptr;
            if (panel && parent)
                parent->panePanes()->push_back(*panel);
        }
    }

    static void collect(Node node, std::vector<Node>& references) {
        Library::forEachElement(node, [&](Node child) {
            if (Library::name(child) == "reuse_panel")
                references.push_back(child);
            collect(child, references);
        });
    }

    static Tree expand(const Tree& magic, const Tree& reuse) {
        const Tree expanded = Library::copyOf(magic);
        std::unordered_map<std::string_view, Node> definitions;
        Library::forEachElement(Library::root(reuse), [&](Node definition) {
            definitions.emplace(Library::attribute(definition, "name"), definition);
        });
        std::vector<Node> references;
        collect(Library::root(expanded), references);
        for (Node reference : references) {
            const auto found = definitions.find(Library::attribute(reference, "name"));
            if (found != definitions.end())
                Library::replace(reference, found->second, "panel");
        }
        return expanded;
    }

    PeerLayout layout_;
};

/// Adds up whatever a record holds.
class Summer {
public:
    std::uint64_t sum = 14695981039346656037u;

    void add(std::uint64_t number) { sum = (sum ^ number) * 1099511628211u; }
    void add(bool flag) { add(std::uint64_t{flag}); }
    void add(std::int32_t number) { add(static_cast<std::uint64_t>(number)); }
    void add(float number) {
        std::uint32_t bits = 0;
        std::memcpy(&bits, &number, sizeof bits);
        add(std::uint64_t{bits});
    }
    void add(std::string_view text) {
        for (const char c : text)
            add(static_cast<std::uint64_t>(static_cast<unsigned char>(c)));
        add(static_cast<std::uint64_t>(text.size()));
    }
    void add(const std::string& text) { add(std::string_view(text)); }
    template <class T>
    void add(const std::optional<T>& value) {
        add(value.has_value());
        if (value)
            add(*value);
    }
    template <class T>
    void add(const std::vector<T>& list) {
        for (const T& item : list)
            add(item);
        add(static_cast<std::uint64_t>(list.size()));
    }
    template <class T>
    void add(const std::shared_ptr<T>& shared) {
        add(shared != nullptr);
        if (shared)
            add(*shared);
    }
    template <class Record, std::size_t = std::tuple_size_v<decltype(Description<Record>::fields)>>
    void add(const Record& record) {
        forEachField(record, [&](std::string_view, const auto& value) { add(value); });
    }
    template <class Value>
    void add(const RecordMap<Value>& map) {
        for (const auto& [key, value] : map) {
            add(key);
            add(value);
        }
    }
};

}  // namespace

PeerLayout loadWithLibxml2(const Skeleton& skeleton) {
    return Loader<Libxml2>(skeleton).take();
}

PeerLayout loadWithPugixml(const Skeleton& skeleton) {
    return Loader<Pugixml>(skeleton).take();
}

std::uint64_t checksum(const StyleMap& styles) {
    Summer summer;
    summer.add(styles);
    return summer.sum;
}

std::uint64_t checksum(const MagicPanelMap& groups) {
    Summer summer;
    summer.add(groups);
    return summer.sum;
}

}  // namespace yg::benchmarks
