// SPDX-License-Identifier: MIT
#include "YGConfigManager/layout/Expansion.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "YGConfigManager/host/Log.h"
#include "YGConfigManager/layout/Walk.h"

namespace yg {

namespace {

void add(Extent& to, const Extent& extent) {
    to.elements += extent.elements;
    to.bytes += extent.bytes;
}

/// A node without what is below it, but with the white space that an element holds hidden.
Extent extentOfOne(const xml::Node& node) {
    const xml::Element element(node);
    Extent extent{1, node.name().size()};
    if (!element || !element.hasChildren())
        extent.bytes += node.stringValue().size();
    for (const xml::Attribute attribute : element.attributes())
        add(extent, {1, attribute.name.size() + attribute.value.size()});
    return extent;
}

// The fields of records: texts and lists of them count, numbers and flags are part of the record.
template <class Number>
void addField(Extent&, const Number&) {}

void addField(Extent& extent, const std::optional<std::string>& text) {
    extent.bytes += text ? text->size() : 0;
}

void addField(Extent& extent, const std::shared_ptr<std::vector<std::string>>& names) {
    if (!names)
        return;
    for (const std::string& name : *names)
        add(extent, {1, name.size()});
}

void addField(Extent& extent, const std::shared_ptr<ElementList>& elements) {
    for (const auto& element : *elements) {
        ++extent.elements;
        forEachField(*element,
                     [&](std::string_view, const auto& field) { addField(extent, field); });
    }
}

/// How often a text occurs in another, as replacing counts.
std::size_t occurrences(std::string_view text, std::string_view target) {
    std::size_t count = 0;
    if (target.empty())
        return count;
    for (std::size_t found = text.find(target); found != std::string_view::npos;
         found = text.find(target, found + target.size()))
        ++count;
    return count;
}

thread_local Expansion* counting = nullptr;

}  // namespace

Extent extentOf(const xml::Node& node) {
    if (!node)
        return {};
    Extent extent = extentOfOne(node);
    forEachNodeBelow(xml::Element(node),
                     [&](const xml::Node& below) { add(extent, extentOfOne(below)); });
    return extent;
}

Extent extentOfXml(std::string_view text) {
    // Each element and each text is followed or begun by a "<", and each attribute has a "=".
    const auto count = [&](char c) {
        return static_cast<std::size_t>(std::count(text.begin(), text.end(), c));
    };
    return {2 * count('<') + count('='), text.size()};
}

Extent extentOfReplacing(std::string_view text, std::string_view target,
                         std::string_view replacement) {
    const std::size_t times = occurrences(text, target);
    const Extent whole = extentOfXml(text);
    const Extent out = extentOfXml(target);
    const Extent in = extentOfXml(replacement);
    return {whole.elements - times * out.elements + times * in.elements,
            whole.bytes - times * out.bytes + times * in.bytes};
}

void PanelExtents::add(const PanelConfigInfo& panel) {
    known_.insert_or_assign(&panel, measured(panel));
}

Extent PanelExtents::measured(const PanelConfigInfo& panel) const {
    Extent extent{1, 0};
    forEachField(panel, [&](std::string_view, const auto& field) {
        if constexpr (std::is_same_v<decltype(field), const std::shared_ptr<PanelList>&>) {
            for (const auto& child : *field) {
                const auto found = known_.find(child.get());
                yg::add(extent, found == known_.end() ? measured(*child) : found->second);
            }
        } else {
            addField(extent, field);
        }
    });
    return extent;
}

Extent PanelExtents::of(const PanelConfigInfo& panel) const {
    const auto found = known_.find(&panel);
    return found == known_.end() ? Extent() : found->second;
}

Expansion::Expansion(std::string_view subject) : subject_(subject) {
    if (!counting)
        counting = this;
}

Expansion::~Expansion() {
    if (counting == this)
        counting = nullptr;
}

bool Expansion::mayAdd(const Extent& extent) {
    return !counting || counting->add(extent);
}

bool Expansion::add(const Extent& extent) {
    const bool fits = extent.elements <= YGStyleConfigLoad::maxAddedElements - added_.elements &&
                      extent.bytes <= YGStyleConfigLoad::maxAddedBytes - added_.bytes;
    if (fits)
        yg::add(added_, extent);
    else if (!std::exchange(isRefused_, true))
        writeRuntimeError("load style config fail:%@ more than %ld elements or %ld bytes", subject_,
                          YGStyleConfigLoad::maxAddedElements, YGStyleConfigLoad::maxAddedBytes);
    return fits;
}

}  // namespace yg
