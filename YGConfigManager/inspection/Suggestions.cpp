// SPDX-License-Identifier: MIT
#include "YGConfigManager/inspection/Suggestions.h"

#include <algorithm>
#include <new>
#include <set>
#include <utility>

#include "YGConfigManager/host/JsonValue.h"
#include "YGConfigManager/text/Characters.h"
#include "YGConfigManager/text/Replace.h"
#include "YGConfigManager/text/Split.h"
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

/// The name that the root of a file must have, by the rule that says so; "" for other rules.
std::string_view rootWantedBy(const Rule& rule) {
    if (!rule.name.ends_with("-root-name"))
        return {};
    for (const FormatInfo* const format : formats()) {
        if (std::ranges::find(format->root.rules, &rule) != format->root.rules.end())
            return format->root.name;
    }
    return {};
}

/// So many characters of a place from its beginning on, behind some others; all on one line.
Place partOf(const Place& place, std::size_t behind, std::string_view text) {
    Place part = place;
    part.begin.column += static_cast<std::uint32_t>(behind);
    part.end = part.begin;
    part.end.column += static_cast<std::uint32_t>(text::countCodePoints(text));
    return part;
}

NameScope scopeOf(Naming kind, std::string_view file) {
    const bool isOfPalette = kind == Naming::color || kind == Naming::font;
    return {kind, std::string(isOfPalette ? file : "")};
}

NameScope scopeOf(const NameUse& use) {
    const auto point = use.element.attributePoint(use.row->name);
    return scopeOf(use.row->names, point ? point->file : std::string_view());
}

}  // namespace

Naming kindNamedBy(const Finding& finding) {
    const auto* found = std::ranges::find(references, finding.rule.name,
                                          &std::pair<std::string_view, Naming>::first);
    return found == std::end(references) ? Naming::nothing : found->second;
}

bool isReference(const Finding& finding) {
    return kindNamedBy(finding) != Naming::nothing && !finding.rule.name.starts_with("unused-") &&
           finding.rule.handling == Handling::unresolved;
}

NameScope scopeOf(const Finding& finding) {
    return scopeOf(kindNamedBy(finding), finding.place.file);
}

Suggestions::Suggestions(const std::vector<NameUse>& names, const Loaded& loaded)
    : names_(names), loaded_(loaded) {}

