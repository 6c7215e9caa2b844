// SPDX-License-Identifier: MIT
#include "YGConfigManager/inspection/Gathering.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <utility>

namespace yg {

namespace {

Found foundAt(const Rule& rule, const Place& place, Details details) {
    return {{rule, place, place, {}, {}, std::move(details.value), std::move(details.related)},
            std::move(details.suggestion),
            std::move(details.message)};
}

}  // namespace

void Gathering::report(const Finding& finding) {
    const Rule* const rule = &finding.rule;
    const bool isAboutSlots = rule == &"slot-left"_rule || rule == &"broken-pattern"_rule ||
                              rule == &"expansion-limit"_rule;
    if (aside_)
        aside_->push_back(finding);
    else if (!isOnlyAboutSlots_ || isAboutSlots)
        add({finding});
}

void Gathering::made(const void* record, const xml::Element& element) {
    if (aside_)
        return;
    origins_.push_back({record, element});
    areSorted_ = false;
}

void Gathering::named(const AttributeInfo& row, const xml::Element& element,
                      std::string_view value) {
    if (aside_ || isOnlyAboutSlots_)
        return;
    const auto point = element.attributePoint(row.name);
    if (!point)
        return;
    if (lastSeen_ == seen_.end() || lastSeen_->first != point->file)
        lastSeen_ = seen_.try_emplace(std::string(point->file)).first;
    std::vector<bool>& seen = lastSeen_->second;
    if (seen.size() <= point->offset)
        seen.resize(point->offset + 1);
    if (seen[point->offset])
        return;
    seen[point->offset] = true;
    names_.push_back({&row, element, value});
}

void Gathering::parsedFile(std::string_view path, const xml::ParseResult& parsed) {
    if (!aside_)
        parsed_.try_emplace(std::string(path), parsed);
}

void Gathering::onFile(const Rule& rule, std::string_view path, Details details) {
    add(foundAt(rule, {std::string(path), {}, {}}, std::move(details)));
}

void Gathering::onPlace(const Rule& rule, const Place& place, Details details) {
    add(foundAt(rule, place, std::move(details)));
}

void Gathering::onElement(const Rule& rule, const xml::Element& element, Details details) {
    Found found = foundAt(rule, element.tagPlace().value_or(Place()), std::move(details));
    found.finding.element = element.name();
    add(std::move(found));
}

void Gathering::onAttribute(const Rule& rule, const xml::Element& element,
                            std::string_view attribute, Details details) {
    Found found =
        foundAt(rule, element.attributePlace(attribute).value_or(Place()), std::move(details));
    found.finding.element = element.name();
    found.finding.attribute = attribute;
    if (found.finding.value.empty())
        found.finding.value = element.attribute(attribute).value_or("");
    add(std::move(found));
}

void Gathering::onPart(const Rule& rule, const xml::Element& element, std::string_view attribute,
                       std::size_t offset, std::size_t size, Details details) {
    Found found = foundAt(rule, element.valuePlace(attribute, offset, size).value_or(Place()),
                          std::move(details));
    found.finding.element = element.name();
    found.finding.attribute = attribute;
    if (found.finding.value.empty())
        found.finding.value = element.attribute(attribute).value_or("").substr(offset, size);
    add(std::move(found));
}

void Gathering::add(Found found) {
    for (Place* const place : {&found.finding.place, &found.finding.extent})
        place->file = fileOf(*place);
    const Finding& finding = found.finding;
    const std::hash<std::string> hash;
    if (!finding.place.file.empty() &&
        known_
            .emplace(&finding.rule, finding.place.begin, finding.place.end,
                     hash(finding.place.file), hash(finding.attribute), hash(finding.value))
            .second)
        found_.push_back(std::move(found));
}

void Gathering::explain(std::size_t index, Details details) {
    Found& found = found_[index];
    if (!details.value.empty())
        found.finding.value = std::move(details.value);
    if (!details.message.empty())
        found.message = std::move(details.message);
    if (details.suggestion)
        found.suggestion = std::move(details.suggestion);
    if (!details.related.empty())
        found.finding.related = std::move(details.related);
}

void Gathering::joinRepeated(const Rule& rule) {
    std::map<std::tuple<std::string, TextPoint, std::string>, Found*> first;
    std::set<const Found*> repeated;
    for (Found& found : found_) {
        Finding& finding = found.finding;
        if (&finding.rule != &rule)
            continue;
        const auto [known, isNew] =
            first.try_emplace({finding.place.file, finding.place.begin, finding.value}, &found);
        if (isNew)
            continue;
        std::ranges::move(finding.related, std::back_inserter(known->second->finding.related));
        repeated.insert(&found);
    }
    if (!repeated.empty())
        removeIf([&](const Found& found) { return repeated.contains(&found); });
}

xml::Element Gathering::originOf(const void* record) const {
    if (!std::exchange(areSorted_, true))
        std::ranges::stable_sort(origins_, {}, &Origin::record);
    // Of a record whose memory was used again the last counts.
    const auto behind = std::ranges::upper_bound(origins_, record, {}, &Origin::record);
    return behind == origins_.begin() || behind[-1].record != record ? xml::Element()
                                                                     : behind[-1].element;
}

}  // namespace yg
