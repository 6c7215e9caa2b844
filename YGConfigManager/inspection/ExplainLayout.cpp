// SPDX-License-Identifier: MIT
//
// Explanations of pages, panels and elements.
#include <algorithm>
#include <limits>
#include <map>
#include <set>
#include <utility>

#include "YGConfigManager/files/ReadFile.h"
#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/host/JsonValue.h"
#include "YGConfigManager/inspection/Explanation.h"
#include "YGConfigManager/inspection/MemberOf.h"
#include "YGConfigManager/inspection/PageNames.h"
#include "YGConfigManager/inspection/Templates.h"
#include "YGConfigManager/inspection/Trace.h"
#include "YGConfigManager/inspection/Wording.h"
#include "YGConfigManager/layout/YGStyleConfigLoad.h"
#include "YGConfigManager/text/LineIndex.h"
#include "YGConfigManager/text/Nearest.h"
#include "YGConfigManager/text/Split.h"

namespace yg {

namespace {

using Outcome = ExplanationStep::Outcome;

/// A layout with what its loader reported.
struct TracedLayout {
    explicit TracedLayout(const std::string& root) : trace(root), loader(&trace) {
        const auto path = [&](std::string_view name) { return trace.files().pathOf(name); };
        loader.initWithStyleConfigPath(path("config/custompage_template.xml"),
                                       path("config/tab_styles.xml"),
                                       path("config/magic_panels.xml"));
    }

