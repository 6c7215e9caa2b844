// SPDX-License-Identifier: MIT
//
// The style loader's two libraries of panels, as records and as the XML that custom pages use, and
// the swap of the panel in a magic slot.
#include <algorithm>

#include "YGConfigManager/layout/Expansion.h"
#include "YGConfigManager/layout/LayoutEntries.h"
#include "YGConfigManager/layout/YGStyleConfigLoad.h"
#include "YGConfigManager/xml/Query.h"

namespace yg {

namespace {

/// Panels are read under whatever element name, but custom pages know only the proper one.
void noteElementName(Entry& entry, std::string_view properName) {
    if (entry.name() != properName)
        entry.report("unexpected-element-name"_rule, {}, entry.name());
}

/// Custom pages take the first child of a magic panel of whatever kind.
void noteCommentBeforePanel(Entry& member) {
    const xml::Node first = member ? member.element().firstChild() : xml::Node();
    if (first && !first.isElement() && first.kind() != xml::NodeKind::text)
        member.reportChild("comment-before-panel"_rule, first);
}

}  // namespace

std::shared_ptr<const PanelMap> YGStyleConfigLoad::loadReusePanel(OptionalText path) const {
    return guardedLoad([&]() -> std::shared_ptr<const PanelMap> { return readReusePanels(path); });
}

std::shared_ptr<PanelMap> YGStyleConfigLoad::readReusePanels(
    std::optional<std::string_view> path) const {
    auto panels = std::make_shared<PanelMap>();
    RecordMap<xml::Element> places;
    reading(Reporter(sink_), rootOf(path), [&](Entry& root) {
        root.forEachElement([&](Entry& entry) {
            const auto name = nameIn<reuseDefinition>(entry);
            if (!name)
                return entry.drop("missing-name"_rule);
            noteElementName(entry, "reuse_panel");
            noteDefinition(entry, *name, places, "duplicate-name"_rule, "duplicate-name"_rule);
            auto panel = readPanel(entry);
            readContent(entry, {}, panel.get());
            panels->set(*name, std::move(panel));
        });
    });
    return panels;
}

std::shared_ptr<const MagicPanelMap> YGStyleConfigLoad::loadMagicPanel(OptionalText path) const {
    return guardedLoad([&]() -> std::shared_ptr<const MagicPanelMap> {
        RecordMap<xml::Element> places;
        return readMagicPanels(path, places);
    });
}

std::shared_ptr<MagicPanelMap> YGStyleConfigLoad::readMagicPanels(
    std::optional<std::string_view> path, RecordMap<xml::Element>& places) const {
    auto groups = std::make_shared<MagicPanelMap>();
    reading(Reporter(sink_), rootOf(path), [&](Entry& root) {
        root.forEachElement([&](Entry& group) {
            const auto name = nameIn<magicGroup>(group);
            if (!name)
                return group.drop("missing-name"_rule);
            noteElementName(group, "magic_panels");
            noteDefinition(group, *name, places, "duplicate-name"_rule, "replaced-group"_rule);
            groups->set(*name, readMagicGroup(group, *name));
        });
    });
    return groups;
}

std::shared_ptr<PanelMap> YGStyleConfigLoad::readMagicGroup(Entry& group,
                                                            std::string_view groupName) const {
    auto members = std::make_shared<PanelMap>();
    RecordMap<xml::Element> places;
    group.forEachElement([&](Entry& member) {
        const auto name = nameIn<magicMember>(member);
        if (!name)
            return member.drop("missing-name"_rule);
        if (!member.element().firstElementChild())
            return member.drop("member-without-panel"_rule, "name", *name);
        noteElementName(member, "magic_panel");
        noteDefinition(member, *name, places, "duplicate-name"_rule, "duplicate-name"_rule);
        noteCommentBeforePanel(member);
        std::shared_ptr<PanelConfigInfo> panel;
        member.forEachElement([&](Entry& content) {
            if (panel)
                return content.drop("second-panel"_rule, {}, content.name());
            noteElementName(content, "panel");
            // The member's own panel keeps its name; editable panels inside it get the group's and
            // the member's name before their own.
            panel = readPanel(content);
            panel->setIsMagicPanels(true);
            readContent(content, {.member = *name, .group = groupName}, panel.get());
        });
        members->set(*name, std::move(panel));
    });
    // The panel that slots of the group show, see placeMagicPanel.
    if (!members->empty() && !members->begin()->value->prepareToShow(groupName))
        throw std::bad_alloc();
    return members;
}

xml::Element YGStyleConfigLoad::loadMagicPanelsConfigWithMagicPath(OptionalText magicPath,
                                                                   OptionalText reusePath) const {
    return guardedLoad([&] {
        const xml::Element magicRoot = rootOf(magicPath);
        xml::Element expanded(magicRoot.copy());
        expandMagicPanels(expanded, rootOf(reusePath));
        return expanded;
    });
}

void YGStyleConfigLoad::expandMagicPanels(const xml::Element& magicRoot,
                                          const xml::Element& reuseRoot) const {
    // The first definition of a name counts here, unlike in the records.
    RecordMap<xml::Element> definitions;
    for (const xml::Element& element : reuseRoot.elements()) {
        if (element.name() != "reuse_panel")
            continue;
        const auto name = element.attribute("name");
        if (name && !definitions.contains(*name))
            definitions.set(*name, element);
    }

    // Collected before anything is replaced, so references inside an inserted definition stay.
    const xml::Query references("descendant::reuse_panel");
    RecordMap<Extent> extents;
    for (const xml::Node& node : magicRoot.query(references)) {
        xml::Element reference(node);
        const auto name = reference.attribute("name");
        const xml::Element* definition = name ? definitions.find(*name) : nullptr;
        if (!definition)
            continue;
        if (!extents.contains(*name))
            extents.set(*name, extentOf(*definition));
        if (Expansion::mayAdd(*extents.find(*name)))
            xml::Element(reference.replaceWith(*definition)).rename("panel");
        else
            reportOn(reference, "expansion-limit"_rule, "name", *name);
    }
}

namespace {

void putMagicPanel(const std::shared_ptr<PanelList>& panels,
                   const std::shared_ptr<PanelConfigInfo>& panelConfigInfo, bool& isFind) {
    if (!panels || !panelConfigInfo)
        return;

    // A share of its own: the panel given may live inside a slot that is about to be replaced.
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
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

}  // namespace

void YGStyleConfigLoad::replaceMagicPanel(const std::shared_ptr<PanelList>& panels,
                                          const std::shared_ptr<PanelConfigInfo>& panelConfigInfo,
                                          bool& isFind) {
    guarded("replace magic panel", [&] { putMagicPanel(panels, panelConfigInfo, isFind); });
}

}  // namespace yg
