// SPDX-License-Identifier: MIT
//
// One element while a loader reads it. Asking it for something marks that as read; when its reader
// is done, what nobody asked for is reported, so that a loader states each rule once and says
// nothing of what it does not know. Without a sink it does nothing but read. Internal.
//
//   reading(reporter, root, [&](Entry& styles) {
//       styles.forEachElement([&](Entry& style) {
//           const auto name = style.attribute("name");
//           if (!name)
//               return style.drop("missing-name"_rule);
//           …
//       });
//   });
//
// Attributes that nobody asked for are reported when the content is asked for, content that nobody
// asked for at the end: so findings come in the order of the document.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "YGConfigManager/diagnostics/Reporter.h"
#include "YGConfigManager/records/AttributeTable.h"
#include "YGConfigManager/records/RecordMap.h"
#include "YGConfigManager/xml/Node.h"

namespace yg {

class Entry {
public:
    Entry(const Entry&) = delete;
    Entry& operator=(const Entry&) = delete;

    const xml::Element& element() const { return element_; }
    std::string_view name() const { return element_.name(); }

    /// Whether somebody listens. For what is asked for findings alone.
    explicit operator bool() const { return account_.has_value(); }

    /// The value of an attribute, which counts as read.
    std::optional<std::string_view> attribute(std::string_view name) {
        if (account_)
            account_->asked.push_back(name);
        return element_.attribute(name);
    }

    /// Reads the attributes of a table into a record, and answers the first required one that is
    /// missing; "" when none is.
    template <class Record, std::size_t count>
    std::string_view read(const AttributeTable<Record, count>& table, Record& record) {
        if (account_) {
            account_->tables.push_back(table.rows());
            account_->reporter.sink()->made(&record, element_);
        }
        return table.read(element_, record);
    }
    template <class Record>
    std::string_view read(Record& record) {
        return read(attributesOf<Record>, record);
    }

    /// Calls `visit(Entry&)` for each child element. Text between them is reported.
    template <class Visit>
    void forEachElement(Visit&& visit) {
        beginContent();
        const auto read = [&](const xml::Element& child) {
            Entry entry(account_ ? &account_->reporter : nullptr, child);
            visit(entry);
            entry.end();
        };
        if (!account_) {
            for (const xml::Element& child : element_.elements())
                read(child);
            return;
        }
        for (const xml::Node& child : element_.children()) {
            if (child.isElement())
                read(xml::Element(child));
            else if (account_)
                account_->reportText(child);
        }
    }

    /// The text in the element, which counts as read; of elements in it their text, which is
    /// reported.
    std::string text() {
        beginContent();
        if (account_)
            account_->accountForText(element_);
        return element_.stringValue();
    }

    /// The content is read elsewhere.
    void leaveContent() { beginContent(); }

    /// The whole element is read, or reported, elsewhere.
    void leave() { account_.reset(); }

    // ---- Findings ----

    /// The element has no effect. What is inside is not reported any more, nor is what its reader
    /// finds afterwards. An attribute that the rule is about may be named, and the definition that
    /// counts instead, unless it is null.
    void drop(const Rule& rule, std::string_view attribute = {}, std::string_view value = {},
              const xml::Element* earlier = nullptr) {
        if (account_)
            account_->drop(element_, rule, attribute, value, earlier);
        account_.reset();
    }

    /// Something of the element; of an attribute if one is named.
    void report(const Rule& rule, std::string_view attribute = {}, std::string_view value = {},
                const std::optional<Place>& earlier = std::nullopt) {
        if (account_)
            account_->report(element_, rule, attribute, value, earlier);
    }

    /// The same of an attribute, if the element has it.
    void reportIfThere(const Rule& rule, std::string_view attribute) {
        if (!account_)
            return;
        if (const auto value = element_.attribute(attribute))
            report(rule, attribute, *value);
    }

    /// A part of an attribute's value, which `part` points into.
    void reportPart(const Rule& rule, std::string_view attribute, std::string_view part) {
        if (account_)
            account_->reportPart(element_, rule, attribute, part);
    }

    /// A child that is not an element, such as a comment.
    void reportChild(const Rule& rule, const xml::Node& child) {
        if (account_)
            account_->reportChild(rule, child);
    }

    /// Notes that the element defines a name, and answers where it was defined before, for a
    /// finding; absent without a sink. The attribute does, if one is named, there too.
    std::optional<Place> define(std::string_view name, RecordMap<xml::Element>& places,
                                std::string_view attribute = {}) const {
        return account_ ? account_->define(element_, name, places, attribute) : std::nullopt;
    }

private:
    template <class Read>
    friend auto reading(const Reporter& reporter, const xml::Element& element, Read&& read);

    /// What was asked of the element and said about it.
    struct Account {
        explicit Account(const Reporter& given) : reporter(given) {}

        static Place placeOf(const xml::Node& node);
        void drop(const xml::Element& element, const Rule& rule, std::string_view attribute,
                  std::string_view value, const xml::Element* earlier) const;
        void report(const xml::Element& element, const Rule& rule, std::string_view attribute,
                    std::string_view value, const std::optional<Place>& earlier);
        void reportPart(const xml::Element& element, const Rule& rule, std::string_view attribute,
                        std::string_view part);
        static std::optional<Place> define(const xml::Element& element, std::string_view name,
                                           RecordMap<xml::Element>& places,
                                           std::string_view attribute);
        void reportChild(const Rule& rule, const xml::Node& child) const;
        void reportText(const xml::Node& node) const;
        void accountForText(const xml::Element& element) const;
        void endAttributes(const xml::Element& element);
        void endContent(const xml::Element& element) const;
        /// The row of an attribute that was read by a table; null for another one.
        const AttributeInfo* rowOf(std::string_view attribute) const;

        Reporter reporter;
        std::vector<std::string_view> asked;
        std::vector<std::span<const AttributeInfo>> tables;
        std::vector<std::string> reported;  ///< attributes that a finding is about
        std::string_view valueOfParts;      ///< the one that reportPart() was called for last
        bool hasEndedAttributes = false;
        bool isContentRead = false;
    };

    Entry(const Reporter* reporter, const xml::Element& element) : element_(element) {
        if (reporter && *reporter)
            account_.emplace(*reporter);
    }

    void beginContent() {
        if (account_) {
            account_->endAttributes(element_);
            account_->isContentRead = true;
        }
    }

    void end() {
        if (!account_)
            return;
        account_->endAttributes(element_);
        account_->endContent(element_);
    }

    const xml::Element& element_;  // of whoever made the entry, who keeps it
    std::optional<Account> account_;
};

/// Calls `read(Entry&)` for an element, reports what it leaves unread and answers what it answers.
/// For an empty handle nothing happens, or nothing is reported when there is an answer.
template <class Read>
auto reading(const Reporter& reporter, const xml::Element& element, Read&& read) {
    Entry entry(element ? &reporter : nullptr, element);
    if constexpr (std::is_void_v<std::invoke_result_t<Read, Entry&>>) {
        if (element)
            read(entry);
        entry.end();
    } else {
        auto answer = read(entry);
        entry.end();
        return answer;
    }
}

}  // namespace yg
