// SPDX-License-Identifier: MIT
#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "YGConfigManager/host/JsonValue.h"
#include "YGConfigManager/inspection/MemberOf.h"
#include "YGConfigManager/inspection/PageChecks.h"
#include "YGConfigManager/inspection/PageNames.h"
#include "YGConfigManager/inspection/Wording.h"
#include "YGConfigManager/text/LineIndex.h"
#include "YGConfigManager/text/Nearest.h"

namespace yg {

namespace {

using Elements = std::map<std::string, xml::Element, std::less<>>;

constexpr std::string_view nameAttribute = "name";

bool hasDash(std::string_view name) {
    return name.find('-') != std::string_view::npos;
}

/// Of an element with a name.
std::string_view fileOf(const xml::Element& element) {
    return element.attributePoint(nameAttribute).value_or(xml::SourcePoint{}).file;
}

std::vector<RelatedPlace> at(const xml::Element& element, std::string_view meaning) {
    if (const auto place = element.tagPlace())
        return {{*place, meaning}};
    return {};
}

/// The names of the layout with the elements that define or use them.
struct LayoutNames {
    Elements templates;  ///< the style of the name that custom pages are made of
    Elements groups;     ///< the last definition
    Elements reusePanels;
    std::vector<NameUse> groupDefinitions;
    std::vector<NameUse> reuseDefinitions;
    std::vector<NameUse> members;  ///< of the main file, the only ones of custom pages
    std::set<std::string, std::less<>> usedGroups;
    std::set<std::string, std::less<>> usedReusePanels;
    const NameUse* defaultStyle = nullptr;  ///< the one that counts
};

LayoutNames layoutNames(const Loaded& loaded, const Gathering& findings) {
    const std::string tabFile = loaded.files.pathOf("config/tab_styles.xml");
    const std::string magicFile = loaded.files.pathOf("config/magic_panels.xml");
    LayoutNames names;
    for (const NameUse& use : findings.names()) {
        switch (use.row->names) {
            case Naming::style:
                if (use.file() == tabFile)
                    break;
                if (!use.row->defines && use.row->name == "default_style")
                    names.defaultStyle = &use;
                if (use.row->defines) {
                    // The first of a file counts, and of two files the one that is read later.
                    const auto [found, isNew] =
                        names.templates.try_emplace(std::string(use.value), use.element);
                    if (!isNew && fileOf(found->second) != use.file())
                        found->second = use.element;
                }
                break;
            case Naming::magicGroup:
                if (use.row->defines) {
                    names.groups.insert_or_assign(std::string(use.value), use.element);
                    names.groupDefinitions.push_back(use);
                } else
                    names.usedGroups.emplace(use.value);
                break;
            case Naming::magicPanel:
                if (use.file() == magicFile)
                    names.members.push_back(use);
                break;
            case Naming::reusePanel:
                if (use.row->defines) {
                    names.reusePanels.insert_or_assign(std::string(use.value), use.element);
                    names.reuseDefinitions.push_back(use);
                } else
                    names.usedReusePanels.emplace(use.value);
                break;
            default:
                break;
        }
    }
    return names;
}

void checkDefaultStyle(const Loaded& loaded, Gathering& findings, const LayoutNames& names) {
    if (!names.defaultStyle)
        return;
    Effort effort;
    PageNames pages(loaded, findings, effort);
    const NameUse& use = *names.defaultStyle;
    const PageAnswer& answer = pages.look(std::string(use.value));
    if (answer.kind != PageAnswer::Kind::page)
        findings.onPart("unknown-default-style"_rule, use.element, use.row->name, answer.offset,
                        answer.size, answer.details);
}

/// What is defined, but only after it is needed.
void explainOrder(Gathering& findings, const LayoutNames& names) {
    for (Found& found : findings.found()) {
        const Finding& finding = found.finding;
        const bool isGroup = &finding.rule == &"unknown-magic-group"_rule;
        if (!isGroup && &finding.rule != &"unknown-reuse-panel"_rule)
            continue;
        const Elements& defined = isGroup ? names.groups : names.reusePanels;
        const auto definition = defined.find(finding.value);
        if (definition == defined.end())
            continue;
        found.message =
            (isGroup ? "group " : "reuse panel ") + quoted(finding.value) +
            " exists, but is not known yet when this is read: " +
            (!isGroup ? "the reuse panels are known when their file has been read whole."
             : finding.place.file == fileOf(definition->second)
                 ? "the groups of a file are known when it has been read whole."
                 : "the soft-optimize magic panels are read after the pages.");
        found.finding.related = at(definition->second, "its definition");
    }
}

/// Where an element may not stand, the element is the thing to look at, not its name.
void explainPlacing(Gathering& findings) {
    for (Found& found : findings.found()) {
        Finding& finding = found.finding;
        const bool isReference = &finding.rule == &"misplaced-reuse-panel"_rule;
        if (!isReference && &finding.rule != &"member-without-panel"_rule)
            continue;
        found.message = isReference ? "<reuse_panel name=\"" + finding.value +
                                          "\"> is directly below a style, where it is dropped: "
                                          "put a panel around it."
                                    : "member " + quoted(finding.value) +
                                          " has no panel, so it is dropped: put one in.";
        finding.place = finding.extent;
        finding.attribute.clear();
    }
}

/// An empty group is one mistake, in the definition, however many slots should show it.
void explainEmptyGroups(const Loaded& loaded, Gathering& findings, const LayoutNames& names) {
    const std::string tabFile = loaded.files.pathOf("config/tab_styles.xml");
    const std::string magicFile = loaded.files.pathOf("config/magic_panels.xml");
    // Pages know the groups of the main file, tabs all, the later ones first.
    Elements ofPages;
    for (const NameUse& group : names.groupDefinitions) {
        if (fileOf(group.element) == magicFile)
            ofPages.insert_or_assign(std::string(group.value), group.element);
    }
    std::map<std::pair<bool, std::string>, std::vector<RelatedPlace>> slots;
    for (const Found& found : findings.found()) {
        const Finding& finding = found.finding;
        if (&finding.rule == &"empty-magic-group"_rule)
            slots[{finding.place.file == tabFile, finding.value}].push_back(
                {finding.extent, "a slot that shows nothing"});
    }
    for (auto& [group, related] : slots) {
        const Elements& groups = group.first ? names.groups : ofPages;
        const auto definition = groups.find(group.second);
        if (definition != groups.end())
            findings.onPart("empty-magic-group"_rule, definition->second, nameAttribute, 0,
                            group.second.size(),
                            {.message = "group " + quoted(group.second) +
                                        " has no member to show in its slots: put a magic panel "
                                        "in.",
                             .related = std::move(related)});
    }
}

/// Without a style the main file is what to repair.
void explainDropped(const Loaded& loaded, Gathering& findings) {
    for (Found& found : findings.found()) {
        Finding& finding = found.finding;
        const xml::Element root =
            loaded.files.file("config/custompage_template.xml").document().document.root();
        if (&finding.rule != &"soft-optimize-dropped"_rule || !root)
            continue;
        finding.related = {{finding.place, "the file that is dropped with it"}};
        finding.place = finding.extent = root.place().value_or(Place());
        finding.place.file = finding.extent.file =
            loaded.files.pathOf("config/custompage_template.xml");
        finding.element = root.name();
        found.message = std::string("<").append(finding.element) +
                        "> has nothing in it, so there are no pages, and those of the "
                        "soft-optimize file are dropped as well: put a style in.";
    }
}

void checkTemplates(const Loaded& loaded, Gathering& findings, const LayoutNames& names) {
    std::map<std::string_view, const PageTemplate*> known;
    std::set<std::string_view> groupsOfTemplates;
    for (const PageTemplate& style : loaded.templates) {
        known.emplace(style.name, &style);
        for (const auto& group : style.groups) {
            if (group)
                groupsOfTemplates.insert(*group);
        }
    }
    for (const Page& page : loaded.pages) {
        if (page.source != Page::Source::style || !hasDash(page.name))
            continue;
        const xml::Element style = findings.originOf(page.style.get());
        const auto found = known.find(std::string_view(page.name).substr(0, page.name.find('-')));
        const auto arguments =
            static_cast<std::size_t>(std::count(page.name.begin(), page.name.end(), '-'));
        if (found != known.end() && found->second->groups.size() == arguments) {
            const auto source = names.templates.find(found->first);
            findings.onAttribute(
                "style-hides-custom-page"_rule, style, nameAttribute,
                {.message = "page " + quoted(page.name) +
                            " is stored, so it is never made of the template " +
                            quoted(found->first) + ".",
                 .related = source == names.templates.end() ? std::vector<RelatedPlace>()
                                                            : at(source->second, "the template")});
        }
        std::vector<xml::Element> slots;
        YGStyleConfigLoad::recursiveSearchNodeWithNodeName("magic_panels", style, slots);
        if (!slots.empty())
            findings.onAttribute(
                "template-with-dash"_rule, style, nameAttribute,
                {.message =
                     "page " + quoted(page.name) +
                     " cannot be a template of custom pages, because its name has a \"-\"."});
    }
    const auto lists = loaded.host->getMappingDicForKey(wildcardMapping);
    for (const NameUse& member : names.members) {
        if (!hasDash(member.value) || (lists && lists->contains(member.value)))
            continue;
        const auto group = xml::Element(member.element.parent()).attribute(nameAttribute);
        if (group && groupsOfTemplates.contains(*group))
            findings.onAttribute("member-with-dash"_rule, member.element, nameAttribute,
                                 {.message = "member " + quoted(member.value) +
                                             " cannot be chosen by a custom page, because the "
                                             "page's name is split at each \"-\"."});
    }
}

void checkUnused(Gathering& findings, const LayoutNames& names) {
    for (const NameUse& group : names.groupDefinitions) {
        if (!names.usedGroups.contains(group.value))
            findings.onAttribute(
                "unused-magic-group"_rule, group.element, nameAttribute,
                {.message = "group " + quoted(group.value) + " is shown by no slot."});
    }
    for (const NameUse& panel : names.reuseDefinitions) {
        if (!names.usedReusePanels.contains(panel.value))
            findings.onAttribute(
                "unused-reuse-panel"_rule, panel.element, nameAttribute,
                {.message = "reuse panel " + quoted(panel.value) + " is placed nowhere."});
    }
}

/// The wildcard lists as they stand in host.json.
class Wildcards {
public:
    Wildcards(const Loaded& loaded, Gathering& findings)
        : path_(loaded.files.pathOf("host.json")),
          bytes_(loaded.files.file("host.json").bytes()),
          lines_(bytes_),
          loaded_(loaded),
          findings_(findings) {}

