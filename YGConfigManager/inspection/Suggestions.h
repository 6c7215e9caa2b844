// SPDX-License-Identifier: MIT
//
// What an author probably meant, and which text that would replace. Internal. Throws
// std::bad_alloc.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "YGConfigManager/inspection/Gathering.h"
#include "YGConfigManager/inspection/Loaded.h"
#include "YGConfigManager/text/Nearest.h"

namespace yg {

/// What a finding's value names; Naming::nothing when it names nothing that could be looked up.
Naming kindNamedBy(const Finding& finding);

/// Whether the finding's value names something that does not exist.
bool isReference(const Finding& finding);

/// What is said of a finding beside its rule.
struct Remarks {
    Place place;  ///< of the text concerned, which the suggestion could replace
    std::optional<std::string> suggestion;
    std::string addition;  ///< a further sentence for the message; "" for none
};

/// Names that can be meant for each other: all of a kind, but a palette has colors and fonts of its
/// own.
struct NameScope {
    Naming kind;
    std::string palette;  ///< path of the file; "" for other kinds

    friend auto operator<=>(const NameScope&, const NameScope&) = default;  // NOLINT(*-nullptr)
};

/// The scope of the name that a finding's value is.
NameScope scopeOf(const Finding& finding);

class Suggestions {
public:
    /// Both must outlive it.
    Suggestions(const std::vector<NameUse>& names, const Loaded& loaded);

    Remarks remarksOn(const Found& found);

    /// What a reference to a name that does not exist probably means; absent for other findings.
    std::optional<std::string> nearestName(const Found& found);

    /// The one definition of a name to which nothing refers, null without one.
    const NameUse* onlyUnused(const NameScope& scope, const std::string& name);

private:
    text::KnownWords& defined(const NameScope& scope);
    std::optional<std::string> nearestIn(const void* owner, std::vector<std::string> words,
                                         std::string_view word);
    void onAttribute(const Found& found, const std::vector<xml::Element>& around, Remarks& remarks);
    void onElement(const Found& found, const std::vector<xml::Element>& around, Remarks& remarks);
    static void onMissingAttribute(const Finding& finding, const xml::Element& element,
                                   const ElementInfo& info, Remarks& remarks);
    void onAddress(const Finding& finding, const xml::Element& element, Remarks& remarks);
    void onMember(const Found& found, Remarks& remarks);
    void onElementName(const Finding& finding, const std::vector<xml::Element>& around,
                       Remarks& remarks);

    struct Uses {
        const NameUse* definition = nullptr;
        bool isUsed = false;  ///< or defined more than once
    };

    const std::vector<NameUse>& names_;
    const Loaded& loaded_;
    std::map<NameScope, std::set<std::string>> definedNames_;
    std::map<NameScope, std::unique_ptr<text::KnownWords>> defined_;
    std::map<const void*, std::unique_ptr<text::KnownWords>> described_;
    std::map<std::pair<NameScope, std::string>, Uses> uses_;  ///< once asked for
};

}  // namespace yg
