// SPDX-License-Identifier: MIT
//
// What the style loader reads in a style, a magic panel or a reuse panel.
#include <memory>
#include <mutex>
#include <utility>

#include "YGConfigManager/layout/Expansion.h"
#include "YGConfigManager/layout/LayoutEntries.h"
#include "YGConfigManager/layout/YGStyleConfigLoad.h"
#include "YGConfigManager/process/ForkMutex.h"
#include "YGConfigManager/text/Format.h"

namespace yg {

namespace {

/// Custom pages mark the magic panels that they show, and pages may be built on any thread.
constinit ForkMutex marking;

/// Restores the length that a list has now.
template <class List>
class Length {
public:
    explicit Length(const std::shared_ptr<List>& list)
        : list_(list), size_(list ? list->size() : 0) {}

    void restore() const {
        if (list_)
            list_->resize(size_);
    }

private:
    std::shared_ptr<List> list_;
    std::size_t size_;
};

template <class List>
Length(std::shared_ptr<List>) -> Length<List>;

template <class List, class Record>
void append(const std::shared_ptr<List>& list, Record&& record) {
    if (list)
        list->push_back(std::forward<Record>(record));
}

/// Stock detail pages show their real-time line view at the top level only.
bool leavesOut(const StyleConfigInfo* style, const PanelConfigInfo& panel) {
    return panel.panelName() == "rtline_view" && style && style->styleName() &&
           style->styleName()->starts_with("个股详细视图-");
}

/// Null, and reported, without a name.
std::shared_ptr<ElementConfigInfo> readElement(Entry& entry) {
    auto record = std::make_shared<ElementConfigInfo>();
    entry.read(*record);
    if (record->elementName() && !record->elementName()->empty())
        return record;
    entry.drop("element-without-name"_rule);
    return nullptr;
}

}  // namespace

std::shared_ptr<PanelConfigInfo> readPanel(Entry& entry, std::string_view member,
                                           std::string_view group) {
    auto record = std::make_shared<PanelConfigInfo>();
    entry.read(*record);
    if (!record->isEditable() || member.empty() || group.empty())
        return record;
    const std::optional<std::string>& name = record->panelName();
    if (Expansion::mayAdd({0, group.size() + member.size() + 2}))
        record->setPanelName(text::format("%@-%@-%@", group, member, name));
    else
        entry.report("expansion-limit"_rule, name ? "name" : "", name.value_or(""));
    return record;
}

void YGStyleConfigLoad::parsePaneOrElement(const xml::Node& node,
                                           const std::shared_ptr<StyleConfigInfo>& parentStyleInfo,
                                           const std::shared_ptr<PanelConfigInfo>& parentPaneInfo,
                                           bool* hasMagicPanels, OptionalText superMagicPanelName,
                                           OptionalText superMagicPanelsName) const {
    guarded(loadName, [&] {
        const Length stylePanes(parentStyleInfo ? parentStyleInfo->stylePanes() : nullptr);
        const Length panePanes(parentPaneInfo ? parentPaneInfo->panePanes() : nullptr);
        const Length elements(parentPaneInfo ? parentPaneInfo->paneElements() : nullptr);
        const bool hadMagicPanels = hasMagicPanels && *hasMagicPanels;
        try {
            reading(Reporter(sink_), xml::Element(node), [&](Entry& entry) {
                place(entry, {parentStyleInfo.get(), parentPaneInfo.get(), node.parent().name(),
                              hasMagicPanels, *superMagicPanelName, *superMagicPanelsName});
            });
        } catch (...) {
            stylePanes.restore();
            panePanes.restore();
            elements.restore();
            if (hasMagicPanels)
                *hasMagicPanels = hadMagicPanels;
            throw;
        }
    });
}

std::shared_ptr<PanelConfigInfo> YGStyleConfigLoad::parsePaneInfo(
    const xml::Element& panel, OptionalText superMagicPanelName,
    OptionalText superMagicPanelsName) const {
    return guarded(loadName, [&] {
        return reading(Reporter(sink_), panel, [&](Entry& entry) {
            auto record = readPanel(entry, *superMagicPanelName, *superMagicPanelsName);
            entry.leaveContent();
            return record;
        });
    });
}

std::shared_ptr<ElementConfigInfo> YGStyleConfigLoad::parseElementInfo(
    const xml::Element& element) const {
    return guarded(loadName, [&] { return reading(Reporter(sink_), element, readElement); });
}

void YGStyleConfigLoad::readContent(Entry& entry, Around around, PanelConfigInfo* panel) const {
    around.panel = panel;
    around.above = entry.name();
    entry.forEachElement([&](Entry& child) { place(child, around); });
}

void YGStyleConfigLoad::place(Entry& entry, const Around& around) const {
    const std::string_view name = entry.name();
    if (name == "panel")
        return placePanel(entry, around);
    if (name == "magic_panels")
        return placeMagicPanel(entry, around);
    if (name == "reuse_panel")
        return placeReusePanel(entry, around);
    if (name != "element")
        return entry.drop("unknown-element"_rule, {}, name);
    if (!around.panel)
        return entry.drop("misplaced-element"_rule);
    if (auto record = readElement(entry))
        append(around.panel->paneElements(), std::move(record));
}

void YGStyleConfigLoad::placePanel(Entry& entry, const Around& around) const {
    const bool isTop = around.style && around.above == "style";
    if (!isTop && (!around.panel || (around.above != "panel" && around.above != "reuse_panel")))
        return entry.drop("misplaced-panel"_rule);

    // A panel that is left out is read all the same: magic panels inside it are marked.
    const auto panel = readPanel(entry, around.member, around.group);
    if (isTop)
        append(around.style->stylePanes(), panel);
    else if (leavesOut(around.style, *panel))
        entry.drop("rtline-view-left-out"_rule);
    else
        append(around.panel->panePanes(), panel);
    readContent(entry, around, panel.get());
}

void YGStyleConfigLoad::placeMagicPanel(Entry& slot, const Around& around) const {
    if (around.hasMagicPanels)
        *around.hasMagicPanels = true;
    const auto groupName = nameIn<magicSlot>(slot);
    if (!groupName)
        return slot.drop("missing-name"_rule);
    const auto* group =
        tables_.magicPanelInfos ? tables_.magicPanelInfos->find(*groupName) : nullptr;
    if (!group)
        return slot.drop("unknown-magic-group"_rule, "name", *groupName);
    if ((*group)->empty())
        return slot.drop("empty-magic-group"_rule, "name", *groupName);

    const std::shared_ptr<PanelConfigInfo>& panel = (*group)->begin()->value;
    {
        const std::lock_guard lock(marking);
        if (!panel->show(*groupName))
            throw std::bad_alloc();
        if (!panel->isMagicPanels())
            panel->setIsMagicPanels(true);
    }
    const bool inStyle = around.style && around.above == "style";
    const bool inPanel = around.panel && around.above == "panel";
    if (!inStyle && !inPanel)
        return slot.drop("misplaced-magic-panels"_rule);
    if (!mayPlace(*panel))
        return slot.drop("expansion-limit"_rule, "name", *groupName);
    if (inStyle)
        append(around.style->stylePanes(), panel);
    if (inPanel)
        append(around.panel->panePanes(), panel);
}

void YGStyleConfigLoad::placeReusePanel(Entry& reference, const Around& around) const {
    const auto name = nameIn<reuseReference>(reference);
    if (!name)
        return reference.drop("missing-name"_rule);
    if (!around.panel)
        return reference.drop("misplaced-reuse-panel"_rule, "name", *name);
    const auto* panel = tables_.reusePanelInfos ? tables_.reusePanelInfos->find(*name) : nullptr;
    if (!panel)
        return reference.drop("unknown-reuse-panel"_rule, "name", *name);
    if (!mayPlace(**panel))
        return reference.drop("expansion-limit"_rule, "name", *name);
    append(around.panel->panePanes(), *panel);
}

/// Whether a panel may be placed once more, which is then counted.
bool YGStyleConfigLoad::mayPlace(const PanelConfigInfo& panel) const {
    return !tables_.panelExtents || Expansion::mayAdd(tables_.panelExtents->of(panel));
}

}  // namespace yg
