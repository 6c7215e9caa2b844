// SPDX-License-Identifier: MIT
//
// The formats in JSON: the settings of a stand-alone host and the list of request URLs.
#include "YGConfigManager/formats/Formats.h"
#include "YGConfigManager/settings/YGHttpReqUrlModel.h"
#include "YGConfigManager/settings/YGHttpUrlConfigModel.h"

namespace yg {

namespace {

// ---- host.json ----

constexpr AttributeInfo hostRows[] = {
    {.name = "rightLevel",
     .sentence = "The user's right level. \"free\", an empty text and none are the same."},
    {.name = "configServer",
     .sentence = "The host name, or host name and port, of the configuration download server. "
                 "Without one nothing is downloaded."},
};

constexpr ElementInfo mappingValues = {
    .id = "mapping-values",
    .usualName = "STOCK",
    .sentence =
        "A list of texts under a name. In \"模版通配\": a wildcard, which is the name of a "
        "magic panel, with the arguments that it stands for.",
    .holds = Content::texts,
};
constexpr const ElementInfo* mappingContent[] = {&mappingValues};
constexpr ElementInfo mapping = {
    .id = "mapping",
    .usualName = "模版通配",
    .sentence = "One mapping table. The library asks for \"模版通配\" alone.",
    .content = mappingContent,
};
constexpr const ElementInfo* mappingsContent[] = {&mapping};
constexpr ElementInfo mappings = {
    .id = "mappings",
    .name = "mappings",
    .sentence = "Mapping tables by key.",
    .content = mappingsContent,
};

constexpr const ElementInfo* hostContent[] = {&mappings};
constexpr ElementInfo hostRoot = {
    .id = "host",
    .sentence = "The settings of the host.",
    .attributes = hostRows,
    .content = hostContent,
    .isLenient = true,
};

constexpr FileInfo hostFiles[] = {
    {"host.json", "StandAloneHost::open",
     "Read once, when the host is made. A missing file sets nothing; one with a member of the "
     "wrong type gives no host."},
};

constexpr std::string_view hostExample = R"({
    "rightLevel": "free",
    "configServer": "127.0.0.1:8080",
    "mappings": {
        "模版通配": {
            "STOCK": ["SH990001", "SZ990101"],
            "SECTOR": ["BK9001"]
        }
    }
}
)";

constexpr std::string_view hostNotes[] = {
    "Only the stand-alone host reads this file. An application answers the same questions itself: "
    "`getUserRightDescription`, `configServer` and `getMappingDicForKey`.",
    "How a wildcard is used is described with the [magic panels](magic_panels.md).",
};

// ---- Request URLs ----

constexpr auto urlEntryRows =
    expected(textRowsOf<YGHttpUrlConfigModel>(std::array<std::string_view, 0>{}), "urlValue");
constexpr ValueInfo entryValues[] = {
    {"urlValue", "pattern", R"((\S([\s\S]*\S)?)?)", "No blanks before or behind it."},
};
constexpr const Rule* entryRules[] = {
    &"url-without-key"_rule,   &"url-without-value"_rule,     &"number-for-text"_rule,
    &"duplicate-url-key"_rule, &"blanks-around-address"_rule,
};
constexpr ElementInfo urlEntry = {
    .id = "url",
    .sentence = "One address. Of two of the same key the first counts.",
    .attributes = urlEntryRows,
    .values = entryValues,
    .rules = entryRules,
};
constexpr const ElementInfo* entriesContent[] = {&urlEntry};
constexpr ElementInfo urlEntries = {
    .id = "urlConfigList",
    .name = "urlConfigList",
    .sentence = "The addresses.",
    .holds = Content::items,
    .content = entriesContent,
};

constexpr auto urlListRows =
    textRowsOf<YGHttpReqUrlModel>(std::array<std::string_view, 1>{"urlConfigList"});
constexpr ValueInfo listValues[] = {notEmpty("md5Value")};
constexpr const Rule* listRules[] = {
    &"unknown-member"_rule,  &"replaced-member"_rule,     &"member-of-wrong-type"_rule,
    &"number-for-text"_rule, &"list-without-digest"_rule, &"same-digest-other-entries"_rule,
};
constexpr const ElementInfo* listContent[] = {&urlEntries};
constexpr ElementInfo urlRoot = {
    .id = "list",
    .sentence = "The list.",
    .attributes = urlListRows,
    .values = listValues,
    .content = listContent,
    .rules = listRules,
};

constexpr FileInfo urlFiles[] = {
    {"user/request_urls_json.txt", "getStorageFilePath",
     "The last download that had another digest, byte for byte. Read before the shipped list."},
    {"storage/request_urls_json.txt", "getStorageFilePath",
     "The list as shipped; it is never written."},
    {"http://SERVER/mac/mac_free_free_request_urls_json.txt", "configServer",
     "Downloaded at every start; SERVER is the host's answer, with a port or without. Neither the "
     "status nor a broken connection counts, only whether the body is such a list."},
};

constexpr std::string_view urlExample = R"({
    "md5Value": "d3c6f85632bcc5cd4a2f85d392244155",
    "urlConfigList": [
        {"urlKey": "news_list", "urlValue": "https://api.example.com/news/v3/list"}
    ]
}
)";

constexpr std::string_view urlNotes[] = {
    "The digest is compared as a text and never computed. A download with the digest of the "
    "current list changes nothing; any other replaces the list and the file in `user/`.",
};

}  // namespace

constexpr FormatInfo hostFormat = {
    .id = "host",
    .title = "Settings of a stand-alone host",
    .sentence =
        "What a program without an application around it says of the user, the download "
        "server and the wildcards of custom pages.",
    .kind = FormatKind::json,
    .files = hostFiles,
    .root = hostRoot,
    .example = hostExample,
    .notes = hostNotes,
};

constexpr FormatInfo requestUrlsFormat = {
    .id = "request_urls",
    .title = "Request URLs",
    .sentence = "Addresses of HTTP requests by key, refreshed by a download.",
    .kind = FormatKind::json,
    .files = urlFiles,
    .root = urlRoot,
    .example = urlExample,
    .notes = urlNotes,
};

}  // namespace yg
