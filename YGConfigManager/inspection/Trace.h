// SPDX-License-Identifier: MIT
//
// What one loader read, for explanations: the definitions of a name, in the order of loading, and
// what the loader reported about each. Internal. Throws std::bad_alloc.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "YGConfigManager/diagnostics/DiagnosticsSink.h"
#include "YGConfigManager/inspection/Explanation.h"
#include "YGConfigManager/inspection/Gathering.h"
#include "YGConfigManager/inspection/SourceFiles.h"
#include "YGConfigManager/inspection/Wording.h"
#include "YGConfigManager/xml/Element.h"

namespace yg {

class Trace final : public DiagnosticsSink {
public:
    explicit Trace(std::string root) : files_(std::move(root)) {}

    // ---- From the loader ----
    void report(const Finding& finding) override { gathering_.report(finding); }
    bool wantsUsed() const override { return false; }
    void readingFile(std::string_view path) override { gathering_.readingFile(path); }
    void named(const AttributeInfo& row, const xml::Element& element,
               std::string_view value) override {
        gathering_.named(row, element, value);
    }
    void made(const void* record, const xml::Element& element) override {
        gathering_.made(record, element);
    }
    void parsedFile(std::string_view path, const xml::ParseResult& parsed) override;
    void filled(const xml::Element& slot, std::string_view argument, const xml::Node& panel,
                std::string_view wildcard) override;

    // ---- For explanations ----

    /// One element that defines a name.
    struct Definition {
        xml::Element element;
        std::string_view attribute;   ///< empty when the element's own name is the name
        const Found* loss = nullptr;  ///< why it does not count; null when it does
        bool counts = false;
    };

    /// The elements that define a name of a kind, counted or not, of those that `isAsked`.
    std::vector<Definition> definitions(
        Naming kind, std::string_view name,
        const std::function<bool(const xml::Element&)>& isAsked = nullptr) const;

    /// The same of a record that is known: its origin counts, and no other.
    std::vector<Definition> definitionsOf(
        const void* record, Naming kind, std::string_view name,
        const std::function<bool(const xml::Element&)>& isAsked = nullptr) const;

    /// What becomes of an element that could define something.
    Definition judged(const xml::Element& element, std::string_view attribute) const;

    /// Whether an attribute with a name in it counts.
    bool isCounted(const xml::Element& element, std::string_view attribute) const;

    /// The names that count, of a kind, that are defined.
    std::vector<std::string> namesOf(Naming kind) const;

    /// A slot that was filled.
    struct Filling {
        xml::Element slot;
        std::string argument;
        xml::Node panel;
        std::string wildcard;  ///< the pattern's name; "" for a member
    };
    const std::vector<Filling>& fillings() const { return fillings_; }

    const Gathering& gathering() const { return gathering_; }
    const SourceFiles& files() const { return files_; }

    /// The files that were parsed, in the order of loading.
    const std::vector<std::pair<std::string, xml::ParseResult>>& parsed() const { return parsed_; }

    // ---- Steps ----
    RootPlace place(const Place& place, std::string message) const;
    /// Of an element's start tag.
    RootPlace placeOf(const xml::Element& element, std::string message) const;
    /// "the soft-optimize file", "the user's own file", by its path; "" for others.
    std::string layerOf(std::string_view path) const;

    /// One step for each definition: the one that counts is taken, the others lost. `what` is the
    /// definition in words: "style 'quote'". Answers the element taken; empty when there is none.
    xml::Element addDefinitions(Explanation& explanation, std::span<const Definition> definitions,
                                const std::string& what) const;

    /// One step for each file that could not be read; a file that a root need not have counts only
    /// if it exists. The outcome is `lost` when the look-up has an answer, else `missing`.
    void addUnreadFiles(Explanation& explanation) const;

    /// What is reported about a name that an attribute refers to and that is not known there; null
    /// when it is.
    const Found* unresolved(const xml::Element& element, std::string_view attribute) const;

private:
    /// Where something begins: a path and a point.
    using Spot = std::pair<std::string_view, TextPoint>;

    /// What was reported, so that each definition is judged without a look at all of it.
    struct Reported {
        std::size_t found = 0;  ///< how many findings it is made of
        /// What was dropped, by where it begins: of all that begin there or before, in the same
        /// file, the one that ends last.
        std::map<Spot, const Found*> dropped;
        std::multimap<Spot, const Found*> replaced;  ///< by the earlier definition
        std::map<Spot, const Found*> unresolved;
    };
    const Reported& reported() const;

    /// Of a kind, by the names, in the order of loading.
    struct Written {
        xml::Element element;
        std::string_view attribute;
    };
    using ByName = std::map<std::string, std::vector<Written>, std::less<>>;
    const ByName& writtenOf(Naming kind) const;

    Gathering gathering_;
    SourceFiles files_;
    std::vector<std::pair<std::string, xml::ParseResult>> parsed_;
    std::vector<Filling> fillings_;
    mutable Reported reported_;
    mutable std::map<Naming, ByName> written_;
    /// The attributes that count, by file and offset.
    mutable std::set<std::pair<std::string_view, std::size_t>> counted_;
    mutable std::size_t countedNames_ = 0;  ///< how many names these are
};

/// What fails, as the log says it.
inline constexpr std::string_view explaining = "explain";

/// A step about what is not there, with the nearest name of those known.
void addMissing(Explanation& explanation, RootPlace place, std::string_view name,
                std::span<const std::string> known);

}  // namespace yg
