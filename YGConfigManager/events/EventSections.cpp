// SPDX-License-Identifier: MIT
//
// The event loader's sections: commands, templates and groups, what they define and what they
// include.
#include <algorithm>
#include <utility>
#include <vector>

#include "YGConfigManager/events/EventAttributes.h"
#include "YGConfigManager/events/YGEventLoader.h"
#include "YGConfigManager/host/Log.h"
#include "YGConfigManager/records/Entry.h"

namespace yg {

namespace {

constexpr std::string_view rootName = "event_list";
constexpr std::string_view commandSection = "command_event";
constexpr std::string_view templateSection = "event_template";
constexpr std::string_view groupSection = "element_event";

bool isSection(std::string_view name) {
    return name == commandSection || name == templateSection || name == groupSection;
}

bool isUsable(const std::optional<std::string_view>& name) {
    return name && !name->empty();
}

/// The sections of the document that holds an element, by their kinds.
struct Sections {
    Sections(const Reporter& reporter, xml::Element root) {
        while (xml::Element above = root.parent())
            root = std::move(above);
        reading(reporter, root, [&](Entry& list) {
            if (list.name() != rootName)
                return list.drop("event-root-name"_rule, {}, list.name());
            list.forEachElement([&](Entry& section) { add(section); });
        });
    }

    void add(Entry& section) {
        const std::string_view name = section.name();
        if (!isSection(name))
            return section.drop("unknown-element"_rule, {}, name);
        (name == commandSection    ? commands
         : name == templateSection ? templates
                                   : groups)
            .push_back(section.element());
        section.leave();
    }

    std::vector<xml::Element> commands;
    std::vector<xml::Element> templates;
    std::vector<xml::Element> groups;
};

/// What an include of these events adds: the names under which they stand and all of their texts.
std::size_t bytesOf(const EventMap& events) {
    std::size_t bytes = 0;
    for (const auto& [name, event] : events) {
        bytes += name.size();
        forEachField(*event, [&](std::string_view, const std::optional<std::string>& text) {
            bytes += text ? text->size() : 0;
        });
    }
    return bytes;
}

/// Whether a section counts, by its content and its name.
bool isKept(Entry& section, const std::optional<std::string_view>& name) {
    if (!section.element().hasChildren())
        section.drop("empty-event-section"_rule);
    else if (!isUsable(name))
        section.drop("event-section-without-name"_rule);
    else
        return true;
    return false;
}

void noteNestedSection(Entry& entry) {
    if (isSection(entry.name()))
        entry.report("nested-event-section"_rule, {}, entry.name());
}

/// An entry that only includes has no use for what makes an event.
void noteAttributesWithoutEvent(Entry& entry) {
    for (const AttributeInfo& row : templateEventAttributes.rows())
        entry.reportIfThere("attribute-without-event"_rule, row.name);
    entry.reportIfThere("attribute-without-event"_rule, "dispatch");
}

}  // namespace

/// A template or group while it is read.
struct YGEventLoader::Section {
    /// Stores an event, in the place of an earlier one of its name.
    void put(Entry& entry, std::string_view name, const std::shared_ptr<YGEventData>& event,
             bool isOwn) {
        if (entry)
            noteReplaced(entry, name, event, isOwn);
        events.set(name, event);
    }

    void noteReplaced(Entry& entry, std::string_view name,
                      const std::shared_ptr<YGEventData>& event, bool isOwn) {
        const auto* before = events.find(name);
        const auto earlier = entry.define(name, places);
        const bool wasOwn = own.contains(name) && *own.find(name);
        own.set(name, isOwn);
        if (!before || *before == event)
            return;
        const Rule& lost = isOwn ? "duplicate-event"_rule : "event-lost-to-template"_rule;
        entry.report(wasOwn ? lost : "overridden-template-event"_rule, isOwn ? "name" : "", name,
                     earlier);
    }

    bool hasAll(const EventMap& included) const {
        return std::ranges::all_of(included, [&](const auto& each) {
            const auto* there = events.find(each.key);
            return there && *there == each.value;
        });
    }

