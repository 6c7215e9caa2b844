// SPDX-License-Identifier: MIT
#include "YGConfigManager/xml/Query.h"

#include <exception>
#include <string>

#include "YGConfigManager/xml/Tree.h"

namespace yg::xml {

Query::Query(std::string_view expression) {
    if (expression.find('\0') != std::string_view::npos)
        return;
    try {
        auto compiled = std::make_shared<Compiled>(std::string(expression).c_str());
        if (compiled->query.return_type() == pugi::xpath_type_node_set)
            compiled_ = std::move(compiled);
    } catch (const std::exception&) {
        // An expression that does not compile selects nothing.
    }
}

}  // namespace yg::xml
