// SPDX-License-Identifier: MIT
//
// One JSON object while a loader reads it, as Entry.h is one element: what nobody asked for is
// reported when its reader is done, and without a sink it does nothing but read. Internal. Throws
// std::bad_alloc.
//
//   readingJson(reporter, {bytes, path}, "unreadable-url-list"_rule, [&](JsonEntry& list) {
//       list.read(*model);
//       list.forEachObject("urlConfigList", *model->urlConfigList().json(), [&](JsonEntry& url) {
//           …
//       });
//   });
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "YGConfigManager/diagnostics/Reporter.h"
#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/host/JsonModel.h"
#include "YGConfigManager/records/Description.h"
#include "YGConfigManager/records/RecordMap.h"
#include "YGConfigManager/text/LineIndex.h"

namespace yg {

/// A JSON text, and the path or URL that it comes from.
struct JsonText {
    std::string_view bytes;
    std::string_view file;
};

class JsonEntry {
public:
    JsonEntry(const JsonEntry&) = delete;
    JsonEntry& operator=(const JsonEntry&) = delete;

    /// Reads the members of the record's description as JsonModel.h does. A missing one, and one of
    /// another type, which is reported, leaves its field absent.
    template <class Record>
    void read(Record& record) {
        const auto readField = [&](const auto& field) {
            const std::string_view name = field.attribute.name;
            const auto member = object_->find(name);
            if (member != object_->end())
                detail::readModelField(member->second, record.*field.setter);
            if (account_)
                account_->noteType(name, isAbsent(record.*field.setter),
                                   isNumber(record.*field.setter));
        };
        std::apply([&](const auto&... field) { (readField(field), ...); },
                   Description<Record>::fields);
    }

    /// Whether there is a member of this name, of whatever type.
    bool has(std::string_view name) const { return object_->find(name) != object_->end(); }

    /// Calls `visit(JsonEntry&)` for each object in a list, which is the member of this name. Items
    /// of other types are reported.
    template <class Visit>
    void forEachObject(std::string_view name, const JsonValue::List& list, Visit&& visit) {
        for (std::size_t at = 0; at < list.size(); ++at) {
            JsonEntry item(list[at]);
            if (account_)
                item.account_ = account_->ofItem(name, at, list[at]);
            if (item.object_)
                visit(item);
            item.end();
        }
    }

    /// Something of the object, or of the member that is named. `earlier`, unless it is null, is
    /// the definition that counts instead.
    void report(const Rule& rule, std::string_view member = {}, std::string_view value = {},
                const Place* earlier = nullptr) {
        if (account_)
            account_->report(rule, member, value, earlier);
    }

    /// Notes that the object defines a name, unless one before it does: then answers where that is.
    /// Null without a sink.
    const Place* define(std::string_view name, RecordMap<Place>& places) const {
        return account_ ? account_->define(name, places) : nullptr;
    }

private:
    template <class Read>
    friend void readingJson(const Reporter& reporter, const JsonText& text, const Rule& unreadable,
                            Read&& read);

    /// What findings say of their place.
    struct Source {
        Place placeOf(JsonRange range) const;
        std::string_view textOf(JsonRange range) const;

        const Reporter& reporter;
        const JsonText& text;
        text::LineIndex lines;
    };

    /// What was asked of the object.
    struct Account {
        void report(const Rule& rule, std::string_view member, std::string_view text,
                    const Place* earlier);
        void reportMember(const Rule& rule, const JsonMember& member, std::string_view text);
        void noteType(std::string_view name, bool isAbsent, bool isNumber);
        const Place* define(std::string_view name, RecordMap<Place>& places) const;
        std::unique_ptr<Account> ofItem(std::string_view name, std::size_t at,
                                        const JsonValue& item) const;
        std::string pathOf(std::string_view member) const;
        const JsonMember* find(std::string_view name) const;
        void end();

        const Source& source;
        const JsonValue& value;
        std::string path = {};  ///< "urlConfigList[2]"; empty for the whole text
        std::vector<std::string_view> asked = {};
        std::vector<std::string_view> reported = {};  ///< members that a finding is about
    };

    explicit JsonEntry(const JsonValue& value) : object_(value.object()) {}

    static void reportUnreadable(const Reporter& reporter, const JsonText& text,
                                 const Rule& unreadable, const JsonValue::Parsed& parsed);

    template <class Value>
    static bool isAbsent(const std::optional<Value>& field) {
        return !field;
    }
    template <class Item>
    static bool isAbsent(const ModelList<Item>& field) {
        return field.isAbsent();
    }

    template <class Value>
    static constexpr bool isNumber(const Value&) {
        return std::is_same_v<Value, std::optional<double>>;
    }

    void end() const {
        if (account_)
            account_->end();
    }

    std::shared_ptr<const JsonValue::Object> object_;
    std::unique_ptr<Account> account_;
};

/// Calls `read(JsonEntry&)` for the object that a text is; otherwise reports the text by the rule
/// `unreadable`.
template <class Read>
void readingJson(const Reporter& reporter, const JsonText& text, const Rule& unreadable,
                 Read&& read) {
    const JsonValue::Parsed parsed =
        orOutOfMemory(JsonValue::parse(text.bytes, {.positions = static_cast<bool>(reporter)}));
    if (!parsed || !parsed.value->object())
        return JsonEntry::reportUnreadable(reporter, text, unreadable, parsed);
    std::optional<JsonEntry::Source> source;
    JsonEntry entry(*parsed.value);
    if (reporter) {
        source.emplace(JsonEntry::Source{reporter, text, text::LineIndex(text.bytes)});
        entry.account_ =
            std::make_unique<JsonEntry::Account>(JsonEntry::Account{*source, *parsed.value});
    }
    read(entry);
    entry.end();
}

}  // namespace yg
