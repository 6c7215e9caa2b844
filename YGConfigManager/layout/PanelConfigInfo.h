// SPDX-License-Identifier: MIT
//
// One panel of a page, also called a pane: it holds child panels and elements. A plain record, held
// by shared pointers: a reuse panel or a magic panel stands as one and the same record in every
// page that names it, so copy a record before changing it for one page. Not synchronised: a record
// that one thread changes must not be read by another, but a page that shows the panel changes
// nothing in this sense, see magicPanelsName(). Setters that need memory of their own answer false,
// and change nothing, when that does not suffice.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "YGConfigManager/export.h"
#include "YGConfigManager/layout/ElementConfigInfo.h"
#include "YGConfigManager/records/Description.h"
#include "YGConfigManager/text/OwnedText.h"

namespace yg {

class PanelConfigInfo;

/// Lists that records hold by reference; setters store the reference.
using PanelList = std::vector<std::shared_ptr<PanelConfigInfo>>;
using ElementList = std::vector<std::shared_ptr<ElementConfigInfo>>;

class YG_EXPORT PanelConfigInfo {
public:
    /// The panel's name ("name"). An editable panel inside a magic panel is named
    /// group-member-name.
    const std::optional<std::string>& panelName() const { return panelName_; }
    void setPanelName(OwnedText name) { panelName_ = std::move(name); }

    /// Children are laid out one below the other, otherwise side by side ("vertical").
    bool paneVertical() const { return paneVertical_; }
    void setPaneVertical(bool vertical) { paneVertical_ = vertical; }

    /// The panel scrolls ("is_scroll_view").
    bool isScrollView() const { return isScrollView_; }
    void setIsScrollView(bool is) { isScrollView_ = is; }

    /// Scroll extent in points ("scroll_size").
    std::int32_t scrollSize() const { return scrollSize_; }
    void setScrollSize(std::int32_t size) { scrollSize_ = size; }

    /// The split bar shows ("is_dis_split_space"). True in a panel built in code; in one read from
    /// a file a missing attribute means false.
    bool isDisSplitSpace() const { return isDisSplitSpace_; }
    void setIsDisSplitSpace(bool is) { isDisSplitSpace_ = is; }

    /// A wide boundary shows ("is_dis_wide_bound").
    bool isDispWideBound() const { return isDispWideBound_; }
    void setIsDispWideBound(bool is) { isDispWideBound_ = is; }

    /// Rounded border ("is_border_radius"). Spelt so in the interface.
    bool isBorderRaduis() const { return isBorderRaduis_; }
    void setIsBorderRaduis(bool is) { isBorderRaduis_ = is; }

    /// Square-cornered border ("is_border_right_angle").
    bool isBorderRightAngle() const { return isBorderRightAngle_; }
    void setIsBorderRightAngle(bool is) { isBorderRightAngle_ = is; }

    /// Child panels in document order; an empty list in a new panel.
    const std::shared_ptr<PanelList>& panePanes() const { return panePanes_; }
    void setPanePanes(std::shared_ptr<PanelList> panes) { panePanes_ = std::move(panes); }

    /// Child elements in document order; an empty list in a new panel.
    const std::shared_ptr<ElementList>& paneElements() const { return paneElements_; }
    void setPaneElements(std::shared_ptr<ElementList> elements) {
        paneElements_ = std::move(elements);
    }

    /// The panel is a magic panel: it fills a slot and can be swapped.
    bool isMagicPanels() const { return isMagicPanels_; }
    void setIsMagicPanels(bool is) { isMagicPanels_ = is; }

    /// The panel that is switched to when this one is expanded, the fold name
    /// ("switch_expand_panel").
    const std::optional<std::string>& switchExpandPanelName() const {
        return rare().switchExpandPanelName;
    }
    bool setSwitchExpandPanelName(OwnedText name) noexcept {
        return setRare(&RareTexts::switchExpandPanelName, std::move(name));
    }

    /// Where the panel folds ("foldPosition").
    const std::optional<std::string>& foldPosition() const { return rare().foldPosition; }
    bool setFoldPosition(OwnedText position) noexcept {
        return setRare(&RareTexts::foldPosition, std::move(position));
    }

    /// The magic panel group that the panel came from, once a page's slot has shown it. The loader
    /// may show it on another thread meanwhile.
    const std::optional<std::string>& magicPanelsName() const {
        const bool isShown = shown().load(std::memory_order_acquire);
        return (isShown ? rare() : noRareTexts()).magicPanelsName;
    }
    bool setMagicPanelsName(OwnedText name) noexcept {
        if (!setRare(&RareTexts::magicPanelsName, std::move(name)))
            return false;
        isShown_ = true;
        return true;
    }

