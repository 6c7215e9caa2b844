// SPDX-License-Identifier: MIT
//
// host.json. With anything in it that is of the wrong type no setting is taken, as by open().
#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "YGConfigManager/formats/Format.h"
#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/host/HostSettings.h"
#include "YGConfigManager/inspection/Checks.h"
#include "YGConfigManager/inspection/FileFaults.h"
#include "YGConfigManager/inspection/OddCharacters.h"
#include "YGConfigManager/text/Characters.h"
#include "YGConfigManager/text/LineIndex.h"
#include "YGConfigManager/text/Nearest.h"

namespace yg {

namespace {

constexpr std::string_view freeLevel = "free";

bool isAll(std::string_view text, std::string_view characters) {
    return text.find_first_not_of(characters) == std::string_view::npos;
}

/// HOST or HOST:PORT, an address of IPv6 in brackets.
bool isAuthority(std::string_view text) {
    constexpr int highestPort = 65535;
    constexpr std::size_t longestPort = 5;
    std::string_view host = text.substr(0, text.find(':'));
    if (text.starts_with('[')) {
        const std::size_t end = std::min(text.find(']'), text.size() - 1);
        host = text.substr(0, end + 1);
        if (!host.ends_with(']') || host.size() < 4 ||
            !isAll(host.substr(1, end - 1), "0123456789abcdefABCDEF:."))
            return false;
    } else if (host.empty() || host.find_first_of(" \t\r\n/?#\\") != std::string_view::npos ||
               withoutOddCharacters(host) != host) {
        return false;
    }
    if (host.size() == text.size())
        return true;
    const std::string_view port = text.substr(host.size() + 1);
    if (text[host.size()] != ':' || port.empty() || port.size() > longestPort ||
        !isAll(port, "0123456789"))
        return false;
    const int number = std::stoi(std::string(port));
    return number >= 1 && number <= highestPort;
}

/// Without scheme, path and blanks; absent when that does not help.
std::optional<std::string> repairedAuthority(std::string_view text) {
    std::string plain = withoutOddCharacters(text);
    std::erase_if(plain, text::isWhiteSpace);
    if (const std::size_t scheme = plain.find("://"); scheme != std::string::npos)
        plain.erase(0, scheme + 3);
    plain.resize(std::min(plain.find_first_of("/?#"), plain.size()));
    return isAuthority(plain) ? std::optional(plain) : std::nullopt;
}

class HostFile {
public:
    HostFile(std::string path, std::string_view bytes, Gathering& findings)
        : path_(std::move(path)), bytes_(bytes), findings_(findings), lines_(bytes) {}

    void check(const JsonValue& root) const {
        reportReplaced(root, "");
        const FormatInfo& format = *formatNamed("host");
        std::vector<std::string> known;
        for (const AttributeInfo& row : format.root.attributes)
            known.emplace_back(row.name);
        for (const ElementInfo* const content : format.root.content)
            known.emplace_back(content->name);
        for (const JsonMember& member : *root.members()) {
            if (std::ranges::find(known, member.name) == known.end())
                reportUnlikely("unknown-host-member"_rule, member, member.name, known);
        }
        std::vector<WrongHostSetting> wrong;
        const HostSettings settings = readHostSettings(*root.object(), wrong);
        for (const WrongHostSetting& setting : wrong)
            reportWrong(setting);
        if (settings.configServer && !isAuthority(*settings.configServer))
            onText("odd-config-server"_rule, "configServer",
                   *root.object()->find("configServer")->second.range(), *settings.configServer,
                   repairedAuthority(*settings.configServer));
        const std::string levels[] = {std::string(freeLevel)};
        if (settings.rightLevel && *settings.rightLevel != freeLevel &&
            text::nearest(*settings.rightLevel, levels) == freeLevel)
            onText("odd-right-level"_rule, "rightLevel",
                   *root.object()->find("rightLevel")->second.range(), *settings.rightLevel,
                   levels[0]);
        const auto mappings = root.object()->find("mappings");
        if (mappings != root.object()->end())
            checkMappings(mappings->second, format);
    }

private:
    std::string_view textOf(JsonRange range) const {
        return bytes_.substr(range.begin, range.end - range.begin);
    }

