// SPDX-License-Identifier: MIT
#include "describe/Words.h"

#include <array>
#include <charconv>

namespace yg::describe {

namespace {

std::string_view kindWords(AttributeKind kind) {
    switch (kind) {
        case AttributeKind::text:
            return "Text.";
        case AttributeKind::flag:
            return "true or false.";
        case AttributeKind::integer:
        case AttributeKind::wholeNumber:
            return "Whole number.";
        case AttributeKind::decimal:
            return "Number.";
        case AttributeKind::nameList:
            return "Names between \";\".";
    }
    return "";
}

/// With its article.
std::string_view namedThing(Naming naming) {
    switch (naming) {
        case Naming::nothing:
            return "";
        case Naming::style:
            return "a style";
        case Naming::panel:
            return "a panel";
        case Naming::magicGroup:
            return "a group of magic panels";
        case Naming::magicPanel:
            return "a magic panel";
        case Naming::reusePanel:
            return "a reuse panel";
        case Naming::element:
            return "an element";
        case Naming::eventGroup:
            return "a group of events";
        case Naming::eventTemplate:
            return "a template of events";
        case Naming::event:
            return "an event";
        case Naming::command:
            return "a command";
        case Naming::color:
            return "a colour";
        case Naming::font:
            return "a font";
        case Naming::image:
            return "an image";
        case Naming::colorKey:
            return "a key of a colour";
        case Naming::fontKey:
            return "a key of a font";
        case Naming::serverType:
            return "a type of servers";
        case Naming::server:
            return "a server";
        case Naming::webPage:
            return "a web page";
        case Naming::requestUrl:
            return "a request URL";
    }
    return "";
}

}  // namespace

std::vector<const ValueInfo*> limitsOf(const ElementInfo& element, std::string_view attribute) {
    std::vector<const ValueInfo*> limits;
    for (const ValueInfo& limit : element.values) {
        if (limit.attribute == attribute)
            limits.push_back(&limit);
    }
    return limits;
}

std::string_view facet(const ElementInfo& element, std::string_view attribute,
                       std::string_view name) {
    for (const ValueInfo* limit : limitsOf(element, attribute)) {
        if (limit->facet == name)
            return limit->value;
    }
    return {};
}

bool isRequired(const AttributeInfo& row) {
    return row.isRequired || row.isExpected;
}

std::string textOf(float number) {
    std::array<char, 32> text{};
    return {text.data(), std::to_chars(text.data(), text.data() + text.size(), number).ptr};
}

std::string kindOf(const ElementInfo& element, const AttributeInfo& row) {
    std::string words(kindWords(row.kind));
    const bool hasLeast = row.least != AttributeInfo::lowest;
    const bool hasMost = row.most != -AttributeInfo::lowest;
    if (hasLeast && hasMost)
        words += " From " + textOf(row.least) + " to " + textOf(row.most) + '.';
    else if (hasLeast)
        words += " At least " + textOf(row.least) + '.';
    else if (hasMost)
        words += " At most " + textOf(row.most) + '.';
    for (const ValueInfo* limit : limitsOf(element, row.name))
        words += ' ' + std::string(limit->sentence);
    return words;
}

std::string whenMissing(const AttributeInfo& row) {
    if (!row.whenMissing.empty())
        return std::string(row.whenMissing);
    switch (row.kind) {
        case AttributeKind::text:
        case AttributeKind::nameList:
            return "none";
        case AttributeKind::flag:
            return "false";
        default:
            return "0";
    }
}

std::string meaningOf(const AttributeInfo& row) {
    std::string words(row.sentence);
    if (row.names == Naming::nothing)
        return words;
    words += row.defines ? " Defines " : " Names ";
    words += namedThing(row.names);
    return words + '.';
}

std::string hoverText(const ElementInfo& element, const AttributeInfo& row) {
    return meaningOf(row) + ' ' + kindOf(element, row) +
           (isRequired(row) ? "" : " When missing: " + whenMissing(row) + '.');
}

}  // namespace yg::describe
