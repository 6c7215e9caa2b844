// SPDX-License-Identifier: MIT
//
// Schemas and pages made from the descriptions of file formats. They know no format: all that they
// write comes from the description given.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/formats/Format.h"

#include "generated/GeneratedFiles.h"

namespace yg::describe {

/// RELAX NG, XML syntax: what the loader takes without a finding is valid, and what it reports is
/// not, so far as one element with its attributes and content shows.
std::string relaxNg(const FormatInfo& format);

/// XML Schema 1.0, for editors: it knows the elements by their usual names. Elements that may have
/// any name are checked where they have such a name; elements of one name in one format are taken
/// together. Limits of numbers and of texts in elements are left out.
std::string xmlSchema(const FormatInfo& format);

/// JSON Schema, draft 2020-12.
std::string jsonSchema(const FormatInfo& format);

/// An XML catalogue of the schemas: "urn:ygconfigmanager:events:rng" names events.rng beside it.
std::string catalog(std::span<const FormatInfo* const> formats);

/// The page on a format, in Markdown.
std::string page(const FormatInfo& format);

/// The page that lists the formats and says what holds for all of them.
std::string indexPage(std::span<const FormatInfo* const> formats);

/// The pages on the rules of findings, in docs/rules.
std::vector<GeneratedFile> rulePages();

/// All files for these formats, and the pages on rules.
std::vector<GeneratedFile> describe(std::span<const FormatInfo* const> formats);

/// The folders that hold nothing but these files, and the schemas in them that people write.
inline constexpr std::string_view generatedFolders[] = {"schemas", "docs/formats", "docs/rules"};
inline constexpr std::string_view writtenSchemas[] = {"schemas/lint.schema.json",
                                                      "schemas/lint_baseline.schema.json"};

}  // namespace yg::describe
