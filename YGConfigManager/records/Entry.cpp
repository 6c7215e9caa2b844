// SPDX-License-Identifier: MIT
#include "YGConfigManager/records/Entry.h"

#include <algorithm>

namespace yg {

namespace {

bool contains(const auto& list, std::string_view name) {
    return std::ranges::find(list, name) != list.end();
}

Place placeOf(const xml::Element& element, std::string_view attribute) {
    return element.attributePlace(attribute).value_or(Place());
}

}  // namespace

Place Entry::Account::placeOf(const xml::Node& node) {
    return node.place().value_or(Place());
}

void Entry::Account::drop(const xml::Element& element, const Rule& rule, std::string_view attribute,
                          std::string_view value, const xml::Element* earlier) const {
    const Place extent = placeOf(element);
    Finding finding{rule,
                    attribute.empty() ? extent : yg::placeOf(element, attribute),
                    extent,
                    std::string(element.name()),
                    std::string(attribute),
                    std::string(value),
                    {}};
    if (earlier)
        finding.related.push_back({placeOf(*earlier), earlierDefinition});
    reporter.report(finding);
}

void Entry::Account::report(const xml::Element& element, const Rule& rule,
                            std::string_view attribute, std::string_view value,
                            const std::optional<Place>& earlier) {
    const Place place =
        attribute.empty() ? element.tagPlace().value_or(Place()) : yg::placeOf(element, attribute);
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
    // Asking for a value takes its length, and it may have many parts.
    if (part.data() < valueOfParts.data() ||
        part.data() > valueOfParts.data() + valueOfParts.size())
        valueOfParts = element.attribute(attribute).value_or("");
    const auto offset = static_cast<std::size_t>(part.data() - valueOfParts.data());
    const Place place = element.valuePlace(attribute, offset, part.size()).value_or(Place());
    reporter.report({rule,
                     place,
                     place,
                     std::string(element.name()),
                     std::string(attribute),
                     std::string(part),
                     {}});
}

std::optional<Place> Entry::Account::define(const xml::Element& element, std::string_view name,
                                            RecordMap<xml::Element>& places,
                                            std::string_view attribute) {
    const xml::Element* const found = places.find(name);
    // A place takes a search, so only a finding has one made.
    std::optional<Place> before;
    if (found)
        before = attribute.empty() ? placeOf(*found) : yg::placeOf(*found, attribute);
    places.set(name, element);
    return before;
}

void Entry::Account::reportChild(const Rule& rule, const xml::Node& child) const {
    const Place place = placeOf(child);
    const bool isElement = child.isElement();
    const std::string_view name = child.kind() == xml::NodeKind::text      ? "#text"
                                  : child.kind() == xml::NodeKind::comment ? "#comment"
                                                                           : child.name();
    reporter.report({rule,
                     place,
                     place,
                     std::string(name),
                     {},
                     isElement ? std::string(name) : child.stringValue(),
                     {}});
}

/// Comments and instructions are not content.
void Entry::Account::reportText(const xml::Node& node) const {
    if (node.kind() == xml::NodeKind::text)
        reportChild("stray-text"_rule, node);
}

void Entry::Account::accountForText(const xml::Element& element) const {
    for (const xml::Node& child : element.children()) {
        if (child.isElement())
            reportChild("element-in-text"_rule, child);
        else if (child.kind() == xml::NodeKind::text && reporter.sink()->wantsUsed())
            reporter.sink()->used(placeOf(child));
    }
}

const AttributeInfo* Entry::Account::rowOf(std::string_view attribute) const {
    for (const std::span<const AttributeInfo>& rows : tables) {
        const auto row = std::ranges::find(rows, attribute, &AttributeInfo::name);
        if (row != rows.end())
            return &*row;
    }
    return nullptr;
}

void Entry::Account::endAttributes(const xml::Element& element) {
    if (hasEndedAttributes)
        return;
    hasEndedAttributes = true;
    DiagnosticsSink& sink = *reporter.sink();
    if (sink.wantsUsed())
        sink.used(placeOf(element));
    for (const xml::Attribute attribute : element.attributes()) {
        const AttributeInfo* const row = rowOf(attribute.name);
        if (row && row->names != Naming::nothing)
            sink.named(*row, element, attribute.value);
        if (contains(reported, attribute.name))
            continue;
        const Rule* const rule = row                               ? oddity(*row, attribute.value)
                                 : contains(asked, attribute.name) ? nullptr
                                                                   : &"unknown-attribute"_rule;
        if (rule)
            report(element, *rule, attribute.name, attribute.value, std::nullopt);
        else if (sink.wantsUsed())
            sink.used(yg::placeOf(element, attribute.name));
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
        if (child.isElement())
            reportChild("unread-content"_rule, child);
        else
            reportText(child);
    }
}

}  // namespace yg
