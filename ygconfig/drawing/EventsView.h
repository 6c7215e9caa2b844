// SPDX-License-Identifier: MIT
//
// The event configuration as text for people: a tree for each group of events and for each
// template, and the table of commands.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "YGConfigManager/events/YGEventLoader.h"

#include "ygconfig/drawing/Paint.h"
#include "ygconfig/drawing/Tree.h"

namespace yg::tool {

/// Explains the words and signs of the trees; lines, each with its line feed.
inline constexpr std::string_view eventsLegend =
    "What the lines say; what is absent is left out:\n"
    "  NAME  COMMAND          an event and the command that it triggers\n"
    "  → STYLE                where it leads: the event's change_style, else its command's\n"
    "  dispatch, data         its own dispatch (disptch in templates) and addtion_data\n"
    "  from TEMPLATE          the record of that template, shared by all that include it\n"
    "  (no such command)      no command of this name is in the file\n";

class EventsView {
public:
    /// The loader must outlive the view.
    EventsView(const YGEventLoader& loader, const Paint& paint);

    /// Puts out everything: groups, templates, commands.
    void events(Output& output) const;

private:
    void sections(std::string_view title, const EventGroupMap& sections, Output& output) const;
    std::string commands() const;
    /// `section` is the name as its map holds it.
    Branch eventBranch(const std::string& section, const std::string& name,
                       const YGEventData& event) const;
    std::string arrowTo(const std::optional<std::string>& style) const;

    const YGEventLoader& loader_;
    const Paint paint_;
    /// The first template that holds a record, which is the one that defines it unless a later
    /// template has taken the place of an earlier one of its name.
    std::unordered_map<const YGEventData*, const std::string*> home_;
};

}  // namespace yg::tool
