// SPDX-License-Identifier: MIT
//
// Collects what the loaders and the checks of an inspection report. Internal. Throws
// std::bad_alloc.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <vector>

#include "YGConfigManager/diagnostics/DiagnosticsSink.h"
#include "YGConfigManager/diagnostics/RuleTable.h"
#include "YGConfigManager/records/Description.h"
#include "YGConfigManager/xml/Element.h"

namespace yg {

/// One attribute that counts and that defines or refers to a name.
struct NameUse {
    const AttributeInfo* row;
    xml::Element element;
    std::string value;  ///< whole: of a list of names "a;b"
};

/// A finding, and what only its check can say about it.
struct Found {
    Finding finding;
    std::optional<std::string> suggestion = {};
    std::string message = {};  ///< instead of the rule's sentence; "" for that
};

/// What a check may say beside the place.
struct Details {
    std::string value = {};    ///< "" for that of the attribute, or of the part
    std::string message = {};  ///< instead of the rule's sentence; "" for that
    std::optional<std::string> suggestion = {};
    std::vector<RelatedPlace> related = {};
};

class Gathering final : public DiagnosticsSink {
public:
    // ---- From the loaders ----

    /// What is taken of their reports: all of them while the files are loaded. A page that is built
    /// afterwards repeats what the files gave, and tells something new about its slots alone.
    enum class Reports { all, aboutSlots, none };
    void take(Reports reports) { reports_ = reports; }

    void report(const Finding& finding) override;
    bool wantsUsed() const override { return false; }
    void readingFile(std::string_view path) override { lastRead_ = path; }
    void named(const AttributeInfo& row, const xml::Element& element,
               std::string_view value) override;
    void made(const void* record, const xml::Element& element) override {
        if (reports_ != Reports::none)
            origins_.insert_or_assign(record, element);
    }

    // ---- From the checks ----
    void onFile(const Rule& rule, std::string_view path, Details details = {});
    void onPlace(const Rule& rule, const Place& place, Details details = {});
    /// Its start tag.
    void onElement(const Rule& rule, const xml::Element& element, Details details = {});
    void onAttribute(const Rule& rule, const xml::Element& element, std::string_view attribute,
                     Details details = {});
    /// A part of an attribute's value, `size` bytes from `offset` on.
    void onPart(const Rule& rule, const xml::Element& element, std::string_view attribute,
                std::size_t offset, std::size_t size, Details details = {});

    /// Adds a finding unless the same was found before, for a file may be loaded more than once, or
    /// it is about a call and has no file.
    void add(Found found);

    const std::vector<Found>& found() const { return found_; }
    std::vector<Found>& found() { return found_; }

    /// The attributes that count, in the order of loading, and each once.
    const std::vector<NameUse>& names() const { return names_; }

    /// The path of the file that was read last; "" before the first.
    const std::string& lastRead() const { return lastRead_; }

    /// The element that a record was read from; empty when that is not known.
    xml::Element originOf(const void* record) const;

private:
    using Key =
        std::tuple<std::string, std::string, TextPoint, TextPoint, std::string, std::string>;

    Reports reports_ = Reports::all;
    std::string lastRead_;
    std::vector<Found> found_;
    std::set<Key> known_;
    std::vector<NameUse> names_;
    std::set<std::tuple<const AttributeInfo*, std::string, TextPoint>> knownNames_;
    std::unordered_map<const void*, xml::Element> origins_;
};

}  // namespace yg
