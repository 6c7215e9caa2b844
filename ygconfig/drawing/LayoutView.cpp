// SPDX-License-Identifier: MIT
#include "ygconfig/drawing/LayoutView.h"

#include <cstddef>
#include <utility>

#include "ygconfig/drawing/Details.h"
#include "ygconfig/drawing/Display.h"

namespace yg::tool {

void LayoutView::layout(Output& output) {
    styles("Styles", loader_.styleInfos(), loader_.defaultStyleName(), output);
    output.add("\n");
    styles("Tab styles", loader_.tabStyleInfos(), std::nullopt, output);
    output.add("\n");
    magicGroups(output);
    reusePanels(output);
}

void LayoutView::style(const StyleConfigInfo& style, std::string_view note, Output& output) {
    drawTree(styleBranch(style, note, Shared::whole), paint_, output);
}

void LayoutView::styles(std::string_view title, const std::shared_ptr<const StyleMap>& styles,
                        const std::optional<std::string>& defaultName, Output& output) {
    std::string text = styles ? std::to_string(styles->size()) : "none";
    if (defaultName) {
        text += ", default " + printable(*defaultName);
        if (!styles || !styles->contains(*defaultName))
            text += " (there is no such style)";
    }
    output.add(headed(title, text, paint_));
    if (!styles)
        return;
    for (const auto& [name, style] : *styles) {
        const std::string_view note = defaultName == name ? "default" : "";
        output.add("\n");
        drawTree(styleBranch(*style, note, Shared::named), paint_, output);
    }
}

void LayoutView::magicGroups(Output& output) {
    const std::shared_ptr<const MagicPanelMap>& groups = loader_.magicPanelInfos();
    output.add(headed("Magic panels", std::to_string(groups->size()), paint_));
    for (const auto& [groupName, members] : *groups) {
        Branch group{printable(groupName), Tone::page};
        for (const auto& [name, panel] : *members) {
            Branch member{printable(name) + ": " + nameOr(panel->panelName(), "(no name)"),
                          Tone::slot, panelDetails(*panel)};
            addContent(member, *panel, Shared::named);
            group.children.push_back(std::move(member));
        }
        if (group.children.empty())
            group.details = "empty";
        output.add("\n");
        drawTree(group, paint_, output);
    }
}

void LayoutView::reusePanels(Output& output) {
    // One may hold others.
    std::size_t met = 0;
    while (met < reuse_.size())
        meetReusePanels(*reuse_[met++]);
    if (reuse_.empty())
        return;
    output.add('\n' + headed("Reuse panels", std::to_string(reuse_.size()) + " in use", paint_));
    for (const Panel& panel : reuse_) {
        Branch branch{nameOr(panel->panelName(), "(no name)"), Tone::reuse, panelDetails(*panel)};
        addContent(branch, *panel, Shared::named);
        output.add("\n");
        drawTree(branch, paint_, output);
    }
}

Branch LayoutView::styleBranch(const StyleConfigInfo& style, std::string_view note, Shared shared) {
    Details details;
    details.add(paint_(Tone::mark, note));
    details.add("layer " + std::to_string(style.styleLayer()));
    details.add("focus", style.styleFucus());
    Branch branch{nameOr(style.styleName(), "(no name)"), Tone::page, std::move(details)};
    const auto& panels = *style.stylePanes();
    branch.later = {panels.size(), [this, &panels, shared](std::size_t at) {
                        return panelBranch(panels[at], shared);
                    }};
    return branch;
}

Branch LayoutView::panelBranch(const Panel& panel, Shared shared) {
    Branch branch{nameOr(panel->panelName(), "(no name)")};
    std::string mark;
    const Home& home = homeOf(panel);
    const bool isElsewhere = home.member || home.isReuse;
    if (panel->isMagicPanels()) {
        branch.tone = Tone::slot;
        mark = "slot " + nameOr(panel->magicPanelsName(), "(no name)");
        // Pages keep the main file's member of a group that a later file has replaced.
        mark += home.member ? ": " + printable(*home.member) : " (main file's)";
    } else if (home.isReuse) {
        branch.tone = Tone::reuse;
        mark = "reuse";
    }
    branch.details.add(paint_(branch.tone, mark));
    branch.details.append(panelDetails(*panel));
    if (!isElsewhere || shared == Shared::whole)
        addContent(branch, *panel, shared);
    return branch;
}

void LayoutView::addContent(Branch& branch, const PanelConfigInfo& panel, Shared shared) {
    const auto& elements = *panel.paneElements();
    const auto& panels = *panel.panePanes();
    branch.later = {
        elements.size() + panels.size(), [this, &elements, &panels, shared](std::size_t at) {
            return at < elements.size() ? elementBranch(*elements[at])
                                        : panelBranch(panels[at - elements.size()], shared);
        }};
}

Branch LayoutView::elementBranch(const ElementConfigInfo& element) const {
    return {"• " + nameOr(element.elementName(), "(no name)"), Tone::element,
            elementDetails(element)};
}

Details LayoutView::panelDetails(const PanelConfigInfo& panel) const {
    Details details;
    if (panel.paneVertical())
        details.add("↓");
    else if (!panel.panePanes()->empty())
        details.add("→");
    details.add("scale", panel.splitScale(), 1);
    details.add("fixed", panel.fixSize(), -1);
    details.add("min", panel.minSize(), 0);
    details.add("max", panel.maxSize(), 0);
    details.addIf(panel.isScrollView(), "scrolls");
    details.addIf(panel.scrollSize() != 0, "scroll size " + std::to_string(panel.scrollSize()));
    details.addIf(panel.isDisSplitSpace(), "split bar");
    details.addIf(panel.isDispWideBound(), "wide bound");
    details.addIf(panel.isBorderRaduis(), "rounded");
    details.addIf(panel.isBorderRightAngle(), "square");
    details.add("border", panel.displayBorders());
    details.addIf(panel.isEditable(), "editable");
    details.add("expands", panel.switchExpandPanelName());
    details.add("folds", panel.foldPosition());
    details.add("command", panel.excuteCommandInfo());
    return details;
}

Details LayoutView::elementDetails(const ElementConfigInfo& element) const {
    Details details;
    if (element.elementParam())
        details.add('"' + printable(*element.elementParam()) + '"');
    if (element.elementProperty())
        details.add('[' + printable(*element.elementProperty()) + ']');
    details.add("uuid", element.elementUuid());
    details.add("event", element.elementEvent());
    details.add("to", element.eventDispathDestArray());
    details.add("from", element.eventDispathSrcArray());
    details.addIf(element.isFristReponder(), "first");
    details.addIf(element.alwaysRecvEvent(), "always");
    details.addIf(element.eventNotChangeStyle(), "keeps style");
    return details;
}

/// Found once for each panel. A reuse panel is met with it.
const LayoutView::Home& LayoutView::homeOf(const Panel& panel) {
    const auto [found, isNew] = homes_.try_emplace(panel.get());
    Home& home = found->second;
    if (isNew && panel->isMagicPanels())
        home.member = memberName(panel);
    else if (isNew && isReusePanel(panel)) {
        home.isReuse = true;
        reuse_.push_back(panel);
    }
    return home;
}

/// Meets the reuse panels that the panel holds.
void LayoutView::meetReusePanels(const PanelConfigInfo& panel) {
    for (const Panel& child : *panel.panePanes()) {
        const Home& home = homeOf(child);
        if (!home.member && !home.isReuse)
            meetReusePanels(*child);
    }
}

/// The records do not say that they came from the reuse file.
bool LayoutView::isReusePanel(const Panel& panel) const {
    const auto& name = panel->panelName();
    const auto& all = loader_.reusePanelInfos();
    const Panel* const found = name && all ? all->find(*name) : nullptr;
    return found && *found == panel;
}

/// The name under which the panel is in its group; null when it is not there.
const std::string* LayoutView::memberName(const Panel& panel) const {
    if (!panel->magicPanelsName())
        return nullptr;
    const auto* group = loader_.magicPanelInfos()->find(*panel->magicPanelsName());
    if (!group)
        return nullptr;
    for (const auto& [name, member] : **group) {
        if (member == panel)
            return &name;
    }
    return nullptr;
}

}  // namespace yg::tool
