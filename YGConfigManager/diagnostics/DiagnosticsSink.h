// SPDX-License-Identifier: MIT
//
// Findings: what a loader drops, replaces, defaults or cannot resolve. Loaders forgive: what they
// cannot place they drop without a word. A sink reports each such place, from the code that drops
// it. Answers, files and log lines are the same with and without one.
//
// For all loaders alike: the sink is given where the loader is made, null, the default, for none;
// it is kept as long as the loader and must live as long. The loader calls it on the thread that
// loads or looks up, while it holds no lock.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/diagnostics/Rule.h"
#include "YGConfigManager/export.h"
#include "YGConfigManager/text/Place.h"

namespace yg {

struct AttributeInfo;

namespace xml {
class Element;
class Node;
struct ParseResult;
}  // namespace xml

/// A place that has to do with a finding.
struct RelatedPlace {
    Place place;               ///< what to look at
    std::string_view meaning;  ///< "the earlier definition"
};

/// One thing that a loader does not take as it is written.
struct Finding {
    const Rule& rule;  ///< what kind of finding it is
    /// What to look at: the attribute, the part of its value, the element's start tag, the text,
    /// the JSON member, the spot of an XML error. Of a file as a whole it has the path alone.
    Place place;
    /// All that the finding is about: an element whole when it has no effect, otherwise `place`.
    /// What is inside is not reported by itself. Where the rule says that it is dropped, the file
    /// means the same without it.
    Place extent;
    /// The name of the element concerned, "#text" for text and "#comment" for a comment; empty when
    /// there is none, as in JSON.
    std::string element;
    /// The attribute concerned; empty when it is the element itself. In JSON the member concerned:
    /// "urlConfigList[2].urlKey".
    std::string attribute;
    /// The text concerned: a value, a name, a path, a cause; empty when there is none.
    std::string value;
    std::vector<RelatedPlace> related;
};

class YG_EXPORT DiagnosticsSink {
public:
    virtual ~DiagnosticsSink() = default;

    /// Called for each finding. What is inside a dropped element is dropped with it and not
    /// reported by itself.
    virtual void report(const Finding& finding) = 0;

    /// Whether used() is called, which takes time for each place.
    virtual bool wantsUsed() const { return true; }

    /// Called for each element, attribute, text and JSON member that counts as it is written.
    virtual void used(const Place&) {}

    /// Called for each attribute that counts and that defines or refers to a name (`row.names`).
    virtual void named(const AttributeInfo& /*row*/, const xml::Element& /*element*/,
                       std::string_view /*value*/) {}

    /// Called when an element's attributes were read into a record. The record may be short-lived,
    /// and another one may come to its address.
    virtual void made(const void* /*record*/, const xml::Element& /*element*/) {}

    /// Called when a slot of a custom page is filled: with the part of the page's name, and with
    /// the panel of the member or pattern that serves it. `wildcard` is the name of a pattern; ""
    /// for a member.
    virtual void filled(const xml::Element& /*slot*/, std::string_view /*argument*/,
                        const xml::Node& /*panel*/, std::string_view /*wildcard*/) {}

    /// Called before a file is read, with its path as it was given, and before a download is, with
    /// its URL.
    virtual void readingFile(std::string_view /*path*/) {}

    /// Called with what a file was parsed to, with positions. It must not be changed.
    virtual void parsedFile(std::string_view /*path*/, const xml::ParseResult& /*parsed*/) {}
};

}  // namespace yg
