// SPDX-License-Identifier: MIT
//
// Bytes as the settings file of the stand-alone host.
#include <cstdlib>
#include <string>
#include <string_view>

#include "YGConfigManager/host/JsonValue.h"
#include "YGConfigManager/host/StandAloneHost.h"

#include "Target.h"
#include "files/TemporaryFolder.h"

namespace {

using yg::fuzz::require;
using yg::fuzz::textOf;

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const yg::files::TemporaryFolder root;
    const std::string file = root.at("host.json");
    yg::files::put(file, textOf(data, size));

    const yg::StandAloneHost::Opened opened = yg::StandAloneHost::open(root.path());
    require(static_cast<bool>(opened) == opened.error.empty(), "a host or a description");
    if (!opened) {
        require(opened.error.find(file) == 0, "the description names the file");
        require(opened.error.find_first_of("\r\n") == std::string::npos, "it is one line");
        return 0;
    }
    const yg::JsonValue::Parsed parsed = yg::JsonValue::parse(textOf(data, size));
    require(parsed && parsed.value->object() != nullptr, "settings are one JSON object");

    yg::StandAloneHost& host = *opened.host;
    const auto& members = *parsed.value->object();
    const auto right = members.find("rightLevel");
    const std::string* const level = right == members.end() ? nullptr : right->second.text();
    require(host.getUserRightDescription().has_value() == (level != nullptr),
            "the right level is there when it is set");
    require(level == nullptr || *host.getUserRightDescription() == *level,
            "the right level is the one set");
    require(host.configServer().value_or("x") != "", "an empty server is none");
    if (const auto found = members.find("mappings"); found != members.end()) {
        if (const auto tables = found->second.object()) {
            for (const auto& [key, table] : *tables)
                require(host.getMappingDicForKey(key) != nullptr,
                        "a table that is set is answered");
        }
    }
    const std::string_view name = textOf(data, size).substr(0, 40);
    for (const auto& path :
         {host.getStorageFilePath(1, std::nullopt, name, false),
          host.getSoftOptimizeConfigFilePath(0, name), host.getBaseOptimizeConfigFilePath(0, name)})
        require(!path || path->find(root.path() + "/") == 0, "a file stands below the root");
    return 0;
}
