// SPDX-License-Identifier: MIT
//
// Values of whatever attribute, by the kind that its table gives. Runs last: what another check has
// found already is only said more plainly.
#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "YGConfigManager/inspection/Checks.h"
#include "YGConfigManager/inspection/OddCharacters.h"
#include "YGConfigManager/inspection/Suggestions.h"
#include "YGConfigManager/inspection/Values.h"
#include "YGConfigManager/text/LineIndex.h"
#include "YGConfigManager/text/Split.h"
#include "YGConfigManager/text/Utf8.h"

namespace yg {

namespace {

/// Calls `visit(offset, name)` for each name in a value.
template <class Visit>
void forEachName(const NameUse& use, Visit&& visit) {
    if (use.row->kind != AttributeKind::nameList)
        return visit(0, std::string_view(use.value));
    for (std::size_t at = 0; at <= use.value.size();) {
        const std::size_t end = std::min(use.value.find(';', at), use.value.size());
        visit(at, std::string_view(use.value).substr(at, end - at));
        at = end + 1;
    }
}

/// What was found about attributes, by their places.
class FoundByPlace {
public:
    explicit FoundByPlace(const std::vector<Found>& found) {
        for (std::size_t at = 0; at < found.size(); ++at) {
            const Finding& finding = found[at].finding;
            if (!finding.attribute.empty())
                byPlace_.emplace(
                    std::pair(std::string_view(finding.place.file), finding.place.begin), at);
        }
    }

    /// Calls `visit(index)` for what begins within the place.
    template <class Visit>
    void within(const Place& place, Visit&& visit) const {
        const std::string_view file = place.file;
        const auto end = byPlace_.lower_bound(std::pair(file, place.end));
        for (auto at = byPlace_.lower_bound(std::pair(file, place.begin)); at != end; ++at)
            visit(at->second);
    }

private:
    std::multimap<std::pair<std::string_view, TextPoint>, std::size_t> byPlace_;
};

/// The names that the files define, by kind.
class KnownNames {
public:
    explicit KnownNames(const std::vector<NameUse>& names) {
        for (const NameUse& use : names) {
            if (use.row->defines)
                names_.emplace(use.row->names, use.value);
        }
    }

    bool contains(Naming kind, std::string_view name) const {
        return names_.contains({kind, name});
    }

private:
    std::set<std::pair<Naming, std::string_view>> names_;
};

/// A name that may be meant as another.
struct OddName {
    const NameUse* use;
    std::size_t offset;
    std::string_view name;
    std::string meant;
};

std::vector<OddName> oddNames(const std::vector<NameUse>& uses) {
    std::vector<OddName> odd;
    for (const NameUse& use : uses) {
        const bool isList = use.row->kind == AttributeKind::nameList;
        const AttributeInfo row{.name = use.row->name,
                                .kind = isList ? AttributeKind::nameList : AttributeKind::text,
                                .names = use.row->names};
        forEachName(use, [&](std::size_t offset, std::string_view name) {
            if (auto meant = repairedValue(row, name))
                odd.push_back({&use, offset, name, std::move(*meant)});
        });
    }
    return odd;
}

/// Names that look like others.
class NamesCheck {
public:
    explicit NamesCheck(Gathering& findings)
        : findings_(findings), known_(findings.names()), before_(findings.found()) {
        for (const NameUse& use : findings.names()) {
            if (!use.row->defines)
                forEachName(use, [&](std::size_t offset, std::string_view name) {
                    used_.try_emplace({use.row->names, name}, &use, offset);
                });
        }
    }

