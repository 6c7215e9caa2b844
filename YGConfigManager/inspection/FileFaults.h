// SPDX-License-Identifier: MIT
//
// Why a file cannot be read as it is meant, for its author: encodings, characters of word
// processors, and slips in JSON. The parsers say such things in their own terms, or where they
// show and not where they are. Internal. Throws std::bad_alloc.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "YGConfigManager/diagnostics/Rule.h"
#include "YGConfigManager/inspection/Gathering.h"
#include "YGConfigManager/text/Place.h"

namespace yg {

struct FileFault {
    const Rule* rule;  ///< never null
    TextPoint begin;   ///< in the text that is shown: SourceFile::text()
    TextPoint end;
    std::string message;
    std::string value = {};  ///< the text concerned; "" for none
    std::optional<std::string> suggestion = {};
    TextPoint relatedBegin = {};  ///< without a line when there is none
    TextPoint relatedEnd = {};
    std::string_view related = {};
};

/// The fault as a finding about the file at the path.
Found foundOf(FileFault fault, const std::string& path);

/// What is wrong with the encoding of an XML file: its bytes are in another one than it declares or
/// than the mark says, it cannot be read by what it declares, or the declared encoding is not
/// known. Also when it can be read by chance and then gives other characters. Absent when nothing
/// is wrong.
std::optional<FileFault> encodingFaultOfXml(std::string_view bytes);

/// The same of JSON, which is always read as UTF-8.
std::optional<FileFault> encodingFaultOfJson(std::string_view bytes);

/// The bytes as GB18030, in UTF-8, if most that is not ASCII in them is Chinese then and no UTF-8.
std::optional<std::string> readAsGbk(std::string_view bytes);

/// The first character in the markup of a text in UTF-8 that stands there for one of XML: “ ” for
/// quotes, full-width signs, blanks that are no blanks to XML. Absent when there is none before the
/// text stops to be well-formed for another cause.
std::optional<FileFault> markupFault(std::string_view text);

/// What the error of the XML parser means, a sentence; the error itself when nothing better is
/// known. `parserError` ends without a full stop.
std::string plainXmlError(std::string_view parserError);

/// The first thing in a text in UTF-8 that is not JSON: by the rule `unreadable`, unless it is an
/// odd character. Absent when all is JSON but for what only reading it shows, such as a number
/// that is too large.
std::optional<FileFault> jsonFault(std::string_view text, const Rule& unreadable);

}  // namespace yg
