// SPDX-License-Identifier: MIT
#include "YGConfigManager/inspection/Suggestions.h"

#include <algorithm>
#include <set>
#include <utility>

#include "YGConfigManager/text/Utf8.h"

namespace yg {

namespace {

/// The rules about names that do not exist, or that nothing uses.
constexpr std::pair<std::string_view, Naming> references[] = {
    {"unknown-magic-group", Naming::magicGroup},
    {"unknown-reuse-panel", Naming::reusePanel},
    {"unused-magic-group", Naming::magicGroup},
    {"unused-reuse-panel", Naming::reusePanel},
    {"unknown-default-style", Naming::style},
    {"unknown-focus", Naming::panel},
    {"unknown-expand-panel", Naming::panel},
    {"unknown-dispatch-element", Naming::element},
    {"unknown-event-template", Naming::eventTemplate},
    {"unknown-palette-color", Naming::color},
    {"unknown-palette-font", Naming::font},
    {"unknown-event-group", Naming::eventGroup},
    {"unknown-command", Naming::command},
    {"unknown-panel-command", Naming::command},
    {"unknown-page", Naming::style},
    {"unused-event-group", Naming::eventGroup},
    {"unused-event-template", Naming::eventTemplate},
    {"unused-command", Naming::command},
    {"unused-palette-color", Naming::color},
    {"unused-palette-font", Naming::font},
};

std::string_view plainName(const ElementInfo& element) {
    return shownName(element);
}

/// So many characters of a place from its beginning on, behind some others; all on one line.
Place partOf(const Place& place, std::size_t behind, std::string_view text) {
    Place part = place;
    part.begin.column += static_cast<std::uint32_t>(behind);
    part.end = part.begin;
    part.end.column += static_cast<std::uint32_t>(text::countCodePoints(text));
    return part;
}

}  // namespace

Naming kindNamedBy(const Finding& finding) {
    const auto* found = std::ranges::find(references, finding.rule.name,
                                          &std::pair<std::string_view, Naming>::first);
    return found == std::end(references) ? Naming::nothing : found->second;
}

Suggestions::Suggestions(const std::vector<NameUse>& names, const Loaded& loaded)
    : names_(names), loaded_(loaded) {}

text::KnownWords& Suggestions::defined(Naming kind) {
    std::unique_ptr<text::KnownWords>& words = defined_[kind];
    if (!words) {
        std::set<std::string> all;
        for (const NameUse& use : names_) {
            if (use.row->names == kind && use.row->defines)
                all.emplace(use.value);
        }
        words =
            std::make_unique<text::KnownWords>(std::vector<std::string>(all.begin(), all.end()));
    }
    return *words;
}

std::optional<std::string> Suggestions::nearestIn(const void* owner, std::vector<std::string> words,
                                                  std::string_view word) {
    std::unique_ptr<text::KnownWords>& known = described_[owner];
    if (!known)
        known = std::make_unique<text::KnownWords>(words);
    const std::string_view meant = known->nearest(word);
    return meant.empty() || meant == word ? std::nullopt : std::optional<std::string>(meant);
}

Remarks Suggestions::remarksOn(const Found& found) {
    const Finding& finding = found.finding;
    Remarks remarks{finding.place, found.suggestion, {}};
    if (finding.place.begin.line == 0)
        return remarks;
    const std::string file = loaded_.files.nameOf(finding.place.file);
    if (finding.element == "#text")
        remarks.place = loaded_.files.file(file).trimmed(finding.place);
    if (!finding.element.empty() && !finding.element.starts_with('#')) {
        const auto around = loaded_.files.file(file).elementsAt(finding.place.begin);
        if (!around.empty() && around.back().name() == finding.element) {
            if (!finding.attribute.empty())
                onAttribute(found, around, remarks);
            else
                onElement(found, around, remarks);
        }
    }
    if (remarks.suggestion)
        return remarks;
    const Naming kind = kindNamedBy(finding);
    // A panel and an element are those of one page, whose names the check knows.
    const bool isOfPage = kind == Naming::panel || kind == Naming::element;
    if (kind != Naming::nothing && !isOfPage && !finding.rule.name.starts_with("unused-")) {
        const std::string_view meant = defined(kind).nearest(finding.value);
        if (!meant.empty() && meant != finding.value)
            remarks.suggestion = meant;
    }
    return remarks;
}

/// An attribute that is not read, or the value of one that is.
void Suggestions::onAttribute(const Found& found, const std::vector<xml::Element>& around,
                              Remarks& remarks) {
    const Finding& finding = found.finding;
    const xml::Element& element = around.back();
    if (finding.place != element.attributePlace(finding.attribute))
        return;  // a part of the value
    if (finding.rule.name == "unknown-attribute") {
        remarks.place = partOf(finding.place, 0, finding.attribute);
        const FormatInfo* const format =
            formatOf(loaded_, loaded_.files.nameOf(finding.place.file));
        const ElementInfo* const info = format ? infoOf(*format, around) : nullptr;
        if (!info)
            return;
        std::vector<std::string> words;
        for (const AttributeInfo& row : info->attributes) {
            if (!row.name.empty())
                words.emplace_back(row.name);
        }
        remarks.suggestion = nearestIn(info, std::move(words), finding.attribute);
        // What is there already cannot be meant.
        if (remarks.suggestion && element.attribute(*remarks.suggestion))
            remarks.suggestion.reset();
        for (const ElementInfo* other : elementsOf(*format)) {
            const bool has = std::ranges::find(other->attributes, finding.attribute,
                                               &AttributeInfo::name) != other->attributes.end();
            if (has && other != info && !remarks.suggestion) {
                remarks.addition = "It belongs to <" + std::string(plainName(*other)) + ">.";
                return;
            }
        }
        return;
    }
    // Where the attribute itself is dropped it is the thing to look at.
    if (finding.rule.handling == Handling::dropped && finding.extent == finding.place)
        return;
    if (const auto value = element.valuePlace(finding.attribute);
        value && value->begin != value->end)
        remarks.place = *value;
}

/// The start tag is the thing to look at; of an element that has no meaning its name.
void Suggestions::onElement(const Found& found, const std::vector<xml::Element>& around,
                            Remarks& remarks) {
    const Finding& finding = found.finding;
    const xml::Element& element = around.back();
    if (const auto tag = element.tagPlace(); tag && finding.place.begin == tag->begin)
        remarks.place = *tag;
    if (finding.rule.name != "unknown-element" && finding.rule.name != "unknown-palette-section")
        return;
    remarks.place = partOf(finding.place, 1, finding.element);
    const FormatInfo* const format = formatOf(loaded_, loaded_.files.nameOf(finding.place.file));
    if (!format || around.size() < 2)
        return;
    const ElementInfo* const info = infoOf(*format, std::span(around).first(around.size() - 1));
    if (!info)
        return;
    std::vector<std::string> words;
    for (const ElementInfo* each : info->content) {
        if (!each->name.empty())
            words.emplace_back(each->name);
    }
    remarks.suggestion = nearestIn(&info->content, std::move(words), finding.element);
}

}  // namespace yg
