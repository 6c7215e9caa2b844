// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "YGConfigManager/files/ReadFile.h"
#include "YGConfigManager/inspection/Checks.h"
#include "YGConfigManager/inspection/FileFaults.h"
#include "YGConfigManager/text/Utf8.h"

namespace yg {

namespace {

/// The files that a terminal asks for whatever its user does, and what there is without them.
constexpr std::pair<std::string_view, std::string_view> askedFor[] = {
    {"config/custompage_template.xml", "there are no stored pages"},
    {"config/tab_styles.xml", "there are no pages of tabs"},
    {"config/magic_panels.xml", "its magic panels are missing"},
    {"config/events.xml", "there are no commands and events"},
    {"soft_optimize/custompage_template.xml", "no page can be built from a template"},
    {"soft_optimize/magic_panels.xml", "its magic panels are missing"},
    {"base_optimize/reuse_panels.xml", "there are no reuse panels"},
    {"storage/palette_white.xml", "the light theme has no colors, fonts and images"},
    {"storage/palette_black.xml", "the dark theme has no colors, fonts and images"},
    {"storage/skeleton_v1.xml", "users of the free right level have no servers"},
    {"storage/skeleton_gray_v1.xml", "grey-release users of the free right level have no servers"},
    {"storage/skeleton_l2_v1.xml", "users of other right levels have no servers"},
    {"storage/skeleton_l2_gray_v1.xml", "grey-release users of other right levels have no servers"},
};

constexpr std::string_view furtherError = "a further error, which may follow from the first";

bool isUnreadable(const Finding& finding) {
    return finding.rule.name == "unreadable-file" || finding.rule.name == "unreadable-url-list";
}

/// Of a file that is not there; none when that is in order.
std::optional<Found> missing(const Finding& finding, const Loaded& loaded) {
    const std::string name = loaded.files.nameOf(finding.place.file);
    const auto* const row =
        std::ranges::find(askedFor, name, &std::pair<std::string_view, std::string_view>::first);
    const std::size_t slash = name.find('/');
    const bool hasUserCopy =
        name.starts_with("storage/") && loaded.files.file("user" + name.substr(slash)).isRead();
    if (row == std::end(askedFor) || hasUserCopy)
        return std::nullopt;
    Found found{{"missing-file"_rule, finding.place, finding.place, {}, {}, {}, {}}};
    found.message = "Add the file: without it " + std::string(row->second) + ".";
    return found;
}

/// Of a file that is there, but not as it should be.
Found unreadable(Found reported, const SourceFile& file) {
    const Finding& finding = reported.finding;
    if (!file.isRead()) {
        reported.message =
            "The file cannot be read, so nothing in it counts: " + finding.value + ".";
        return reported;
    }
    const bool isXml = finding.rule.name == "unreadable-file";
    if (auto fault = isXml ? encodingFaultOfXml(file.bytes()) : encodingFaultOfJson(file.bytes()))
        return foundOf(std::move(*fault), finding.place.file);
    if (!isXml) {
        if (auto fault = jsonFault(file.bytes(), finding.rule))
            return foundOf(std::move(*fault), finding.place.file);
        reported.message =
            "Write one JSON object; nothing in the file counts: " + finding.value + ".";
        return reported;
    }
    // An odd character behind the first error is not its cause.
    auto fault = markupFault(file.text());
    if (fault && fault->begin.line <= finding.place.begin.line)
        return foundOf(std::move(*fault), finding.place.file);
    reported.message = plainXmlError(finding.value) + " Nothing in the file is read until then.";
    return reported;
}

/// A further error of the file: what is on a line with one that is known says nothing more, nor
/// does what follows from an odd character or the encoding.
void relate(Finding& first, const Place& further) {
    const std::uint32_t line =
        first.related.empty() ? first.place.begin.line : first.related.back().place.begin.line;
    if (isUnreadable(first) && further.begin.line > line)
        first.related.push_back({further, furtherError});
}

/// One finding for each file that cannot be read, about its first error.
void sayWhyUnreadable(const Loaded& loaded, std::vector<Found>& all) {
    std::vector<Found> kept;
    std::map<std::string, std::size_t, std::less<>> places;
    for (Found& found : all) {
        if (!isUnreadable(found.finding)) {
            kept.push_back(std::move(found));
            continue;
        }
        const std::string name = loaded.files.nameOf(found.finding.place.file);
        const auto [known, isFirst] = places.try_emplace(name, kept.size());
        if (!isFirst) {
            relate(kept[known->second].finding, found.finding.place);
            continue;
        }
        const SourceFile& file = loaded.files.file(name);
        if (file.isRead() || files::fileExists(found.finding.place.file)) {
            kept.push_back(unreadable(std::move(found), file));
        } else if (auto absent = missing(found.finding, loaded)) {
            kept.push_back(std::move(*absent));
        } else {
            places.erase(known);
        }
    }
    all.swap(kept);
}

/// XML that can be read, but as other characters than its author sees.
void checkEncodings(const Loaded& loaded, Gathering& findings) {
    std::set<std::string> names;
    for (const auto& [name, without] : askedFor)
        names.emplace(name);
    for (const char* const folder : {"storage", "user"}) {
        for (std::string& name : loaded.files.namesIn(folder)) {
            if (name.ends_with(".xml"))
                names.insert(std::move(name));
        }
    }
    for (const std::string& name : names) {
        const SourceFile& file = loaded.files.file(name);
        if (!file.isRead())
            continue;
        auto fault = encodingFaultOfXml(file.bytes());
        // A file that cannot be read has its finding.
        if (fault && file.document())
            findings.add(foundOf(std::move(*fault), loaded.files.pathOf(name)));
    }
}

void checkMarks(const Loaded& loaded, Gathering& findings) {
    std::set<std::string> names{"host.json", "contrast.json"};
    names.insert(loaded.requestUrlFiles.begin(), loaded.requestUrlFiles.end());
    for (const std::string& name : names) {
        if (loaded.files.file(name).bytes().starts_with(text::byteOrderMark))
            findings.onFile("byte-order-mark"_rule, loaded.files.pathOf(name));
    }
}

/// A tag that begins with a full-width sign is text like any other.
void sayWhyStray(std::vector<Found>& all) {
    for (Found& found : all) {
        if (found.finding.rule.name == "stray-text" &&
            found.finding.value.find("＜") != std::string::npos)
            found.message =
                "Write \"<\" for \"＜\", which begins no tag; this is text, and text "
                "has no meaning here.";
    }
}

}  // namespace

void checkFiles(const Loaded& loaded, Gathering& findings) {
    sayWhyUnreadable(loaded, findings.found());
    sayWhyStray(findings.found());
    checkEncodings(loaded, findings);
    checkMarks(loaded, findings);
}

}  // namespace yg
