// SPDX-License-Identifier: MIT
//
// A compiled XPath 1.0 query, for expressions that are used again and again. Immutable: one query
// may be evaluated from several threads at once.
#pragma once

#include <memory>
#include <string_view>

#include "YGConfigManager/export.h"

namespace yg::xml {

class YG_EXPORT Query {
public:
    /// Compiles the expression. An invalid one gives a query that selects nothing.
    explicit Query(std::string_view expression);

    /// True when the expression is valid and its value is a set of nodes.
    explicit operator bool() const { return compiled_ != nullptr; }

private:
    friend struct Tree;
    struct Compiled;
    std::shared_ptr<const Compiled> compiled_;
};

}  // namespace yg::xml
