// SPDX-License-Identifier: MIT
//
// The style loader's custom pages: a template style with a chosen panel in each magic slot.
#include <algorithm>
#include <span>
#include <utility>

#include "YGConfigManager/host/Log.h"
#include "YGConfigManager/host/YGFrameComFun.h"
#include "YGConfigManager/layout/Expansion.h"
#include "YGConfigManager/layout/LayoutEntries.h"
#include "YGConfigManager/layout/Walk.h"
#include "YGConfigManager/layout/YGStyleConfigLoad.h"
#include "YGConfigManager/text/Replace.h"
#include "YGConfigManager/text/Split.h"
#include "YGConfigManager/xml/Document.h"

namespace yg {

namespace {

constexpr std::string_view wildcardMapping = "模版通配";

void collect(std::string_view nodeName, const xml::Element& rootElement,
             std::vector<xml::Element>& resultList) {
    forEachNodeBelow(rootElement, [&](const xml::Node& node) {
        if (node.name() == nodeName && node.isElement())
            resultList.emplace_back(node);
    });
}

std::size_t sizeOf(const Extent& extent) {
    constexpr std::size_t markup = 8;  // "<a></a>", " a=''"
    return extent.elements * markup + extent.bytes;
}

}  // namespace

/// The wildcard keys of a page's arguments, all found in one pass through the host's mapping when
/// the first is asked for.
class YGStyleConfigLoad::WildcardKeys {
public:
    explicit WildcardKeys(std::span<const std::string> arguments) : arguments_(arguments) {}

    /// Null when no list holds the argument, which must be one of those given.
    const std::string* keyOf(const std::string& argument) {
        if (!isAsked_)
            ask();
        const std::string* const* key = keys_.find(argument);
        return key ? *key : nullptr;
    }

private:
    void ask() {
        isAsked_ = true;
        mapping_ = YGFrameComFun::getMappingDicForKey(wildcardMapping);
        if (!mapping_)
            return;
        for (const std::string& argument : arguments_)
            keys_.set(argument, nullptr);
        for (const auto& [key, values] : *mapping_) {
            for (const std::string& value : values) {
                const std::string* const* known = keys_.find(value);
                if (known && !*known)
                    keys_.set(value, &key);
            }
        }
    }

