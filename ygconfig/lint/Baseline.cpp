// SPDX-License-Identifier: MIT
#include "ygconfig/lint/Baseline.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <map>
#include <new>
#include <tuple>
#include <unordered_map>
#include <utility>

#include "YGConfigManager/host/JsonValue.h"
#include "YGConfigManager/text/LineIndex.h"

namespace yg::tool {

namespace {

/// What a key is made of; in the file, its members in this order.
struct KeyParts {
    std::string_view rule;
    std::string_view file;
    std::string_view path;
    std::optional<std::string_view> attribute;
    std::optional<std::string_view> value;
};

/// The members of an entry as JSON, so that a key is the same whether it comes from a finding or
/// from a file, whatever bytes are in it.
std::string keyOf(const KeyParts& parts) {
    std::string key;
    const auto add = [&](std::string_view name, std::optional<std::string_view> text) {
        if (!text)
            return;
        key.append(key.empty() ? "\"" : ", \"").append(name).append("\": ");
        if (!appendJsonText(key, *text))
            throw std::bad_alloc();
    };
    add("rule", parts.rule);
    add("file", parts.file);
    add("path", parts.path);
    add("attribute", parts.attribute);
    add("value", parts.value);
    return key;
}

std::string keyOf(const Inspection& inspection, const RootFinding& finding) {
    std::string path;
    for (const std::string& name : inspection.pathOf(finding))
        path.append(path.empty() ? "" : "/").append(name);
    return keyOf({finding.rule->name, finding.file, path, finding.attribute, finding.value});
}

/// Reads the form; the first thing that does not have it ends the reading.
class Reader {
public:
    Reader(std::string_view text, std::string& error) : text_(text), lines_(text), error_(error) {}

    std::optional<std::vector<BaselineEntry>> entries() {
        const JsonValue::Parsed parsed = JsonValue::parse(text_, {.positions = true});
        if (!parsed) {
            if (parsed.place.line == 0)  // a limit
                fail(TextPoint{1, 1}, parsed.error);
            else
                fail(parsed.place, "not valid JSON");
            return std::nullopt;
        }
        std::vector<BaselineEntry> entries;
        const auto object = membersOf(*parsed.value, {"version", "findings"});
        if (!object)
            return std::nullopt;
        const JsonValue* const version = find(*object, "version");
        if (!version || !version->number() || *version->number() != "1")
            return fail(version ? *version : *parsed.value, "'version' is not 1");
        const JsonValue* const findings = find(*object, "findings");
        const auto list = findings ? findings->list() : nullptr;
        if (!list)
            return fail(findings ? *findings : *parsed.value, "'findings' is not a list");
        for (const JsonValue& item : *list) {
            if (!entry(item, entries))
                return std::nullopt;
        }
        return entries;
    }

private:
    static const JsonValue* find(const JsonValue::Object& object, std::string_view name) {
        const auto found = object.find(name);
        return found == object.end() ? nullptr : &found->second;
    }

    std::nullopt_t fail(const TextPoint& point, const std::string& what) {
        error_ = std::to_string(point.line) + ":" + std::to_string(point.column) + ": " + what;
        return std::nullopt;
    }

    std::nullopt_t fail(const JsonValue& where, const std::string& what) {
        return fail(pointAt(where.range().value_or(JsonRange()).begin), what);
    }

    TextPoint pointAt(std::size_t offset) const { return lines_.pointAt(text_, offset); }

    /// The object, if it has no other members than these.
    std::shared_ptr<const JsonValue::Object> membersOf(
        const JsonValue& value, std::initializer_list<std::string_view> known) {
        auto object = value.object();
        if (!object) {
            fail(value, "not an object");
            return nullptr;
        }
        for (const auto& [name, member] : *object) {
            if (std::ranges::find(known, name) == known.end()) {
                fail(member, "'" + name + "' is not a member of a baseline");
                return nullptr;
            }
        }
        return object;
    }