    void check(const LayoutNames& names) {
        if (!loaded_.host->getMappingDicForKey(wildcardMapping))
            return;  // or the file is not used at all
        const JsonValue lists = memberOf(
            memberOf(JsonValue::parse(bytes_, {.positions = true}).value.value_or(JsonValue()),
                     "mappings"),
            wildcardMapping);
        const auto members = lists.members();
        const auto object = lists.object();
        if (!members || !object)
            return;
        std::set<std::string_view> patterns;
        for (const NameUse& member : names.members)
            patterns.insert(member.value);
        // A member that is a key already cannot be meant.
        std::vector<std::string> free;
        for (const std::string_view pattern : patterns) {
            if (!object->contains(pattern))
                free.emplace_back(pattern);
        }
        text::KnownWords likely(free);
        for (const JsonMember& member : *members) {
            if (member.isReplaced || patterns.contains(member.name))
                continue;
            const std::string_view meant = likely.nearest(member.name);
            report("wildcard-without-pattern"_rule, member.nameRange, std::string(member.name),
                   std::string(member.name),
                   "wildcard key " + quoted(member.name) +
                       " is the name of no member, so its values are not served.",
                   {}, meant.empty() ? std::nullopt : std::optional(inQuotes(meant)));
        }
        // In the order of the keys, in which the library looks for a value.
        std::map<std::string, Known, std::less<>> known;
        for (const auto& [key, list] : *object) {
            const auto items = list.list();
            for (std::size_t at = 0; items && at < items->size(); ++at) {
                if ((*items)[at].text())
                    checkValue(key, at, (*items)[at], known);
            }
        }
        explainBroken(known);
    }

private:
    struct Known {
        std::string key;
        std::string member;
        Place place;
    };

