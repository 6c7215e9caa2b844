// SPDX-License-Identifier: MIT
//
// The two ways to build a tree. Internal.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include <libxml/parser.h>

#include "YGConfigManager/xml/Parser.h"

namespace yg::xml {

/// Builds the tree of a text that libxml2 found well-formed, and that has neither a document type
/// nor character references, with pugixml's own parser. Of such a text both make the same tree, and
/// this way takes half the time.
std::shared_ptr<Tree> buildQuickly(std::string_view text);

/// Builds the tree of any text.
Parsed buildByCallbacks(const std::string& text);

void noteStandalone(Tree& tree, const xmlParserCtxt& context);

}  // namespace yg::xml