    /// Which borders are drawn, as written in the file ("display_border").
    const std::optional<std::string>& displayBorders() const { return rare().displayBorders; }
    bool setDisplayBorders(OwnedText borders) noexcept {
        return setRare(&RareTexts::displayBorders, std::move(borders));
    }

    /// The user may edit the panel ("is_editable").
    bool isEditable() const { return isEditable_; }
    void setIsEditable(bool is) { isEditable_ = is; }

    /// Command information ("excute_command_info"). Spelt so in the interface and in the file.
    const std::optional<std::string>& excuteCommandInfo() const { return rare().excuteCommandInfo; }
    bool setExcuteCommandInfo(OwnedText info) noexcept {
        return setRare(&RareTexts::excuteCommandInfo, std::move(info));
    }

    /// Share of the parent's space ("split_scale"): 1 when the attribute is missing, 0 when it is
    /// not a number.
    float splitScale() const { return splitScale_; }
    void setSplitScale(float scale) { splitScale_ = scale; }

    /// Fixed size in points ("fix_size"); -1 means none.
    float fixSize() const { return fixSize_; }
    void setFixSize(float size) { fixSize_ = size; }

    /// Smallest size in whole points ("min_size").
    float minSize() const { return minSize_; }
    void setMinSize(float size) { minSize_ = size; }

    /// Largest size in whole points ("max_size").
    float maxSize() const { return maxSize_; }
    void setMaxSize(float size) { maxSize_ = size; }

    /// A copy with copies of all child panels. It shares this panel's list of elements, so that an
    /// element appended to either shows in both. The right-angle flag, the fold position and the
    /// displayed borders are not copied. Null when memory does not suffice.
    std::shared_ptr<PanelConfigInfo> copyWithZone() const;

    /// Two lines for debugging, in Chinese: name, "V" or "H", address, the four border flags, fold
    /// name and fold position; an absent text prints as "(null)". "" when memory does not suffice.
    std::string description() const;

private:
    /// Texts that few panels have, together so that the others do not pay for them.
    struct RareTexts {
        std::optional<std::string> switchExpandPanelName;
        std::optional<std::string> foldPosition;
        std::optional<std::string> magicPanelsName;
        std::optional<std::string> displayBorders;
        std::optional<std::string> excuteCommandInfo;
    };

    static const RareTexts& noRareTexts();
    const RareTexts& rare() const { return rare_ ? *rare_ : noRareTexts(); }
    bool setRare(std::optional<std::string> RareTexts::*text,
                 std::optional<std::string> value) noexcept {
        if (!rare_) {
            if (!value)
                return true;
            rare_.reset(new (std::nothrow) RareTexts);
            if (!rare_)
                return false;
        }
        (*rare_).*text = std::move(value);
        return true;
    }

    friend class StyleConfigInfo;
    friend class YGStyleConfigLoad;
    std::shared_ptr<PanelConfigInfo> copied() const;

    /// Keeps the name of the panel's group, so that showing the panel only sets a flag. False when
    /// memory does not suffice.
    bool prepareToShow(std::string_view group) {
        return setRare(&RareTexts::magicPanelsName, std::string(group));
    }
    /// Makes the name of the group the panel's. False when memory does not suffice, which cannot be
    /// if that name was prepared.
    bool show(std::string_view group) {
        if (rare().magicPanelsName != group)
            return setMagicPanelsName(group);
        shown().store(true, std::memory_order_release);
        return true;
    }
    std::atomic_ref<bool> shown() const { return std::atomic_ref<bool>(isShown_); }