    /// It is the value that breaks a pattern, however many patterns it breaks.
    void explainBroken(const std::map<std::string, Known, std::less<>>& known) {
        for (Found& found : findings_.found()) {
            Finding& finding = found.finding;
            const auto value = known.find(finding.value);
            if (&finding.rule != &"broken-pattern"_rule || value == known.end())
                continue;
            const Known& there = value->second;
            finding.related = {{finding.place, "the pattern"}};
            finding.place = finding.extent = there.place;
            finding.element.clear();
            finding.attribute = attributeOf(there.member);
            found.message = "value " + quoted(finding.value) + " of the wildcard " +
                            quoted(there.key) +
                            " makes its pattern something other than XML, so the slot stays as it "
                            "is: \"<\", \"&\" and quotation marks cannot be in a value.";
        }
        findings_.joinRepeated("broken-pattern"_rule);
    }

    static std::string inQuotes(std::string_view name) {
        return std::string("\"").append(name).append("\"");
    }

    static std::string attributeOf(const std::string& member) {
        return "mappings." + std::string(wildcardMapping) + "." + member;
    }

    void checkValue(const std::string& key, std::size_t at, const JsonValue& item,
                    std::map<std::string, Known, std::less<>>& known) {
        const std::string& value = *item.text();
        const std::string member = key + "[" + std::to_string(at) + "]";
        const auto [found, isNew] = known.try_emplace(value);
        if (isNew)
            found->second = {key, member, placeOf(*item.range())};
        if (hasDash(value))
            report("wildcard-with-dash"_rule, *item.range(), member, value,
                   "value " + quoted(value) +
                       " cannot be chosen by a custom page, because the page's name is split at "
                       "each \"-\".");
        else if (!isNew && found->second.key != key)
            report("wildcard-in-two-lists"_rule, *item.range(), member, value,
                   "value " + quoted(value) + " is in the list " + quoted(found->second.key) +
                       " too, and only that one counts.",
                   {{found->second.place, "the list that counts"}});
    }

    Place placeOf(const JsonRange& range) const {
        return {path_, lines_.pointAt(bytes_, range.begin), lines_.pointAt(bytes_, range.end)};
    }

    void report(const Rule& rule, const JsonRange& range, const std::string& member,
                const std::string& value, std::string message,
                std::vector<RelatedPlace> related = {},
                std::optional<std::string> suggestion = std::nullopt) {
        const Place place = placeOf(range);
        findings_.add({{rule, place, place, {}, attributeOf(member), value, std::move(related)},
                       std::move(suggestion),
                       std::move(message)});
    }

    const std::string path_;
    const std::string& bytes_;
    const text::LineIndex lines_;
    const Loaded& loaded_;
    Gathering& findings_;
};

}  // namespace

void checkLayoutNames(const Loaded& loaded, Gathering& findings) {
    const LayoutNames names = layoutNames(loaded, findings);
    checkDefaultStyle(loaded, findings, names);
    explainOrder(findings, names);
    explainPlacing(findings);
    explainEmptyGroups(loaded, findings, names);
    explainDropped(loaded, findings);
    checkTemplates(loaded, findings, names);
    checkUnused(findings, names);
    Wildcards(loaded, findings).check(names);
}

}  // namespace yg
