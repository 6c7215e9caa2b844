// SPDX-License-Identifier: MIT
#include <unordered_map>

#include "ygconfig/report/Model.h"

namespace yg::tool {

namespace {

/// Events are listed once: those that a template brings stand in each section that includes it.
class EventRecords {
public:
    std::size_t numberOf(const YGEventData& event) {
        const auto [found, isNew] = numbers_.try_emplace(&event, records_.size());
        if (isNew)
            records_.push_back(&event);
        return found->second;
    }
    const std::vector<const YGEventData*>& records() const { return records_; }

private:
    std::unordered_map<const YGEventData*, std::size_t> numbers_;
    std::vector<const YGEventData*> records_;
};

void writeSections(JsonWriter& json, ModelSource& source, const EventGroupMap& sections,
                   Naming kind, EventRecords& events) {
    json.list(sections, [&](const auto& section) {
        json.object([&] {
            json.member("name", section.key);
            source.places.writeAt(json, source.places.definition(kind, section.key));
            json.member("events", [&] {
                json.list(section.value,
                          [&](const auto& event) { json.write(events.numberOf(*event.value)); });
            });
        });
    });
}

template <class Record>
void writeRecord(JsonWriter& json, ModelSource& source, const Record& record) {
    json.object([&] {
        writeFields(json, record);
        source.places.writeAt(json, source.contents.placeOf(&record));
    });
}

}  // namespace

void writeEvents(JsonWriter& json, ModelSource& source) {
    const auto loader = source.contents.events();
    EventRecords events;
    json.object([&] {
        json.member("groups", [&] {
            writeSections(json, source, loader->elementEventDatas(), Naming::eventGroup, events);
        });
        json.member("templates", [&] {
            writeSections(json, source, loader->eventTemplateDatas(), Naming::eventTemplate,
                          events);
        });
        json.member("commands", [&] {
            json.list(loader->commandDatas(),
                      [&](const auto& command) { writeRecord(json, source, *command.value); });
        });
        json.member("records", [&] {
            json.list(events.records(),
                      [&](const YGEventData* event) { writeRecord(json, source, *event); });
        });
    });
}

}  // namespace yg::tool
