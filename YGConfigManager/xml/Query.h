// SPDX-License-Identifier: MIT
//
// A compiled XPath 1.0 query, for expressions that are used again and again. Immutable: one query
// may be evaluated from several threads at once.
//
// Names compare as they are written, prefixes included; a CDATA section is a text node of its own;
// no attribute is an ID. All else is as XPath 1.0 has it, or the expression is invalid. Invalid
// are, beside what XPath forbids:
// - string-length(), substring(), round(), lang() and namespace-uri(). A text is empty if it equals
//   '', and floor(n + 0.5) rounds.
// - translate() unless its second and its third argument are literals of ASCII characters.
// - "<", "<=", ">" and ">=" between a set of nodes and a boolean; boolean() makes two booleans of
//   them.
// - A number where a string is read, as in string(), concat() and contains(). Comparing a number
//   with a string does not count.
// - The axis namespace, variables, and text that is not UTF-8.
// - More than 1023 steps, operators, predicates, arguments and brackets that follow or hold each
//   other; some count twice. So the time to compile grows with the length alone.
#pragma once

#include <memory>
#include <string_view>

#include "YGConfigManager/export.h"
#include "YGConfigManager/text/OptionalText.h"

namespace yg::xml {

class YG_EXPORT Query {
public:
    /// Compiles the expression. An invalid one gives a query that selects nothing.
    explicit Query(OptionalText expression);

    /// True when the expression is valid and its value is a set of nodes.
    explicit operator bool() const { return compiled_ != nullptr; }

private:
    friend struct Tree;
    struct Compiled;
    std::shared_ptr<const Compiled> compiled_;
};

}  // namespace yg::xml
