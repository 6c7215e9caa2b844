// SPDX-License-Identifier: MIT
#include "YGConfigManager/records/Entry.h"

#include <algorithm>

namespace yg {

namespace {

constexpr std::string_view earlierDefinition = "the earlier definition";

bool contains(const auto& list, std::string_view name) {
    return std::ranges::find(list, name) != list.end();
}

Place placeOf(const std::optional<xml::Position>& position) {
    if (!position)
        return {};
    const TextPoint begin{position->line, position->column};
    return {position->file, begin, begin};
}

Place placeOf(const xml::Element& element, std::string_view attribute) {
    return placeOf(element.attributePosition(attribute));
}

}  // namespace

Place Entry::Account::placeOf(const xml::Node& node) {
    return yg::placeOf(node.position());
}

void Entry::Account::drop(const xml::Element& element, const Rule& rule, std::string_view attribute,
                          std::string_view value) {
    const Place extent = placeOf(element);
    reporter.report({rule,
                     attribute.empty() ? extent : yg::placeOf(element, attribute),
                     extent,
                     std::string(element.name()),
                     std::string(attribute),
                     std::string(value),
                     {}});
}

void Entry::Account::report(const xml::Element& element, const Rule& rule,
                            std::string_view attribute, std::string_view value,
                            const std::optional<Place>& earlier) {
    const Place place = attribute.empty() ? placeOf(element) : yg::placeOf(element, attribute);
    Finding finding{
        rule, place, place, std::string(element.name()), std::string(attribute), std::string(value),
        {}};
    if (earlier)
        finding.related.push_back({*earlier, earlierDefinition});
    reporter.report(finding);
    if (!attribute.empty())
        reported.emplace_back(attribute);
}

void Entry::Account::reportPart(const xml::Element& element, const Rule& rule,
                                std::string_view attribute, std::string_view part) {
    report(element, rule, attribute, part, std::nullopt);
}

std::optional<Place> Entry::Account::define(const xml::Element& element, std::string_view name,
                                            RecordMap<Place>& places) {
    const Place* const found = places.find(name);
    const auto before = found ? std::optional(*found) : std::nullopt;
    places.set(name, placeOf(element));
    return before;
}

/// Comments and instructions are not content.
void Entry::Account::reportText(const xml::Node& node) const {
    if (node.kind() != xml::NodeKind::text)
        return;
    const Place place = placeOf(node.parent());
    reporter.report({"stray-text"_rule, place, place, "#text", {}, node.stringValue(), {}});
}

/// What is wrong with an attribute that nothing was reported of; null when nothing is.
const Rule* Entry::Account::ruleFor(const xml::Attribute& attribute) const {
    for (const std::span<const AttributeInfo>& rows : tables) {
        const auto row = std::ranges::find(rows, attribute.name, &AttributeInfo::name);
        if (row != rows.end())
            return oddity(*row, attribute.value);
    }
    return contains(asked, attribute.name) ? nullptr : &"unknown-attribute"_rule;
}

void Entry::Account::endAttributes(const xml::Element& element) {
    if (hasEndedAttributes)
        return;
    hasEndedAttributes = true;
    reporter.sink()->used(placeOf(element));
    for (const xml::Attribute attribute : element.attributes()) {
        if (contains(reported, attribute.name))
            continue;
        if (const Rule* const rule = ruleFor(attribute))
            report(element, *rule, attribute.name, attribute.value, std::nullopt);
        else
            reporter.sink()->used(yg::placeOf(element, attribute.name));
    }
    for (const std::span<const AttributeInfo>& rows : tables) {
        for (const AttributeInfo& row : rows) {
            if (row.isExpected && !element.attribute(row.name))
                report(element, "missing-attribute"_rule, {}, row.name, std::nullopt);
        }
    }
}

void Entry::Account::endContent(const xml::Element& element) const {
    if (isContentRead)
        return;
    for (const xml::Node& child : element.children()) {
        if (!child.isElement()) {
            reportText(child);
            continue;
        }
        const Place place = placeOf(child);
        const std::string name(child.name());
        reporter.report({"unread-content"_rule, place, place, name, {}, name, {}});
    }
}

}  // namespace yg
