// SPDX-License-Identifier: MIT
//
// The server configuration.
#include "YGConfigManager/formats/Formats.h"
#include "YGConfigManager/servers/ServerAttributes.h"
#include "YGConfigManager/servers/YGServerAddrListTag.h"
#include "YGConfigManager/servers/YGServerCfgLoader.h"

namespace yg {

namespace {

// Items between ";", each host:port or weight:host:port, the port from 1 to 65535. No "[" and no
// "::": an IPv6 address cannot be written.
constexpr char host[] = R"(([^:;\[]*:)?[^:;\[]+:)";
constexpr char port[] =
    R"(\s*\+?0*([1-9][0-9]{0,3}|[1-5][0-9]{4}|6[0-4][0-9]{3}|65[0-4][0-9]{2}|655[0-2][0-9]|6553[0-5]))";
constexpr auto addresses = joined(host, port, "(;", host, port, ")*");

constexpr ValueInfo entryValues[] = {
    {"name", "pattern", "[^;]+(;[^;]+)*", "None of the names is empty."},
    {"addrs",
     "pattern",
     {addresses.data(), addresses.size()},
     "None is empty, and a port is from 1 to 65535. An IPv6 address cannot be written."},
};

constexpr auto serverEntryRows = rowsOf(attributesOf<ServerEntry>);
constexpr const Rule* entryRules[] = {
    &"incomplete-server-entry"_rule,
    &"server-entry-without-address"_rule,
    &"server-without-name"_rule,
    &"too-many-servers"_rule,
    &"empty-server-address"_rule,
    &"address-without-port"_rule,
    &"address-without-host"_rule,
    &"address-with-too-many-parts"_rule,
    &"ipv6-address"_rule,
    &"odd-server-port"_rule,
    &"address-weight"_rule,
};
constexpr ElementInfo entry = {
    .id = "addr",
    .usualName = "addr",
    .sentence =
        "An entry: one server for each of its names. Each draws one of the addresses, all "
        "with the same chance.",
    .attributes = serverEntryRows,
    .values = entryValues,
    .rules = entryRules,
};

constexpr auto serverGroupRows = rowsOf(attributesOf<YGServerAddrListTag>);
constexpr ValueInfo groupValues[] = {
    {"type", "pattern", R"(\s*0*[1234578])", "1, 2, 3, 4, 5, 7 or 8."},
};
constexpr const ElementInfo* groupContent[] = {&entry};
constexpr const Rule* groupRules[] = {
    &"server-group-without-type"_rule,
    &"server-type-never-loaded"_rule,
    &"second-server-group"_rule,
};
constexpr ElementInfo group = {
    .id = "server",
    .name = "server",
    .sentence = "A group of servers, found by its type.",
    .attributes = serverGroupRows,
    .values = groupValues,
    .content = groupContent,
    .rules = groupRules,
};

constexpr auto applicationRows = rowsOf(attributesOf<YGServerCfgLoader>);
constexpr const ElementInfo* rootContent[] = {&group};
constexpr const Rule* rootRules[] = {&"server-root-name"_rule, &"replaced-md5"_rule};
constexpr ElementInfo root = {
    .id = "application",
    .name = "application",
    .sentence = "The root.",
    .attributes = applicationRows,
    .content = rootContent,
    .rules = rootRules,
};

constexpr FileInfo files[] = {
    {"user/FILE", "getStorageFilePath",
     "The last configuration that the login server delivered; read before the shipped one."},
    {"storage/FILE", "getStorageFilePath", "The configuration as shipped; it is never written."},
};

constexpr std::string_view example = R"(<application>
    <server type="1" name="quotes">
        <addr key="101" name="east;west" addrs="192.0.2.11:9211;192.0.2.12:9211"/>
        <addr key="102" name="north" addrs="40:quote.example.com:9211"/>
    </server>
    <server type="5" name="messages" domain="im.example.com">
        <addr key="501" name="messages" addrs="192.0.2.51:5222"/>
    </server>
</application>
)";

constexpr std::string_view notes[] = {
    "The user's right level (`getUserRightDescription`) and whether the user belongs to the grey "
    "release choose FILE. For the level `free`, an empty one or none it is `skeleton_v1.xml`, in "
    "the grey release `skeleton_gray_v1.xml`; for any other level `skeleton_l2_v1.xml`, in the "
    "grey release `skeleton_l2_gray_v1.xml`.",
    "The types: 1 quotes, 2 options and derivatives, 3 history, 4 watch lists, 5 messages, 7 deep "
    "quotes, 8 domestic futures. There is no 6.",
};

}  // namespace

constexpr FormatInfo serversFormat = {
    .id = "servers",
    .title = "Servers",
    .sentence = "The servers that the terminal connects to, by type, and their addresses.",
    .files = files,
    .root = root,
    .example = example,
    .notes = notes,
};

}  // namespace yg
