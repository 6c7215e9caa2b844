// SPDX-License-Identifier: MIT
#include "ygconfig/drawing/EventsView.h"

#include <cstddef>
#include <utility>
#include <vector>

#include "ygconfig/drawing/Details.h"

namespace yg::tool {

EventsView::EventsView(const YGEventLoader& loader, const Paint& paint)
    : loader_(loader), paint_(paint) {
    for (const auto& [name, events] : loader_.eventTemplateDatas()) {
        for (const auto& [eventName, event] : events)
            home_.emplace(event.get(), &name);
    }
}

void EventsView::events(Output& output) const {
    sections("Groups", loader_.elementEventDatas(), output);
    output.add("\n");
    sections("Templates", loader_.eventTemplateDatas(), output);
    output.add("\n");
    output.add(commands());
}

void EventsView::sections(std::string_view title, const EventGroupMap& sections,
                          Output& output) const {
    output.add(headed(title, std::to_string(sections.size()), paint_));
    for (const auto& entry : sections) {
        const std::string& name = entry.key;
        const EventMap& events = entry.value;
        Branch section{quotedIfEmpty(name), Tone::page};
        section.later = {events.size(), [&](std::size_t at) {
                             const auto& event = events.begin()[static_cast<std::ptrdiff_t>(at)];
                             return eventBranch(name, event.key, *event.value);
                         }};
        if (events.empty())
            section.details = "empty";
        output.add("\n");
        drawTree(section, paint_, output);
    }
}

std::string EventsView::commands() const {
    const CommandMap& commands = loader_.commandDatas();
    std::vector<Branch> rows;
    for (const auto& [name, command] : commands) {
        Details details;
        details.add(arrowTo(command->changeStyleName()));
        details.add("dispatch", command->dispatchParam());
        details.add("data", command->addtionData());
        rows.push_back({quotedIfEmpty(name), Tone::element, std::move(details)});
    }
    std::string text = headed("Commands", std::to_string(commands.size()), paint_);
    if (!rows.empty())
        text += '\n' + drawTrees(rows, paint_);
    return text;
}

Branch EventsView::eventBranch(const std::string& section, const std::string& name,
                               const YGEventData& event) const {
    const auto command = loader_.commandByName(event.command());
    Details details;
    if (event.command()) {
        details.add(paint_(Tone::element, quotedIfEmpty(*event.command())));
        details.addIf(!command, paint_(Tone::mark, "(no such command)"));
    }
    if (event.changeStyleName())
        details.add(arrowTo(event.changeStyleName()));
    else if (command)
        details.add(arrowTo(command->changeStyleName()));
    details.add("dispatch", event.dispatchParam());
    details.add("data", event.addtionData());
    const auto home = home_.find(&event);
    // Its very own name, since a group may be called like a template.
    if (home != home_.end() && home->second != &section)
        details.add(paint_(Tone::reuse, "from " + quotedIfEmpty(*home->second)));
    return {quotedIfEmpty(name), Tone::plain, std::move(details)};
}

/// Nothing when the style is absent.
std::string EventsView::arrowTo(const std::optional<std::string>& style) const {
    return style ? "→ " + paint_(Tone::page, quotedIfEmpty(*style)) : "";
}

}  // namespace yg::tool