    void check(const std::vector<OddName>& odd) {
        for (const OddName& each : odd)
            checkName(*each.use, each.offset, each.name, each.meant);
        // The places stand for strings of the findings that are taken out.
        std::vector<Found> kept;
        for (std::size_t at = 0; at < findings_.found().size(); ++at) {
            if (!dropped_.contains(at))
                kept.push_back(std::move(findings_.found()[at]));
        }
        findings_.found().swap(kept);
        for (Found& found : made_)
            findings_.add(std::move(found));
    }

private:
    void checkName(const NameUse& use, std::size_t offset, std::string_view name,
                   const std::string& meant) {
        const Naming kind = use.row->names;
        if (use.row->defines) {
            // Somebody asks for it by another name.
            const auto wanted = used_.find({kind, meant});
            if (wanted == used_.end() || used_.contains({kind, name}) ||
                known_.contains(kind, meant))
                return;
            const auto& [user, at] = wanted->second;
            const auto related = user->element.valuePlace(user->row->name, at, meant.size());
            add(use, offset, name, "name-with-blanks"_rule,
                "Take the blanks and what cannot be seen off " + shown(name) +
                    ", or it is another name than the one in use.",
                meant,
                related ? std::vector{RelatedPlace{*related, "used here"}}
                        : std::vector<RelatedPlace>());
        } else if (known_.contains(kind, name)) {
            return;
        } else if (use.row->kind == AttributeKind::nameList &&
                   (use.value.size() > name.size() || text::split(meant, ';').size() > 1)) {
            dropSame(use, offset, name);
            add(use, offset, name, "odd-separator"_rule,
                "Write " + std::string(1, '"') + meant +
                    "\": names stand between semicolons, "
                    "without blanks, and this is read as one name.",
                meant, {});
        } else if (known_.contains(kind, meant) && !isReported(use)) {
            add(use, offset, name, "name-with-blanks"_rule,
                "Write '" + meant + "' for " + shown(name) + ", which names nothing.", meant, {});
        }
    }

    /// With what cannot be seen in words.
    static std::string shown(std::string_view name) {
        const std::string hidden = hiddenCharacters(name);
        std::string inWords = "'";
        inWords.append(name).append("'");
        return hidden.empty() ? inWords : inWords.append(" with ").append(hidden);
    }

    bool isReported(const NameUse& use) const {
        bool isFound = false;
        before_.within(use.element.attributePlace(use.row->name).value_or(Place()),
                       [&](std::size_t) { isFound = true; });
        return isFound;
    }

    /// That the name does not exist follows from the separator.
    void dropSame(const NameUse& use, std::size_t offset, std::string_view name) {
        const Place place = use.value.size() == name.size()
                                ? use.element.attributePlace(use.row->name).value_or(Place())
                                : placeOf(use, offset, name);
        before_.within(place, [&](std::size_t at) {
            const Finding& finding = findings_.found()[at].finding;
            if (finding.rule.handling == Handling::unresolved && finding.value == name)
                dropped_.insert(at);
        });
    }

    static Place placeOf(const NameUse& use, std::size_t offset, std::string_view name) {
        return use.element.valuePlace(use.row->name, offset, name.size()).value_or(Place());
    }

    void add(const NameUse& use, std::size_t offset, std::string_view name, const Rule& rule,
             std::string message, std::string suggestion, std::vector<RelatedPlace> related) {
        const Place place = placeOf(use, offset, name);
        made_.push_back({{rule, place, place, std::string(use.element.name()),
                          std::string(use.row->name), std::string(name), std::move(related)},
                         std::move(suggestion),
                         std::move(message)});
    }

    Gathering& findings_;
    KnownNames known_;
    FoundByPlace before_;
    std::map<std::pair<Naming, std::string_view>, std::pair<const NameUse*, std::size_t>> used_;
    std::set<std::size_t> dropped_;
    std::vector<Found> made_;
};

/// The characters of an odd text that take no room, left out.
std::string withoutInvisible(std::string_view text) {
    std::string visible;
    while (!text.empty()) {
        const text::Character character = text::firstCharacter(text);
        const OddCharacter odd = oddCharacter(character.value);
        if (odd.name.empty() || odd.kind != OddKind::invisible)
            visible += text.substr(0, character.size);
        text.remove_prefix(character.size);
    }
    return visible;
}

/// Whether the character is one of U+5000 to U+9FFF, by its first byte; these are never odd.
bool isChinese(char first) {
    return first >= '\xE5' && first <= '\xE9';
}

bool hasInvisible(std::string_view text) {
    for (std::size_t at = 0; at < text.size(); ++at) {
        // Characters of one byte are never odd.
        if (static_cast<unsigned char>(text[at]) < 0xC2 || isChinese(text[at]))
            continue;
        const OddCharacter odd = oddCharacter(text::firstCharacter(text.substr(at)).value);
        if (!odd.name.empty() && odd.kind == OddKind::invisible)
            return true;
    }
    return false;
}

std::string hiddenMessage(std::string_view text) {
    return "Delete what cannot be seen in this text: " + hiddenCharacters(text) + ".";
}

class HiddenCheck {
public:
    explicit HiddenCheck(Gathering& findings) : findings_(findings), before_(findings.found()) {}

