// SPDX-License-Identifier: MIT
//
// The style loader's custom pages: a template style with a chosen panel in each magic slot.
#include <algorithm>
#include <span>
#include <utility>

#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/host/Log.h"
#include "YGConfigManager/host/YGFrameComFun.h"
#include "YGConfigManager/layout/Expansion.h"
#include "YGConfigManager/layout/LayoutRules.h"
#include "YGConfigManager/layout/Walk.h"
#include "YGConfigManager/layout/YGStyleConfigLoad.h"
#include "YGConfigManager/text/Replace.h"
#include "YGConfigManager/text/Split.h"
#include "YGConfigManager/xml/Document.h"

namespace yg {

namespace {

constexpr std::string_view wildcardMapping = "模版通配";

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

xml::Element YGStyleConfigLoad::buildPage(std::optional<std::string_view> styleName) const {
    if (!styleName)
        return {};
    const Expansion expansion(Expansion::page);
    const std::vector<std::string> parts = text::split(*styleName, '-');
    const xml::Element source = templateNamed(parts.front());
    if (!source) {
        report(rules::unknownTemplate, {}, {}, *styleName);
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
        report(rules::argumentCount, source, {}, *styleName);
        return {};
    }
    WildcardKeys keys(std::span<const std::string>(parts).subspan(1));
    const auto mayAddToPage = [&](const Extent& extent) {
        return mayAdd(extent, source, {}, *styleName);
    };
    for (std::size_t i = 0; i < slots.size(); ++i) {
        const std::string& argument = parts[i + 1];
        const auto panel = panelForSlot(slots[i], argument, keys, mayAddToPage);
        if (!panel)
            return {};
        if (*panel)
            slots[i].replaceWith(*panel);
        else
            report(rules::slotLeft, slots[i], {}, argument);
    }
    return page;
}

xml::Element YGStyleConfigLoad::templateNamed(std::string_view name) const {
    for (const xml::Element& root : templateRoots_) {
        if (xml::Element found = searchNodeWithNodeName("style", name, root))
            return found;
    }
    return {};
}

void YGStyleConfigLoad::keepMagicMembers(const xml::Element& expanded) {
    magicMembers_ = {};
    for (const xml::Node& child : expanded.children()) {
        const xml::Element group(child);
        const auto groupName = group.attribute("name");
        if (group.name() != "magic_panels" || !groupName || magicMembers_.contains(*groupName))
            continue;
        RecordMap<xml::Node> members;
        for (const xml::Node& inGroup : group.children()) {
            const xml::Element member(inGroup);
            const auto name = member.attribute("name");
            // The first child of whatever kind: a member that begins with a comment gives that.
            if (member.name() == "magic_panel" && name && !members.contains(*name))
                members.set(*name, member.firstChild());
        }
        magicMembers_.set(*groupName, std::move(members));
    }
}

/// What belongs in a slot, an empty node when it stays, absent when the page has no room for it.
template <class MayAdd>
std::optional<xml::Node> YGStyleConfigLoad::panelForSlot(const xml::Element& slot,
                                                         const std::string& argument,
                                                         WildcardKeys& keys,
                                                         const MayAdd& mayAddToPage) const {
    const auto groupName = slot.attribute("name");
    const RecordMap<xml::Node>* group = groupName ? magicMembers_.find(*groupName) : nullptr;
    if (!group)
        return xml::Node();

    const xml::Node* member = group->find(argument);
    if (member && *member)
        return mayAddToPage(extentOf(*member)) ? std::optional(*member) : std::nullopt;

    const std::string* key = keys.keyOf(argument);
    const xml::Node* pattern = key ? group->find(*key) : nullptr;
    if (!pattern || !*pattern)
        return xml::Node();
    const std::string text = pattern->serialise(xml::Form::plain);
    const Extent before = extentOfXml(text);
    const Extent after = extentOfReplacing(text, *key, argument);
    if (!mayAddToPage(
            {std::max(before.elements, after.elements), std::max(before.bytes, after.bytes)}))
        return std::nullopt;
    const xml::ParseResult written =
        orOutOfMemory(xml::Document::parseText(text::replaceAll(text, *key, argument)));
    if (!written) {
        writeSystemConsole("%@", written.error);
        report(rules::brokenPattern, *pattern, {}, argument);
        return xml::Node();
    }
    return written.document.root();
}

std::optional<std::string> YGStyleConfigLoad::wildCardKey(std::string_view value) {
    const auto mapping = YGFrameComFun::getMappingDicForKey(wildcardMapping);
    if (!mapping)
        return std::nullopt;
    for (const auto& [key, values] : *mapping) {
        if (std::find(values.begin(), values.end(), value) != values.end())
            return key;
    }
    return std::nullopt;
}

xml::Element YGStyleConfigLoad::searchNodeWithNodeName(OptionalText nodeName,
                                                       OptionalText attributeName,
                                                       const xml::Element& rootElement) {
    if (!attributeName)
        return {};
    for (const xml::Node& child : rootElement.children()) {
        if (child.name() != *nodeName || !child.isElement())
            continue;
        xml::Element element(child);
        if (element.attribute("name") == *attributeName)
            return element;
    }
    return {};
}

void YGStyleConfigLoad::collect(std::string_view nodeName, const xml::Element& rootElement,
                                std::vector<xml::Element>& resultList) {
    forEachNodeBelow(rootElement, [&](const xml::Node& node) {
        if (node.name() == nodeName && node.isElement())
            resultList.emplace_back(node);
    });
}

}  // namespace yg
