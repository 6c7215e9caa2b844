// SPDX-License-Identifier: MIT
//
// The style loader's two libraries of panels, as records and as the XML that custom pages use, and
// the swap of the panel in a magic slot.
#include <algorithm>

#include "YGConfigManager/layout/Expansion.h"
#include "YGConfigManager/layout/LayoutRules.h"
#include "YGConfigManager/layout/YGStyleConfigLoad.h"
#include "YGConfigManager/xml/Query.h"

namespace yg {

std::shared_ptr<PanelMap> YGStyleConfigLoad::readReusePanels(
    std::optional<std::string_view> path) const {
    const Expansion expansion(Expansion::load);
    const xml::Element root = rootOf(path);
    if (root)
        used(root);
    reportAttributesBut(root, {});
    auto panels = std::make_shared<PanelMap>();
    for (const xml::Node& child : root.children()) {
        if (!child.isElement()) {
            reportUnread(child);
            continue;
        }
        const xml::Element element(child);
        const auto name = element.attribute("name");
        if (!name) {
            report(rules::missingName, element);
            continue;
        }
        if (sink() && element.name() != "reuse_panel")
            report(rules::unexpectedName, element, {}, element.name());
        const auto panel = takePanel(element, std::nullopt, std::nullopt);
        parseContent(element, panel, std::nullopt, std::nullopt);
        if (panels->set(*name, panel))
            report(rules::duplicateName, element, "name", *name);
    }
    return panels;
}

std::shared_ptr<MagicPanelMap> YGStyleConfigLoad::readMagicPanels(
    std::optional<std::string_view> path) const {
    const Expansion expansion(Expansion::load);
    const xml::Element root = rootOf(path);
    if (root)
        used(root);
    reportAttributesBut(root, {});
    auto groups = std::make_shared<MagicPanelMap>();
    for (const xml::Node& child : root.children()) {
        if (!child.isElement()) {
            reportUnread(child);
            continue;
        }
        const xml::Element group(child);
        const auto name = group.attribute("name");
        if (!name) {
            report(rules::missingName, group);
            continue;
        }
        if (groups->set(*name, loadMagicGroup(group, *name)))
            report(rules::duplicateName, group, "name", *name);
    }
    return groups;
}

std::shared_ptr<PanelMap> YGStyleConfigLoad::loadMagicGroup(const xml::Element& group,
                                                            std::string_view groupName) const {
    reportNamed(group, "magic_panels");
    auto members = std::make_shared<PanelMap>();
    for (const xml::Node& child : group.children()) {
        if (!child.isElement()) {
            reportUnread(child);
            continue;
        }
        const xml::Element member(child);
        const auto name = member.attribute("name");
        if (!name) {
            report(rules::missingName, member);
            continue;
        }
        const xml::Element content = member.firstElementChild();
        if (!content) {
            report(rules::memberWithoutPanel, member, "name", *name);
            continue;
        }
        reportNamed(member, "magic_panel");
        if (sink()) {
            for (const xml::Node& other : member.children()) {
                if (other.isElement() && !(other == content))
                    report(rules::secondPanel, other, {}, other.name());
                else if (!other.isElement())
                    reportUnread(other);
            }
        }

        // The member's own panel keeps its name; editable panels inside it get the group's and the
        // member's name before their own.
        const auto panel = takePanel(content, std::nullopt, std::nullopt);
        panel->setIsMagicPanels(true);
        parseContent(content, panel, *name, groupName);
        if (members->set(*name, panel))
            report(rules::duplicateName, member, "name", *name);
    }
    // The panel that slots of the group show, see placeMagicPanel.
    if (!members->empty() && !members->begin()->value->prepareToShow(groupName))
        throw std::bad_alloc();
    return members;
}

void YGStyleConfigLoad::parseContent(const xml::Element& content,
                                     const std::shared_ptr<PanelConfigInfo>& panel,
                                     std::optional<std::string_view> superMagicPanelName,
                                     std::optional<std::string_view> superMagicPanelsName) const {
    for (const xml::Node& child : content.children())
        place(child, nullptr, panel, nullptr, superMagicPanelName, superMagicPanelsName);
}

xml::Element YGStyleConfigLoad::expandMagicPanels(std::optional<std::string_view> magicPath,
                                                  std::optional<std::string_view> reusePath) const {
    const Expansion expansion(Expansion::load);
    const xml::Element magicRoot = rootOf(magicPath);
    const xml::Element reuseRoot = rootOf(reusePath);
    xml::Element expanded(magicRoot.copy());

    // The first definition of a name counts here, unlike in the records.
    RecordMap<xml::Element> definitions;
    for (const xml::Node& child : reuseRoot.children()) {
        const xml::Element element(child);
        if (element.name() != "reuse_panel")
            continue;
        const auto name = element.attribute("name");
        if (name && !definitions.contains(*name))
            definitions.set(*name, element);
    }

    // Collected before anything is replaced, so references inside an inserted definition stay.
    const xml::Query references("descendant::reuse_panel");
    RecordMap<Extent> extents;
    for (const xml::Node& node : expanded.query(references)) {
        xml::Element reference(node);
        const auto name = reference.attribute("name");
        const xml::Element* definition = name ? definitions.find(*name) : nullptr;
        if (!definition)
            continue;
        if (!extents.contains(*name))
            extents.set(*name, extentOf(*definition));
        if (mayAdd(*extents.find(*name), reference, "name", *name))
            xml::Element(reference.replaceWith(*definition)).rename("panel");
    }
    return expanded;
}

void YGStyleConfigLoad::putMagicPanel(const std::shared_ptr<PanelList>& panels,
                                      const std::shared_ptr<PanelConfigInfo>& panelConfigInfo,
                                      bool& isFind) {
    if (!panels || !panelConfigInfo)
        return;

    // A share of its own: the panel given may live inside a slot that is about to be replaced.
    const std::shared_ptr<PanelConfigInfo> replacement = panelConfigInfo;

    // A path of lists instead of a recursion: the records are the host's, and a panel that was put
    // into its own children must not send this round in a circle.
    struct Step {
        std::shared_ptr<PanelList> list;
        std::size_t next = 0;
    };
    std::vector<Step> path{{panels}};
    const auto isOnPath = [&](const std::shared_ptr<PanelList>& list) {
        return std::any_of(path.begin(), path.end(),
                           [&](const Step& step) { return step.list == list; });
    };
    // What stood in the slots, to be put back when memory does not suffice to reach all of them.
    std::vector<std::pair<Step, std::shared_ptr<PanelConfigInfo>>> replaced;
    const bool wasFound = isFind;
    try {
        while (!path.empty()) {
            Step& step = path.back();
            if (step.next >= step.list->size()) {
                path.pop_back();
                continue;
            }
            std::shared_ptr<PanelConfigInfo>& panel = (*step.list)[step.next++];
            if (!panel)
                continue;
            if (panel->isMagicPanels()) {
                replaced.push_back({{step.list, step.next - 1}, panel});
                panel = replacement;
                isFind = true;
            } else if (panel->panePanes() && !isOnPath(panel->panePanes())) {
                path.push_back({panel->panePanes()});
            }
        }
    } catch (...) {
        for (; !replaced.empty(); replaced.pop_back()) {
            auto& [step, panel] = replaced.back();
            (*step.list)[step.next] = panel;
        }
        isFind = wasFound;
        throw;
    }
}

/// A group or member is read by its attribute "name" alone.
void YGStyleConfigLoad::reportNamed(const xml::Element& element,
                                    std::string_view properName) const {
    if (!sink())
        return;
    used(element);
    used(element, "name");
    reportAttributesBut(element, "name");
    if (element.name() != properName)
        report(rules::unexpectedName, element, {}, element.name());
}

}  // namespace yg
