// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/inspection/Checks.h"
#include "YGConfigManager/inspection/Html.h"
#include "YGConfigManager/inspection/NarrowForm.h"
#include "YGConfigManager/inspection/StoredNames.h"
#include "YGConfigManager/text/Characters.h"
#include "YGConfigManager/text/Paths.h"
#include "YGConfigManager/text/Utf8.h"

namespace yg {

namespace {

/// How much of one shipped file is reported as missing in the user's copy.
constexpr std::size_t mostMissing = 100;

/// Calls `check(user's, shipped)` for each of the files that is a user's copy of a shipped one.
template <class Check>
void forEachUserCopy(const std::vector<std::string>& files, Check&& check) {
    for (const std::string& file : files) {
        if (!file.starts_with(userFolder))
            continue;
        const std::string shipped = text::joinPath(shippedFolder, file.substr(userFolder.size()));
        if (std::ranges::find(files, shipped) != files.end())
            check(file, shipped);
    }
}

/// Reports at the root of the user's copy what only the shipped file has.
void reportMissing(const Loaded& loaded, const std::string& copy, const StoredNames& copied,
                   const StoredNames& shipped, Gathering& findings) {
    const StoredNames missing = missingFrom(copied, shipped);
    Place place = loaded.files.file(copy).document().document.root().tagPlace().value_or(Place());
    place.file = loaded.files.pathOf(copy);
    for (std::size_t at = 0; at < std::min(missing.size(), mostMissing); ++at) {
        const StoredName& name = missing[at];
        const std::size_t further = at + 1 == mostMissing ? missing.size() - mostMissing : 0;
        findings.onPlace(
            "missing-in-user-copy"_rule, place,
            {.value = name.group.empty() ? name.name : name.group + "/" + name.name,
             .message = described(name) +
                        (further > 0 ? " and " + std::to_string(further) + " more" : "") +
                        ": the shipped file has this, the user's copy has not; the copy is read "
                        "alone.",
             .related = {{name.place, "the shipped file has it here"}}});
    }
}

void checkUserCopies(const Loaded& loaded, Gathering& findings) {
    const auto path = [&](const std::string& file) { return loaded.files.pathOf(file); };
    const auto document = [&](const std::string& file) {
        return loaded.files.file(file).document().document;
    };
    forEachUserCopy(loaded.settingsFiles, [&](const auto& copy, const auto& shipped) {
        if (document(copy).root().name() == "config" && document(shipped).root().name() == "config")
            reportMissing(loaded, copy, settingsNames(document(copy), path(copy)),
                          settingsNames(document(shipped), path(shipped)), findings);
    });
    forEachUserCopy(loaded.webPageFiles, [&](const auto& copy, const auto& shipped) {
        if (document(copy).root().name() == "urls")
            reportMissing(loaded, copy, webPageNames(findings.names(), path(copy)),
                          webPageNames(findings.names(), path(shipped)), findings);
    });
    forEachUserCopy(loaded.requestUrlFiles, [&](const auto& copy, const auto& shipped) {
        const auto copied = requestUrlNames(loaded.files.file(copy).bytes(), path(copy));
        const auto names = requestUrlNames(loaded.files.file(shipped).bytes(), path(shipped));
        if (copied && names)
            reportMissing(loaded, copy, *copied, *names, findings);
    });
}

/// "https:", but neither "localhost:8080" nor "www.example.com:80". Blanks around it are found by
/// themselves.
bool hasScheme(std::string_view address) {
    address = text::withoutBlanksAround(address);
    const std::size_t end = address.find(':');
    return end != std::string_view::npos && end > 0 && end + 1 < address.size() &&
           std::ranges::all_of(address.substr(0, end),
                               [](char c) {
                                   return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                                          text::isDigit(c) || c == '+' || c == '-';
                               }) &&
           !text::isDigit(address[end + 1]);
}

/// The address with plain characters up to the end of its host.
std::string withPlainHost(std::string_view address) {
    std::string plain;
    bool isBehindScheme = false;
    while (!address.empty()) {
        const text::Character next = text::firstCharacter(address);
        const char narrow = narrowFormOf(next.value);
        const char c = narrow != '\0' ? narrow : address.front();
        if (isBehindScheme && (c == '/' || c == '?' || c == '#'))
            break;
        plain.append(narrow != '\0' ? std::string_view(&narrow, 1) : address.substr(0, next.size));
        isBehindScheme = isBehindScheme || plain.ends_with("://");
        address.remove_prefix(next.size);
    }
    // Without a scheme nothing says where the host ends.
    return isBehindScheme ? plain.append(address) : plain;
}

}  // namespace

void checkAddresses(const StoredNames& names, Gathering& findings) {
    for (const StoredName& name : names) {
        if (!name.content || name.content->empty())
            continue;
        const std::string plain = withPlainHost(*name.content);
        const bool isFullWidth = plain != *name.content && plain.find("://") != std::string::npos;
        if (isFullWidth) {
            // What XML and JSON escape cannot stand there as it is.
            const bool canStand = plain.find_first_of("&<\"\\") == std::string::npos;
            findings.onPlace("full-width-in-address"_rule, name.contentPlace,
                             {.value = *name.content,
                              .suggestion = canStand ? std::optional(plain) : std::nullopt});
        } else if (!hasScheme(*name.content)) {
            findings.onPlace("address-without-scheme"_rule, name.contentPlace,
                             {.value = *name.content});
        }
    }
}

void checkSettings(const Loaded& loaded, Gathering& findings) {
    reportHtml(findings, [&](std::string_view path) -> std::string_view {
        return loaded.files.file(loaded.files.nameOf(path)).text();
    });
    checkUserCopies(loaded, findings);
    for (const std::string& file : loaded.webPageFiles)
        checkAddresses(webPageNames(findings.names(), loaded.files.pathOf(file)), findings);
    for (const std::string& file : loaded.requestUrlFiles)
        checkAddresses(requestUrlNames(loaded.files.file(file).bytes(), loaded.files.pathOf(file))
                           .value_or(StoredNames()),
                       findings);
}

}  // namespace yg
