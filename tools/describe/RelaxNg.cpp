// SPDX-License-Identifier: MIT
#include "describe/Describe.h"
#include "describe/Words.h"
#include "describe/XmlText.h"

namespace yg::describe {

namespace {

constexpr std::string_view annotations = "http://relaxng.org/ns/compatibility/annotations/1.0";
/// Half a step beyond the largest float: from here on a number reads as an infinity.
constexpr std::string_view beyondFloat = "3.4028235677973366E38";

/// Digits of at least one number from 0 to the number given, zeros before it included.
std::string upTo(std::string_view largest) {
    std::string pattern = "0*([0-9]{1," + std::to_string(largest.size() - 1) + '}';
    for (std::size_t at = 0; at < largest.size(); ++at) {
        const char below = static_cast<char>(largest[at] - 1);
        const char first = at == 0 ? '1' : '0';
        if (below < first)
            continue;
        pattern += '|' + std::string(largest.substr(0, at)) + '[' + first + '-' + below + ']';
        if (const std::size_t rest = largest.size() - at - 1; rest > 0)
            pattern += "[0-9]{" + std::to_string(rest) + '}';
    }
    return pattern + '|' + std::string(largest) + ')';
}

std::string integerPattern() {
    return "\\s*([+]?" + upTo("2147483647") + "|-" + upTo("2147483648") + ')';
}

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
        for (const AttributeInfo& row : element.attributes)
            attribute(element, row);
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

    void attribute(const ElementInfo& element, const AttributeInfo& row) {
        const bool isOptional = !isRequired(element, row);
        if (isOptional)
            xml_.begin("optional");
        xml_.begin("attribute", {{"name", row.name}});
        xml_.text("a:documentation", hoverText(element, row));
        value(element, row.name, row.kind);
        xml_.end();
        if (isOptional)
            xml_.end();
    }

    void value(const ElementInfo& element, std::string_view name, AttributeKind kind) {
        if (const std::string_view pattern = facet(element, name, "pattern"); !pattern.empty())
            return text("pattern", pattern);
        switch (kind) {
            case AttributeKind::text:
                if (const std::string_view least = facet(element, name, "minLength");
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
                return text("pattern", integerPattern());
            case AttributeKind::decimal:
                return decimal(element, name);
            case AttributeKind::nameList:
                return text("minLength", "1");
        }
    }

    void text(std::string_view facet, std::string_view value) {
        xml_.begin("data", {{"type", "string"}});
        xml_.text("param", value, {{"name", facet}});
        xml_.end();
    }

    /// A double allows blanks behind it and names for infinities; the loader does not.
    void decimal(const ElementInfo& element, std::string_view name) {
        xml_.begin("data", {{"type", "double"}});
        xml_.text("param", R"(\s*[+\-]?([0-9]+([.][0-9]*)?|[.][0-9]+)([eE][+\-]?[0-9]+)?)",
                  {{"name", "pattern"}});
        bool hasLeast = false;
        bool hasMost = false;
        for (const ValueInfo* limit : limitsOf(element, name)) {
            if (limit->facet == "required")
                continue;
            hasLeast |= limit->facet.starts_with("min");
            hasMost |= limit->facet.starts_with("max");
            xml_.text("param", limit->value, {{"name", limit->facet}});
        }
        if (!hasLeast)
            xml_.text("param", '-' + std::string(beyondFloat), {{"name", "minExclusive"}});
        if (!hasMost)
            xml_.text("param", beyondFloat, {{"name", "maxExclusive"}});
        xml_.begin("except");
        text("pattern", R"([\s\S]*\s)");
        xml_.end();
        xml_.end();
    }

    void content(const ElementInfo& element) {
        if (element.holds == Content::text)
            return value(element, {}, AttributeKind::text);
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
