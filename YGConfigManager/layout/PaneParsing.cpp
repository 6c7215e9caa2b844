// SPDX-License-Identifier: MIT
//
// The style loader's walk through the content of a style, a magic panel or a reuse panel.
#include <mutex>

#include "YGConfigManager/layout/Expansion.h"
#include "YGConfigManager/layout/LayoutAttributes.h"
#include "YGConfigManager/layout/LayoutRules.h"
#include "YGConfigManager/layout/YGStyleConfigLoad.h"
#include "YGConfigManager/process/ForkMutex.h"
#include "YGConfigManager/text/Format.h"

namespace yg {

namespace {

/// Custom pages mark the magic panels that they show, and pages may be built on any thread.
constinit ForkMutex marking;

/// Stock detail pages show their real-time line view at the top level only.
bool leavesOut(const StyleConfigInfo* style, const PanelConfigInfo& panel) {
    constexpr std::string_view stockDetailPrefix = "个股详细视图-";
    return panel.panelName() == "rtline_view" && style && style->styleName() &&
           style->styleName()->compare(0, stockDetailPrefix.size(), stockDetailPrefix) == 0;
}

}  // namespace

void YGStyleConfigLoad::place(const xml::Node& node,
                              const std::shared_ptr<StyleConfigInfo>& parentStyleInfo,
                              const std::shared_ptr<PanelConfigInfo>& parentPaneInfo,
                              bool* hasMagicPanels,
                              std::optional<std::string_view> superMagicPanelName,
                              std::optional<std::string_view> superMagicPanelsName) const {
    if (!node.isElement()) {
        reportUnread(node);
        return;
    }
    const xml::Element element(node);
    const std::string_view name = element.name();
    if (name == "panel") {
        parsePanel(element, parentStyleInfo, parentPaneInfo, hasMagicPanels, superMagicPanelName,
                   superMagicPanelsName);
    } else if (name == "element") {
        if (!parentPaneInfo) {
            report(rules::misplacedElement, element);
        } else if (auto record = readElement(element)) {
            if (parentPaneInfo->paneElements())
                parentPaneInfo->paneElements()->push_back(std::move(record));
        }
    } else if (name == "magic_panels") {
        placeMagicPanel(element, parentStyleInfo, parentPaneInfo, hasMagicPanels);
    } else if (name == "reuse_panel") {
        placeReusePanel(element, parentPaneInfo);
    } else {
        report(rules::unknownElement, element, {}, name);
    }
}

void YGStyleConfigLoad::parsePanel(const xml::Element& element,
                                   const std::shared_ptr<StyleConfigInfo>& parentStyleInfo,
                                   const std::shared_ptr<PanelConfigInfo>& parentPaneInfo,
                                   bool* hasMagicPanels,
                                   std::optional<std::string_view> superMagicPanelName,
                                   std::optional<std::string_view> superMagicPanelsName) const {
    const std::string_view above = element.parent().name();
    const bool atTop = parentStyleInfo && above == "style";
    const bool inPanel = !atTop && parentPaneInfo && (above == "panel" || above == "reuse_panel");
    if (!atTop && !inPanel) {
        report(rules::misplacedPanel, element);
        return;
    }

    // A panel that is left out is walked all the same: magic panels inside it are marked.
    const auto panel = readPanel(element, superMagicPanelName, superMagicPanelsName);
    const bool isLeftOut = inPanel && leavesOut(parentStyleInfo.get(), *panel);
    std::optional<QuietWalk> quiet;
    if (isLeftOut) {
        report(rules::realTimeLineView, element);
        quiet.emplace();
    } else {
        reportPanel(element);
    }
    const std::shared_ptr<PanelList>& siblings =
        atTop ? parentStyleInfo->stylePanes() : parentPaneInfo->panePanes();
    if (siblings && !isLeftOut)
        siblings->push_back(panel);

    for (const xml::Node& child : element.children())
        place(child, parentStyleInfo, panel, hasMagicPanels, superMagicPanelName,
              superMagicPanelsName);
}

std::shared_ptr<PanelConfigInfo> YGStyleConfigLoad::takePanel(
    const xml::Element& panel, std::optional<std::string_view> superMagicPanelName,
    std::optional<std::string_view> superMagicPanelsName) const {
    reportPanel(panel);
    return readPanel(panel, superMagicPanelName, superMagicPanelsName);
}

std::shared_ptr<PanelConfigInfo> YGStyleConfigLoad::readPanel(
    const xml::Element& panel, std::optional<std::string_view> superMagicPanelName,
    std::optional<std::string_view> superMagicPanelsName) const {
    auto record = std::make_shared<PanelConfigInfo>();
    readAttributes(panel, panelAttributes, *record);
    if (record->isEditable() && superMagicPanelName && !superMagicPanelName->empty() &&
        superMagicPanelsName && !superMagicPanelsName->empty() &&
        mayAdd({0, superMagicPanelsName->size() + superMagicPanelName->size() + 2}, panel, "name",
               record->panelName().value_or("")))
        record->setPanelName(text::format("%@-%@-%@", *superMagicPanelsName, *superMagicPanelName,
                                          record->panelName()));
    return record;
}

void YGStyleConfigLoad::reportPanel(const xml::Element& panel) const {
    if (!sink())
        return;
    used(panel);
    reportAttributes(panel, panelAttributes, *sink());
}

std::shared_ptr<ElementConfigInfo> YGStyleConfigLoad::readElement(
    const xml::Element& element) const {
    auto record = std::make_shared<ElementConfigInfo>();
    readAttributes(element, elementAttributes, *record);
    if (!record->elementName() || record->elementName()->empty()) {
        report(rules::elementWithoutName, element);
        return nullptr;
    }
    if (sink()) {
        used(element);
        reportAttributes(element, elementAttributes, *sink());
        for (const xml::Node& child : element.children())
            reportUnread(child);
    }
    return record;
}

void YGStyleConfigLoad::placeMagicPanel(const xml::Element& element,
                                        const std::shared_ptr<StyleConfigInfo>& parentStyleInfo,
                                        const std::shared_ptr<PanelConfigInfo>& parentPaneInfo,
                                        bool* hasMagicPanels) const {
    if (hasMagicPanels)
        *hasMagicPanels = true;
    const auto groupName = element.attribute("name");
    if (!groupName) {
        report(rules::missingName, element);
        return;
    }
    const auto* group = magicPanelInfos_ ? magicPanelInfos_->find(*groupName) : nullptr;
    if (!group) {
        report(rules::unknownMagicGroup, element, "name", *groupName);
        return;
    }
    if ((*group)->empty()) {
        report(rules::emptyMagicGroup, element, "name", *groupName);
        return;
    }

    const std::shared_ptr<PanelConfigInfo>& panel = (*group)->begin()->value;
    {
        const std::lock_guard lock(marking);
        if (!panel->show(*groupName))
            throw std::bad_alloc();
        if (!panel->isMagicPanels())
            panel->setIsMagicPanels(true);
    }
    const std::string_view above = element.parent().name();
    const bool inStyle = parentStyleInfo && above == "style";
    const bool inPanel = parentPaneInfo && above == "panel";
    if ((inStyle || inPanel) && !mayAddPanel(*panel, element, *groupName))
        return;
    if (inStyle && parentStyleInfo->stylePanes())
        parentStyleInfo->stylePanes()->push_back(panel);
    if (inPanel && parentPaneInfo->panePanes())
        parentPaneInfo->panePanes()->push_back(panel);

    if (!inStyle && !inPanel)
        report(rules::misplacedMagicPanels, element);
    else
        reportReference(element);
}

void YGStyleConfigLoad::placeReusePanel(
    const xml::Element& element, const std::shared_ptr<PanelConfigInfo>& parentPaneInfo) const {
    const auto name = element.attribute("name");
    const auto* panel = name && reusePanelInfos_ ? reusePanelInfos_->find(*name) : nullptr;
    if (panel && parentPaneInfo) {
        if (!mayAddPanel(**panel, element, *name))
            return;
        if (parentPaneInfo->panePanes())
            parentPaneInfo->panePanes()->push_back(*panel);
        reportReference(element);
        return;
    }
    if (!name)
        report(rules::missingName, element);
    else if (!parentPaneInfo)
        report(rules::misplacedReusePanel, element, "name", *name);
    else
        report(rules::unknownReusePanel, element, "name", *name);
}

/// Whether a panel may be placed once more.
bool YGStyleConfigLoad::mayAddPanel(const PanelConfigInfo& panel, const xml::Element& reference,
                                    std::string_view name) const {
    return !panelExtents_ || mayAdd(panelExtents_->of(panel), reference, "name", name);
}

/// A reference that resolves says nothing but a name.
void YGStyleConfigLoad::reportReference(const xml::Element& element) const {
    if (!sink())
        return;
    used(element);
    used(element, "name");
    reportAttributesBut(element, "name");
    for (const xml::Node& child : element.children())
        reportUnread(child);
}

}  // namespace yg
