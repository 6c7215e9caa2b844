// SPDX-License-Identifier: MIT
#include "YGConfigManager/settings/UrlReports.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <vector>

#include "YGConfigManager/host/JsonValue.h"
#include "YGConfigManager/records/RecordMap.h"
#include "YGConfigManager/settings/SettingsRules.h"

namespace yg {

namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

std::string jsonOf(const JsonValue& value) {
    std::string text;
    return value.appendTo(text) ? text : throw std::bad_alloc();
}

const JsonValue* memberOf(const JsonValue::Object& object, std::string_view name) {
    const auto found = object.find(name);
    return found == object.end() ? nullptr : &found->second;
}

/// The members of an object beside two known ones. `place` stands before their names.
void reportMembersBut(const JsonValue::Object& object, std::string_view one, std::string_view other,
                      const std::string& place, const Reporter& reporter) {
    for (const auto& [name, value] : object) {
        if (name != one && name != other)
            reporter.report(rules::unknownMember, {}, place + name, jsonOf(value));
    }
}

/// The text that a member gives a field; null when it gives none.
const std::string* readText(const JsonValue* member, const std::string& place,
                            const Reporter& reporter) {
    if (!member)
        return nullptr;
    if (member->number())
        reporter.report(rules::numberForText, {}, place, *member->number());
    else if (!member->text())
        reporter.report(rules::memberOfWrongType, {}, place, jsonOf(*member));
    return member->number() ? member->number() : member->text();
}

void reportEntries(const JsonValue::List& entries, const Reporter& reporter) {
    RecordMap<bool> seen;
    for (std::size_t at = 0; at < entries.size(); ++at) {
        const std::string place = "urlConfigList[" + std::to_string(at) + "]";
        const auto entry = entries[at].object();
        if (!entry) {
            reporter.report(rules::memberOfWrongType, {}, place, jsonOf(entries[at]));
            continue;
        }
        reportMembersBut(*entry, "urlKey", "urlValue", place + ".", reporter);
        const std::string* const key =
            readText(memberOf(*entry, "urlKey"), place + ".urlKey", reporter);
        const std::string* const value =
            readText(memberOf(*entry, "urlValue"), place + ".urlValue", reporter);
        if (!key)
            reporter.report(rules::urlWithoutKey, {}, place);
        else if (seen.set(*key, true))
            reporter.report(rules::duplicateUrlKey, {}, place, *key);
        if (!value)
            reporter.report(rules::urlWithoutValue, {}, place, key ? *key : std::string());
        else if (hasBlanksAround(*value))
            reporter.report(rules::blanksAroundAddress, {}, place + ".urlValue", *value);
    }
}

}  // namespace

bool hasBlanksAround(std::string_view address) {
    return !address.empty() && (isBlank(address.front()) || isBlank(address.back()));
}

void reportUrlList(std::string_view json, const Rule& unreadable, const Reporter& reporter) {
    if (!reporter)
        return;
    const JsonValue::Parsed parsed = JsonValue::parse(json);
    const auto list = parsed ? parsed.value->object() : nullptr;
    if (!list) {
        reporter.report(unreadable, {}, {},
                        parsed ? "not a JSON object" : std::string_view(parsed.error));
        return;
    }
    reportMembersBut(*list, "md5Value", "urlConfigList", "", reporter);
    const std::string* const digest = readText(memberOf(*list, "md5Value"), "md5Value", reporter);
    if (!digest || digest->empty())
        reporter.report(rules::listWithoutDigest, {}, "md5Value");
    const JsonValue* const entries = memberOf(*list, "urlConfigList");
    if (entries && entries->list())
        reportEntries(*entries->list(), reporter);
    else if (entries)
        reporter.report(rules::memberOfWrongType, {}, "urlConfigList", jsonOf(*entries));
}

bool haveSameEntries(const YGHttpReqUrlModel& left, const YGHttpReqUrlModel& right) {
    const auto ofLeft = left.urlConfigs();
    const auto ofRight = right.urlConfigs();
    if (!ofLeft || !ofRight)
        return ofLeft == ofRight;
    return std::equal(ofLeft->begin(), ofLeft->end(), ofRight->begin(), ofRight->end(),
                      [](const auto& one, const auto& other) {
                          return one->urlKey() == other->urlKey() &&
                                 one->urlValue() == other->urlValue();
                      });
}

}  // namespace yg
