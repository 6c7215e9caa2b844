// SPDX-License-Identifier: MIT
//
// The event loader's templates and groups: what they define and what they include.
#include <utility>

#include "YGConfigManager/events/EventAttributes.h"
#include "YGConfigManager/events/EventReports.h"
#include "YGConfigManager/events/YGEventLoader.h"
#include "YGConfigManager/host/Log.h"
#include "YGConfigManager/xml/Query.h"

namespace yg {

namespace {

bool isUsable(const std::optional<std::string_view>& name) {
    return name && !name->empty();
}

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

}  // namespace

/// A template or group while it is read.
struct YGEventLoader::Section {
    EventMap events;
    /// Whether an event was defined here; kept for diagnostics only.
    RecordMap<bool> isOwn;
};

void YGEventLoader::readTemplates(const xml::Element& root) {
    if (!root.hasChildren())
        return;
    const xml::Query templates("/event_list/event_template");
    const std::vector<xml::Node> sections = root.query(templates);

    // For diagnostics: how many templates of each name are not read to their end yet.
    PendingTemplates pending;
    const auto count = [&](const xml::Element& section, std::size_t change) {
        if (const auto name = section.attribute("name"); sink_ && name) {
            const std::size_t* before = pending.find(*name);
            pending.set(*name, (before ? *before : 0) + change);
        }
    };
    for (const xml::Node& section : sections)
        count(xml::Element(section), 1);
    for (const xml::Node& node : sections) {
        const xml::Element section(node);
        readTemplate(section, pending);
        count(section, static_cast<std::size_t>(-1));
    }
}

/// The name of a template or group; absent when nothing of the section counts.
std::optional<std::string_view> YGEventLoader::usableName(const xml::Element& section) const {
    const Reporter reporter(sink_);
    if (!section.hasChildren()) {
        reporter.report(rules::emptyEventSection, section);
        return std::nullopt;
    }
    const auto name = section.attribute("name");
    if (isUsable(name))
        return name;
    reporter.report(rules::eventSectionWithoutName, section);
    return std::nullopt;
}

void YGEventLoader::readTemplate(const xml::Element& section, const PendingTemplates& pending) {
    const Reporter reporter(sink_);
    const auto name = usableName(section);
    if (!name)
        return;
    Section read;
    for (const xml::Node& child : section.children()) {
        if (!child.isElement()) {
            reporter.stray(child);
            continue;
        }
        const xml::Element entry(child);
        const bool isEvent = isUsable(entry.attribute("name"));
        EventInclude source;
        readAttributes(entry, includeAttributes, source);
        const bool isInclude = isUsable(source.templateName);
        if (!isEvent && !isInclude) {
            reporter.report(rules::eventEntryWithoutEffect, entry);
            continue;
        }
        if (isEvent) {
            auto event = std::make_shared<YGEventData>();
            readAttributes(entry, templateEventAttributes, *event);
            define(read, entry, event);
        }
        reportEventEntry(reporter, entry, templateEventAttributes, isEvent,
                         isInclude ? nullptr : &rules::emptySrc);
        if (isInclude)
            include(read, entry, *source.templateName, pending);
    }
    reporter.used(section, "name");
    reporter.attributesBut(section, "name");
    if (read.events.empty()) {
        reporter.report(rules::templateWithoutEvents, section, {}, *name);
        return;
    }
    reporter.used(section);
    tables_.templateBytes.set(*name, bytesOf(read.events));
    if (tables_.eventTemplateDatas.set(*name, std::move(read.events)))
        reporter.report(rules::duplicateEventTemplate, section, "name", *name);
}

void YGEventLoader::readGroups(const xml::Element& root) {
    if (!root.hasChildren())
        return;
    const xml::Query groups("/event_list/element_event");
    for (const xml::Node& section : root.query(groups))
        readGroup(xml::Element(section));
}

void YGEventLoader::readGroup(const xml::Element& section) {
    const Reporter reporter(sink_);
    const auto name = usableName(section);
    if (!name)
        return;
    Section read;
    for (const xml::Node& child : section.children()) {
        if (!child.isElement()) {
            reporter.stray(child);
            continue;
        }
        const xml::Element entry(child);
        if (entry.name() == "event") {
            auto event = std::make_shared<YGEventData>();
            readAttributes(entry, elementEventAttributes, *event);
            if (!event->eventName()) {
                reporter.report(rules::eventWithoutName, entry);
                continue;
            }
            define(read, entry, event);
            reportEventEntry(reporter, entry, elementEventAttributes, true, &rules::srcOnEvent);
            continue;
        }
        EventInclude source;
        readAttributes(entry, includeAttributes, source);
        if (!isUsable(source.templateName)) {
            reporter.report(rules::includeWithoutSrc, entry, {}, entry.name());
            continue;
        }
        reportEventEntry(reporter, entry, elementEventAttributes, false, nullptr);
        include(read, entry, *source.templateName, {});
    }
    reporter.used(section);
    reporter.used(section, "name");
    reporter.attributesBut(section, "name");
    if (tables_.elementEventDatas.set(*name, std::move(read.events)))
        reporter.report(rules::duplicateEventGroup, section, "name", *name);
}

/// Stores an event under its name, which is there.
void YGEventLoader::define(Section& section, const xml::Element& entry,
                           const std::shared_ptr<YGEventData>& event) {
    const std::string& name = *event->eventName();
    const bool replaces = section.events.set(name, event);
    const Reporter reporter(sink_);
    if (!reporter)
        return;
    reporter.used(entry);
    if (name.empty())
        reporter.report(rules::unreachableEvent, entry, "name");
    if (replaces) {
        const bool* wasOwn = section.isOwn.find(name);
        reporter.report(wasOwn && *wasOwn ? rules::duplicateEvent : rules::overriddenTemplateEvent,
                        entry, "name", name);
    }
    section.isOwn.set(name, true);
}

/// Adds all events of a template as it stands now, the very records.
void YGEventLoader::include(Section& section, const xml::Element& entry,
                            std::string_view templateName, const PendingTemplates& pending) {
    const Reporter reporter(sink_);
    const EventMap* events = tables_.eventTemplateDatas.find(templateName);
    if (!events) {
        const std::size_t* later = pending.find(templateName);
        reporter.report(
            later && *later > 0 ? rules::laterEventTemplate : rules::unknownEventTemplate, entry,
            "src", templateName);
        return;
    }
    const std::size_t bytes = *tables_.templateBytes.find(templateName);
    if (events->size() > mostIncludedEvents - tables_.includedEvents ||
        bytes > mostIncludedBytes - tables_.includedBytes) {
        if (!std::exchange(tables_.isLimitLogged, true))
            writeRuntimeLog(
                "load palette config fail:includes add more than %ld events or %ld bytes",
                mostIncludedEvents, mostIncludedBytes);
        reporter.report(rules::includeLimit, entry, "src", templateName);
        return;
    }
    tables_.includedEvents += events->size();
    tables_.includedBytes += bytes;
    reporter.used(entry);
    reporter.used(entry, "src");
    for (const auto& [name, event] : *events) {
        if (reporter) {
            const auto* before = section.events.find(name);
            const bool* wasOwn = section.isOwn.find(name);
            if (before && *before != event)
                reporter.report(
                    wasOwn && *wasOwn ? rules::eventLostToTemplate : rules::overriddenTemplateEvent,
                    entry, {}, name);
            section.isOwn.set(name, false);
        }
        section.events.set(name, event);
    }
}

}  // namespace yg