    std::span<const std::string> arguments_;
    bool isAsked_ = false;
    std::shared_ptr<const MappingDic> mapping_;
    RecordMap<const std::string*> keys_;
};

// Apart from the look-up, so that a page that is there pays for none of this.
[[gnu::noinline]] std::shared_ptr<StyleConfigInfo> YGStyleConfigLoad::customPage(
    std::string_view name) const {
    return guarded(pageName, [&]() -> std::shared_ptr<StyleConfigInfo> {
        const Expansion expansion(Expansion::page);
        const xml::Element page = buildPage(name);
        auto record = page ? readStyle(page) : nullptr;
        // Slots that stayed may place more than a page may have.
        return expansion.isRefused() ? nullptr : record;
    });
}

xml::Element YGStyleConfigLoad::createXMLElementWithStyleName(OptionalText styleName) const {
    return guarded(pageName, [&] {
        const Expansion expansion(Expansion::page);
        return buildPage(styleName);
    });
}

xml::Element YGStyleConfigLoad::buildPage(std::optional<std::string_view> styleName) const {
    if (!styleName)
        return {};
    const std::vector<std::string> parts = text::split(*styleName, '-');
    const xml::Element source = templateNamed(parts.front());
    if (!source) {
        Reporter(sink_).report("unknown-template"_rule, {}, *styleName);
        return {};
    }
    xml::Element page(source.copy());
    page.setAttribute("name", *styleName);
    const std::size_t argumentCount = parts.size() - 1;
    if (argumentCount == 0)
        return page;

    std::vector<xml::Element> slots;
    collect("magic_panels", page, slots);
    if (slots.size() != argumentCount) {
        reportOn(source, "argument-count"_rule, {}, *styleName);
        return {};
    }
    WildcardKeys keys(std::span<const std::string>(parts).subspan(1));
    for (std::size_t i = 0; i < slots.size(); ++i) {
        const auto panel = panelForSlot(slots[i], parts[i + 1], keys);
        if (!panel) {
            reportOn(source, "expansion-limit"_rule, {}, *styleName);
            return {};
        }
        slots[i].replaceWith(*panel);
    }
    return page;
}

xml::Element YGStyleConfigLoad::templateNamed(std::string_view name) const {
    for (const xml::Element& root : tables_.templateRoots) {
        if (xml::Element found = searchNodeWithNodeName("style", name, root))
            return found;
    }
    return {};
}

std::vector<PageTemplate> YGStyleConfigLoad::templates() const {
    return guarded(pageName, [&] {
        std::vector<PageTemplate> found;
        RecordMap<bool> known;
        for (const xml::Element& root : tables_.templateRoots) {
            for (const xml::Element& style : root.elements()) {
                const auto name = style.attribute("name");
                if (style.name() != "style" || !name || name->find('-') != std::string_view::npos ||
                    known.set(*name, true))
                    continue;
                std::vector<xml::Element> slots;
                collect("magic_panels", style, slots);
                if (slots.empty())
                    continue;
                PageTemplate& made = found.emplace_back();
                made.name = *name;
                made.element = style;
                for (const xml::Element& slot : slots)
                    made.groups.emplace_back(slot.attribute("name"));
                made.size = sizeOf(extentOf(style));
            }
        }
        return found;
    });
}

std::vector<SlotMember> YGStyleConfigLoad::slotMembers(OptionalText group) const {
    return guarded(pageName, [&] {
        std::vector<SlotMember> found;
        const auto* members = group ? tables_.magicMembers.find(group) : nullptr;
        if (!members)
            return found;
        for (const auto& [name, panel] : *members) {
            if (panel)
                found.push_back({name, sizeOf(extentOf(panel))});
        }
        return found;
    });
}

void YGStyleConfigLoad::keepMagicMembers(const xml::Element& expanded) {
    tables_.magicMembers = {};
    for (const xml::Element& group : expanded.elements()) {
        const auto groupName = group.attribute("name");
        if (group.name() != "magic_panels" || !groupName ||
            tables_.magicMembers.contains(*groupName))
            continue;
        RecordMap<xml::Node> members;
        for (const xml::Element& member : group.elements()) {
            const auto name = member.attribute("name");
            // The first child of whatever kind: a member that begins with a comment gives that.
            if (member.name() == "magic_panel" && name && !members.contains(*name))
                members.set(*name, member.firstChild());
        }
        tables_.magicMembers.set(*groupName, std::move(members));
    }
}

void YGStyleConfigLoad::noteFilled(const xml::Element& slot, std::string_view argument,
                                   const xml::Node& panel, std::string_view wildcard) const {
    if (sink_)
        sink_->filled(slot, argument, panel, wildcard);
}

/// What belongs in a slot, an empty node when it stays, absent when the page has no room for it.
std::optional<xml::Node> YGStyleConfigLoad::panelForSlot(const xml::Element& slot,
                                                         const std::string& argument,
                                                         WildcardKeys& keys) const {
    const auto groupName = slot.attribute("name");
    const RecordMap<xml::Node>* group = groupName ? tables_.magicMembers.find(*groupName) : nullptr;
    const xml::Node* member = group ? group->find(argument) : nullptr;
    if (member && *member) {
        if (!Expansion::mayAdd(extentOf(*member)))
            return std::nullopt;
        noteFilled(slot, argument, *member, "");
        return *member;
    }

    const std::string* key = group ? keys.keyOf(argument) : nullptr;
    const xml::Node* pattern = key ? group->find(*key) : nullptr;
    if (!pattern || !*pattern) {
        reportOn(slot, "slot-left"_rule, {}, argument);
        return xml::Node();
    }
    const std::string text = pattern->serialise(xml::Form::plain);
    const Extent before = extentOfXml(text);
    const Extent after = extentOfReplacing(text, *key, argument);
    if (!Expansion::mayAdd(
            {std::max(before.elements, after.elements), std::max(before.bytes, after.bytes)}))
        return std::nullopt;
    const xml::ParseResult written =
        orOutOfMemory(xml::Document::parseText(text::replaceAll(text, *key, argument)));
    if (written) {
        noteFilled(slot, argument, *pattern, *key);
        return written.document.root();
    }
    writeSystemConsole("%@", written.error);
    reportOn(pattern->parent(), "broken-pattern"_rule, {}, argument);
    return xml::Node();
}

std::optional<std::string> YGStyleConfigLoad::getWildCardKeyWithValue(OptionalText value) {
    return guarded(pageName, [value]() -> std::optional<std::string> {
        const auto mapping = YGFrameComFun::getMappingDicForKey(wildcardMapping);
        if (!mapping)
            return std::nullopt;
        for (const auto& [key, values] : *mapping) {
            if (std::find(values.begin(), values.end(), *value) != values.end())
                return key;
        }
        return std::nullopt;
    });
}

xml::Element YGStyleConfigLoad::searchNodeWithNodeName(OptionalText nodeName,
                                                       OptionalText attributeName,
                                                       const xml::Element& rootElement) {
    if (!attributeName)
        return {};
    for (const xml::Element& element : rootElement.elements()) {
        if (element.name() == *nodeName && element.attribute("name") == *attributeName)
            return element;
    }
    return {};
}

void YGStyleConfigLoad::recursiveSearchNodeWithNodeName(OptionalText nodeName,
                                                        const xml::Element& rootElement,
                                                        std::vector<xml::Element>& resultList) {
    guarded(pageName, [&] {
        const std::size_t before = resultList.size();
        try {
            collect(*nodeName, rootElement, resultList);
        } catch (...) {
            resultList.resize(before);
            throw;
        }
    });
}

}  // namespace yg
