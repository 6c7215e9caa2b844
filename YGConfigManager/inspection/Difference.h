// SPDX-License-Identifier: MIT
//
// What differs between two roots, by what the library makes of them: by records and look-ups, not
// by text. Order of attributes, comments, white space and which file of a layer holds a definition
// give no difference. Both roots are loaded as an inspection loads one (inspection/Inspection.h):
// with loaders of its own, nothing downloaded, logged or written.
//
// The addresses of servers are drawn at random, so what is compared is what each entry offers, and
// the share of each address. Keys of a palette are compared by their name and by what they answer.
// Custom pages are compared as far as an inspection builds them on both sides; which of them there
// are follows from templates and members.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/export.h"
#include "YGConfigManager/text/OptionalText.h"
#include "YGConfigManager/text/Place.h"

namespace yg {

/// `moved` is a thing in another panel of its page, or in another position of its list.
enum class ChangeKind { added, removed, changed, moved };

/// The kinds of things that are compared.
enum class Subject {
    root,
    wildcardList,
    reusePanel,
    magicGroup,
    magicPanel,
    pageTemplate,
    page,
    tabPage,
    customPage,
    scrollPanel,
    panel,
    element,
    command,
    eventTemplate,
    eventGroup,
    event,
    palette,
    color,
    colorKey,
    font,
    fontKey,
    image,
    serverFile,
    serverGroup,
    serverEntry,
    serverAddress,
    settingsFile,
    setting,
    webPageFile,
    webPage,
    requestUrlFile,
    requestUrl,
};

/// "page", "colour key": as JSON and text name it.
YG_EXPORT std::string_view nameOf(Subject subject);
YG_EXPORT std::string_view nameOf(ChangeKind kind);

/// Whether a kind of thing is a page or what pages are made of: it has panels and elements.
YG_EXPORT bool hasPanels(Subject subject);

/// What the fields "color" and "font" of a key have when the palette has no such colour or font.
inline constexpr std::string_view missingColor = "red, because it is missing";
inline constexpr std::string_view missingFont = "the system font, because it is missing";

/// One step of a path.
struct NamedThing {
    Subject subject;   ///< what kind of thing it is
    std::string name;  ///< "" for what has none
};

/// One side of a change.
struct ChangeSide {
    /// The value of the field; absent as in the record. Of a thing that was moved within its list
    /// its position, from 1.
    std::optional<std::string> value;
    /// Below the root; of the attribute if the field is read from one, otherwise of the thing.
    /// Without a file when it is not known, without a line for a file as a whole.
    Place place;
    std::uint32_t path = 0;  ///< for Difference::pathOf
};

/// One thing that differs between two roots.
struct Change {
    ChangeKind kind;                   ///< what became of it
    Subject subject;                   ///< what kind of thing it is
    std::string field;                 ///< the record's field; "" unless it is `changed`
    std::optional<ChangeSide> before;  ///< absent when it is `added`
    std::optional<ChangeSide> after;   ///< absent when it is `removed`
    /// How many pages show it, custom ones included, when it is in a panel or an element; of an
    /// event how many templates and groups have it; otherwise 1. Where panels are referred to
    /// millions of times not all pages are counted.
    std::size_t shownIn = 1;
};

class YG_EXPORT Difference {
public:
    /// What became of the old root in the new one. Null, with one line in `error`, when one of them
    /// is not a folder or memory does not suffice.
    static std::shared_ptr<const Difference> between(OptionalText oldRoot, OptionalText newRoot,
                                                     std::string& error);

    ~Difference();
    Difference(const Difference&) = delete;
    Difference& operator=(const Difference&) = delete;

    /// Every change, each once: one in a panel that several pages show is listed where the panel is
    /// defined. A page, a file or a group that is only on one side is one change; of panels that
    /// come or go, all that is in them is listed. With the roots exchanged the same changes are
    /// listed the other way round.
    std::span<const Change> changes() const;

    /// The names that lead to the thing of a change on one side, the thing itself last.
    std::vector<NamedThing> pathOf(const ChangeSide& side) const;

private:
    struct Content;
    explicit Difference(std::unique_ptr<Content> content);

    std::unique_ptr<Content> content_;
};

}  // namespace yg
