// SPDX-License-Identifier: MIT
//
// The event loader: its life, the order of a load, the commands and lookups by name.
#include "YGConfigManager/events/YGEventLoader.h"

#include <utility>

#include "YGConfigManager/events/EventAttributes.h"
#include "YGConfigManager/events/EventReports.h"
#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/host/Log.h"
#include "YGConfigManager/xml/Document.h"
#include "YGConfigManager/xml/Query.h"

namespace yg {

namespace {

// The palette's words, and a part of the interface.
constexpr std::string_view loadName = "load palette config";

}  // namespace

YGEventLoader::YGEventLoader(std::optional<std::string_view> path, DiagnosticsSink* sink)
    : configPath_(path), sink_(sink) {}

std::shared_ptr<YGEventLoader> YGEventLoader::initWithEventConfigPath(OptionalText path,
                                                                      DiagnosticsSink* sink) {
    auto loader = guarded(
        loadName, [&] { return std::shared_ptr<YGEventLoader>(new YGEventLoader(path, sink)); });
    if (loader) {
        loader->loadEventConfig();
        loader->sink_ = nullptr;
    }
    return loader;
}

/// Does a step of a load, which adds to the tables, in full or not at all.
template <class Step>
void YGEventLoader::change(Step step) {
    guarded(loadName, [&] {
        Tables before = tables_;
        try {
            step();
        } catch (...) {
            std::swap(tables_, before);
            throw;
        }
    });
}

void YGEventLoader::loadEventConfig() {
    change([this] { readFile(); });
}

void YGEventLoader::loadCommandEvent(const xml::Element& section) {
    change([&] { readCommands(section); });
}

void YGEventLoader::loadEventTemplate(const xml::Element& root) {
    change([&] { readTemplates(root); });
}

void YGEventLoader::loadElementEvent(const xml::Element& root) {
    change([&] { readGroups(root); });
}

/// One template or group is read before it is kept, so nothing has to be brought back but counts.
template <class Read>
void YGEventLoader::addOne(Read read) {
    const std::size_t events = tables_.includedEvents;
    const std::size_t bytes = tables_.includedBytes;
    if (!guarded(loadName, [&] {
            read();
            return true;
        })) {
        tables_.includedEvents = events;
        tables_.includedBytes = bytes;
    }
}

void YGEventLoader::loadSingleEventTemplate(const xml::Element& section) {
    addOne([&] { readTemplate(section, {}); });
}

void YGEventLoader::loadSingleElementEvent(const xml::Element& section) {
    addOne([&] { readGroup(section); });
}

void YGEventLoader::readFile() {
    const xml::Query commandSections("/event_list/command_event");
    if (!configPath_ || configPath_->empty())
        return;
    const Reporter reporter(sink_);
    const xml::ParseResult parsed = reporter.parseFile(*configPath_);
    if (!parsed) {
        writeRuntimeLog("load palette config fail:%@", parsed.error);
        reporter.report(rules::unreadableFile, {}, {}, parsed.error);
        return;
    }
    const xml::Element root = parsed.document.root();
    reportDocument(root);
    for (const xml::Node& section : root.query(commandSections))
        readCommands(xml::Element(section));
    readTemplates(root);
    readGroups(root);
}

void YGEventLoader::readCommands(const xml::Element& section) {
    const Reporter reporter(sink_);
    if (!section.hasChildren()) {
        reporter.report(rules::emptyEventSection, section);
        return;
    }
    reporter.used(section);
    reporter.attributesBut(section, {});
    for (const xml::Node& child : section.children()) {
        if (!child.isElement()) {
            reporter.stray(child);
            continue;
        }
        const xml::Element entry(child);
        auto command = std::make_shared<YGCommandData>();
        readAttributes(entry, commandAttributes, *command);
        if (!command->commandName()) {
            reporter.report(rules::commandWithoutName, entry);
            continue;
        }
        const std::string& name = *command->commandName();
        const bool replaces = tables_.commandDatas.set(name, command);
        reporter.used(entry);
        reportEventEntry(reporter, entry, commandAttributes, true, &rules::unknownAttribute);
        if (name.empty())
            reporter.report(rules::unreachableCommand, entry, "name");
        if (replaces)
            reporter.report(rules::duplicateCommand, entry, "name", name);
    }
}

std::shared_ptr<YGCommandData> YGEventLoader::commandByName(OptionalText name) const {
    if (!name || name->empty())
        return nullptr;
    const auto* command = tables_.commandDatas.find(*name);
    return command ? *command : nullptr;
}

std::shared_ptr<YGEventData> YGEventLoader::eventByName(OptionalText groupName,
                                                        OptionalText eventName) const {
    if (!groupName || groupName->empty() || !eventName || eventName->empty())
        return nullptr;
    const EventMap* group = tables_.elementEventDatas.find(*groupName);
    const auto* event = group ? group->find(*eventName) : nullptr;
    return event ? *event : nullptr;
}

/// What the queries for sections do not find.
void YGEventLoader::reportDocument(const xml::Element& root) const {
    const Reporter reporter(sink_);
    if (!reporter)
        return;
    if (root.name() != "event_list") {
        reporter.report(rules::eventRootName, root, {}, root.name());
        return;
    }
    reporter.used(root);
    reporter.attributesBut(root, {});
    for (const xml::Node& child : root.children()) {
        if (!child.isElement())
            reporter.stray(child);
        else if (!isEventSectionName(child.name()))
            reporter.report(rules::unknownElement, child, {}, child.name());
    }
}

}  // namespace yg
