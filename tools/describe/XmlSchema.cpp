// SPDX-License-Identifier: MIT
#include <algorithm>
#include <vector>

#include "describe/Describe.h"
#include "describe/Words.h"
#include "describe/XmlText.h"

namespace yg::describe {

namespace {

using Elements = std::vector<const ElementInfo*>;

bool contains(const Elements& elements, const ElementInfo* element) {
    return std::ranges::find(elements, element) != elements.end();
}

/// What one element of XML Schema stands for: all that has one name in one place.
struct Group {
    std::string_view name;
    Elements elements;
};

void add(std::vector<Group>& groups, const ElementInfo& element) {
    const auto found = std::ranges::find(groups, shownName(element), &Group::name);
    Group& group =
        found == groups.end() ? groups.emplace_back(Group{shownName(element), {}}) : *found;
    if (!contains(group.elements, &element))
        group.elements.push_back(&element);
}

class Schema {
public:
    explicit Schema(const FormatInfo& format) {
        xml_.begin("xs:schema", {{"xmlns:xs", "http://www.w3.org/2001/XMLSchema"}});
        xml_.comment(generatedNote);
        documentation(format.sentence);
        std::vector<Group> global;
        add(global, format.root);
        const Elements all = elementsOf(format);
        for (const ElementInfo* element : all) {
            if (std::ranges::any_of(element->content,
                                    [](const ElementInfo* child) { return child->name.empty(); })) {
                for (const ElementInfo* child : element->content)
                    add(global, *child);
            }
        }
        // What stands among elements of any name is checked by its name wherever it stands.
        for (const ElementInfo* element : all) {
            if (std::ranges::find(global, shownName(*element), &Group::name) != global.end())
                add(global, *element);
        }
        for (const Group& group : global)
            element(group);
        // Types are asked for while others are written.
        std::size_t written = 0;
        while (written < types_.size())
            type(Elements(types_[written++]));
        xml_.end();
    }

    const std::string& str() const { return xml_.str(); }

private:
    void documentation(std::string_view text) {
        xml_.begin("xs:annotation");
        xml_.text("xs:documentation", text);
        xml_.end();
    }

    /// The name of the type of some elements, which is written later.
    std::string typeOf(const Elements& elements) {
        if (std::ranges::find(types_, elements) == types_.end())
            types_.push_back(elements);
        std::string name;
        for (const ElementInfo* each : elements) {
            if (!name.empty())
                name += '.';
            name += each->id;
        }
        return name;
    }

    void element(const Group& group) {
        const std::string type = typeOf(group.elements);
        xml_.begin("xs:element", {{"name", group.name}, {"type", type}});
        std::string sentences;
        for (const ElementInfo* each : group.elements) {
            if (!sentences.empty())
                sentences += " Or: ";
            sentences += each->sentence;
        }
        documentation(sentences);
        xml_.end();
    }

    void type(const Elements& elements) {
        xml_.begin("xs:complexType", {{"name", typeOf(elements)}});
        const bool holdsText = std::ranges::any_of(
            elements, [](const ElementInfo* each) { return each->holds == Content::text; });
        if (holdsText) {
            xml_.begin("xs:simpleContent");
            xml_.begin("xs:extension", {{"base", "xs:string"}});
        } else {
            content(elements);
        }
        std::vector<std::string_view> written;
        for (const ElementInfo* each : elements) {
            for (const AttributeInfo& row : each->attributes) {
                if (std::ranges::find(written, row.name) == written.end())
                    attribute(elements, *each, row);
                written.push_back(row.name);
            }
        }
        if (holdsText) {
            xml_.end();
            xml_.end();
        }
        xml_.end();
    }

    void content(const Elements& elements) {
        std::vector<Group> children;
        bool isAnyName = false;
        bool isOne = true;
        for (const ElementInfo* each : elements) {
            isOne &= each->holds == Content::element;
            for (const ElementInfo* child : each->content) {
                isAnyName |= child->name.empty();
                add(children, *child);
            }
        }
        if (children.empty())
            return;
        const std::string_view least = isOne ? "1" : "0";
        const std::string_view most = isOne ? "1" : "unbounded";
        if (isAnyName) {
            xml_.begin("xs:sequence");
            xml_.leaf("xs:any",
                      {{"minOccurs", least}, {"maxOccurs", most}, {"processContents", "lax"}});
            return xml_.end();
        }
        xml_.begin("xs:choice", {{"minOccurs", least}, {"maxOccurs", most}});
        for (const Group& child : children)
            element(child);
        xml_.end();
    }

    /// An attribute that several elements of one name have is checked where all agree.
    void attribute(const Elements& elements, const ElementInfo& element, const AttributeInfo& row) {
        const bool isNeeded = std::ranges::all_of(elements, [&](const ElementInfo* each) {
            const auto own = std::ranges::find(each->attributes, row.name, &AttributeInfo::name);
            return own != each->attributes.end() && isRequired(*own);
        });
        xml_.begin("xs:attribute",
                   {{"name", row.name}, {"use", isNeeded ? "required" : "optional"}});
        documentation(hoverText(element, row));
        if (elements.size() > 1)
            simpleType("xs:string", {});
        else
            value(element, row);
        xml_.end();
    }

    using Facets = std::vector<std::pair<std::string_view, std::string_view>>;

    void simpleType(std::string_view base, const Facets& facets) {
        xml_.begin("xs:simpleType");
        xml_.begin("xs:restriction", {{"base", base}});
        for (const auto& [name, value] : facets)
            xml_.leaf("xs:" + std::string(name), {{"value", value}});
        xml_.end();
        xml_.end();
    }

    void value(const ElementInfo& element, const AttributeInfo& row) {
        Facets facets;
        bool hasPattern = false;
        for (const ValueInfo* limit : limitsOf(element, row.name)) {
            hasPattern |= limit->facet == "pattern";
            facets.emplace_back(limit->facet, limit->value);
        }
        if (hasPattern)
            return simpleType("xs:string", facets);
        switch (row.kind) {
            case AttributeKind::text:
                return simpleType("xs:string", facets);
            case AttributeKind::flag:
                return simpleType("xs:string", {{"enumeration", "true"}, {"enumeration", "false"}});
            case AttributeKind::integer:
            case AttributeKind::wholeNumber:
                return simpleType("xs:string", {{"pattern", integerPattern}});
            case AttributeKind::decimal:
                return simpleType("xs:string", {{"pattern", decimalPattern}});
            case AttributeKind::nameList:
                return simpleType("xs:string", {{"minLength", "1"}});
        }
    }

    XmlText xml_;
    std::vector<Elements> types_;
};

}  // namespace

std::string xmlSchema(const FormatInfo& format) {
    return Schema(format).str();
}

}  // namespace yg::describe
