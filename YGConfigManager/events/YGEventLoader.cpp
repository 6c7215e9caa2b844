// SPDX-License-Identifier: MIT
//
// The event loader: its life, the order of a load, the commands and lookups by name.
#include "YGConfigManager/events/YGEventLoader.h"

#include <utility>

#include "YGConfigManager/events/EventAttributes.h"
#include "YGConfigManager/events/EventReports.h"
#include "YGConfigManager/host/Log.h"
#include "YGConfigManager/xml/Document.h"
#include "YGConfigManager/xml/Query.h"

namespace yg {

YGEventLoader::YGEventLoader(std::optional<std::string_view> path, DiagnosticsSink* sink)
    : configPath_(path), sink_(sink) {}

std::shared_ptr<YGEventLoader> YGEventLoader::initWithEventConfigPath(
    std::optional<std::string_view> path, DiagnosticsSink* sink) {
    std::shared_ptr<YGEventLoader> loader(new YGEventLoader(path, sink));
    loader->loadEventConfig();
    loader->sink_ = nullptr;
    return loader;
}

void YGEventLoader::loadEventConfig() {
    static const xml::Query commandSections("/event_list/command_event");
    if (!configPath_ || configPath_->empty())
        return;
    const Reporter reporter(sink_);
    reporter.reading(*configPath_);
    const xml::ParseResult parsed = xml::Document::parseFile(*configPath_, reporter.parseOptions());
    if (!parsed) {
        // The palette's words, and a part of the interface.
        writeRuntimeLog("load palette config fail:%@", parsed.error);
        reporter.report(rules::unreadableFile, {}, {}, parsed.error);
        return;
    }
    const xml::Element root = parsed.document.root();
    reportDocument(root);
    for (const xml::Node& section : root.query(commandSections))
        loadCommandEvent(xml::Element(section));
    loadEventTemplate(root);
    loadElementEvent(root);
}

void YGEventLoader::loadCommandEvent(const xml::Element& section) {
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
        const bool replaces = commandDatas_.set(name, command);
        reporter.used(entry);
        reportEventEntry(reporter, entry, commandAttributes, true, &rules::unknownAttribute);
        if (name.empty())
            reporter.report(rules::unreachableCommand, entry, "name");
        if (replaces)
            reporter.report(rules::duplicateCommand, entry, "name", name);
    }
}

std::shared_ptr<YGCommandData> YGEventLoader::commandByName(
    const std::optional<std::string_view>& name) const {
    if (!name || name->empty())
        return nullptr;
    const auto* command = commandDatas_.find(*name);
    return command ? *command : nullptr;
}

std::shared_ptr<YGEventData> YGEventLoader::eventByName(
    const std::optional<std::string_view>& groupName,
    const std::optional<std::string_view>& eventName) const {
    if (!groupName || groupName->empty() || !eventName || eventName->empty())
        return nullptr;
    const EventMap* group = elementEventDatas_.find(*groupName);
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
