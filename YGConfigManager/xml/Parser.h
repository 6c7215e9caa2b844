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

/// Parses UTF-8 text, which the tree keeps if it can hold it as it stands. Throws std::bad_alloc
/// when memory does not suffice.
Parsed parseUtf8(std::string text);

/// Whether parseUtf8 gives a tree of such a text.
bool isReadable(const std::string& text);

}  // namespace yg::xml
