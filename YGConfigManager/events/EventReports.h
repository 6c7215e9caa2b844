// SPDX-License-Identifier: MIT
//
// What the event loader tells diagnostics of an entry's attributes and content. Internal.
#pragma once

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string_view>

#include "YGConfigManager/diagnostics/Reporter.h"
#include "YGConfigManager/events/EventRules.h"
#include "YGConfigManager/records/AttributeTable.h"
#include "YGConfigManager/xml/Element.h"

namespace yg {

/// The three kinds of sections, children of the root.
inline constexpr std::string_view eventSectionNames[] = {"command_event", "event_template",
                                                         "element_event"};

inline bool isEventSectionName(std::string_view name) {
    return std::ranges::find(eventSectionNames, name) != std::end(eventSectionNames);
}

/// Reports an entry that has an effect: its attributes, which make a record by the table if
/// `makesRecord`, and its content. `srcRule` says what is wrong with a "src"; null when including
/// it reports it.
template <class Record, std::size_t size>
void reportEventEntry(const Reporter& reporter, const xml::Element& entry,
                      const AttributeRow<Record> (&table)[size], bool makesRecord,
                      const Rule* srcRule) {
    if (!reporter)
        return;
    if (isEventSectionName(entry.name()))
        reporter.report(rules::nestedEventSection, entry, {}, entry.name());
    for (const xml::Attribute attribute : entry.attributes()) {
        const bool isKnown = rowOf(table, attribute.name) < size;
        const bool isDispatch = attribute.name == "dispatch" || attribute.name == "disptch";
        const Rule* rule = nullptr;
        if (attribute.name == "src") {
            if (!srcRule)
                continue;
            rule = srcRule;
        } else if (!isKnown && !isDispatch) {
            rule = &rules::unknownAttribute;
        } else if (!makesRecord) {
            rule = &rules::attributeWithoutEvent;
        } else if (!isKnown) {
            rule = &rules::dispatchSpelling;
        }
        if (rule)
            reporter.report(*rule, entry, attribute.name, attribute.value);
        else
            reporter.used(entry, attribute.name);
    }
    reporter.unread(entry, rules::contentInEventEntry);
}

}  // namespace yg
