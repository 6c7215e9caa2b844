// SPDX-License-Identifier: MIT
#include "describe/Describe.h"

#include "describe/Words.h"
#include "describe/XmlText.h"

namespace yg::describe {

namespace {

struct SchemaKind {
    std::string_view name;
    std::string_view suffix;
    std::string (*make)(const FormatInfo&);
};

constexpr SchemaKind xmlKinds[] = {{"rng", ".rng", relaxNg}, {"xsd", ".xsd", xmlSchema}};
constexpr SchemaKind jsonKinds[] = {{"json", ".schema.json", jsonSchema}};

std::span<const SchemaKind> kindsFor(const FormatInfo& format) {
    return format.kind == FormatKind::xml ? std::span<const SchemaKind>(xmlKinds) : jsonKinds;
}

std::string schemaFile(const FormatInfo& format, const SchemaKind& kind) {
    return std::string(format.id) + std::string(kind.suffix);
}

}  // namespace

std::string catalog(std::span<const FormatInfo* const> formats) {
    XmlText xml;
    xml.begin("catalog", {{"xmlns", "urn:oasis:names:tc:entity:xmlns:xml:catalog"}});
    xml.comment(generatedNote);
    for (const FormatInfo* format : formats) {
        for (const SchemaKind& kind : kindsFor(*format)) {
            const std::string name =
                "urn:ygconfigmanager:" + std::string(format->id) + ':' + std::string(kind.name);
            xml.leaf("uri", {{"name", name}, {"uri", schemaFile(*format, kind)}});
        }
    }
    xml.end();
    return xml.str();
}

std::vector<GeneratedFile> describe(std::span<const FormatInfo* const> formats) {
    std::vector<GeneratedFile> files = rulePages();
    files.push_back({"schemas/catalog.xml", catalog(formats)});
    files.push_back({"docs/formats/index.md", indexPage(formats)});
    for (const FormatInfo* format : formats) {
        for (const SchemaKind& kind : kindsFor(*format))
            files.push_back({"schemas/" + schemaFile(*format, kind), kind.make(*format)});
        files.push_back({"docs/formats/" + std::string(format->id) + ".md", page(*format)});
    }
    return files;
}

}  // namespace yg::describe
