// SPDX-License-Identifier: MIT
#include "YGConfigManager/host/HostSettings.h"

#include <cerrno>
#include <string_view>
#include <sys/stat.h>
#include <utility>

#include "YGConfigManager/files/UnsavedTexts.h"
#include "YGConfigManager/text/Format.h"

namespace yg {

namespace {

constexpr std::size_t largestSettings = std::size_t{16} * 1024 * 1024;

/// A member; null when it is missing or null.
const JsonValue* memberOf(const JsonValue::Object& object, std::string_view name) {
    const auto member = object.find(name);
    return member == object.end() || member->second.isNull() ? nullptr : &member->second;
}

std::optional<std::string> readText(const JsonValue::Object& object, std::string_view name,
                                    std::vector<WrongHostSetting>& wrong) {
    const JsonValue* const value = memberOf(object, name);
    if (!value)
        return std::nullopt;
    if (value->text())
        return *value->text();
    wrong.push_back(
        {std::string(name), text::format(R"("%@" must be a text)", name), value->range()});
    return std::nullopt;
}

/// One mapping table, an object of lists of texts.
std::shared_ptr<const MappingDic> readMapping(const std::string& key, const JsonValue& value,
                                              std::vector<WrongHostSetting>& wrong) {
    auto mapping = std::make_shared<MappingDic>();
    const auto table = value.object();
    if (!table) {
        wrong.push_back({"mappings." + key,
                         text::format(R"("mappings"."%@" must be an object)", key), value.range()});
        return mapping;
    }
    for (const auto& [name, list] : *table) {
        const auto items = list.list();
        std::vector<std::string>& texts = (*mapping)[name];
        const JsonValue* odd = items ? nullptr : &list;
        for (std::size_t index = 0; !odd && index < items->size(); ++index) {
            const JsonValue& item = (*items)[index];
            if (item.text())
                texts.push_back(*item.text());
            else
                odd = &item;
        }
        if (odd)
            wrong.push_back(
                {text::format("mappings.%@.%@", key, name),
                 text::format(R"("mappings"."%@"."%@" must be a list of texts)", key, name),
                 odd->range()});
    }
    return mapping;
}

}  // namespace

std::optional<files::FileReading> readHostFile(const std::string& path) {
    struct stat state {};
    if (!files::unsavedText(path) && ::lstat(path.c_str(), &state) != 0 && errno == ENOENT)
        return std::nullopt;
    return files::readWholeFile(path, largestSettings);
}

HostSettings readHostSettings(const JsonValue::Object& object,
                              std::vector<WrongHostSetting>& wrong) {
    HostSettings settings;
    settings.rightLevel = readText(object, "rightLevel", wrong);
    settings.configServer = readText(object, "configServer", wrong);
    if (settings.configServer && settings.configServer->empty())
        settings.configServer.reset();
    if (const JsonValue* const mappings = memberOf(object, "mappings")) {
        if (const auto tables = mappings->object()) {
            for (const auto& [key, table] : *tables)
                settings.mappings.emplace(key, readMapping(key, table, wrong));
        } else {
            wrong.push_back({"mappings", R"("mappings" must be an object)", mappings->range()});
        }
    }
    return settings;
}

}  // namespace yg
