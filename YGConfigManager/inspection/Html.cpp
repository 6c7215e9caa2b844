// SPDX-License-Identifier: MIT
#include "YGConfigManager/inspection/Html.h"

#include <algorithm>
#include <map>
#include <string>

#include "YGConfigManager/text/Characters.h"
#include "YGConfigManager/text/LineIndex.h"
#include "YGConfigManager/text/Utf8.h"

namespace yg {

namespace {

/// Whether the text begins with a word in small letters, whatever letter case it has itself, and
/// something that no name has follows.
bool beginsWithWord(std::string_view text, std::string_view word) {
    const auto isSame = [](char left, char right) {
        return (left >= 'A' && left <= 'Z' ? left - 'A' + 'a' : left) == right;
    };
    return text.size() > word.size() &&
           std::equal(word.begin(), word.end(), text.begin(),
                      [&](char wanted, char there) { return isSame(there, wanted); }) &&
           (text::isWhiteSpace(text[word.size()]) || text[word.size()] == '>' ||
            text[word.size()] == '/');
}

/// The rules that say that nothing of a file is read.
bool saysUnread(const Rule& rule) {
    constexpr std::string_view names[] = {
        "unreadable-file",      "unreadable-url-list", "unreadable-delivery", "failed-download",
        "unreadable-web-pages", "server-root-name",    "web-page-root-name",  "settings-root-name",
        "palette-root-name",    "event-root-name",
    };
    return std::ranges::find(names, rule.name) != std::end(names);
}

}  // namespace

std::optional<std::size_t> beginOfHtml(std::string_view text) {
    std::size_t at = text.starts_with(text::byteOrderMark) ? text::byteOrderMark.size() : 0;
    while ((at = text.find_first_not_of(text::whiteSpace, at)) != std::string_view::npos) {
        const std::string_view rest = text.substr(at);
        const std::string_view end = rest.starts_with("<!--") ? "-->"
                                     : rest.starts_with("<?") ? "?>"
                                                              : "";
        if (!end.empty()) {
            const std::size_t found = rest.find(end);
            if (found == std::string_view::npos)
                return std::nullopt;
            at += found + end.size();
            continue;
        }
        if (beginsWithWord(rest, "<html"))
            return at;
        constexpr std::string_view doctype = "<!doctype";
        if (!beginsWithWord(rest, doctype))
            return std::nullopt;
        const std::size_t name = rest.find_first_not_of(text::whiteSpace, doctype.size());
        return name != std::string_view::npos && beginsWithWord(rest.substr(name), "html")
                   ? std::optional(at)
                   : std::nullopt;
    }
    return std::nullopt;
}

void reportHtml(Gathering& findings,
                const std::function<std::string_view(std::string_view path)>& textOf) {
    std::map<std::string, std::optional<Place>, std::less<>> pages;
    for (const Found& found : findings.found()) {
        const std::string& path = found.finding.place.file;
        if (!saysUnread(found.finding.rule) || pages.contains(path))
            continue;
        const std::string_view text = textOf(path);
        std::optional<Place>& page = pages[path];
        if (const auto begin = beginOfHtml(text)) {
            const std::size_t end = std::min(text.find('>', *begin), text.size() - 1) + 1;
            page = {path, text::pointAt(text, *begin), text::pointAt(text, end)};
        }
    }
    std::erase_if(pages, [](const auto& page) { return !page.second; });
    findings.removeIf([&](const Found& found) {
        return saysUnread(found.finding.rule) && pages.contains(found.finding.place.file);
    });
    for (const auto& [path, page] : pages)
        findings.onPlace("html-in-place-of-file"_rule, *page);
}

}  // namespace yg
