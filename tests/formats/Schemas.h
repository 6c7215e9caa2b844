// SPDX-License-Identifier: MIT
//
// Validates texts by schemas, in the process.
#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

#include <libxml/parser.h>
#include <libxml/relaxng.h>
#include <libxml/xmlschemas.h>

namespace yg::testing {

namespace detail {

inline void ignore(void*, const char*, ...) {}

inline std::unique_ptr<xmlDoc, void (*)(xmlDoc*)> parsed(std::string_view text) {
    std::unique_ptr<xmlDoc, void (*)(xmlDoc*)> document(
        xmlReadMemory(text.data(), static_cast<int>(text.size()), "test.xml", nullptr,
                      XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_NONET),
        xmlFreeDoc);
    if (!document)
        throw std::runtime_error("not well-formed: " + std::string(text));
    return document;
}

}  // namespace detail

class RelaxNgSchema {
public:
    explicit RelaxNgSchema(const std::string& schema) {
        xmlRelaxNGParserCtxt* const parser =
            xmlRelaxNGNewMemParserCtxt(schema.data(), static_cast<int>(schema.size()));
        schema_.reset(xmlRelaxNGParse(parser));
        xmlRelaxNGFreeParserCtxt(parser);
        if (!schema_)
            throw std::runtime_error("not a RELAX NG schema");
    }

    bool accepts(std::string_view text) const {
        const auto document = detail::parsed(text);
        xmlRelaxNGValidCtxt* const validation = xmlRelaxNGNewValidCtxt(schema_.get());
        xmlRelaxNGSetValidErrors(validation, detail::ignore, detail::ignore, nullptr);
        const int answer = xmlRelaxNGValidateDoc(validation, document.get());
        xmlRelaxNGFreeValidCtxt(validation);
        return answer == 0;
    }

private:
    std::unique_ptr<xmlRelaxNG, void (*)(xmlRelaxNG*)> schema_{nullptr, xmlRelaxNGFree};
};

class XmlSchemaSchema {
public:
    explicit XmlSchemaSchema(const std::string& schema) {
        xmlSchemaParserCtxt* const parser =
            xmlSchemaNewMemParserCtxt(schema.data(), static_cast<int>(schema.size()));
        schema_.reset(xmlSchemaParse(parser));
        xmlSchemaFreeParserCtxt(parser);
        if (!schema_)
            throw std::runtime_error("not an XML Schema");
    }

    bool accepts(std::string_view text) const {
        const auto document = detail::parsed(text);
        xmlSchemaValidCtxt* const validation = xmlSchemaNewValidCtxt(schema_.get());
        xmlSchemaSetValidErrors(validation, detail::ignore, detail::ignore, nullptr);
        const int answer = xmlSchemaValidateDoc(validation, document.get());
        xmlSchemaFreeValidCtxt(validation);
        return answer == 0;
    }

private:
    std::unique_ptr<xmlSchema, void (*)(xmlSchema*)> schema_{nullptr, xmlSchemaFree};
};

}  // namespace yg::testing
