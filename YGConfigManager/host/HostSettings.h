// SPDX-License-Identifier: MIT
//
// The settings in a host.json; StandAloneHost.h says which there are. Internal. Throws
// std::bad_alloc.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "YGConfigManager/files/ReadFile.h"
#include "YGConfigManager/host/Host.h"
#include "YGConfigManager/host/JsonValue.h"

namespace yg {

struct HostSettings {
    std::optional<std::string> rightLevel;
    std::optional<std::string> configServer;  ///< never empty
    std::map<std::string, std::shared_ptr<const MappingDic>, std::less<>> mappings;
};

/// A value of a type that is not read where it stands.
struct WrongHostSetting {
    std::string member;                   ///< "mappings.KEY.NAME"
    std::string error;                    ///< "\"mappings\".\"KEY\" must be an object"
    std::optional<JsonRange> valueRange;  ///< none unless the text was parsed with positions
};

/// Reads a host.json; none when nothing is there, not even a link that leads nowhere.
std::optional<files::FileReading> readHostFile(const std::string& path);

/// The settings in the object. What is of the wrong type is left out and added to `wrong`, the
/// members in the order of StandAloneHost.h, mappings by key.
HostSettings readHostSettings(const JsonValue::Object& object,
                              std::vector<WrongHostSetting>& wrong);

}  // namespace yg
