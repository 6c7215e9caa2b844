// SPDX-License-Identifier: MIT
//
// The strict reader: libxml2 judges and calls back, a pugixml tree is built. Internal.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "YGConfigManager/xml/Tree.h"

namespace yg::xml {

struct Parsed {
    std::shared_ptr<Tree> tree;  ///< null on failure
    std::string error;           ///< `Line N: message`, joined with "; "
};

/// Parses UTF-8 text. With `file`, the positions of elements and attributes are kept under it.
/// Throws std::bad_alloc when memory does not suffice.
Parsed parseUtf8(const std::string& text, std::shared_ptr<const std::string> file);

/// Whether parseUtf8 gives a tree of such a text.
bool isReadable(const std::string& text);

}  // namespace yg::xml
