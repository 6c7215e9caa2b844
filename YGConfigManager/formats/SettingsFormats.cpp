// SPDX-License-Identifier: MIT
//
// The application's settings and the table of web pages.
#include "YGConfigManager/formats/Formats.h"
#include "YGConfigManager/settings/SettingsAttributes.h"

namespace yg {

namespace {

// ---- Settings ----

constexpr auto itemRows = rowsOf(attributesOf<SettingsItem>);
constexpr const Rule* itemRules[] = {&"duplicate-item"_rule, &"element-in-text"_rule};
constexpr ElementInfo item = {
    .id = "item",
    .usualName = "theme",
    .sentence = "An item. Its text is the value, blanks too.",
    .attributes = itemRows,
    .holds = Content::text,
    .rules = itemRules,
};

constexpr const ElementInfo* sectionContent[] = {&item};
constexpr ElementInfo section = {
    .id = "section",
    .usualName = "appearance",
    .sentence = "A section: items under one name. Sections of one name count as one.",
    .content = sectionContent,
};

constexpr const ElementInfo* configContent[] = {&section};
constexpr const Rule* configRules[] = {&"settings-root-name"_rule, &"lost-setting"_rule};
constexpr ElementInfo config = {
    .id = "config",
    .name = "config",
    .sentence = "The root.",
    .content = configContent,
    .rules = configRules,
};

constexpr FileInfo settingsFiles[] = {
    {"user/FILE", "getStorageFilePath",
     "The user's own settings, written with every change. The application names FILE."},
    {"storage/FILE", "getStorageFilePath",
     "The settings as shipped, read until the user has settings of their own."},
};

constexpr std::string_view settingsExample = R"(<config>
    <appearance>
        <theme description="palette of the windows: white or black">black</theme>
        <font_scale>100</font_scale>
    </appearance>
</config>
)";

constexpr std::string_view settingsNotes[] = {
    "Any section and any item may stand here; the application knows which it asks for.",
    "The first change copies the whole file to `user/`, comments included.",
};

// ---- Web pages ----

constexpr auto webPageRows = rowsOf(attributesOf<WebPage>);
constexpr ValueInfo urlValues[] = {
    {"key", "pattern", "[^']+", "Not empty, and without an apostrophe."},
    {"", "pattern", R"((\S([\s\S]*\S)?)?)", "No blanks before or behind it."},
};
constexpr const Rule* urlRules[] = {
    &"web-page-without-key"_rule,  &"duplicate-web-page"_rule, &"key-with-apostrophe"_rule,
    &"blanks-around-address"_rule, &"element-in-text"_rule,    &"escaped-twice"_rule,
};
constexpr ElementInfo url = {
    .id = "url",
    .name = "url",
    .sentence = "An address, which is the text. Of two of the same key the first counts.",
    .attributes = webPageRows,
    .values = urlValues,
    .holds = Content::text,
    .rules = urlRules,
};

constexpr const ElementInfo* urlsContent[] = {&url};
constexpr const Rule* urlsRules[] = {&"web-page-root-name"_rule};
constexpr ElementInfo urls = {
    .id = "urls",
    .name = "urls",
    .sentence = "The root.",
    .content = urlsContent,
    .rules = urlsRules,
};

constexpr FileInfo urlFiles[] = {
    {"user/FILE", "getStorageFilePath",
     "The last table that a server delivered. The application names FILE."},
    {"storage/FILE", "getStorageFilePath", "The table as shipped; it is never written."},
};

constexpr std::string_view urlExample = R"(<urls>
    <url key="help">https://help.example.com/start?lang=zh&amp;platform=desktop</url>
</urls>
)";

constexpr std::string_view urlNotes[] = {
    "In a table that a server delivers `&` stands for itself: every one is escaped before the "
    "table is read. In a file it is written `&amp;`.",
};

}  // namespace

constexpr FormatInfo settingsFormat = {
    .id = "settings",
    .title = "Settings",
    .sentence = "The application's own settings: items in sections.",
    .files = settingsFiles,
    .root = config,
    .example = settingsExample,
    .notes = settingsNotes,
};

constexpr FormatInfo webPagesFormat = {
    .id = "web_pages",
    .title = "Web pages",
    .sentence = "Addresses of web pages by key.",
    .files = urlFiles,
    .root = urls,
    .example = urlExample,
    .notes = urlNotes,
};

}  // namespace yg
