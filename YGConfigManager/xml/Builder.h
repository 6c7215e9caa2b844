// SPDX-License-Identifier: MIT
//
// The two ways to build a tree. Internal.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include <libxml/parser.h>

#include "YGConfigManager/xml/Parser.h"

namespace yg::xml {

/// Builds the tree of a text that was found well-formed, and that has neither a document type nor
/// character references, with pugixml's own parser, in the text itself. Of such a text both make
/// the same tree, and this way takes half the time.
std::shared_ptr<Tree> buildInPlace(std::string text);

/// Builds the tree of any text.
Parsed buildByCallbacks(const std::string& text);

/// What the declaration says of "standalone"; absent when it does not.
std::optional<bool> standaloneOf(const xmlParserCtxt& context);

}  // namespace yg::xml