    bool entry(const JsonValue& value, std::vector<BaselineEntry>& entries) {
        const auto object =
            membersOf(value, {"rule", "file", "path", "attribute", "value", "count"});
        if (!object)
            return false;
        std::array<std::optional<std::string_view>, 5> texts;
        std::size_t at = 0;
        for (const std::string name : {"rule", "file", "path", "attribute", "value"}) {
            const JsonValue* const member = find(*object, name);
            const bool isOptional = at >= 3;
            if (member ? !member->text() : !isOptional) {
                fail(member ? *member : value, "'" + name + "' is not a text");
                return false;
            }
            if (member)
                texts[at] = *member->text();
            ++at;
        }
        BaselineEntry entry;
        entry.rule = *texts[0];
        entry.file = *texts[1];
        entry.key = keyOf({*texts[0], *texts[1], *texts[2], texts[3], texts[4]});
        if (const JsonValue* const count = find(*object, "count")) {
            const std::string digits = count->number() ? *count->number() : "";
            const char* const end = digits.data() + digits.size();
            const auto read = std::from_chars(digits.data(), end, entry.count);
            if (read.ec != std::errc() || read.ptr != end || entry.count == 0) {
                fail(*count, "'count' is not a whole number from 1 on");
                return false;
            }
        }
        const JsonRange range = value.range().value_or(JsonRange());
        entry.begin = pointAt(range.begin);
        entry.end = pointAt(range.end);
        entries.push_back(std::move(entry));
        return true;
    }

    std::string_view text_;
    text::LineIndex lines_;
    std::string& error_;
};

RootFinding staleFinding(const BaselineEntry& entry, std::size_t unused,
                         const std::string& baselineFile) {
    RootFinding finding;
    finding.rule = ruleNamed("stale-baseline-entry");
    finding.file = baselineFile;
    finding.begin = entry.begin;
    finding.end = entry.end;
    std::string what = "'";
    what.append(entry.rule).append("' in ").append(entry.file);
    finding.message = unused == entry.count
                          ? "Remove this entry: " + what + " is not found any more."
                          : "Lower the count of this entry to " +
                                std::to_string(entry.count - unused) + ": " + what +
                                " is found less often now.";
    finding.value = entry.rule;
    return finding;
}

}  // namespace

std::string baselineText(const LintReport& report) {
    std::map<std::string, std::size_t> counts;
    for (const RootFinding* const finding : report.findings)
        ++counts[keyOf(*report.inspection, *finding)];
    std::string text = "{\n  \"version\": 1,\n  \"findings\": [";
    bool isFirst = true;
    for (const auto& [key, count] : counts) {
        text.append(isFirst ? "\n    {" : ",\n    {").append(key);
        if (count > 1)
            text.append(", \"count\": ").append(std::to_string(count));
        text += '}';
        isFirst = false;
    }
    return text.append(isFirst ? "]\n}\n" : "\n  ]\n}\n");
}

std::optional<std::vector<BaselineEntry>> readBaseline(std::string_view text, std::string& error) {
    return Reader(text, error).entries();
}

void hideKnown(std::span<const BaselineEntry> entries, const std::string& baselineFile,
               LintReport& report) {
    std::unordered_map<std::string_view, std::size_t> left;
    for (const BaselineEntry& entry : entries)
        left[entry.key] += entry.count;
    report.hidden = std::erase_if(report.findings, [&](const RootFinding* finding) {
        const auto known = left.find(keyOf(*report.inspection, *finding));
        return known != left.end() && known->second > 0 && known->second-- > 0;
    });
    for (const BaselineEntry& entry : entries) {
        std::size_t& unused = left[entry.key];
        if (unused == 0)
            continue;
        const std::size_t here = std::min(unused, entry.count);
        report.stale.push_back(staleFinding(entry, here, baselineFile));
        unused -= here;
    }
    for (const RootFinding& finding : report.stale)
        report.findings.push_back(&finding);
    std::ranges::stable_sort(report.findings, {}, [](const RootFinding* finding) {
        return std::tuple(std::string_view(finding->file), finding->begin.line,
                          finding->begin.column, finding->rule->name);
    });
}

std::string fingerprintOf(const Inspection& inspection, const RootFinding& finding) {
    std::uint64_t hash = 0xcbf29ce484222325;  // FNV-1a
    for (const char each : keyOf(inspection, finding)) {
        hash ^= static_cast<unsigned char>(each);
        hash *= 0x100000001b3;
    }
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (int shift = 60; shift >= 0; shift -= 4)
        text += digits[hash >> shift & 0xF];
    return text;
}

}  // namespace yg::tool
