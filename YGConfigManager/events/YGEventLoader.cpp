// SPDX-License-Identifier: MIT
//
// The event loader: its life, the steps of a load and lookups by name. Sections are
// read in EventSections.cpp.
#include "YGConfigManager/events/YGEventLoader.h"

#include <utility>

#include "YGConfigManager/diagnostics/Reporter.h"
#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/host/Log.h"
#include "YGConfigManager/xml/Document.h"

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
    if (loader)
        loader->loadEventConfig();
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
    addOne([&] { readTemplate(section); });
}

void YGEventLoader::loadSingleElementEvent(const xml::Element& section) {
    addOne([&] { readGroup(section); });
}

void YGEventLoader::readFile() {
    if (!configPath_ || configPath_->empty())
        return;
    const Reporter reporter(sink_);
    const xml::ParseResult parsed = reporter.parseFile(*configPath_);
    if (parsed)
        return readDocument(parsed.document.root());
    writeRuntimeError("load palette config fail:%@", parsed.error);
    reporter.unreadable("unreadable-file"_rule, *configPath_, parsed);
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

}  // namespace yg