    std::optional<std::string> panelName_;
    std::unique_ptr<RareTexts> rare_;
    std::shared_ptr<PanelList> panePanes_ = std::make_shared<PanelList>();
    std::shared_ptr<ElementList> paneElements_ = std::make_shared<ElementList>();
    std::int32_t scrollSize_ = 0;
    float splitScale_ = 1.0f;
    float fixSize_ = -1.0f;
    float minSize_ = 0.0f;
    float maxSize_ = 0.0f;
    bool paneVertical_ = false;
    bool isScrollView_ = false;
    bool isDisSplitSpace_ = true;
    bool isDispWideBound_ = false;
    bool isBorderRaduis_ = false;
    bool isBorderRightAngle_ = false;
    bool isMagicPanels_ = false;
    bool isEditable_ = false;
    /// Whether a slot has shown the panel; set while others read. Not a std::atomic, which could
    /// not be moved.
    mutable bool isShown_ = false;
};

template <>
struct Description<PanelConfigInfo> {
    using Panel = PanelConfigInfo;
    using enum AttributeKind;
    static constexpr std::tuple fields{
        Field{"panelName", &Panel::panelName, &Panel::setPanelName,
              AttributeInfo{.name = "name",
                            .sentence = "The name of the panel. The name of an editable panel in a "
                                        "magic panel is read as GROUP-MEMBER-NAME.",
                            .names = Naming::panel,
                            .defines = true}},
        Field{"paneVertical", &Panel::paneVertical, &Panel::setPaneVertical,
              AttributeInfo{"vertical", flag,
                            "The children are laid out one below the other, otherwise side by "
                            "side."}},
        Field{"isScrollView", &Panel::isScrollView, &Panel::setIsScrollView,
              AttributeInfo{"is_scroll_view", flag, "The panel scrolls."}},
        Field{"scrollSize", &Panel::scrollSize, &Panel::setScrollSize,
              AttributeInfo{"scroll_size", integer, "The scroll extent in points."}},
        Field{"isDisSplitSpace", &Panel::isDisSplitSpace, &Panel::setIsDisSplitSpace,
              AttributeInfo{"is_dis_split_space", flag, "The split bar is shown."}},
        Field{"isDispWideBound", &Panel::isDispWideBound, &Panel::setIsDispWideBound,
              AttributeInfo{"is_dis_wide_bound", flag, "A wide boundary is shown."}},
        Field{"isBorderRaduis", &Panel::isBorderRaduis, &Panel::setIsBorderRaduis,
              AttributeInfo{"is_border_radius", flag, "The border is rounded."}},
        Field{"isBorderRightAngle", &Panel::isBorderRightAngle, &Panel::setIsBorderRightAngle,
              AttributeInfo{"is_border_right_angle", flag, "The border has square corners."},
              false},
        Field{"panePanes", &Panel::panePanes},
        Field{"paneElements", &Panel::paneElements, &Panel::setPaneElements},
        Field{"isMagicPanels", &Panel::isMagicPanels, &Panel::setIsMagicPanels},
        Field{"switchExpandPanelName", &Panel::switchExpandPanelName,
              &Panel::setSwitchExpandPanelName,
              AttributeInfo{"switch_expand_panel", text,
                            "The panel that is switched to when this one is expanded.",
                            Naming::panel}},
        Field{"foldPosition", &Panel::foldPosition, &Panel::setFoldPosition,
              AttributeInfo{"foldPosition", text,
                            "Where the panel folds. The attribute is spelt like this, without an "
                            "underscore."},
              false},
        Field{"magicPanelsName", &Panel::magicPanelsName, &Panel::setMagicPanelsName},
        Field{"displayBorders", &Panel::displayBorders, &Panel::setDisplayBorders,
              AttributeInfo{"display_border", text, "The borders that are drawn."}, false},
        Field{"isEditable", &Panel::isEditable, &Panel::setIsEditable,
              AttributeInfo{"is_editable", flag, "The user may edit the panel."}},
        Field{"excuteCommandInfo", &Panel::excuteCommandInfo, &Panel::setExcuteCommandInfo,
              AttributeInfo{"excute_command_info", text,
                            "The command of the panel; the application knows when it is triggered. "
                            "The attribute is spelt like this.",
                            Naming::command}},
        Field{"splitScale", &Panel::splitScale, &Panel::setSplitScale,
              AttributeInfo{.name = "split_scale",
                            .kind = decimal,
                            .sentence = "The panel's share of the parent's space.",
                            .whenMissing = "1.0"}},
        Field{"fixSize", &Panel::fixSize, &Panel::setFixSize,
              AttributeInfo{.name = "fix_size",
                            .kind = decimal,
                            .sentence = "A fixed size in points; -1 means that there is none.",
                            .whenMissing = "-1.0"}},
        Field{"minSize", &Panel::minSize, &Panel::setMinSize,
              AttributeInfo{"min_size", wholeNumber, "The smallest size in whole points."}},
        Field{"maxSize", &Panel::maxSize, &Panel::setMaxSize,
              AttributeInfo{"max_size", wholeNumber, "The largest size in whole points."}},
    };
};

}  // namespace yg
