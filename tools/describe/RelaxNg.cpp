// SPDX-License-Identifier: MIT
#include <vector>

#include "describe/Describe.h"
#include "describe/Words.h"
#include "describe/XmlText.h"

namespace yg::describe {

namespace {

constexpr std::string_view annotations = "http://relaxng.org/ns/compatibility/annotations/1.0";
/// Half a step beyond the largest float: from here on a number reads as an infinity.
constexpr std::string_view beyondFloat = "3.4028235677973366E38";

class Grammar {
public:
    explicit Grammar(const FormatInfo& format) {
        xml_.begin("grammar", {{"xmlns", "http://relaxng.org/ns/structure/1.0"},
                               {"xmlns:a", annotations},
                               {"datatypeLibrary", "http://www.w3.org/2001/XMLSchema-datatypes"}});
        xml_.comment(generatedNote);
        xml_.text("a:documentation", format.sentence);
        xml_.begin("start");
        xml_.leaf("ref", {{"name", format.root.id}});
        xml_.end();
        for (const ElementInfo* element : elementsOf(format))
            define(*element);
        xml_.end();
    }

    const std::string& str() const { return xml_.str(); }

private:
    void define(const ElementInfo& element) {
        xml_.begin("define", {{"name", element.id}});
        if (element.name.empty()) {
            xml_.begin("element");
            anyNameBut(element.otherThan);
        } else {
            xml_.begin("element", {{"name", element.name}});
        }
        xml_.text("a:documentation", element.sentence);
        attributes(element);
        content(element);
        xml_.end();
        xml_.end();
    }

    void anyNameBut(std::span<const std::string_view> names) {
        if (names.empty())
            return xml_.leaf("anyName");
        xml_.begin("anyName");
        xml_.begin("except");
        for (const std::string_view name : names)
            xml_.text("name", name);
        xml_.end();
        xml_.end();
    }

    /// Optional attributes are interleaved, which means the same as one after the other: libxml2
    /// would try every subset of them.
    void attributes(const ElementInfo& element) {
        std::vector<const AttributeInfo*> optional;
        for (const AttributeInfo& row : element.attributes) {
            if (isRequired(row))
                attribute(element, row);
            else
                optional.push_back(&row);
        }
        if (optional.size() > 1)
            xml_.begin("interleave");
        for (const AttributeInfo* row : optional) {
            xml_.begin("optional");
            attribute(element, *row);
            xml_.end();
        }
        if (optional.size() > 1)
            xml_.end();
    }

    void attribute(const ElementInfo& element, const AttributeInfo& row) {
        xml_.begin("attribute", {{"name", row.name}});
        xml_.text("a:documentation", hoverText(element, row));
        value(element, row);
        xml_.end();
    }

    void value(const ElementInfo& element, const AttributeInfo& row) {
        if (const std::string_view pattern = facet(element, row.name, "pattern"); !pattern.empty())
            return text("pattern", pattern);
        switch (row.kind) {
            case AttributeKind::text:
                if (const std::string_view least = facet(element, row.name, "minLength");
                    !least.empty())
                    return text("minLength", least);
                return xml_.leaf("text");
            case AttributeKind::flag:
                xml_.begin("choice");
                xml_.text("value", "true", {{"type", "string"}});
                xml_.text("value", "false", {{"type", "string"}});
                return xml_.end();
            case AttributeKind::integer:
            case AttributeKind::wholeNumber:
                return number(element, row, "int", integerPattern);
            case AttributeKind::decimal:
                return number(element, row, "double", decimalPattern);
            case AttributeKind::nameList:
                return text("minLength", "1");
        }
    }

    void text(std::string_view facet, std::string_view value) {
        xml_.begin("data", {{"type", "string"}});
        xml_.text("param", value, {{"name", facet}});
        xml_.end();
    }

    /// The types of numbers allow blanks behind them and names for infinities; the loader does not.
    void number(const ElementInfo& element, const AttributeInfo& row, std::string_view type,
                std::string_view pattern) {
        xml_.begin("data", {{"type", type}});
        const auto limit = [&](std::string_view name, std::string_view value) {
            xml_.text("param", value, {{"name", name}});
        };
        limit("pattern", pattern);
        const bool isFloat = row.kind == AttributeKind::decimal;
        if (const std::string_view above = facet(element, row.name, "minExclusive"); !above.empty())
            limit("minExclusive", above);
        else if (row.least != AttributeInfo::lowest)
            limit("minInclusive", textOf(row.least));
        else if (isFloat)
            limit("minExclusive", '-' + std::string(beyondFloat));
        if (row.most != -AttributeInfo::lowest)
            limit("maxInclusive", textOf(row.most));
        else if (isFloat)
            limit("maxExclusive", beyondFloat);
        xml_.begin("except");
        text("pattern", R"([\s\S]*\s)");
        xml_.end();
        xml_.end();
    }

    void content(const ElementInfo& element) {
        if (element.holds == Content::text)
            return value(element, AttributeInfo{.name = {}});
        if (element.content.empty())
            return xml_.leaf("empty");
        const bool isOne = element.holds == Content::element;
        if (!isOne)
            xml_.begin("zeroOrMore");
        const bool hasChoice = element.content.size() > 1;
        if (hasChoice)
            xml_.begin("choice");
        for (const ElementInfo* child : element.content)
            xml_.leaf("ref", {{"name", child->id}});
        if (hasChoice)
            xml_.end();
        if (!isOne)
            xml_.end();
    }

    XmlText xml_;
};

}  // namespace

std::string relaxNg(const FormatInfo& format) {
    return Grammar(format).str();
}

}  // namespace yg::describe
