// SPDX-License-Identifier: MIT
#include "benchmarks/PeerLayout.h"

#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "benchmarks/PeerTrees.h"

namespace yg::benchmarks {

namespace {

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
    static std::shared_ptr<PanelConfigInfo> readPanel(Node node, std::string_view member,
                                                      std::string_view group) {
        auto panel = std::make_shared<PanelConfigInfo>();
        readAttributesOf<Library>(node, attributesOf<PanelConfigInfo>, *panel);
        if (panel->isEditable() && !member.empty() && !group.empty())
            panel->setPanelName(std::string(group) + "-" + std::string(member) + "-" +
                                panel->panelName().value_or("(null)"));
        return panel;
    }

    std::shared_ptr<StyleMap> readStyles(const Tree& tree) {
        auto styles = std::make_shared<StyleMap>();
        Library::forEachElement(Library::root(tree), [&](Node element) {
            auto style = std::make_shared<StyleConfigInfo>();
            readAttributesOf<Library>(element, attributesOf<StyleConfigInfo>, *style);
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
            readAttributesOf<Library>(node, attributesOf<ElementConfigInfo>, *element);
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

}  // namespace

PeerLayout loadWithLibxml2(const Skeleton& skeleton) {
    return Loader<Libxml2>(skeleton).take();
}

PeerLayout loadWithPugixml(const Skeleton& skeleton) {
    return Loader<Pugixml>(skeleton).take();
}

}  // namespace yg::benchmarks