    EventMap events;
    RecordMap<xml::Element> places;
    RecordMap<bool> own;  ///< whether an event was defined here; kept for findings only
};

void YGEventLoader::readDocument(const xml::Element& root) {
    const Sections sections(Reporter(sink_), root);
    for (const xml::Element& section : sections.commands)
        readCommands(section);
    for (const xml::Element& section : sections.templates)
        readTemplate(section);
    for (const xml::Element& section : sections.groups)
        readGroup(section);
}

void YGEventLoader::readTemplates(const xml::Element& root) {
    if (!root.hasChildren())
        return;
    const Sections sections(Reporter(nullptr), root);
    for (const xml::Element& section : sections.templates)
        readTemplate(section);
}

void YGEventLoader::readGroups(const xml::Element& root) {
    if (!root.hasChildren())
        return;
    const Sections sections(Reporter(nullptr), root);
    for (const xml::Element& section : sections.groups)
        readGroup(section);
}

void YGEventLoader::readCommands(const xml::Element& section) {
    reading(Reporter(sink_), section, [&](Entry& commands) {
        if (!section.hasChildren())
            return commands.drop("empty-event-section"_rule);
        commands.forEachElement([&](Entry& entry) {
            auto command = std::make_shared<YGCommandData>();
            entry.read(*command);
            if (!command->commandName())
                return entry.drop("command-without-name"_rule);
            const std::string& name = *command->commandName();
            noteNestedSection(entry);
            entry.reportIfThere("dispatch-spelling"_rule, "disptch");
            if (name.empty())
                entry.report("unreachable-command"_rule, "name");
            const auto earlier = entry.define(name, tables_.commandPlaces);
            if (tables_.commandDatas.set(name, command))
                entry.report("duplicate-command"_rule, "name", name, earlier);
        });
    });
}

void YGEventLoader::readTemplate(const xml::Element& section) {
    reading(Reporter(sink_), section, [&](Entry& events) {
        EventTemplateName name;
        events.read(name);
        if (!isKept(events, name.name))
            return;
        Section read;
        events.forEachElement([&](Entry& entry) {
            EventInclude include;
            entry.read(include);
            const bool isEvent = isUsable(entry.element().attribute("name"));
            const bool isInclude = isUsable(include.source);
            if (!isEvent && !isInclude)
                return entry.drop("event-entry-without-effect"_rule);
            noteNestedSection(entry);
            if (isEvent) {
                auto event = std::make_shared<YGEventData>();
                entry.read(templateEventAttributes, *event);
                entry.reportIfThere("dispatch-spelling"_rule, "dispatch");
                read.put(entry, *event->eventName(), event, true);
            } else {
                noteAttributesWithoutEvent(entry);
            }
            if (isInclude)
                this->include(read, entry, *include.source);
            else
                entry.reportIfThere("empty-src"_rule, "src");
        });
        if (read.events.empty())
            return events.drop("template-without-events"_rule, {}, *name.name);
        const auto earlier = events.define(*name.name, tables_.templatePlaces);
        tables_.templateBytes.set(*name.name, bytesOf(read.events));
        if (tables_.eventTemplateDatas.set(*name.name, std::move(read.events)))
            events.report("duplicate-event-template"_rule, "name", *name.name, earlier);
    });
}

void YGEventLoader::readGroup(const xml::Element& section) {
    reading(Reporter(sink_), section, [&](Entry& events) {
        EventGroupName name;
        events.read(name);
        if (!isKept(events, name.name))
            return;
        Section read;
        events.forEachElement([&](Entry& entry) {
            if (entry.name() == "event") {
                auto event = std::make_shared<YGEventData>();
                entry.read(*event);
                if (!event->eventName())
                    return entry.drop("event-without-name"_rule);
                entry.reportIfThere("dispatch-spelling"_rule, "disptch");
                entry.reportIfThere("src-on-event"_rule, "src");
                if (event->eventName()->empty())
                    entry.report("unreachable-event"_rule, "name");
                return read.put(entry, *event->eventName(), event, true);
            }
            EventInclude include;
            entry.read(include);
            if (!isUsable(include.source))
                return entry.drop("include-without-src"_rule, {}, entry.name());
            noteNestedSection(entry);
            noteAttributesWithoutEvent(entry);
            this->include(read, entry, *include.source);
        });
        const auto earlier = events.define(*name.name, tables_.groupPlaces);
        if (tables_.elementEventDatas.set(*name.name, std::move(read.events)))
            events.report("duplicate-event-group"_rule, "name", *name.name, earlier);
    });
}

/// Adds all events of a template as it stands now, the very records.
void YGEventLoader::include(Section& section, Entry& entry, std::string_view templateName) {
    const EventMap* events = tables_.eventTemplateDatas.find(templateName);
    if (!events)
        return entry.report("unknown-event-template"_rule, "src", templateName);
    const std::size_t bytes = *tables_.templateBytes.find(templateName);
    if (events->size() > mostIncludedEvents - tables_.includedEvents ||
        bytes > mostIncludedBytes - tables_.includedBytes) {
        if (!std::exchange(tables_.isLimitLogged, true))
            writeRuntimeError(
                "load palette config fail:includes add more than %ld events or %ld bytes",
                mostIncludedEvents, mostIncludedBytes);
        return entry.report("include-limit"_rule, "src", templateName);
    }
    tables_.includedEvents += events->size();
    tables_.includedBytes += bytes;
    if (entry && section.hasAll(*events))
        entry.report("repeated-include"_rule, "src", templateName,
                     section.places.find(events->begin()->key)->place().value_or(Place()));
    for (const auto& [name, event] : *events)
        section.put(entry, name, event, false);
}

}  // namespace yg
