// SPDX-License-Identifier: MIT
//
// The event configuration: reads one XML file of commands, event templates and the event groups of
// elements, and answers commands and events by name. The library acts on none of them.
//
// Made with one call on one thread; afterwards nothing changes, and lookups may run on any thread.
// Nothing is thrown: a file that cannot be read is logged as "load palette config fail:" with the
// reason, and the loader stays empty; so it is when memory does not suffice.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>

#include "YGConfigManager/diagnostics/DiagnosticsSink.h"
#include "YGConfigManager/events/YGCommandData.h"
#include "YGConfigManager/events/YGEventData.h"
#include "YGConfigManager/export.h"
#include "YGConfigManager/records/Description.h"
#include "YGConfigManager/records/RecordMap.h"
#include "YGConfigManager/text/OptionalText.h"
#include "YGConfigManager/xml/Element.h"

namespace yg {

/// Commands by name, events by name, and events by the name of their template or group. All keep
/// the order of the file.
using CommandMap = RecordMap<std::shared_ptr<YGCommandData>>;
using EventMap = RecordMap<std::shared_ptr<YGEventData>>;
using EventGroupMap = RecordMap<EventMap>;

class Entry;

class YG_EXPORT YGEventLoader {
public:
    /// What templates may bring into the templates and groups of one loader, counted in each that
    /// includes them; bytes are those of the events' names and texts. An include that would go
    /// beyond adds nothing; the first is logged as "load palette config fail:".
    static constexpr std::size_t mostIncludedEvents = 1'000'000;
    static constexpr std::size_t mostIncludedBytes = std::size_t{64} * 1024 * 1024;

    /// A loader of the file at `path`, fully loaded; null only without memory for it. It is empty
    /// when the path is absent or empty, which is not logged, and when the file cannot be read,
    /// which is. Findings go to the sink; see diagnostics/DiagnosticsSink.h.
    static std::shared_ptr<YGEventLoader> initWithEventConfigPath(OptionalText path,
                                                                  DiagnosticsSink* sink = nullptr);

    YGEventLoader(const YGEventLoader&) = delete;
    YGEventLoader& operator=(const YGEventLoader&) = delete;
    ~YGEventLoader() = default;

    /// The command of exactly that name; null when there is none and for an absent or empty name.
    std::shared_ptr<YGCommandData> commandByName(OptionalText name) const;

    /// The event of exactly that name in the group of exactly that name; null when there is none
    /// and when either name is absent or empty. Neither templates nor other groups are looked at.
    std::shared_ptr<YGEventData> eventByName(OptionalText groupName, OptionalText eventName) const;

    // The steps of a load, in the order in which initWithEventConfigPath takes them. Each adds to
    // the tables, so only call them yourself while no other thread looks anything up. A step for
    // which memory does not suffice adds nothing.

    /// Reads the file: all commands, then all templates, then all groups, whatever their order in
    /// it.
    void loadEventConfig();

    /// Reads the commands of one "command_event"; the later one of a name wins. Nothing for an
    /// empty element.
    void loadCommandEvent(const xml::Element& section);

    /// Reads all templates of the document that holds the root element given.
    void loadEventTemplate(const xml::Element& root);

    /// Reads one "event_template". Its entries define events and include templates read before, the
    /// later one wins. It is kept, in the place of an earlier one of its name, if it has an event.
    void loadSingleEventTemplate(const xml::Element& section);

    /// Reads all event groups of the document that holds the root element given.
    void loadElementEvent(const xml::Element& root);

    /// Reads one "element_event" in the same way, but one without an event replaces an earlier one
    /// of its name, too, unless it has no content at all.
    void loadSingleElementEvent(const xml::Element& section);

    // What was loaded, for tools that show it whole. The references live as long as the loader.

    /// All commands by name.
    const CommandMap& commandDatas() const { return tables_.commandDatas; }

    /// The events of all templates by template name; a template has at least one.
    const EventGroupMap& eventTemplateDatas() const { return tables_.eventTemplateDatas; }

    /// The events of all groups by group name; a group may have none. An event that a template
    /// brought is the template's own record.
    const EventGroupMap& elementEventDatas() const { return tables_.elementEventDatas; }

private:
    struct Section;
    struct Tables {
        CommandMap commandDatas;
        EventGroupMap eventTemplateDatas;
        EventGroupMap elementEventDatas;
        /// Where they were defined; filled for a sink only.
        RecordMap<xml::Element> commandPlaces;
        RecordMap<xml::Element> templatePlaces;
        RecordMap<xml::Element> groupPlaces;
        /// The bytes that an include of each template adds.
        RecordMap<std::size_t> templateBytes;
        std::size_t includedEvents = 0;
        std::size_t includedBytes = 0;
        bool isLimitLogged = false;
    };

    YGEventLoader(std::optional<std::string_view> path, DiagnosticsSink* sink);

    template <class Step>
    void change(Step step);
    template <class Read>
    void addOne(Read read);

    // The steps, which throw std::bad_alloc.
    void readFile();
    void readDocument(const xml::Element& root);
    void readCommands(const xml::Element& section);
    void readTemplates(const xml::Element& root);
    void readGroups(const xml::Element& root);
    void readGroup(const xml::Element& section);

    void readTemplate(const xml::Element& section);
    void include(Section& section, Entry& entry, std::string_view templateName);

    std::optional<std::string> configPath_;
    Tables tables_;
    DiagnosticsSink* sink_ = nullptr;
};

template <>
struct Description<YGEventLoader> {
    static constexpr std::tuple fields{
        Field{"commandDatas", &YGEventLoader::commandDatas},
        Field{"eventTemplateDatas", &YGEventLoader::eventTemplateDatas},
        Field{"elementEventDatas", &YGEventLoader::elementEventDatas},
    };
};

}  // namespace yg
