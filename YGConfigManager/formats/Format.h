// SPDX-License-Identifier: MIT
//
// The files that the library reads, described: where each lies, which elements it has, what may
// be in them and what is dropped. Schemas and the pages on the formats are made from it. All of
// it is constant, lives as long as the program and may be walked by any thread.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "YGConfigManager/diagnostics/Rule.h"
#include "YGConfigManager/export.h"
#include "YGConfigManager/records/Description.h"
#include "YGConfigManager/text/OptionalText.h"

namespace yg {

/// A limit of an attribute's value that its table does not contain, or of an element's text.
struct ValueInfo {
    std::string_view attribute;  ///< empty for the text in the element
    /// A facet by its name in XML Schema: "minLength", "pattern" (which takes the place of the
    /// kind's own), "minExclusive".
    std::string_view facet;
    std::string_view value;     ///< of the facet
    std::string_view sentence;  ///< the limit for the author of the file
};

/// What an element holds beside its attributes.
enum class Content {
    elements,  ///< any number of elements, in any order; none where none is described
    element,   ///< exactly one element
    text,      ///< text alone
    items,     ///< in JSON: a list of objects
    texts,     ///< in JSON: a list of texts
};

/// One kind of element, or in JSON one kind of object or member. What is not described is dropped.
struct ElementInfo {
    std::string_view id;  ///< unique in its format; made for links: "command"
    /// The element's name, in JSON that of the member; empty when any name will do.
    std::string_view name = {};
    std::string_view usualName = {};  ///< where any name will do, that of the examples
    std::span<const std::string_view> otherThan = {};  ///< names that will not do
    std::string_view sentence = {};                    ///< what it is, for the author of the file
    std::span<const AttributeInfo> attributes = {};    ///< in JSON: members that are texts
    std::span<const ValueInfo> values = {};
    Content holds = Content::elements;
    std::span<const ElementInfo* const> content = {};
    /// What is reported here, beside what holds for all formats.
    std::span<const Rule* const> rules = {};
    /// In JSON: other members are ignored, and null counts as missing.
    bool isLenient = false;
};

/// One place where a file of a format lies.
struct FileInfo {
    std::string_view path;  ///< below the root of a stand-alone host; FILE: the application's name
    std::string_view operation;  ///< what names it: an operation of the host or of the loader
    std::string_view sentence;   ///< when the file is read, for its author
};

/// What a format is written in.
enum class FormatKind { xml, json };

/// One file format.
struct FormatInfo {
    std::string_view id;                           ///< made for file names: "events"
    std::string_view title;                        ///< for headings: "Events and commands"
    std::string_view sentence;                     ///< what the files say
    FormatKind kind = FormatKind::xml;             ///< what it is written in
    std::span<const FileInfo> files;               ///< where its files lie
    const ElementInfo& root;                       ///< its outermost element or object
    std::string_view example;                      ///< a short file with nothing to report
    std::span<const std::string_view> notes = {};  ///< what else authors should know, paragraphs
};

/// The element's own name, or the usual one where any will do.
constexpr std::string_view shownName(const ElementInfo& element) {
    return element.name.empty() ? element.usualName : element.name;
}

/// All formats.
YG_EXPORT std::span<const FormatInfo* const> formats();

/// The format of that id; null when there is none.
YG_EXPORT const FormatInfo* formatNamed(OptionalText id);

/// Each element of a format once, the root first, the content of an element after it.
YG_EXPORT std::vector<const ElementInfo*> elementsOf(const FormatInfo& format);

}  // namespace yg
