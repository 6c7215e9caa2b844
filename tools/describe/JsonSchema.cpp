// SPDX-License-Identifier: MIT
#include <nlohmann/json.hpp>

#include "describe/Describe.h"
#include "describe/Words.h"

namespace yg::describe {

namespace {

using Json = nlohmann::ordered_json;

Json typeOf(std::string_view type, bool mayBeNull) {
    return mayBeNull ? Json{std::string(type), "null"} : Json(std::string(type));
}

Json textOf(const ElementInfo& element, const AttributeInfo& row) {
    Json text{{"type", typeOf("string", element.isLenient)},
              {"description", meaningOf(row) + ' ' + kindOf(element, row)}};
    if (const std::string_view least = facet(element, row.name, "minLength"); !least.empty())
        text["minLength"] = std::stoi(std::string(least));
    if (const std::string_view pattern = facet(element, row.name, "pattern"); !pattern.empty())
        text["pattern"] = "^(" + std::string(pattern) + ")$";
    return text;
}

Json memberOf(const ElementInfo& element, bool mayBeNull);

Json objectOf(const ElementInfo& element, bool mayBeNull) {
    Json object{{"type", typeOf("object", mayBeNull)}, {"description", element.sentence}};
    Json required = Json::array();
    for (const AttributeInfo& row : element.attributes) {
        object["properties"][std::string(row.name)] = textOf(element, row);
        if (isRequired(row))
            required.push_back(row.name);
    }
    bool isOpen = element.isLenient;
    for (const ElementInfo* child : element.content) {
        if (child->name.empty()) {
            object["additionalProperties"] = memberOf(*child, false);
            isOpen = true;
        } else {
            object["properties"][std::string(child->name)] = memberOf(*child, element.isLenient);
        }
    }
    if (!required.empty())
        object["required"] = required;
    if (!isOpen)
        object["additionalProperties"] = false;
    return object;
}

/// A member that is an object or a list.
Json memberOf(const ElementInfo& element, bool mayBeNull) {
    if (element.holds == Content::texts)
        return {{"type", typeOf("array", mayBeNull)},
                {"description", element.sentence},
                {"items", {{"type", "string"}}}};
    if (element.holds == Content::items)
        return {{"type", typeOf("array", mayBeNull)},
                {"description", element.sentence},
                {"items", objectOf(*element.content.front(), false)}};
    return objectOf(element, mayBeNull);
}

}  // namespace

std::string jsonSchema(const FormatInfo& format) {
    Json schema{{"$schema", "https://json-schema.org/draft/2020-12/schema"},
                {"$id", "urn:ygconfigmanager:" + std::string(format.id)},
                {"$comment", generatedNote},
                {"title", format.title}};
    schema.update(objectOf(format.root, false));
    schema["description"] = format.sentence;
    return schema.dump(2) + '\n';
}

}  // namespace yg::describe