    Trace trace;
    YGStyleConfigLoad loader;
};

template <class Map>
std::vector<std::string> namesIn(const Map& map) {
    std::vector<std::string> names;
    if (map) {
        for (const auto& [name, value] : *map)
            names.push_back(name);
    }
    return names;
}

/// Where host.json lists a value for a wildcard key; the file as a whole when it does not.
RootPlace placeOfWildcard(const SourceFiles& files, std::string_view key, std::string_view value) {
    RootPlace place;
    place.file = "host.json";
    const std::string& bytes = files.file("host.json").bytes();
    const JsonValue::Parsed parsed = JsonValue::parse(bytes, {.positions = true});
    const JsonValue lists =
        memberOf(memberOf(parsed.value.value_or(JsonValue()), "mappings"), wildcardMapping);
    const JsonList values = memberOf(lists, key).list();
    const text::LineIndex lines(bytes);
    for (const JsonValue& each : values ? *values : JsonValue::List()) {
        if (!each.text() || *each.text() != value || !each.range())
            continue;
        place.begin = lines.pointAt(bytes, each.range()->begin);
        place.end = lines.pointAt(bytes, each.range()->end);
        break;
    }
    return place;
}

/// Of all templates, or of that of a name.
std::vector<TemplateSignature> signaturesIn(const TracedLayout& layout,
                                            const std::optional<std::string>& name = std::nullopt) {
    return signaturesOf(
        layout.loader,
        [&](const xml::Element& element) { return layout.trace.placeOf(element, ""); }, name);
}

std::string shownSignature(const TemplateSignature& signature) {
    std::string shown = signature.name;
    for (const TemplateSignature::Slot& slot : signature.slots)
        shown.append("-{").append(slot.group.value_or("")).append("}");
    return shown;
}

std::string counted(std::uint64_t count, std::string_view one, std::string_view several) {
    return std::to_string(count).append(" ").append(count == 1 ? one : several);
}

/// What a page's name goes through when no stored page has it.
void addCustomPage(Explanation& explanation, const TracedLayout& layout, const std::string& name,
                   const StyleConfigInfo* page, std::size_t foundBefore) {
    const Trace& trace = layout.trace;
    const std::vector<std::string> parts = text::split(name, '-');
    const std::string& front = parts.front();
    const xml::Element source = layout.loader.createXMLElementWithStyleName(front);
    if (!source) {
        RootPlace place;
        place.file = "config/custompage_template.xml";
        place.message = "No page " + quoted(name) + " is stored";
        place.message += front == name ? "." : ", and no template " + quoted(front) + " exists.";
        std::vector<std::string> known = namesIn(layout.loader.styleInfos());
        const std::string whole = text::nearest(name, known);
        addMissing(explanation, std::move(place), whole.empty() ? front : name, known);
        return;
    }
    const auto counts = trace.placeOf(source, "");
    const Place whole = source.place().value_or(Place());
    explanation.remarks.emplace_back(
        "No page of this name is stored. Templates are looked for in the soft-optimize file, then "
        "in "
        "the main file.");
    std::vector<Trace::Definition> sources = trace.definitions(Naming::style, front);
    std::stable_partition(sources.begin(), sources.end(), [&](const Trace::Definition& each) {
        return trace.placeOf(each.element, "").file.starts_with("soft_optimize/");
    });
    for (const Trace::Definition& each : sources) {
        RootPlace place = trace.placeOf(each.element, "");
        if (place.file == "config/tab_styles.xml")
            continue;
        const bool isTaken = place.file == counts.file && place.begin == counts.begin;
        // What is in the template is a part of the answer.
        if (!isTaken && place.file == counts.file && place.begin > whole.begin &&
            place.begin < whole.end)
            continue;
        place.message = "Style " + quoted(front) + " in " +
                        trace.layerOf(trace.files().pathOf(place.file)) +
                        (isTaken ? " is the template of this page."
                                 : " is not the one that pages are made of.");
        explanation.steps.push_back({isTaken ? Outcome::taken : Outcome::lost, std::move(place)});
    }
    for (const Trace::Filling& filling : trace.fillings()) {
        const std::string group(filling.slot.attribute("name").value_or(""));
        explanation.steps.push_back(
            {Outcome::taken,
             trace.placeOf(filling.slot, "Slot of group " + quoted(group) + " gets the argument " +
                                             quoted(filling.argument) + ".")});
        if (!filling.wildcard.empty()) {
            RootPlace list = placeOfWildcard(trace.files(), filling.wildcard, filling.argument);
            list.message = "Wildcard list " + quoted(filling.wildcard) + " has the value " +
                           quoted(filling.argument) + ".";
            explanation.steps.push_back({Outcome::taken, std::move(list)});
        }
        const xml::Element member(filling.panel.parent());
        const std::string memberName(member.attribute("name").value_or(""));
        explanation.steps.push_back(
            {Outcome::taken,
             trace.placeOf(member, filling.wildcard.empty()
                                       ? "Member " + quoted(memberName) + " serves it."
                                       : "Pattern " + quoted(memberName) +
                                             " serves it: " + quoted(filling.argument) +
                                             " is written for " + quoted(filling.wildcard) + ".")});
    }
    // What the look-up itself reported.
    const std::vector<Found>& found = trace.gathering().found();
    for (std::size_t at = foundBefore; at < found.size(); ++at) {
        const Finding& finding = found[at].finding;
        constexpr std::string_view reasons[] = {"argument-count", "slot-left", "broken-pattern",
                                                "expansion-limit"};
        if (std::ranges::find(reasons, finding.rule.name) == std::end(reasons))
            continue;
        RootPlace place = trace.place(finding.place, std::string(finding.rule.meaning));
        if (finding.rule.name != "slot-left") {
            explanation.steps.push_back({Outcome::missing, std::move(place)});
            continue;
        }
        const auto around = trace.files().file(place.file).elementsAt(finding.place.begin);
        const std::string group(around.empty() ? "" : around.back().attribute("name").value_or(""));
        place.message = "Group " + quoted(group) + " has no member " + quoted(finding.value) +
                        ", and no pattern of it serves this argument: the slot stays.";
        addMissing(explanation, std::move(place), finding.value,
                   *SlotArguments(layout.loader).of(group));
    }
    if (page)
        explanation.from = counts;
}

void addSignature(Explanation& explanation, const TracedLayout& layout, const std::string& name) {
    for (const TemplateSignature& signature : signaturesIn(layout, name)) {
        std::string remark = "It is a template of custom pages, " + shownSignature(signature) +
                             ": " + counted(signature.pages, "page", "pages") + ".";
        for (const TemplateSignature::Slot& slot : signature.slots) {
            const std::string group = quoted(slot.group.value_or(""));
            const std::vector<std::string>& arguments = *slot.arguments;
            if (arguments.empty()) {
                remark += " The slot of group " + group + " would stay open.";
                continue;
            }
            remark += " Group " + group + ": ";
            constexpr std::size_t most = 12;
            for (std::size_t at = 0; at < arguments.size() && at < most; ++at)
                remark += (at == 0 ? "" : ", ") + arguments[at];
            remark += arguments.size() > most
                          ? " and " + std::to_string(arguments.size() - most) + " more."
                          : ".";
        }
        explanation.remarks.push_back(std::move(remark));
    }
}

struct TracedPage {
    explicit TracedPage(const std::string& root) : layout(root) {}

