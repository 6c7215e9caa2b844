// SPDX-License-Identifier: MIT
//
// Explanations of events and commands.
#include <algorithm>
#include <deque>
#include <set>
#include <utility>

#include "YGConfigManager/events/YGEventLoader.h"
#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/inspection/Explanation.h"
#include "YGConfigManager/inspection/Trace.h"

namespace yg {

namespace {

using Outcome = ExplanationStep::Outcome;

constexpr std::string_view eventFile = "config/events.xml";

RootPlace inEventFile(std::string message) {
    RootPlace place;
    place.file = eventFile;
    place.message = std::move(message);
    return place;
}

std::shared_ptr<YGEventLoader> loadEvents(Trace& trace) {
    return YGEventLoader::initWithEventConfigPath(trace.files().pathOf(eventFile), &trace);
}

/// The answer with the place that it comes from, or null.
template <class Record>
void answerWith(Explanation& explanation, const Trace& trace, const std::shared_ptr<Record>& answer,
                const xml::Element& taken) {
    if (answer) {
        explanation.answer = std::shared_ptr<const Record>(answer);
        explanation.from = trace.placeOf(taken, "");
    } else {
        explanation.substitute = "null";
    }
    trace.addUnreadFiles(explanation);
}

/// Adds the templates that a section includes, and those that these include, each once, in the
/// order in which they are met. Answers the sections with them: the one asked for first.
std::vector<xml::Element> withTemplates(Explanation& explanation, const Trace& trace,
                                        const xml::Element& group) {
    std::vector<xml::Element> sections{group};
    std::set<std::string> known;
    std::deque<xml::Element> pending{group};
    while (!pending.empty()) {
        const xml::Element section = pending.front();
        pending.pop_front();
        for (const xml::Element& include : section.elements()) {
            const std::string name(include.attribute("src").value_or(""));
            if (!trace.isCounted(include, "src") || !known.insert(name).second)
                continue;
            if (const Found* const unknown = trace.unresolved(include, "src")) {
                explanation.steps.push_back(
                    {Outcome::missing,
                     trace.placeOf(include, "Template " + quoted(name) + " is not included. " +
                                                std::string(unknown->finding.rule.meaning))});
                continue;
            }
            explanation.steps.push_back(
                {Outcome::taken,
                 trace.placeOf(include, "Template " + quoted(name) + " is included.")});
            const xml::Element source =
                trace.addDefinitions(explanation, trace.definitions(Naming::eventTemplate, name),
                                     "template " + quoted(name));
            if (source) {
                sections.push_back(source);
                pending.push_back(source);
            }
        }
    }
    return sections;
}

}  // namespace

Explanation Explainer::command(OptionalText name) const {
    return guarded(explaining, [&] {
        Explanation explanation;
        Trace trace(root_);
        const auto loader = loadEvents(trace);
        const std::shared_ptr<YGCommandData> answer =
            loader ? loader->commandByName(name) : nullptr;
        const xml::Element taken = trace.addDefinitions(
            explanation, trace.definitionsOf(answer.get(), Naming::command, *name),
            "command " + quoted(*name));
        answerWith(explanation, trace, answer, taken);
        if (!answer)
            addMissing(explanation, inEventFile("No command is named " + quoted(*name) + "."),
                       *name, trace.namesOf(Naming::command));
        return explanation;
    });
}

Explanation Explainer::event(OptionalText group, OptionalText name) const {
    return guarded(explaining, [&] {
        Explanation explanation;
        Trace trace(root_);
        const auto loader = loadEvents(trace);
        const std::shared_ptr<YGEventData> answer =
            loader ? loader->eventByName(group, name) : nullptr;
        const xml::Element section =
            trace.addDefinitions(explanation, trace.definitions(Naming::eventGroup, *group),
                                 "event group " + quoted(*group));
        if (!section) {
            answerWith(explanation, trace, std::shared_ptr<YGEventData>(), section);
            addMissing(explanation, inEventFile("No event group is named " + quoted(*group) + "."),
                       *group, trace.namesOf(Naming::eventGroup));
            return explanation;
        }
        const std::vector<xml::Element> sections = withTemplates(explanation, trace, section);
        std::set<TextPoint> begins;
        for (const xml::Element& each : sections)
            begins.insert(each.place().value_or(Place()).begin);
        const auto isInSections = [&](const xml::Element& element) {
            return begins.contains(element.parent().place().value_or(Place()).begin);
        };
        std::set<std::string> known;
        for (const NameUse& use : trace.gathering().names()) {
            if (use.row->names == Naming::event && use.row->defines && isInSections(use.element))
                known.emplace(use.value);
        }
        const xml::Element taken = trace.addDefinitions(
            explanation, trace.definitionsOf(answer.get(), Naming::event, *name, isInSections),
            "event " + quoted(*name));
        answerWith(explanation, trace, answer, taken);
        const std::vector<std::string> names(known.begin(), known.end());
        if (!answer)
            addMissing(explanation,
                       trace.placeOf(section, "Group " + quoted(*group) + " has no event " +
                                                  quoted(*name) + "."),
                       *name, names);
        return explanation;
    });
}

}  // namespace yg
