// SPDX-License-Identifier: MIT
//
// The strict reader: what is not plain text libxml2 judges, then a pugixml tree is built. Internal.
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

/// Parses UTF-8 text, which the tree keeps if it can hold it as it stands. Throws std::bad_alloc
/// when memory does not suffice.
Parsed parseUtf8(std::string text);

/// Whether parseUtf8 gives a tree of such a text.
bool isReadable(const std::string& text);

/// The same, found by libxml2 and our limits alone, without the look that spares most texts both.
bool isJudgedReadable(const std::string& text);

}  // namespace yg::xml
