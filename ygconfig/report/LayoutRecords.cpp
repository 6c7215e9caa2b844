// SPDX-License-Identifier: MIT
#include "ygconfig/report/LayoutRecords.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace yg::tool {

namespace {

using Numbers = LayoutRecords::Numbers;

/// What `write` writes, as a text of its own.
template <class Write>
std::string jsonOf(const Write& write) {
    std::string text;
    const Sink append = [&](std::string_view piece) { text += piece; };
    Output output(append);
    JsonWriter json(output, JsonForm::inHtml);
    json.object([&] { write(json); });
    output.flush();
    return text;
}

void addNumbers(std::string& text, const Numbers& numbers) {
    for (const std::size_t number : numbers)
        text.append(",").append(std::to_string(number));
    text += ';';
}

}  // namespace

std::size_t LayoutRecords::add(const PanelConfigInfo& panel) {
    const auto [found, isNew] = stored_.try_emplace(&panel, panels_.size());
    if (isNew)
        panels_.push_back({&panel, contentCount_++});
    return found->second;
}

std::size_t LayoutRecords::elementNumber(const ElementConfigInfo& element) {
    const auto [found, isNew] = stored_.try_emplace(&element, elements_.size());
    if (isNew) {
        elements_.push_back(&element);
        elementContents_.try_emplace(contentOf(element), found->second);
    }
    return found->second;
}

std::size_t LayoutRecords::numberOf(const PanelConfigInfo& panel) {
    std::size_t next = panels_.size();
    const std::size_t number = add(panel);
    // Each panel that this adds is filled, and adds those in it.
    for (; next < panels_.size(); ++next) {
        const PanelConfigInfo& record = *panels_[next].record;
        for (const auto& child : *record.panePanes()) {
            const std::size_t childNumber = add(*child);
            panels_[next].panels.push_back(childNumber);
        }
        for (const auto& element : *record.paneElements())
            panels_[next].elements.push_back(elementNumber(*element));
    }
    return number;
}

Numbers LayoutRecords::numbersOf(const PanelList& panels) {
    Numbers numbers;
    for (const auto& panel : panels)
        numbers.push_back(numberOf(*panel));
    return numbers;
}

Numbers LayoutRecords::numbersOfBuilt(const PanelList& panels) {
    struct Open {
        const PanelConfigInfo* panel;  ///< null for the page
        const PanelList& list;
        Numbers numbers = {};
    };
    std::vector<Open> open{{nullptr, panels}};
    while (true) {
        Open& top = open.back();
        if (top.numbers.size() < top.list.size()) {
            const PanelConfigInfo& panel = *top.list[top.numbers.size()];
            if (const auto known = stored_.find(&panel); known != stored_.end())
                top.numbers.push_back(known->second);
            else
                open.push_back({&panel, *panel.panePanes()});
            continue;
        }
        if (!top.panel)
            return std::move(top.numbers);
        const std::size_t number = builtPanelNumber(*top.panel, std::move(top.numbers));
        open.pop_back();
        open.back().numbers.push_back(number);
    }
}

std::string LayoutRecords::contentOf(const ElementConfigInfo& element) const {
    return jsonOf([&](JsonWriter& json) { writeElement(json, element); });
}

std::size_t LayoutRecords::builtElementNumber(const ElementConfigInfo& element) {
    const auto [found, isNew] = elementContents_.try_emplace(contentOf(element), elements_.size());
    if (isNew)
        elements_.push_back(&element);
    return found->second;
}

std::size_t LayoutRecords::builtPanelNumber(const PanelConfigInfo& panel, Numbers panels) {
    Numbers elements;
    for (const auto& element : *panel.paneElements())
        elements.push_back(builtElementNumber(*element));
    std::string key = jsonOf([&](JsonWriter& json) { writePanel(json, panel); });
    addNumbers(key, elements);
    const auto [content, isNewContent] = contents_.try_emplace(key, contentCount_);
    if (isNewContent)
        ++contentCount_;
    addNumbers(key, panels);
    const auto [found, isNew] = builtPanels_.try_emplace(std::move(key), panels_.size());
    if (isNew)
        panels_.push_back({&panel, content->second, std::move(panels), std::move(elements)});
    return found->second;
}

std::optional<Numbers> LayoutRecords::difference(const Numbers& one, const Numbers& other) const {
    Numbers way;
    const Numbers* left = &one;
    const Numbers* right = &other;
    if (*left == *right)
        return std::nullopt;
    while (left->size() == right->size()) {
        const auto [inLeft, inRight] = std::ranges::mismatch(*left, *right);
        const bool isOnlyOne = std::equal(inLeft + 1, left->end(), inRight + 1);
        if (!isOnlyOne)
            break;
        way.push_back(static_cast<std::size_t>(inLeft - left->begin()));
        const Panel& leftPanel = panels_[*inLeft];
        const Panel& rightPanel = panels_[*inRight];
        if (leftPanel.content != rightPanel.content)
            break;
        left = &leftPanel.panels;
        right = &rightPanel.panels;
    }
    return way;
}

std::size_t LayoutRecords::panelAt(const Numbers& panels, const Numbers& way) const {
    const Numbers* list = &panels;
    std::size_t number = 0;
    for (const std::size_t at : way) {
        number = list->at(at);
        list = &panels_[number].panels;
    }
    return number;
}

void LayoutRecords::writePanel(JsonWriter& json, const PanelConfigInfo& panel) const {
    writeFields(json, panel);
    source_.places.writeAt(json, source_.contents.placeOf(&panel));
}

void LayoutRecords::writeElement(JsonWriter& json, const ElementConfigInfo& element) const {
    writeFields(json, element);
    if (element.eventDispathDestArray())
        json.member("eventDispathDestArray", element.eventDispathDestArray());
    if (element.eventDispathSrcArray())
        json.member("eventDispathSrcArray", element.eventDispathSrcArray());
    source_.places.writeAt(json, source_.contents.placeOf(&element));
}

void LayoutRecords::write(JsonWriter& json) const {
    json.member("panels", [&] {
        json.list(panels_, [&](const Panel& panel) {
            json.object([&] {
                writePanel(json, *panel.record);
                if (!panel.panels.empty())
                    json.member("panels", panel.panels);
                if (!panel.elements.empty())
                    json.member("elements", panel.elements);
            });
        });
    });
    json.member("elements", [&] {
        json.list(elements_, [&](const ElementConfigInfo* element) {
            json.object([&] { writeElement(json, *element); });
        });
    });
}

}  // namespace yg::tool
