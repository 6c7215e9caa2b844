// SPDX-License-Identifier: MIT
#include "YGConfigManager/inspection/Trace.h"

#include <algorithm>
#include <cctype>
#include <iterator>

#include "YGConfigManager/diagnostics/Reporter.h"
#include "YGConfigManager/inspection/Loaded.h"
#include "YGConfigManager/inspection/Values.h"
#include "YGConfigManager/inspection/Wording.h"
#include "YGConfigManager/servers/AddressChoice.h"
#include "YGConfigManager/text/Nearest.h"
#include "YGConfigManager/text/Numbers.h"

namespace yg {

namespace {

bool isWithin(const Place& inner, const Place& outer) {
    return inner.file == outer.file && outer.begin.line != 0 && outer.begin <= inner.begin &&
           inner.end <= outer.end;
}

/// The names in a value: those of server entries are a list, though each of them is a text, and
/// types are numbers.
void forEachName(const AttributeInfo& row, std::string_view value, const auto& visit) {
    if (row.names == Naming::serverType)
        visit(std::to_string(text::leadingInt32(value)));
    else if (row.names == Naming::server)
        forEachItem(value, visit);
    else
        visit(value);
}

/// The format whose root is of this name and that defines such names; null when there is none.
const FormatInfo* formatWith(std::string_view rootName, Naming kind) {
    for (const FormatInfo* const format : formats()) {
        if (format->root.name != rootName)
            continue;
        for (const ElementInfo* const element : elementsOf(*format)) {
            if (std::ranges::any_of(element->attributes, [&](const AttributeInfo& row) {
                    return row.defines && row.names == kind;
                }))
                return format;
        }
    }
    return nullptr;
}

/// Calls `visit(element, row, value)` for each definition of the kind, where the format has none,
/// too. Documents nest 256 levels at the most.
void forEachDefinition(const xml::Element& element, const ElementInfo* info, Naming kind,
                       const auto& visit) {
    for (const xml::Attribute attribute : element.attributes()) {
        const AttributeInfo* row = nullptr;
        if (info) {
            const auto found =
                std::ranges::find(info->attributes, attribute.name, &AttributeInfo::name);
            row = found == info->attributes.end() ? nullptr : &*found;
        } else {
            row = attributeRow(element.name(), attribute.name);
        }
        if (row && row->defines && row->names == kind)
            visit(element, *row, attribute.value);
    }
    for (const xml::Element& child : element.elements())
        forEachDefinition(child, info ? infoIn(*info, child.name()) : nullptr, kind, visit);
}

std::string withLayer(const std::string& what, const std::string& layer) {
    return layer.empty() ? what : what + " in " + layer;
}

}  // namespace

void Trace::parsedFile(std::string_view path, const xml::ParseResult& parsed) {
    const auto known =
        std::ranges::find(parsed_, path, &std::pair<std::string, xml::ParseResult>::first);
    if (known == parsed_.end())
        parsed_.emplace_back(path, parsed);
}

void Trace::filled(const xml::Element& slot, std::string_view argument, const xml::Node& panel,
                   std::string_view wildcard) {
    fillings_.push_back({slot, std::string(argument), panel, std::string(wildcard)});
}

const Trace::Reported& Trace::reported() const {
    const std::vector<Found>& all = gathering_.found();
    if (reported_.found == all.size())
        return reported_;
    reported_ = {all.size(), {}, {}, {}};
    for (const Found& found : all) {
        const Finding& finding = found.finding;
        if (finding.rule.handling == Handling::dropped && finding.extent.begin.line != 0) {
            const Found*& known = reported_.dropped[{finding.extent.file, finding.extent.begin}];
            if (!known || known->finding.extent.end < finding.extent.end)
                known = &found;
        }
        if (finding.rule.handling == Handling::unresolved)
            reported_.unresolved.emplace(Spot(finding.place.file, finding.place.begin), &found);
        for (const RelatedPlace& related : finding.related) {
            if (finding.rule.handling == Handling::replaced && related.meaning == earlierDefinition)
                reported_.replaced.emplace(Spot(related.place.file, related.place.begin), &found);
        }
    }
    const Found* widest = nullptr;
    for (auto& [spot, found] : reported_.dropped) {
        if (widest && widest->finding.extent.file == spot.first &&
            widest->finding.extent.end > found->finding.extent.end)
            found = widest;
        widest = found;
    }
    return reported_;
}

const Found* Trace::unresolved(const xml::Element& element, std::string_view attribute) const {
    const Place place = element.attributePlace(attribute).value_or(Place());
    const Reported& known = reported();
    const auto found = known.unresolved.lower_bound(Spot(place.file, place.begin));
    const bool isThere = found != known.unresolved.end() && found->first.first == place.file &&
                         found->first.second < place.end;
    return isThere ? found->second : nullptr;
}

bool Trace::isCounted(const xml::Element& element, std::string_view attribute) const {
    const std::vector<NameUse>& names = gathering_.names();
    for (; countedNames_ < names.size(); ++countedNames_) {
        const NameUse& use = names[countedNames_];
        if (const auto point = use.element.attributePoint(use.row->name))
            counted_.emplace(point->file, point->offset);
    }
    const auto point = element.attributePoint(attribute);
    return point && counted_.contains({point->file, point->offset});
}

Trace::Definition Trace::judged(const xml::Element& element, std::string_view attribute) const {
    Definition definition{element, attribute};
    const Place whole = element.place().value_or(Place());
    const Place tag = element.tagPlace().value_or(Place());
    const Reported& known = reported();
    const auto behind = known.dropped.upper_bound(Spot(whole.file, whole.begin));
    if (behind != known.dropped.begin()) {
        const Found* const dropped = std::prev(behind)->second;
        if (isWithin(whole, dropped->finding.extent))
            definition.loss = dropped;
    }
    // Of several later definitions the last takes the place of all.
    const auto end = known.replaced.lower_bound(Spot(tag.file, tag.end));
    for (auto at = known.replaced.lower_bound(Spot(tag.file, tag.begin)); at != end; ++at)
        definition.loss = at->second;
    definition.counts = !definition.loss && (attribute.empty() || isCounted(element, attribute));
    return definition;
}

const Trace::ByName& Trace::writtenOf(Naming kind) const {
    const auto [known, isNew] = written_.try_emplace(kind);
    ByName& byName = known->second;
    if (!isNew)
        return byName;
    for (const auto& [path, parsed] : parsed_) {
        const xml::Element root = parsed.document.root();
        const FormatInfo* const format = formatWith(root.name(), kind);
        forEachDefinition(
            root, format ? &format->root : nullptr, kind,
            [&](const xml::Element& element, const AttributeInfo& row, std::string_view value) {
                forEachName(row, value, [&](std::string_view name) {
                    const auto found = byName.try_emplace(std::string(name)).first;
                    found->second.push_back({element, row.name});
                });
            });
    }
    return byName;
}

std::vector<Trace::Definition> Trace::definitions(
    Naming kind, std::string_view name,
    const std::function<bool(const xml::Element&)>& isAsked) const {
    std::vector<Definition> all;
    const ByName& byName = writtenOf(kind);
    const auto found = byName.find(name);
    if (found == byName.end())
        return all;
    for (const Written& written : found->second) {
        if (!isAsked || isAsked(written.element))
            all.push_back(judged(written.element, written.attribute));
    }
    return all;
}

std::vector<Trace::Definition> Trace::definitionsOf(
    const void* record, Naming kind, std::string_view name,
    const std::function<bool(const xml::Element&)>& isAsked) const {
    const xml::Element origin = gathering_.originOf(record);
    std::vector<Definition> all = definitions(kind, name, isAsked);
    for (Definition& each : all)
        each.counts = each.element == origin;
    if (origin && std::ranges::none_of(all, &Definition::counts))
        all.push_back({origin, {}, nullptr, true});
    return all;
}

std::vector<std::string> Trace::namesOf(Naming kind) const {
    std::set<std::string> names;
    for (const NameUse& use : gathering_.names()) {
        if (use.row->names != kind || !use.row->defines)
            continue;
        if (kind == Naming::server)
            forEachItem(use.value, [&](std::string_view name) { names.emplace(name); });
        else
            names.emplace(use.value);
    }
    return {names.begin(), names.end()};
}

RootPlace Trace::place(const Place& place, std::string message) const {
    RootPlace made;
    made.file = files_.nameOf(place.file);
    if (place.begin.line != 0) {
        made.begin = {place.begin.line, std::max<std::uint32_t>(place.begin.column, 1)};
        made.end = std::max(made.begin, place.end);
    }
    made.message = std::move(message);
    return made;
}

RootPlace Trace::placeOf(const xml::Element& element, std::string message) const {
    return place(element.tagPlace().value_or(Place()), std::move(message));
}

std::string Trace::layerOf(std::string_view path) const {
    constexpr std::pair<std::string_view, std::string_view> layers[] = {
        {"config/custompage_template.xml", "the main file"},
        {"config/magic_panels.xml", "the main file"},
        {"soft_optimize/", "the soft-optimize file"},
        {"storage/", "the shipped file"},
        {"user/", "the user's own file"}};
    const std::string name = files_.nameOf(path);
    for (const auto& [beginning, layer] : layers) {
        if (name.starts_with(beginning))
            return std::string(layer);
    }
    return "";
}

xml::Element Trace::addDefinitions(Explanation& explanation,
                                   std::span<const Definition> definitions,
                                   const std::string& what) const {
    const Definition* taken = nullptr;
    for (const Definition& each : definitions) {
        if (each.counts)
            taken = &each;
    }
    // An event of a template is replaced where the template is included, not where it is written.
    const Found* replacing = nullptr;
    for (const Found& found : gathering_.found()) {
        if (taken && found.finding.rule.handling == Handling::replaced &&
            isWithin(found.finding.place, taken->element.tagPlace().value_or(Place())))
            replacing = &found;
    }
    for (const Definition& each : definitions) {
        const Place tag = each.element.tagPlace().value_or(Place());
        // What is in the one that counts is a part of the answer.
        if (taken && &each != taken && isWithin(tag, taken->element.place().value_or(Place())))
            continue;
        std::string text = withLayer(what, layerOf(tag.file));
        text[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(text[0])));
        const bool isTaken = &each == taken;
        text += isTaken ? " counts." : " does not count here.";
        if (const Found* const loss = isTaken ? nullptr : each.loss ? each.loss : replacing)
            text.append(" ").append(loss->finding.rule.meaning);
        explanation.steps.push_back(
            {isTaken ? ExplanationStep::Outcome::taken : ExplanationStep::Outcome::lost,
             place(tag, std::move(text))});
    }
    return taken ? taken->element : xml::Element();
}

void Trace::addUnreadFiles(Explanation& explanation) const {
    std::set<std::string> known;
    for (const Found& found : gathering_.found()) {
        const Finding& finding = found.finding;
        const std::string name = files_.nameOf(finding.place.file);
        const bool mayBeMissing =
            name != mainStyleFile && std::ranges::find(layoutFiles, name) != std::end(layoutFiles);
        if (finding.rule.name.starts_with("unreadable-") && finding.element.empty() &&
            finding.attribute.empty() && (!mayBeMissing || files_.file(name).isRead()) &&
            known.insert(name).second)
            explanation.steps.push_back(
                {explanation.substitute ? ExplanationStep::Outcome::missing
                                        : ExplanationStep::Outcome::lost,
                 place(finding.place, "This file cannot be read: " + messageOf(found))});
    }
}

void addMissing(Explanation& explanation, RootPlace place, std::string_view name,
                std::span<const std::string> known) {
    const std::string meant = text::nearest(name, known);
    if (!meant.empty()) {
        place.message += " The nearest name is '" + meant + "'.";
        if (!explanation.nearest)
            explanation.nearest = meant;
    }
    explanation.steps.push_back({ExplanationStep::Outcome::missing, std::move(place)});
}

}  // namespace yg
