// SPDX-License-Identifier: MIT
//
// A short way from the text of an event configuration to its loader, and from records to texts.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/events/YGEventLoader.h"

#include "files/TemporaryFolder.h"

namespace yg::testing {

/// The loader of a file with this text.
inline std::shared_ptr<YGEventLoader> loadEvents(std::string_view xml,
                                                 DiagnosticsSink* sink = nullptr) {
    const files::TemporaryFolder root;
    root.write("events.xml", xml);
    return YGEventLoader::initWithEventConfigPath(root.at("events.xml"), sink);
}

/// The keys of a map in their order.
template <class Value>
std::vector<std::string> keysOf(const RecordMap<Value>& map) {
    std::vector<std::string> keys;
    for (const auto& [key, value] : map)
        keys.push_back(key);
    return keys;
}

/// The command that an event leads to; "none" without the event, absent without a command.
inline std::optional<std::string> commandOf(const YGEventLoader& loader, std::string_view group,
                                            std::string_view event) {
    const auto record = loader.eventByName(group, event);
    return record ? record->command() : "none";
}

}  // namespace yg::testing