    TracedLayout layout;
    Explanation explanation;
    std::shared_ptr<StyleConfigInfo> style;
};

void explainPage(TracedPage& page, OptionalText asked) {
    Explanation& explanation = page.explanation;
    const TracedLayout& layout = page.layout;
    const Trace& trace = layout.trace;
    const std::size_t foundBefore = trace.gathering().found().size();
    page.style = layout.loader.loadStyleConfigInfoWithName(asked);
    const std::string name(*asked);
    const auto& stored = layout.loader.styleInfos();
    if (stored && stored->contains(name)) {
        const auto isOfPages = [&](const xml::Element& element) {
            return trace.placeOf(element, "").file != "config/tab_styles.xml";
        };
        const xml::Element taken = trace.addDefinitions(
            explanation, trace.definitionsOf(page.style.get(), Naming::style, name, isOfPages),
            "style " + quoted(name));
        if (taken)
            explanation.from = trace.placeOf(taken, "");
    } else {
        addCustomPage(explanation, layout, name, page.style.get(), foundBefore);
    }
    for (const Trace::Definition& each : trace.definitions(Naming::style, name)) {
        RootPlace place = trace.placeOf(each.element,
                                        "A tab has this name, too; looking up a page "
                                        "by its name finds no tabs.");
        if (place.file == "config/tab_styles.xml")
            explanation.steps.push_back({Outcome::lost, std::move(place)});
    }
    if (!page.style)
        explanation.substitute = "null";
    trace.addUnreadFiles(explanation);
    if (!page.style)
        return;
    explanation.answer = page.style;
    if (name.find('-') == std::string::npos)
        addSignature(explanation, layout, name);
}

/// Calls `visit(panel)` for each panel of a page in the order of the document.
void forEachPanel(const PanelList& panels, const auto& visit) {
    std::vector<const std::shared_ptr<PanelConfigInfo>*> pending;
    const auto push = [&](const PanelList& children) {
        for (std::size_t at = children.size(); at > 0; --at)
            pending.push_back(&children[at - 1]);
    };
    push(panels);
    while (!pending.empty()) {
        const std::shared_ptr<PanelConfigInfo>& panel = *pending.back();
        pending.pop_back();
        visit(panel);
        push(*panel->panePanes());
    }
}

/// Steps for what something on a page was placed by: a reference or a slot.
void addPlacing(Explanation& explanation, const Trace& trace, const xml::Element& element) {
    for (xml::Element above = element.parent(); above; above = above.parent()) {
        const std::string name(above.attribute("name").value_or(""));
        if (above.name() == "reuse_panel")
            explanation.steps.push_back(
                {Outcome::taken,
                 trace.placeOf(above, "It comes from reuse panel " + quoted(name) + ".")});
        else if (above.name() == "magic_panel")
            explanation.steps.push_back(
                {Outcome::taken,
                 trace.placeOf(above, "It comes from magic panel " + quoted(name) + " of group " +
                                          quoted(above.parent().attribute("name").value_or("")) +
                                          ".")});
    }
}

/// Where a record was read from. What a pattern gave is in no file, so that it is the pattern.
xml::Element originOf(const Trace& trace, const void* record) {
    xml::Element origin = trace.gathering().originOf(record);
    if (origin.tagPlace())
        return origin;
    const auto pattern = std::ranges::find_if(
        trace.fillings(), [](const Trace::Filling& each) { return !each.wildcard.empty(); });
    return pattern == trace.fillings().end() ? xml::Element() : xml::Element(pattern->panel);
}

/// The first of some records counts; of the others one step each, up to a limit.
template <class Record>
void addRecords(TracedPage& page, const std::vector<std::shared_ptr<Record>>& records,
                const std::string& what) {
    constexpr std::size_t most = 20;
    const Trace& trace = page.layout.trace;
    for (std::size_t at = 0; at < records.size() && at < most; ++at) {
        const xml::Element origin = originOf(trace, records[at].get());
        page.explanation.steps.push_back(
            {at == 0 ? Outcome::taken : Outcome::lost,
             trace.placeOf(origin, at == 0 ? "This " + what + " comes first on the page."
                                           : "This " + what + " of the same name comes later.")});
        if (at == 0) {
            page.explanation.from = trace.placeOf(origin, "");
            addPlacing(page.explanation, trace, origin);
        }
    }
    if (records.size() > most)
        page.explanation.remarks.push_back("The page has " + std::to_string(records.size() - most) +
                                           " more of this name.");
}

/// The records of a name on a page, and the names that there are.
template <class Record>
struct OnPage {
    std::vector<std::shared_ptr<Record>> records = {};
    std::set<std::string> known = {};

