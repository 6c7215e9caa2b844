// SPDX-License-Identifier: MIT
//
// Collects what the loaders and the checks of an inspection report. Internal. Throws
// std::bad_alloc.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "YGConfigManager/diagnostics/DiagnosticsSink.h"
#include "YGConfigManager/diagnostics/RuleTable.h"
#include "YGConfigManager/inspection/PaletteMeasures.h"
#include "YGConfigManager/records/Description.h"
#include "YGConfigManager/xml/Document.h"

namespace yg {

/// One attribute that counts and that defines or refers to a name.
struct NameUse {
    const AttributeInfo* row;
    xml::Element element;
    std::string_view value;  ///< whole: of a list of names "a;b"; lives as long as the element

    /// The path of its file, which lives as long as the element.
    std::string_view file() const {
        return element.attributePoint(row->name).value_or(xml::SourcePoint{}).file;
    }
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
    /// `fileOfTexts` is what bytes and texts, which have no file, are called.
    explicit Gathering(std::string fileOfTexts = "") : fileOfTexts_(std::move(fileOfTexts)) {}

    // ---- From the loaders ----

    /// A page that is built after the files were loaded repeats what they gave, and tells something
    /// new about its slots alone. As long as this is set, other reports are not taken.
    void takeOnlyAboutSlots(bool only) { isOnlyAboutSlots_ = only; }

    void report(const Finding& finding) override;
    bool wantsUsed() const override { return false; }
    void readingFile(std::string_view path) override {
        if (!aside_)
            lastRead_ = path;
    }
    void named(const AttributeInfo& row, const xml::Element& element,
               std::string_view value) override;
    void made(const void* record, const xml::Element& element) override;
    void parsedFile(std::string_view path, const xml::ParseResult& parsed) override;

    // ---- From the checks ----
    void measured(ContrastPair pair) { contrasts_.push_back(std::move(pair)); }

    void onFile(const Rule& rule, std::string_view path, Details details = {});
    void onPlace(const Rule& rule, const Place& place, Details details = {});
    /// Its start tag.
    void onElement(const Rule& rule, const xml::Element& element, Details details = {});
    void onAttribute(const Rule& rule, const xml::Element& element, std::string_view attribute,
                     Details details = {});
    /// A part of an attribute's value, `size` bytes from `offset` on.
    void onPart(const Rule& rule, const xml::Element& element, std::string_view attribute,
                std::size_t offset, std::size_t size, Details details = {});

    /// What a loader reports while `ask` runs. None of it counts: a check only wants to know.
    template <class Ask>
    std::vector<Finding> reportedBy(const Ask& ask) {
        std::vector<Finding> reported;
        const Aside aside(*this, reported);
        ask();
        return reported;
    }

    /// The file of a place.
    const std::string& fileOf(const Place& place) const {
        return place.file.empty() ? fileOfTexts_ : place.file;
    }

    /// Adds a finding unless the same was found before, for a file may be loaded more than once, or
    /// it is about a call and has no file.
    void add(Found found);

    const std::vector<Found>& found() const { return found_; }
    /// For what a check can say more of what is there: words, related places, a suggestion.
    std::vector<Found>& found() { return found_; }

    /// Adds to the finding of a loader, by its index, what a check knows better: each of the
    /// details that is there takes the place of what the finding has.
    void explain(std::size_t index, Details details);
    std::vector<Found> takeFound() { return std::move(found_); }

    /// Makes one finding of those of a rule that stand at the same place, with all of their related
    /// places.
    void joinRepeated(const Rule& rule);

    /// Takes out what another finding explains.
    template <class Predicate>
    void removeIf(Predicate&& isExplained) {
        // A finding cannot be assigned, since its rule is a reference.
        std::vector<Found> kept;
        for (Found& found : found_) {
            if (!isExplained(std::as_const(found)))
                kept.push_back(std::move(found));
        }
        found_.swap(kept);
    }

    /// The attributes that count, in the order of loading, and each once.
    const std::vector<NameUse>& names() const { return names_; }
    std::vector<NameUse> takeNames() { return std::move(names_); }

    /// What the loaders parsed, by its path.
    using ParsedFiles = std::map<std::string, xml::ParseResult, std::less<>>;
    ParsedFiles takeParsed() { return std::move(parsed_); }

    /// The path of the file that was read last; "" before the first.
    const std::string& lastRead() const { return lastRead_; }

    /// In the order in which they were measured.
    const std::vector<ContrastPair>& contrasts() const { return contrasts_; }

    /// The element that a record was read from; empty when that is not known.
    xml::Element originOf(const void* record) const;

private:
    /// As long as it lives, what loaders say goes to a list of its own.
    class Aside {
    public:
        Aside(Gathering& gathering, std::vector<Finding>& reported) : gathering_(gathering) {
            gathering_.aside_ = &reported;
        }
        ~Aside() { gathering_.aside_ = nullptr; }
        Aside(const Aside&) = delete;
        Aside& operator=(const Aside&) = delete;

    private:
        Gathering& gathering_;
    };

    /// What tells findings apart; of the file, the attribute and the value their hashes.
    using Key =
        std::tuple<const Rule*, TextPoint, TextPoint, std::size_t, std::size_t, std::size_t>;

    struct Origin {
        const void* record;
        xml::Element element;
    };

    /// Whether the attribute that begins at an offset of a file was named, by the offset.
    using Seen = std::map<std::string, std::vector<bool>, std::less<>>;

    bool isOnlyAboutSlots_ = false;
    std::vector<Finding>* aside_ = nullptr;
    std::string fileOfTexts_;
    std::string lastRead_;
    std::vector<Found> found_;
    std::set<Key> known_;
    std::vector<NameUse> names_;
    std::vector<ContrastPair> contrasts_;
    Seen seen_;
    Seen::iterator lastSeen_ = seen_.end();
    ParsedFiles parsed_;
    /// Sorted by record when one is looked up, which most inspections of right files never do.
    mutable std::vector<Origin> origins_;
    mutable bool areSorted_ = true;
};

}  // namespace yg
