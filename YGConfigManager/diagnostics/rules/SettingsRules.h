// SPDX-License-Identifier: MIT
//
// Rules of settings, web page tables and request URL lists. Internal: a part of RuleTable.h.
#pragma once

#include "YGConfigManager/diagnostics/Rule.h"

namespace yg {

inline constexpr Rule settingsRules[] = {
    // Settings.
    {"settings-root-name", Handling::dropped, Severity::error,
     "The root of a settings file is named \"config\"; no item of this file is read, and what is "
     "written into it is lost.",
     "No item can be read, and what the application stores is lost at the next start. Name the "
     "root \"config\".",
     "storage/app_config.xml",
     R"(<settings>
    <chart><grid>true</grid></chart>
</settings>)",
     R"(<config>
    <chart><grid>true</grid></chart>
</config>)"},
    {"lost-setting", Handling::unresolved, Severity::error,
     "Without a root element named \"config\" an item cannot be read again once it is written.",
     "The file is missing, cannot be read, or its root has another name. Put a file <config/> in "
     "its place."},
    {"duplicate-item", Handling::dropped, Severity::error,
     "Of the items of one name in the sections of one name only the first is read.",
     "Delete one of them. What the application stores goes to the first.", "storage/app_config.xml",
     R"(<config>
    <chart><grid>true</grid><grid>false</grid></chart>
</config>)",
     R"(<config>
    <chart><grid>true</grid></chart>
</config>)"},
    {"no-element-name", Handling::unresolved, Severity::warning,
     "Sections and items are named like elements; this is not an element name.",
     R"(A name begins with a letter or "_" and has letters, digits, "-", "_" and ".".)"},
    {"unreadable-setting", Handling::unresolved, Severity::error,
     "With this item the file could not be read again at the next start, so nothing changes.",
     "The text is too long, or the file would be too large."},
    // Settings and web pages.
    {"element-in-text", Handling::defaulted, Severity::warning,
     "Only the text counts here, of elements inside it their text.",
     R"(Write the text alone. A "<" that belongs to the text is written "&lt;".)",
     "storage/app_config.xml",
     R"(<config>
    <chart><title>daily <b>chart</b></title></chart>
</config>)",
     R"(<config>
    <chart><title>daily chart</title></chart>
</config>)"},
    // Web pages.
    {"web-page-root-name", Handling::dropped, Severity::error,
     "The root of a web page table is named \"urls\"; no address of this file is read.",
     "Name the root \"urls\".", "storage/web_page_urls.xml",
     R"(<pages>
    <url key="help">https://example.com/</url>
</pages>)",
     R"(<urls>
    <url key="help">https://example.com/</url>
</urls>)"},
    {"web-page-without-key", Handling::dropped, Severity::error,
     "An address needs a key to be found by.", "Add the key that the application asks for.",
     "storage/web_page_urls.xml",
     R"(<urls>
    <url>https://example.com/</url>
</urls>)",
     R"(<urls>
    <url key="help">https://example.com/</url>
</urls>)"},
    {"duplicate-web-page", Handling::dropped, Severity::error,
     "Only the first address of a key is read.", "Delete one of them, or give it another key.",
     "storage/web_page_urls.xml",
     R"(<urls>
    <url key="help">https://a.example/</url><url key="help">https://b.example/</url>
</urls>)",
     R"(<urls>
    <url key="help">https://a.example/</url>
</urls>)"},
    {"key-with-apostrophe", Handling::dropped, Severity::error,
     "A key with an apostrophe is never found.", "Use another key.", "storage/web_page_urls.xml",
     R"(<urls>
    <url key="what's-new">https://example.com/</url>
</urls>)",
     R"(<urls>
    <url key="whats-new">https://example.com/</url>