text::KnownWords& Suggestions::defined(const NameScope& scope) {
    if (definedNames_.empty()) {
        for (const NameUse& use : names_) {
            if (use.row->defines)
                definedNames_[scopeOf(use)].emplace(use.value);
        }
    }
    std::unique_ptr<text::KnownWords>& words = defined_[scope];
    if (!words) {
        const std::set<std::string>& all = definedNames_[scope];
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
    if (finding.element.empty() && !finding.attribute.empty())
        onMember(found, remarks);
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
    if (!remarks.suggestion)
        remarks.suggestion = nearestName(found);
    return remarks;
}

std::optional<std::string> Suggestions::nearestName(const Found& found) {
    const Finding& finding = found.finding;
    const Naming kind = kindNamedBy(finding);
    // A panel and an element are those of one page, whose names the check knows.
    const bool isOfPage = kind == Naming::panel || kind == Naming::element;
    if (found.suggestion || kind == Naming::nothing || isOfPage ||
        finding.rule.name.starts_with("unused-"))
        return found.suggestion;
    const std::string_view meant = defined(scopeOf(finding)).nearest(finding.value);
    return meant.empty() || meant == finding.value ? std::nullopt
                                                   : std::optional<std::string>(meant);
}

const NameUse* Suggestions::onlyUnused(const NameScope& scope, const std::string& name) {
    if (uses_.empty()) {
        for (const NameUse& use : names_) {
            const auto note = [&](std::string_view each) {
                Uses& uses = uses_[{scopeOf(use), std::string(each)}];
                uses.isUsed = uses.isUsed || !use.row->defines || uses.definition;
                if (use.row->defines)
                    uses.definition = &use;
            };
            if (use.row->kind == AttributeKind::nameList)
                std::ranges::for_each(text::split(use.value, ';'), note);
            else
                note(use.value);
        }
    }
    const auto found = uses_.find({scope, name});
    return found == uses_.end() || found->second.isUsed ? nullptr : found->second.definition;
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
    if (finding.rule.name == "dispatch-spelling") {
        const std::string other = finding.attribute == "dispatch" ? "disptch" : "dispatch";
        remarks.place = partOf(finding.place, 0, finding.attribute);
        if (!element.attribute(other))
            remarks.suggestion = other;
        return;
    }
    // Where the attribute itself is dropped it is the thing to look at.
    if (finding.rule.handling == Handling::dropped && finding.extent == finding.place)
        return;
    if (const auto value = element.valuePlace(finding.attribute);
        value && value->begin != value->end)
        remarks.place = *value;
}

/// The start tag is the thing to look at; of an element that has no meaning its name, and where an
/// attribute is missing the one that was probably meant for it.
void Suggestions::onElement(const Found& found, const std::vector<xml::Element>& around,
                            Remarks& remarks) {
    const Finding& finding = found.finding;
    const std::string_view rule = finding.rule.name;
    const xml::Element& element = around.back();
    const auto tag = element.tagPlace();
    if (!tag || finding.place.begin != tag->begin)
        return;
    remarks.place = *tag;
    if (rule == "blanks-around-address" || rule == "escaped-twice")
        return onAddress(finding, element, remarks);
    onElementName(finding, around, remarks);
    const FormatInfo* const format = formatOf(loaded_, loaded_.files.nameOf(finding.place.file));
    const ElementInfo* const info = format ? infoOf(*format, around) : nullptr;
    if (info && !remarks.suggestion)
        onMissingAttribute(finding, element, *info, remarks);
}

/// Where the element's own name is wrong.
void Suggestions::onElementName(const Finding& finding, const std::vector<xml::Element>& around,
                                Remarks& remarks) {
    const std::string_view rule = finding.rule.name;
    const FormatInfo* const format = formatOf(loaded_, loaded_.files.nameOf(finding.place.file));
    const Place name = partOf(finding.place, 1, finding.element);
    if (const std::string_view root = rootWantedBy(finding.rule); !root.empty()) {
        remarks.place = name;
        remarks.suggestion = root;
        return;
    }
    if (rule == "include-without-src") {
        remarks.suggestion = nearestIn(&finding.rule, {"event"}, finding.element);
        if (remarks.suggestion)
            remarks.place = name;
    }
    const bool isKnownPlace = rule == "style-element-name" || rule == "unexpected-element-name";
    if (!isKnownPlace && rule != "unknown-element" && rule != "unknown-palette-section")
        return;
    remarks.place = name;
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
    if (isKnownPlace && words.size() == 1)
        remarks.suggestion = words.front();
    else
        remarks.suggestion = nearestIn(&info->content, std::move(words), finding.element);
}

/// An element that lacks an attribute may have it under a name that is not read.
void Suggestions::onMissingAttribute(const Finding& finding, const xml::Element& element,
                                     const ElementInfo& info, Remarks& remarks) {
    if (finding.rule.handling != Handling::dropped)
        return;
    std::vector<std::string> lacking;
    for (const AttributeInfo& row : info.attributes) {
        const bool isNeeded =
            row.isRequired || (finding.rule.name == "event-entry-without-effect" &&
                               (row.name == "name" || row.name == "src"));
        if (isNeeded && !element.attribute(row.name))
            lacking.emplace_back(row.name);
    }
    if (lacking.empty())
        return;
    for (const xml::Attribute attribute : element.attributes()) {
        const bool isKnown = std::ranges::find(info.attributes, attribute.name,
                                               &AttributeInfo::name) != info.attributes.end();
        const std::string meant = isKnown ? "" : text::nearest(attribute.name, lacking);
        const auto place = meant.empty() ? std::nullopt : element.attributePlace(attribute.name);
        if (!place)
            continue;
        remarks.place = partOf(*place, 0, attribute.name);
        remarks.addition = "Write " + meant + " for " + std::string(attribute.name) + ".";
        remarks.suggestion = meant;
        return;
    }
}

/// The text of an address in an element.
void Suggestions::onAddress(const Finding& finding, const xml::Element& element, Remarks& remarks) {
    const xml::Node text = element.firstChild();
    if (element.childCount() != 1 || text.isElement() || !text.place())
        return;
    remarks.place = *text.place();
    // Without its blanks, or as the text that it has when it is read once.
    const std::string meant(text::withoutBlanksAround(finding.value));
    const bool isEscaped = finding.rule.name == "escaped-twice";
    std::size_t ampersands = 0;
    for (std::size_t at = meant.find('&'); at != std::string::npos; at = meant.find('&', at + 1))
        ampersands += meant.compare(at, 5, "&amp;") == 0 ? 0 : 1;
    const bool canStand = meant.find('<') == std::string::npos && ampersands == 0 &&
                          (isEscaped || meant.find('&') == std::string::npos);
    if (!canStand)
        return;
    // In a delivery "&" stands for itself.
    const auto line =
        loaded_.files.file(loaded_.files.nameOf(finding.place.file)).line(remarks.place.begin.line);
    const bool isWritten = isEscaped && line && line->find(meant) != std::string_view::npos;
    remarks.suggestion = isWritten ? text::replaceAll(meant, "&amp;", "&") : meant;
}

/// In JSON the name of a member that is not read, or its value.
void Suggestions::onMember(const Found& found, Remarks& remarks) {
    const Finding& finding = found.finding;
    if (finding.rule.name == "number-for-text") {
        remarks.suggestion = '"' + finding.value + '"';
        return;
    }
    if (finding.rule.name == "blanks-around-address") {
        remarks.suggestion.emplace();
        if (!appendJsonText(*remarks.suggestion, text::withoutBlanksAround(finding.value)))
            throw std::bad_alloc();
        return;
    }
    const bool isUnknown = finding.rule.name == "unknown-member";
    // A finding that is at the name already has that alone.
    if ((!isUnknown && finding.rule.name != "replaced-member") || finding.extent == finding.place)
        return;
    const std::string file = loaded_.files.nameOf(finding.place.file);
    const std::size_t behind = std::min(finding.attribute.rfind('.') + 1, finding.attribute.size());
    const std::string name = finding.attribute.substr(behind);
    std::string written;
    if (!appendJsonText(written, name))
        throw std::bad_alloc();
    remarks.place = partOf(finding.extent, 0, written);
    const FormatInfo* const format = isUnknown ? formatOf(loaded_, file) : nullptr;
    if (!format)
        return;
    std::vector<std::string> words;
    for (const ElementInfo* info : elementsOf(*format)) {
        if (!info->name.empty())
            words.emplace_back(info->name);
        for (const AttributeInfo& row : info->attributes)
            words.emplace_back(row.name);
    }
    if (const auto meant = nearestIn(format, std::move(words), name)) {
        remarks.suggestion.emplace();
        if (!appendJsonText(*remarks.suggestion, *meant))
            throw std::bad_alloc();
    }
}

}  // namespace yg
