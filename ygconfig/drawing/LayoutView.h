// SPDX-License-Identifier: MIT
//
// The layout as text for people: a tree for each style, for each group of magic panels and for the
// reuse panels that they name.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "YGConfigManager/layout/YGStyleConfigLoad.h"

#include "ygconfig/drawing/Paint.h"
#include "ygconfig/drawing/Tree.h"

namespace yg::tool {

/// Explains the words and signs of the trees; lines, each with its line feed.
inline constexpr std::string_view layoutLegend =
    "What the trees say; what is off or has its default value is left out:\n"
    "  ↓ →                            children below or beside each other (vertical)\n"
    "  scale, fixed, min, max         split_scale, fix_size, min_size, max_size\n"
    "  scrolls, scroll size           is_scroll_view, scroll_size\n"
    "  split bar, wide bound          is_dis_split_space, is_dis_wide_bound\n"
    "  rounded, square, border        is_border_radius, is_border_right_angle, display_border\n"
    "  editable, command              is_editable, excute_command_info\n"
    "  expands, folds                 switch_expand_panel, foldPosition\n"
    "  reuse                          one record of reuse_panels.xml, shared by all that name it\n"
    "  slot GROUP: MEMBER             a slot for magic panels and the member that it shows\n"
    "  slot GROUP (main file's)       the same, where soft_optimize has replaced the group since\n"
    "  • NAME \"PARAM\" [PROPERTY]      an element, with its uuid and event\n"
    "  to, from                       event_dispatch_dest, event_dispatch_src\n"
    "  first, always, keeps style     is_first_responder, always_recv_event, "
    "event_not_change_style\n";

class LayoutView {
public:
    /// The loader must outlive the view.
    LayoutView(const YGStyleConfigLoad& loader, const Paint& paint)
        : loader_(loader), paint_(paint) {}

    /// Puts out everything. Panels that several places share are drawn once, in sections of their
    /// own, and named in the trees.
    void layout(Output& output);

    /// Puts out one style with all that is in it. `note` stands beside its name; empty for none.
    void style(const StyleConfigInfo& style, std::string_view note, Output& output);

private:
    using Panel = std::shared_ptr<PanelConfigInfo>;

    /// Whether a tree names the panels that have a section of their own or holds them whole.
    enum class Shared { named, whole };

    /// Where a panel stands beside the places that hold it.
    struct Home {
        const std::string* member = nullptr;  ///< its name in its group of magic panels
        bool isReuse = false;                 ///< in the reuse file
    };

    void styles(std::string_view title, const std::shared_ptr<const StyleMap>& styles,
                const std::optional<std::string>& defaultName, Output& output);
    void magicGroups(Output& output);
    void reusePanels(Output& output);

    Branch styleBranch(const StyleConfigInfo& style, std::string_view note, Shared shared);
    Branch panelBranch(const Panel& panel, Shared shared);
    void addContent(Branch& branch, const PanelConfigInfo& panel, Shared shared);
    Branch elementBranch(const ElementConfigInfo& element) const;
    Details panelDetails(const PanelConfigInfo& panel) const;
    Details elementDetails(const ElementConfigInfo& element) const;

    const Home& homeOf(const Panel& panel);
    void meetReusePanels(const PanelConfigInfo& panel);
    bool isReusePanel(const Panel& panel) const;
    const std::string* memberName(const Panel& panel) const;

    const YGStyleConfigLoad& loader_;
    const Paint paint_;
    std::vector<Panel> reuse_;                                ///< those met so far, in that order
    std::unordered_map<const PanelConfigInfo*, Home> homes_;  ///< of the panels met so far
};

}  // namespace yg::tool
