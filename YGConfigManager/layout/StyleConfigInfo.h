// SPDX-License-Identifier: MIT
//
// One style: a page of the terminal with its top-level panels. A plain record, held by shared
// pointers. Not synchronised: a record that one thread changes must not be read by another.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "YGConfigManager/export.h"
#include "YGConfigManager/layout/PanelConfigInfo.h"
#include "YGConfigManager/records/Description.h"
#include "YGConfigManager/text/OwnedText.h"

namespace yg {

class YG_EXPORT StyleConfigInfo {
public:
    /// Names in the order in which the file lists them; null for none.
    using Names = std::shared_ptr<std::vector<std::string>>;

    /// The style's name, the key under which it is stored ("name").
    const std::optional<std::string>& styleName() const { return styleName_; }
    void setStyleName(OwnedText name) { styleName_ = std::move(name); }

    /// The style's layer number ("layer").
    std::int32_t styleLayer() const { return styleLayer_; }
    void setStyleLayer(std::int32_t layer) { styleLayer_ = layer; }

    /// The style's focus ("focus"). Spelt so in the interface.
    const std::optional<std::string>& styleFucus() const { return styleFucus_; }
    void setStyleFucus(OwnedText focus) { styleFucus_ = std::move(focus); }

    /// Names of magic panel groups, a slot for the host: the library never fills it, so it is null
    /// until the host does.
    const Names& magicPanelsNameArray() const { return magicPanelsNameArray_; }
    void setMagicPanelsNameArray(Names names) { magicPanelsNameArray_ = std::move(names); }

    /// The top-level panels in document order; an empty list in a new style.
    const std::shared_ptr<PanelList>& stylePanes() const { return stylePanes_; }
    void setStylePanes(std::shared_ptr<PanelList> panes) { stylePanes_ = std::move(panes); }

    /// A copy with copies of all panels (PanelConfigInfo::copyWithZone). The host's slot for magic
    /// panel groups is not copied. Null when memory does not suffice.
    std::shared_ptr<StyleConfigInfo> copyWithZone() const;

private:
    std::shared_ptr<StyleConfigInfo> copied() const;

    std::optional<std::string> styleName_;
    std::optional<std::string> styleFucus_;
    Names magicPanelsNameArray_;
    std::shared_ptr<PanelList> stylePanes_ = std::make_shared<PanelList>();
    std::int32_t styleLayer_ = 0;
};

template <>
struct Description<StyleConfigInfo> {
    using Style = StyleConfigInfo;
    static constexpr std::tuple fields{
        Field{"styleName", &Style::styleName, &Style::setStyleName,
              AttributeInfo{.name = "name",
                            .sentence = "The name of the page.",
                            .names = Naming::style,
                            .defines = true,
                            .isRequired = true}},
        Field{"styleLayer", &Style::styleLayer, &Style::setStyleLayer,
              AttributeInfo{"layer", AttributeKind::integer, "The number of the page's layer."}},
        Field{"styleFucus", &Style::styleFucus, &Style::setStyleFucus,
              AttributeInfo{"focus", AttributeKind::text,
                            "The panel that has the focus when the page opens.", Naming::panel}},
        Field{"magicPanelsNameArray", &Style::magicPanelsNameArray},
        Field{"stylePanes", &Style::stylePanes},
    };
};

}  // namespace yg
