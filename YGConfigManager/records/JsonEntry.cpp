// SPDX-License-Identifier: MIT
#include "YGConfigManager/records/JsonEntry.h"

#include <algorithm>

namespace yg {

namespace {

bool contains(const std::vector<std::string_view>& names, std::string_view name) {
    return std::ranges::find(names, name) != names.end();
}

}  // namespace

Place JsonEntry::Source::placeOf(JsonRange range) const {
    return {std::string(text.file), lines.pointAt(text.bytes, range.begin),
            lines.pointAt(text.bytes, range.end)};
}

std::string_view JsonEntry::Source::textOf(JsonRange range) const {
    return text.bytes.substr(range.begin, range.end - range.begin);
}

void JsonEntry::reportUnreadable(const Reporter& reporter, const JsonText& text,
                                 const Rule& unreadable, const JsonValue::Parsed& parsed) {
    if (!reporter)
        return;
    const Place place{std::string(text.file), parsed.place, parsed.place};
    reporter.report(
        {unreadable, place, place, {}, {}, parsed ? "not a JSON object" : parsed.error, {}});
}

std::string JsonEntry::Account::pathOf(std::string_view member) const {
    return path + (path.empty() || member.empty() ? "" : ".") + std::string(member);
}

/// The member that counts.
const JsonMember* JsonEntry::Account::find(std::string_view name) const {
    const auto members = value.members();
    const auto found = std::ranges::find_if(*members, [&](const JsonMember& member) {
        return member.name == name && !member.isReplaced;
    });
    return found == members->end() ? nullptr : &*found;
}

void JsonEntry::Account::report(const Rule& rule, std::string_view member, std::string_view text,
                                const Place* earlier) {
    const JsonMember* const found = member.empty() ? nullptr : find(member);
    if (found)
        return reportMember(rule, *found, text);
    const Place place = source.placeOf(*value.range());
    Finding finding{rule, place, place, {}, pathOf(member), std::string(text), {}};
    if (earlier)
        finding.related.push_back({*earlier, earlierDefinition});
    source.reporter.report(finding);
}

void JsonEntry::Account::reportMember(const Rule& rule, const JsonMember& member,
                                      std::string_view text) {
    reported.push_back(member.name);
    source.reporter.report({rule,
                            source.placeOf(member.valueRange),
                            source.placeOf({member.nameRange.begin, member.valueRange.end}),
                            {},
                            pathOf(member.name),
                            std::string(text),
                            {}});
}

/// Notes that a member was read into a field, of which it may not be the type.
void JsonEntry::Account::noteType(std::string_view name, bool isAbsent, bool isNumber) {
    asked.push_back(name);
    const JsonMember* const member = find(name);
    if (!member)
        return;
    const std::string_view text = source.textOf(member->valueRange);
    if (isAbsent)
        reportMember("member-of-wrong-type"_rule, *member, text);
    else if (!isNumber && value.object()->find(name)->second.number())
        reportMember("number-for-text"_rule, *member, text);
}

const Place* JsonEntry::Account::define(std::string_view name, RecordMap<Place>& places) const {
    const Place* const earlier = places.find(name);
    if (!earlier)
        places.set(name, source.placeOf(*value.range()));
    return earlier;
}

std::unique_ptr<JsonEntry::Account> JsonEntry::Account::ofItem(std::string_view name,
                                                               std::size_t at,
                                                               const JsonValue& item) const {
    return std::make_unique<Account>(
        Account{source, item, pathOf(name) + '[' + std::to_string(at) + ']'});
}

void JsonEntry::Account::end() {
    const auto members = value.members();
    if (!members)
        return report("member-of-wrong-type"_rule, {}, source.textOf(*value.range()), nullptr);
    source.reporter.sink()->used(source.placeOf(*value.range()));
    for (const JsonMember& member : *members) {
        const bool isKnown = contains(asked, member.name);
        if (!isKnown || member.isReplaced)
            reportMember(isKnown ? "replaced-member"_rule : "unknown-member"_rule, member,
                         source.textOf(member.valueRange));
        else if (!contains(reported, member.name))
            source.reporter.sink()->used(
                source.placeOf({member.nameRange.begin, member.valueRange.end}));
    }
}

}  // namespace yg
