// SPDX-License-Identifier: MIT
//
// The style loader's custom pages: a template style with a chosen panel in each magic slot.
#include <algorithm>

#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/host/Log.h"
#include "YGConfigManager/host/YGFrameComFun.h"
#include "YGConfigManager/layout/LayoutRules.h"
#include "YGConfigManager/layout/YGStyleConfigLoad.h"
#include "YGConfigManager/text/Replace.h"
#include "YGConfigManager/text/Split.h"
#include "YGConfigManager/xml/Document.h"

namespace yg {

xml::Element YGStyleConfigLoad::buildPage(std::optional<std::string_view> styleName) const {
    if (!styleName)
        return {};
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
    for (std::size_t i = 0; i < slots.size(); ++i) {
        const std::string& argument = parts[i + 1];
        if (const xml::Node panel = memberForSlot(slots[i], argument))
            slots[i].replaceWith(panel);
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

xml::Node YGStyleConfigLoad::memberForSlot(const xml::Element& slot,
                                           std::string_view argument) const {
    const xml::Element group =
        searchNodeWithNodeName("magic_panels", slot.attribute("name"), magicXMLElement_);
    if (!group)
        return {};

    // The first child of whatever kind: a member that begins with a comment gives that comment.
    if (const xml::Node panel = searchNodeWithNodeName("magic_panel", argument, group).firstChild())
        return panel;

    const std::optional<std::string> key = wildCardKey(argument);
    if (!key)
        return {};
    const xml::Node pattern = searchNodeWithNodeName("magic_panel", *key, group).firstChild();
    if (!pattern)
        return {};
    const xml::ParseResult written = orOutOfMemory(xml::Document::parseText(
        text::replaceAll(pattern.serialise(xml::Form::plain), *key, argument)));
    if (!written) {
        writeSystemConsole("%@", written.error);
        report(rules::brokenPattern, pattern, {}, argument);
        return {};
    }
    return written.document.root();
}

std::optional<std::string> YGStyleConfigLoad::wildCardKey(std::string_view value) {
    const auto mapping = YGFrameComFun::getMappingDicForKey("模版通配");
    if (!mapping)
        return std::nullopt;
    for (const auto& [key, values] : *mapping) {
        if (std::find(values.begin(), values.end(), value) != values.end())
            return key;
    }
    return std::nullopt;
}

xml::Element YGStyleConfigLoad::searchNodeWithNodeName(
    std::string_view nodeName, std::optional<std::string_view> attributeName,
    const xml::Element& rootElement) {
    if (!attributeName)
        return {};
    for (const xml::Node& child : rootElement.children()) {
        if (child.name() != nodeName || !child.isElement())
            continue;
        xml::Element element(child);
        if (element.attribute("name") == attributeName)
            return element;
    }
    return {};
}

void YGStyleConfigLoad::collect(std::string_view nodeName, const xml::Element& rootElement,
                                std::vector<xml::Element>& resultList) {
    for (const xml::Node& child : rootElement.children()) {
        const xml::Element element(child);
        if (!element)
            continue;
        if (element.name() == nodeName)
            resultList.push_back(element);
        collect(nodeName, element, resultList);
    }
}

}  // namespace yg
