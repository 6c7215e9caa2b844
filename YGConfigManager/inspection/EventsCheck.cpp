// SPDX-License-Identifier: MIT
//
// What events and commands name, and what names them.
#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "YGConfigManager/inspection/Checks.h"
#include "YGConfigManager/inspection/PageNames.h"
#include "YGConfigManager/inspection/Wording.h"
#include "YGConfigManager/layout/LayoutEntries.h"
#include "YGConfigManager/text/Nearest.h"
#include "YGConfigManager/text/Replace.h"

namespace yg {

namespace {

/// An attribute of patterns is tried with this many wildcards and values.
constexpr std::size_t mostTried = 64;

/// What the application may split before it takes a part of it for a command's name.
bool isPlainName(std::string_view text) {
    return text.find_first_of(" \t\n;,:|/?&=#()[]{}<>\"'") == std::string_view::npos &&
           text.find("；") == std::string_view::npos && text.find("，") == std::string_view::npos;
}

/// The names of one kind: where they are defined, which counts, and whether something uses them.
struct Names {
    struct Definition {
        const NameUse* use;
        bool isUsed = false;
    };
    std::map<std::string, Definition, std::less<>> definitions;
    std::optional<text::KnownWords> words;  ///< once asked for

    void add(const NameUse& use) {
        definitions.insert_or_assign(std::string(use.value), Definition{&use});
    }
    std::string_view nearest(std::string_view name) {
        if (!words) {
            std::vector<std::string> all;
            for (const auto& [known, definition] : definitions)
                all.push_back(known);
            words.emplace(all);
        }
        return words->nearest(name);
    }
    const Definition* find(std::string_view name) const {
        const auto found = definitions.find(name);
        return found == definitions.end() ? nullptr : &found->second;
    }
    bool use(std::string_view name) {
        const auto found = definitions.find(name);
        return found != definitions.end() && (found->second.isUsed = true);
    }
};

std::string_view withoutBlanks(std::string_view text) {
    constexpr std::string_view blanks = " \t\n";
    const std::size_t begin = text.find_first_not_of(blanks);
    return begin == std::string_view::npos
               ? ""
               : text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

Place placeOf(const NameUse& use) {
    return use.element.valuePlace(use.row->name).value_or(Place());
}

class EventsCheck {
public:
    EventsCheck(const Loaded& loaded, Gathering& findings)
        : loaded_(loaded),
          findings_(findings),
          pages_(loaded, findings, effort_),
          wildcards_(loaded.host->getMappingDicForKey(wildcardMapping)) {
        if (!wildcards_)
            wildcards_ = std::make_shared<MappingDic>();
    }

    void run() {
        // Building pages adds no names, so the list stays.
        for (const NameUse& use : findings_.names()) {
            if (Names* const names = use.row->defines ? namesOf(use.row->names) : nullptr)
                names->add(use);
        }
        for (const NameUse& use : findings_.names()) {
            if (!use.row->defines && !use.value.empty())
                check(use);
        }
        explainIncludes();
        explainRepeatedIncludes();
        explainEntries();
        noteUnused();
    }

private:
    Names* namesOf(Naming kind) {
        return kind == Naming::eventGroup      ? &groups_
               : kind == Naming::eventTemplate ? &templates_
               : kind == Naming::command       ? &commands_
                                               : nullptr;
    }

    void check(const NameUse& use) {
        switch (use.row->names) {
            case Naming::eventGroup:
                if (!isThere(groups_, use))
                    report("unknown-event-group"_rule, groups_, use,
                           "Event group " + quoted(use.value) +
                               " does not exist, so the element has no events.");
                break;
            case Naming::command:
                checkCommand(use);
                break;
            case Naming::eventTemplate:
                templates_.use(use.value);
                break;
            case Naming::style:
                checkPage(use);
                break;
            default:
                break;
        }
    }

    /// Whether a name is defined; in a pattern with a wildcard's value written into it. Notes that
    /// it is used.
    bool isThere(Names& names, const NameUse& use) {
        bool isFound = names.use(use.value);
        std::size_t wildcards = 0;
        for (const auto& [key, values] : *wildcards_) {
            if (++wildcards > mostTried)
                break;
            if (key.empty() || use.value.find(key) == std::string::npos || !mayBeInPattern(use))
                continue;
            for (std::size_t at = 0; at < std::min(values.size(), mostTried); ++at) {
                if (names.use(text::replaceAll(use.value, key, values[at])))
                    isFound = true;
            }
        }
        return isFound;
    }

    static bool mayBeInPattern(const NameUse& use) {
        const std::string_view file = use.file();
        return file.ends_with("/magic_panels.xml") || file.ends_with("/reuse_panels.xml");
    }

    void checkCommand(const NameUse& use) {
        if (isThere(commands_, use))
            return;
        if (use.row->name == "command") {
            report("unknown-command"_rule, commands_, use,
                   "Command " + quoted(use.value) + " does not exist.");
            return;
        }
        if (isPlainName(use.value) || commands_.find(withoutBlanks(use.value)))
            report("unknown-panel-command"_rule, commands_, use,
                   "Command " + quoted(use.value) + " does not exist.");
        else
            useWordsIn(use.value);
    }

    /// The application may take a text apart, so every command in it counts as used.
    void useWordsIn(std::string_view text) {
        while (!text.empty()) {
            std::size_t end = 0;
            while (end < text.size() && isPlainName(text.substr(end, 1)))
                ++end;
            commands_.use(text.substr(0, end));
            text.remove_prefix(std::min(end + 1, text.size()));
        }
    }

    void checkPage(const NameUse& use) {
        // The layout's own default is not a matter of events.
        if (use.row->name == defaultStyle.name)
            return;
        const PageAnswer& answer = pages_.look(std::string(use.value));
        if (answer.kind == PageAnswer::Kind::page)
            return;
        const bool isTab = answer.kind == PageAnswer::Kind::tab;
        findings_.onPart(isTab ? "tab-as-page"_rule : "unknown-page"_rule, use.element,
                         use.row->name, answer.offset, answer.size, answer.details);
    }

    void report(const Rule& rule, Names& names, const NameUse& use, std::string message) {
        Details details{.message = std::move(message)};
        const std::string_view meant = names.nearest(use.value);
        if (!meant.empty()) {
            details.suggestion = meant;
            details.related.push_back(
                {placeOf(*names.find(meant)->use), "where the nearest name is defined"});
        }
        findings_.onPart(rule, use.element, use.row->name, 0, use.value.size(), std::move(details));
    }

    /// Says of an include that finds nothing whether its template is there, but not where it
    /// counts.
    void explainIncludes() {
        for (Found& found : findings_.found()) {
            const Finding& finding = found.finding;
            if (finding.rule.name != "unknown-event-template"_rule.name)
                continue;
            const Names::Definition* const definition = templates_.find(finding.value);
            if (!definition)
                continue;
            const Place place = placeOf(*definition->use);
            const Place whole = definition->use->element.place().value_or(Place());
            found.message = "Template " + quoted(finding.value);
            if (place.begin > finding.place.begin)
                found.message +=
                    " is defined below this include. Move it above the template that includes it.";
            else if (finding.place.begin < whole.end)
                found.message += " cannot include itself.";
            else
                found.message += " has no event, so there is nothing to include.";
            found.finding.related.push_back({place, "where it is defined"});
        }
    }

    /// It is the whole include that could be deleted, unless it is an event as well.
    void explainRepeatedIncludes() {
        for (Found& found : findings_.found()) {
            Finding& finding = found.finding;
            if (finding.rule.name != "repeated-include"_rule.name)
                continue;
            found.message = "Template " + quoted(finding.value) +
                            " has only events here that are there already.";
            const std::string file = loaded_.files.nameOf(finding.place.file);
            const auto around = loaded_.files.file(file).elementsAt(finding.place.begin);
            if (around.size() < 2 || !around.back().attribute("name").value_or("").empty())
                continue;
            finding.place = finding.extent = around.back().place().value_or(finding.place);
            finding.place.file = finding.extent.file = loaded_.files.pathOf(file);
            finding.attribute.clear();
        }
    }

    /// Names what the author has to look for.
    void explainEntries() {
        for (Found& found : findings_.found()) {
            const Finding& finding = found.finding;
            const bool isSection = finding.element == "command_event" ||
                                   finding.element == "event_template" ||
                                   finding.element == "element_event";
            if (finding.rule.name == "event-lost-to-template"_rule.name)
                found.message = "Move this above the event " + quoted(finding.value) +
                                ": the template has an event of the same name, which replaces it.";
            else if (finding.rule.name == "include-without-src"_rule.name && isSection)
                found.message = std::string("<")
                                    .append(finding.element)
                                    .append(
                                        "> is inside another section, where it has no effect: "
                                        "close that one above it.");
        }
    }

    /// With a layout file that cannot be read nobody knows what it would use. One that is missing
    /// uses nothing, but without the main one no layout is loaded.
    bool isLayoutRead() const {
        return std::ranges::none_of(findings_.found(), [&](const Found& found) {
            if (found.finding.rule.name != "unreadable-file"_rule.name)
                return false;
            const std::string name = loaded_.files.nameOf(found.finding.place.file);
            return name == mainStyleFile || (std::ranges::count(layoutFiles, name) != 0 &&
                                             loaded_.files.file(name).isRead());
        });
    }

    void noteUnused() {
        if (isLayoutRead()) {
            noteUnused(groups_, "unused-event-group"_rule, "Event group ",
                       " is not used: no element names it.");
            noteUnused(commands_, "unused-command"_rule, "Command ",
                       " is not used: no event and no panel names it.");
        }
        noteUnused(templates_, "unused-event-template"_rule, "Template ",
                   " is not used: nothing includes it.");
    }

    void noteUnused(const Names& names, const Rule& rule, std::string_view thing,
                    std::string_view why) {
        for (const auto& [name, definition] : names.definitions) {
            if (definition.isUsed || name.empty())
                continue;
            const NameUse& use = *definition.use;
            findings_.onPart(rule, use.element, use.row->name, 0, use.value.size(),
                             {.message = std::string(thing).append(quoted(name)).append(why)});
        }
    }

    const Loaded& loaded_;
    Gathering& findings_;
    Effort effort_;
    PageNames pages_;
    std::shared_ptr<const MappingDic> wildcards_;
    Names groups_;
    Names templates_;
    Names commands_;
};

}  // namespace

void checkEvents(const Loaded& loaded, Gathering& findings) {
    EventsCheck(loaded, findings).run();
}

}  // namespace yg