    void note(const std::optional<std::string>& name) {
        if (name)
            known.insert(*name);
    }
};

/// Explains the first record that `find(style)` answers.
template <class Find>
Explanation explainOnPage(const std::string& root, OptionalText pageName, const std::string& what,
                          std::string_view name, const Find& find) {
    TracedPage page(root);
    explainPage(page, pageName);
    Explanation& explanation = page.explanation;
    explanation.remarks.clear();
    explanation.answer = {};
    if (!page.style)
        return std::move(explanation);
    const auto found = find(*page.style);
    if (!found.records.empty()) {
        addRecords(page, found.records, what);
        using Record = typename decltype(found.records)::value_type::element_type;
        explanation.answer = std::shared_ptr<const Record>(found.records.front());
        return std::move(explanation);
    }
    RootPlace place = explanation.from.value_or(RootPlace());
    place.message = "The page has no " + what + " " + quoted(name) + ".";
    explanation.from.reset();
    explanation.substitute = "null";
    const std::vector<std::string> names(found.known.begin(), found.known.end());
    addMissing(explanation, std::move(place), name, names);
    return std::move(explanation);
}

}  // namespace

Explanation Explainer::style(OptionalText name) const {
    return guarded(explaining, [&] {
        TracedPage page(root_);
        explainPage(page, name);
        return std::move(page.explanation);
    });
}

Explanation Explainer::panel(OptionalText page, OptionalText name) const {
    return guarded(explaining, [&] {
        return explainOnPage(root_, page, "panel", *name, [&](const StyleConfigInfo& style) {
            OnPage<PanelConfigInfo> found;
            forEachPanel(*style.stylePanes(), [&](const auto& panel) {
                if (panel->panelName() == std::string(*name))
                    found.records.push_back(panel);
                found.note(panel->panelName());
            });
            return found;
        });
    });
}

Explanation Explainer::element(OptionalText page, OptionalText name) const {
    return guarded(explaining, [&] {
        return explainOnPage(root_, page, "element", *name, [&](const StyleConfigInfo& style) {
            OnPage<ElementConfigInfo> byUuid;
            OnPage<ElementConfigInfo> byName;
            forEachPanel(*style.stylePanes(), [&](const auto& panel) {
                for (const auto& element : *panel->paneElements()) {
                    if (element->elementUuid() == std::string(*name))
                        byUuid.records.push_back(element);
                    else if (element->elementName() == std::string(*name))
                        byName.records.push_back(element);
                    byName.note(element->elementUuid());
                    byName.note(element->elementName());
                }
            });
            return byUuid.records.empty() ? byName : byUuid;
        });
    });
}

std::vector<TemplateSignature> Explainer::templates() const {
    return guarded(explaining, [&] { return signaturesIn(TracedLayout(root_)); });
}

}  // namespace yg
