// SPDX-License-Identifier: MIT
//
// What diagnostics can say of settings, web pages and request URLs, beside the rules that all
// formats share. A finding in JSON has no node; its attribute is the member: "urlConfigList[2]".
#pragma once

#include "YGConfigManager/diagnostics/DiagnosticsSink.h"

namespace yg::rules {

// Settings.
inline constexpr Rule settingsRootName{
    "settings-root-name", Handling::dropped,
    "The root of a settings file is named \"config\"; no item of this file is read, and what is "
    "written into it is lost."};
inline constexpr Rule lostSetting{
    "lost-setting", Handling::dropped,
    "Without a root element named \"config\" an item cannot be read again once it is written."};
inline constexpr Rule duplicateItem{
    "duplicate-item", Handling::dropped,
    "Of the items of one name in the sections of one name only the first is read."};
inline constexpr Rule noElementName{
    "no-element-name", Handling::unresolved,
    "Sections and items are named like elements; this is no such name."};

inline constexpr Rule unreadableSetting{
    "unreadable-setting", Handling::dropped,
    "With this item the file could not be read again at the next start, so nothing changes."};

// Settings and web pages.
inline constexpr Rule elementInText{"element-in-text", Handling::defaulted,
                                    "Only the text counts here, of elements inside it their text."};

// Web pages.
inline constexpr Rule webPageRootName{
    "web-page-root-name", Handling::dropped,
    "The root of a web page table is named \"urls\"; no address of this file is read."};
inline constexpr Rule webPageWithoutKey{"web-page-without-key", Handling::dropped,
                                        "An address needs a key to be found by."};
inline constexpr Rule duplicateWebPage{"duplicate-web-page", Handling::dropped,
                                       "Only the first address of a key is read."};
inline constexpr Rule keyWithApostrophe{"key-with-apostrophe", Handling::unresolved,
                                        "A key with an apostrophe is never found."};
inline constexpr Rule escapedTwice{
    "escaped-twice", Handling::defaulted,
    "Every \"&\" of a delivered table is escaped, also one that is part of \"&amp;\", which then "
    "stays in the address."};
inline constexpr Rule unknownWebPage{"unknown-web-page", Handling::unresolved,
                                     "No address has this key; the answer is about:blank."};
inline constexpr Rule unreadableWebPages{
    "unreadable-web-pages", Handling::unresolved,
    "The delivered table is not well-formed XML, so nothing changes."};

// Web pages and request URLs.
inline constexpr Rule blanksAroundAddress{
    "blanks-around-address", Handling::defaulted,
    "Nothing is trimmed: the blanks before or behind the address are part of it."};

// Request URLs.
inline constexpr Rule unreadableUrlList{
    "unreadable-url-list", Handling::unresolved,
    "The file is missing or is not a JSON object, so there is no list."};
inline constexpr Rule failedDownload{
    "failed-download", Handling::unresolved,
    "The download did not end with a whole answer or is not a JSON object, so the list stays."};
inline constexpr Rule unknownMember{"unknown-member", Handling::dropped,
                                    "No member of this name is read here."};
inline constexpr Rule memberOfWrongType{
    "member-of-wrong-type", Handling::dropped,
    "The member is of a type that is not read here, so it counts as missing."};
inline constexpr Rule numberForText{"number-for-text", Handling::defaulted,
                                    "A text is expected; the number is read as its decimal text."};
inline constexpr Rule listWithoutDigest{
    "list-without-digest", Handling::unresolved,
    "Without a digest a download changes nothing, and a stored list is always replaced."};
inline constexpr Rule sameDigestOtherEntries{
    "same-digest-other-entries", Handling::dropped,
    "The download has other entries under the digest of the current list, which stays."};
inline constexpr Rule urlWithoutKey{"url-without-key", Handling::dropped,
                                    "An entry needs a key to be found by."};
inline constexpr Rule urlWithoutValue{"url-without-value", Handling::unresolved,
                                      "The entry has no address; its key gives none."};
inline constexpr Rule duplicateUrlKey{"duplicate-url-key", Handling::dropped,
                                      "Only the first entry of a key is read."};
inline constexpr Rule unknownUrlKey{"unknown-url-key", Handling::unresolved,
                                    "No entry has this key."};

}  // namespace yg::rules