</urls>)"},
    {"escaped-twice", Handling::kept, Severity::warning,
     "\"&amp;\" stays in the address as it is, since its \"&\" is escaped once more.",
     "Every \"&\" of a table that a server delivers is escaped: write a plain \"&\" there. In a "
     "file on the disk write \"&amp;\" once.",
     "storage/web_page_urls.xml",
     R"(<urls>
    <url key="help">https://example.com/?a=1&amp;amp;b=2</url>
</urls>)",
     R"(<urls>
    <url key="help">https://example.com/?a=1&amp;b=2</url>
</urls>)"},
    {"unknown-web-page", Handling::unresolved, Severity::warning,
     "No address has this key; the answer is about:blank.", "Check the key; letter case counts.",
     "", R"(getWebPageUrlByKey("Help"))", R"(getWebPageUrlByKey("help"))"},
    {"unreadable-web-pages", Handling::unresolved, Severity::error,
     "The delivered table is not well-formed XML, so nothing changes.",
     "The table that was known before stays."},
    // Web pages and request URLs.
    {"blanks-around-address", Handling::kept, Severity::warning,
     "Nothing is trimmed: the blanks before or behind the address are part of it.",
     "Delete them: a browser may not find the page.", "storage/web_page_urls.xml",
     R"(<urls>
    <url key="help"> https://example.com/ </url>
</urls>)",
     R"(<urls>
    <url key="help">https://example.com/</url>
