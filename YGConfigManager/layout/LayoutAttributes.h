// SPDX-License-Identifier: MIT
//
// The attributes of the layout files, row for row in the order of the format.
#pragma once

#include "YGConfigManager/layout/ElementConfigInfo.h"
#include "YGConfigManager/layout/PanelConfigInfo.h"
#include "YGConfigManager/layout/StyleConfigInfo.h"
#include "YGConfigManager/records/AttributeTable.h"

namespace yg {

/// A panel in whatever file: "panel", "reuse_panel" in its own file, the panel of a magic panel.
inline constexpr AttributeRow<PanelConfigInfo> panelAttributes[] = {
    textRow<&PanelConfigInfo::setPanelName, PanelConfigInfo>("name", "panelName"),
    decimalRow<&PanelConfigInfo::setSplitScale, PanelConfigInfo>("split_scale", "splitScale",
                                                                 "1.0"),
    decimalRow<&PanelConfigInfo::setFixSize, PanelConfigInfo>("fix_size", "fixSize", "-1.0"),
    integerRow<&PanelConfigInfo::setScrollSize, PanelConfigInfo>("scroll_size", "scrollSize"),
    // Whole numbers in float fields: 12.7 gives 12.
    integerAsFloatRow<&PanelConfigInfo::setMinSize, PanelConfigInfo>("min_size", "minSize"),
    integerAsFloatRow<&PanelConfigInfo::setMaxSize, PanelConfigInfo>("max_size", "maxSize"),
    flagRow<&PanelConfigInfo::setPaneVertical, PanelConfigInfo>("vertical", "paneVertical"),
    flagRow<&PanelConfigInfo::setIsScrollView, PanelConfigInfo>("is_scroll_view", "isScrollView"),
    flagRow<&PanelConfigInfo::setIsDisSplitSpace, PanelConfigInfo>("is_dis_split_space",
                                                                   "isDisSplitSpace"),
    flagRow<&PanelConfigInfo::setIsDispWideBound, PanelConfigInfo>("is_dis_wide_bound",
                                                                   "isDispWideBound"),
    flagRow<&PanelConfigInfo::setIsBorderRaduis, PanelConfigInfo>("is_border_radius",
                                                                  "isBorderRaduis"),
    flagRow<&PanelConfigInfo::setIsEditable, PanelConfigInfo>("is_editable", "isEditable"),
    flagRow<&PanelConfigInfo::setIsBorderRightAngle, PanelConfigInfo>("is_border_right_angle",
                                                                      "isBorderRightAngle"),
    textRow<&PanelConfigInfo::setDisplayBorders, PanelConfigInfo>("display_border",
                                                                  "displayBorders"),
    textRow<&PanelConfigInfo::setSwitchExpandPanelName, PanelConfigInfo>("switch_expand_panel",
                                                                         "switchExpandPanelName"),
    // In camel case in the format, unlike all others.
    textRow<&PanelConfigInfo::setFoldPosition, PanelConfigInfo>("foldPosition", "foldPosition"),
    textRow<&PanelConfigInfo::setExcuteCommandInfo, PanelConfigInfo>("excute_command_info",
                                                                     "excuteCommandInfo"),
};

/// An "element" in a panel.
inline constexpr AttributeRow<ElementConfigInfo> elementAttributes[] = {
    textRow<&ElementConfigInfo::setElementName, ElementConfigInfo>("name", "elementName"),
    textRow<&ElementConfigInfo::setElementParam, ElementConfigInfo>("param", "elementParam"),
    textRow<&ElementConfigInfo::setElementProperty, ElementConfigInfo>("property",
                                                                       "elementProperty"),
    textRow<&ElementConfigInfo::setElementUuid, ElementConfigInfo>("uuid", "elementUuid"),
    textRow<&ElementConfigInfo::setElementEvent, ElementConfigInfo>("event", "elementEvent"),
    nameListRow<&ElementConfigInfo::setEventDispathDestArray, ElementConfigInfo>(
        "event_dispatch_dest", "eventDispathDestArray"),
    nameListRow<&ElementConfigInfo::setEventDispathSrcArray, ElementConfigInfo>(
        "event_dispatch_src", "eventDispathSrcArray"),
    flagRow<&ElementConfigInfo::setEventNotChangeStyle, ElementConfigInfo>("event_not_change_style",
                                                                           "eventNotChangeStyle"),
    flagRow<&ElementConfigInfo::setIsFristReponder, ElementConfigInfo>("is_first_responder",
                                                                       "isFristReponder"),
    flagRow<&ElementConfigInfo::setAlwaysRecvEvent, ElementConfigInfo>("always_recv_event",
                                                                       "alwaysRecvEvent"),
};

/// A style of a style file.
inline constexpr AttributeRow<StyleConfigInfo> styleAttributes[] = {
    textRow<&StyleConfigInfo::setStyleName, StyleConfigInfo>("name", "styleName"),
    integerRow<&StyleConfigInfo::setStyleLayer, StyleConfigInfo>("layer", "styleLayer"),
    textRow<&StyleConfigInfo::setStyleFucus, StyleConfigInfo>("focus", "styleFucus"),
};

}  // namespace yg
