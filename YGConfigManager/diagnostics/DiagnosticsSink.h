// SPDX-License-Identifier: MIT
//
// What the loaders pass over in silence, told to whoever wants to know. The loaders forgive: what
// they cannot place they drop without a word. A sink that is given to a loader hears of each such
// place, from the code that drops it. Answers and log lines are the same with and without one.
// A loader calls its sink on the thread that loads or looks up.
#pragma once

#include <string>
#include <string_view>

#include "YGConfigManager/export.h"
#include "YGConfigManager/xml/Element.h"

namespace yg {

/// What became of the thing that a finding is about.
enum class Handling {
    dropped,     ///< it has no effect
    replaced,    ///< it takes the place of an earlier definition of the same name
    defaulted,   ///< its value cannot be read as it stands; a default or a part of it counts
    unresolved,  ///< it names something that does not exist
};

/// One kind of finding. Rules are constants: a finding's rule lives as long as the program.
struct Rule {
    std::string_view name;  ///< stable and made for people and scripts: "unknown-attribute"
    Handling handling;
    std::string_view meaning;  ///< one sentence for the author of the file
};

/// One thing that a loader passed over.
struct Finding {
    const Rule& rule;
    /// The element, or another node, concerned, with its position in the file; empty when there is
    /// none, as for a file that cannot be read.
    xml::Node node;
    /// The attribute concerned; empty when it is the node itself. In JSON the member concerned.
    std::string attribute;
    /// The text concerned: a value, a name, a path; empty when there is none.
    std::string value;
};

class YG_EXPORT DiagnosticsSink {
public:
    virtual ~DiagnosticsSink() = default;

    /// Called for everything that is dropped, replaced, defaulted or cannot be resolved. What
    /// stands inside a dropped element is dropped with it and not reported apart.
    virtual void report(const Finding& finding) = 0;

    /// Called for each element that has an effect.
    virtual void usedElement(const xml::Element&) {}

    /// Called for each attribute whose value is taken as it stands.
    virtual void usedAttribute(const xml::Element&, std::string_view /*attribute*/) {}

    /// Called before a file is read, with its path as it was given, and before a download is, with
    /// its URL: what is then reported on the same thread is in it.
    virtual void readingFile(std::string_view /*path*/) {}
};

}  // namespace yg