</urls>)"},
    // Request URLs.
    {"unreadable-url-list", Handling::unresolved, Severity::error,
     "The file is missing or is not a JSON object, so none of its URLs is known.",
     "The file must be one JSON object. The value says what is wrong with it.",
     "storage/request_urls_json.txt", "[]", R"({"md5Value": "1", "urlConfigList": []})"},
    {"failed-download", Handling::unresolved, Severity::warning,
     "The download did not end with a whole answer or is not a JSON object, so the list stays.",
     "The list that was known before stays. The value is the cause."},
    {"unknown-member", Handling::dropped, Severity::error, "No member of this name is read here.",
     "Check the spelling; letter case counts.", "storage/request_urls_json.txt",
     R"({"md5": "1", "md5Value": "1", "urlConfigList": []})",
     R"({"md5Value": "1", "urlConfigList": []})"},
    {"member-of-wrong-type", Handling::dropped, Severity::error,
     "The member is of a type that is not read here, so it counts as missing.",
     "Texts are in quotes, a list is in brackets.", "storage/request_urls_json.txt",
     R"({"md5Value": "1", "urlConfigList": {}})", R"({"md5Value": "1", "urlConfigList": []})"},
    {"replaced-member", Handling::dropped, Severity::error,
     "A later member of the same name counts.",
     "Of the members of one name in an object only the last is read. Delete the others.",
     "storage/request_urls_json.txt", R"({"md5Value": "2", "md5Value": "1", "urlConfigList": []})",
     R"({"md5Value": "1", "urlConfigList": []})"},
    {"number-for-text", Handling::defaulted, Severity::warning,
     "A text is expected; the number is read as its decimal text.", "Put the number in quotes.",
     "storage/request_urls_json.txt", R"({"md5Value": 1, "urlConfigList": []})",
     R"({"md5Value": "1", "urlConfigList": []})"},
    {"list-without-digest", Handling::unresolved, Severity::warning,
     "Without a digest a download changes nothing, and a stored list is always replaced.",
     "The digest distinguishes the versions of the list. The server that makes the list sets "
     "it.",
     "storage/request_urls_json.txt", R"({"urlConfigList": []})",
     R"({"md5Value": "1", "urlConfigList": []})"},
    {"same-digest-other-entries", Handling::unresolved, Severity::error,
     "The download has other entries under the digest of the current list, which stays.",
     "The server has changed the list but not its digest."},
    {"url-without-key", Handling::unresolved, Severity::error,
     "An entry needs a key to be found by.", "Add the member \"urlKey\".",
     "storage/request_urls_json.txt",
     R"({"md5Value": "1", "urlConfigList": [{"urlValue": "http://example.com/"}]})",
     R"({"md5Value": "1", "urlConfigList": [{"urlKey": "quote", "urlValue": "http://example.com/"}]})"},
    {"url-without-value", Handling::unresolved, Severity::warning,
     "The entry has no address; its key gives none.", "Add the member \"urlValue\".",
     "storage/request_urls_json.txt",
     R"({"md5Value": "1", "urlConfigList": [{"urlKey": "quote"}]})",
     R"({"md5Value": "1", "urlConfigList": [{"urlKey": "quote", "urlValue": "http://example.com/"}]})"},
    {"duplicate-url-key", Handling::unresolved, Severity::error,
     "Only the first entry of a key is found.",
     "Delete one of the entries, or give it another key.", "storage/request_urls_json.txt",
     R"({"md5Value": "1", "urlConfigList": [{"urlKey": "q", "urlValue": "http://a.example/"}, {"urlKey": "q", "urlValue": "http://b.example/"}]})",
     R"({"md5Value": "1", "urlConfigList": [{"urlKey": "q", "urlValue": "http://a.example/"}]})"},
    {"unknown-url-key", Handling::unresolved, Severity::warning, "No entry has this key.",
     "Check the key; letter case counts.", "", R"(httpReqUrlStringWithUrlKey("Quote"))",
     R"(httpReqUrlStringWithUrlKey("quote"))"},
    // Found by inspections.
    {"missing-in-user-copy", Handling::kept, Severity::info,
     "The shipped file has this, the user's copy has not; the copy is read alone.",
     "A user's copy counts instead of the shipped file as a whole. What was added to the shipped "
     "file since the copy was made is not found. Add it to the copy, or delete the copy.",
     "user/app_config.xml",
     R"(<config>
    <chart><grid>true</grid></chart>
</config>)",
     R"(<config>
    <chart><grid>true</grid><zoom>1</zoom></chart>
</config>)",
     "storage/app_config.xml",
     R"(<config>
    <chart><grid>true</grid><zoom>2</zoom></chart>
</config>)"},
    {"address-without-scheme", Handling::kept, Severity::warning,
     "The address does not say how to reach it, as \"https://\" does; it is used as it stands.",
     "Write the address whole, from \"https://\" on.", "storage/web_page_urls.xml",
     R"(<urls>
    <url key="help">www.example.com/help</url>
</urls>)",
     R"(<urls>
    <url key="help">https://www.example.com/help</url>
</urls>)"},
    {"full-width-in-address", Handling::kept, Severity::warning,
     "The address has full-width characters up to the end of its host; it is used as it stands.",
     "An input method gave them instead of plain ones. Write ASCII characters.",
     "storage/web_page_urls.xml",
     "<urls>\n    <url key=\"help\">https\uFF1A//www.example.com/</url>\n</urls>",
     "<urls>\n    <url key=\"help\">https://www.example.com/</url>\n</urls>"},
    {"html-in-place-of-file", Handling::unresolved, Severity::error,
     "This is a web page and not the file that it stands for, so nothing of it is read.",
     "A network that wants a sign-in, or a server with an error, answers by a web page, which was "
     "saved in place of the file. Fetch the file again.",
     "storage/web_page_urls.xml", R"(<html><head><title>Sign in</title></head><body/></html>)",
     R"(<urls>
    <url key="help">https://example.com/</url>
</urls>)"},
    // Found by trying a delivery.
    {"refused-delivery", Handling::unresolved, Severity::error, "The delivery changes nothing.",
     "A list is taken only if it is a JSON object with a digest. The server that makes the list "
     "sets "
     "\"md5Value\"."},
    {"lost-by-delivery", Handling::unresolved, Severity::error,
     "The present file has this, the delivery has not; it takes the place of the file as a whole.",
     "After the delivery it is not found any more. Add it, unless it is to go."},
    {"changed-by-delivery", Handling::replaced, Severity::info,
     "The delivery gives this another value than the present file.",
     "The value of the delivery counts from then on."},
    {"added-by-delivery", Handling::replaced, Severity::info,
     "The present file does not have this.", "It can be found as soon as the delivery is taken."},
};

}  // namespace yg