    /// Of the text between quotes.
    void onText(const Rule& rule, std::string_view member, JsonRange range, std::string_view value,
                std::optional<std::string> suggestion) const {
        on(rule, member, {range.begin + 1, range.end - 1}, value, {}, std::move(suggestion));
    }

    void on(const Rule& rule, std::string_view member, JsonRange range, std::string_view value,
            std::string message, std::optional<std::string> suggestion = {}) const {
        const Place place{path_, lines_.pointAt(bytes_, range.begin),
                          lines_.pointAt(bytes_, range.end)};
        findings_.add({{rule, place, place, {}, std::string(member), std::string(value), {}},
                       std::move(suggestion),
                       std::move(message)});
    }

    void reportReplaced(const JsonValue& value, const std::string& path) const {
        const auto members = value.members();
        if (!members)
            return;
        for (const JsonMember& member : *members) {
            const std::string name = path + (path.empty() ? "" : ".") + std::string(member.name);
            if (member.isReplaced)
                on("replaced-member"_rule, name, member.nameRange, textOf(member.nameRange), {});
            else
                reportReplaced(value.object()->find(member.name)->second, name);
        }
    }

    /// A name that nothing asks for.
    void reportUnlikely(const Rule& rule, const JsonMember& member, std::string_view path,
                        const std::vector<std::string>& known) const {
        if (member.isReplaced)
            return;
        const std::string near = text::nearest(member.name, known);
        onText(rule, path, member.nameRange, member.name,
               near.empty() ? std::nullopt : std::optional<std::string>(near));
    }

    void reportWrong(const WrongHostSetting& setting) const {
        const std::string value(textOf(*setting.valueRange));
        const bool isNumber = !value.empty() && (text::isDigit(value[0]) || value[0] == '-');
        on("host-member-of-wrong-type"_rule, setting.member, *setting.valueRange, value,
           setting.error + "; until then no member of host.json counts.",
           isNumber ? std::optional("\"" + value + "\"") : std::nullopt);
    }

    void checkMappings(const JsonValue& mappings, const FormatInfo& format) const {
        const auto members = mappings.members();
        if (!members)
            return;
        const std::vector<std::string> known = {
            std::string(format.root.content[0]->content[0]->usualName)};
        for (const JsonMember& member : *members) {
            if (member.name != known.front())
                reportUnlikely("unused-mapping"_rule, member,
                               "mappings." + std::string(member.name), known);
        }
    }

    const std::string path_;
    std::string_view bytes_;
    Gathering& findings_;
    text::LineIndex lines_;
};

}  // namespace

void checkHost(const Loaded& loaded, Gathering& findings) {
    const std::string path = loaded.files.pathOf("host.json");
    const Rule& unreadable = "unreadable-file"_rule;
    const auto reading = readHostFile(path);
    if (!reading)
        return;
    if (!*reading) {
        const std::string cause = reading->error.substr(files::describeFailure(path, "").size());
        return findings.onFile(
            unreadable, path,
            {.value = cause,
             .message = "The file cannot be read, so no setting counts: " + cause + "."});
    }
    const std::string& bytes = reading->bytes;
    if (auto fault = encodingFaultOfJson(bytes))
        return findings.add(foundOf(std::move(*fault), path));
    const JsonValue::Parsed parsed = orOutOfMemory(JsonValue::parse(bytes, {.positions = true}));
    if (!parsed) {
        if (auto fault = jsonFault(bytes, unreadable))
            return findings.add(foundOf(std::move(*fault), path));
        return findings.onPlace(
            unreadable, {path, parsed.place, parsed.place},
            {.value = parsed.error, .message = "No setting counts: " + parsed.error + "."});
    }
    if (!parsed.value->object())
        return findings.onPlace(
            unreadable,
            {path, text::pointAt(bytes, parsed.value->range()->begin),
             text::pointAt(bytes, parsed.value->range()->end)},
            {.value = "not a JSON object",
             .message = "Write one JSON object, \"{}\" at least; this is another value, so no "
                        "setting counts."});
    HostFile(path, bytes, findings).check(*parsed.value);
}

}  // namespace yg
