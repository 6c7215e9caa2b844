// SPDX-License-Identifier: MIT
//
// The panels and elements of the report's model, each listed once under a number: stored ones by
// the record, which many pages share, those of built pages by what they hold, and elements of these
// that look as stored ones and have their place are the same. Throws std::bad_alloc and what the
// sink throws.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "YGConfigManager/layout/PanelConfigInfo.h"

#include "ygconfig/report/Model.h"

namespace yg::tool {

class LayoutRecords {
public:
    using Numbers = std::vector<std::size_t>;

    explicit LayoutRecords(ModelSource& source) : source_(source) {}

    /// The number of a stored panel, with all below it.
    std::size_t numberOf(const PanelConfigInfo& panel);
    Numbers numbersOf(const PanelList& panels);

    /// The numbers of panels that were made for one page. What they hold that is stored keeps its
    /// number; the rest is the same as what is known if it looks the same and has the same place.
    /// The records must outlive this object.
    Numbers numbersOfBuilt(const PanelList& panels);

    /// Where two trees of numbered panels differ: the way to the one panel that is another one or
    /// has other attributes or elements, by its place among the panels of the one before. It ends
    /// with the panel that holds all differences; empty for the page itself. Absent when the trees
    /// are the same.
    std::optional<Numbers> difference(const Numbers& one, const Numbers& other) const;

    /// The panel at the end of a way, which must be there.
    std::size_t panelAt(const Numbers& panels, const Numbers& way) const;

    /// The members "panels" and "elements" of the object that is being written.
    void write(JsonWriter& json) const;

private:
    struct Panel {
        const PanelConfigInfo* record;
        std::size_t content;  ///< the same for panels that differ in what is below them alone
        Numbers panels = {};
        Numbers elements = {};
    };

    std::size_t add(const PanelConfigInfo& panel);
    std::size_t elementNumber(const ElementConfigInfo& element);
    std::string contentOf(const ElementConfigInfo& element) const;
    std::size_t builtElementNumber(const ElementConfigInfo& element);
    std::size_t builtPanelNumber(const PanelConfigInfo& panel, Numbers panels);
    void writePanel(JsonWriter& json, const PanelConfigInfo& panel) const;
    void writeElement(JsonWriter& json, const ElementConfigInfo& element) const;

    ModelSource& source_;
    std::vector<Panel> panels_;
    std::vector<const ElementConfigInfo*> elements_;
    std::unordered_map<const void*, std::size_t> stored_;
    std::unordered_map<std::string, std::size_t> elementContents_;
    std::unordered_map<std::string, std::size_t> contents_;     ///< of built panels
    std::unordered_map<std::string, std::size_t> builtPanels_;  ///< by content and children
    std::size_t contentCount_ = 0;
};

}  // namespace yg::tool