    void checkXml(const SourceFile& file) {
        if (!file.isRead() || !hasInvisible(file.text()))
            return;
        std::vector<xml::Element> open;
        if (const xml::Element root = file.document().document.root())
            open.push_back(root);
        while (!open.empty()) {
            const xml::Element element = std::move(open.back());
            open.pop_back();
            checkElement(element);
            for (const xml::Node& child : element.children()) {
                if (child.isElement())
                    open.emplace_back(child);
                else if (child.kind() == xml::NodeKind::text)
                    checkText(child);
            }
        }
    }

    void add() {
        for (Found& found : made_)
            findings_.add(std::move(found));
    }

    /// Where the places of elements read from bytes are.
    std::string path;

private:
    Place inFile(const std::optional<Place>& place) const {
        Place found = place.value_or(Place());
        found.file = path;
        return found;
    }

    void checkElement(const xml::Element& element) {
        for (const xml::Attribute attribute : element.attributes()) {
            const std::string visible = withoutInvisible(attribute.value);
            if (visible == attribute.value)
                continue;
            bool isReported = false;
            before_.within(inFile(element.attributePlace(attribute.name)),
                           [&](std::size_t) { isReported = true; });
            const Place place = inFile(element.valuePlace(attribute.name));
            if (!isReported)
                made_.push_back({{"hidden-character"_rule,
                                  place,
                                  place,
                                  std::string(element.name()),
                                  std::string(attribute.name),
                                  std::string(attribute.value),
                                  {}},
                                 visible,
                                 hiddenMessage(attribute.value)});
        }
    }

    void checkText(const xml::Node& node) {
        const std::string text = node.stringValue();
        const std::string visible = withoutInvisible(text);
        const Place place = inFile(node.place());
        if (visible != text)
            made_.push_back({{"hidden-character"_rule, place, place, "#text", {}, text, {}},
                             visible,
                             hiddenMessage(text)});
    }

    Gathering& findings_;
    FoundByPlace before_;
    std::vector<Found> made_;
};

void checkHidden(const Loaded& loaded, Gathering& findings) {
    std::set<std::string> names(std::begin(layoutFiles), std::end(layoutFiles));
    names.insert("config/events.xml");
    for (const LoadedPalette& palette : loaded.palettes)
        names.insert(palette.file);
    for (const LoadedServers& servers : loaded.servers)
        names.insert(servers.file);
    names.insert(loaded.settingsFiles.begin(), loaded.settingsFiles.end());
    names.insert(loaded.webPageFiles.begin(), loaded.webPageFiles.end());
    HiddenCheck check(findings);
    for (const std::string& name : names) {
        check.path = loaded.files.pathOf(name);
        check.checkXml(loaded.files.file(name));
    }
    check.add();
}

void suggestValues(std::vector<Found>& all) {
    constexpr std::string_view rules[] = {"odd-flag", "odd-number", "number-out-of-range"};
    for (Found& found : all) {
        const Finding& finding = found.finding;
        if (found.suggestion || std::ranges::find(rules, finding.rule.name) == std::end(rules))
            continue;
        if (const AttributeInfo* const row = attributeRow(finding.element, finding.attribute))
            found.suggestion = repairedValue(*row, finding.value);
    }
}

}  // namespace

void checkValues(const Loaded& loaded, Gathering& findings) {
    const std::vector<OddName> odd = oddNames(findings.names());
    if (!odd.empty())
        NamesCheck(findings).check(odd);
    checkHidden(loaded, findings);
    suggestValues(findings.found());
}

}  // namespace yg
