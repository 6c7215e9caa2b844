// SPDX-License-Identifier: MIT
//
// The strict reader: libxml2 judges and calls back, a pugixml tree is built. Internal.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "YGConfigManager/xml/Document.h"
#include "YGConfigManager/xml/Tree.h"

namespace yg::xml {

struct Parsed {
    std::shared_ptr<Tree> tree;      ///< null on failure
    std::vector<ParseError> errors;  ///< empty on success
};

/// Parses UTF-8 text. Throws std::bad_alloc when memory does not suffice. `byCallbacks` asks for
/// the slower of the two ways to build a tree, which make the same of any text.
Parsed parseUtf8(const std::string& text, bool byCallbacks);

/// Whether parseUtf8 gives a tree of such a text.
bool isReadable(const std::string& text);

}  // namespace yg::xml
