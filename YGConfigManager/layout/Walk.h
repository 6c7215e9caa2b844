// SPDX-License-Identifier: MIT
//
// A way through a tree that takes no stack for its depth: trees that panels were copied into are
// deeper than files, and those of a caller may be of any depth. Internal.
#pragma once

#include <utility>
#include <vector>

#include "YGConfigManager/xml/Element.h"

namespace yg {

/// Calls `visit` for each node below an element in document order.
template <class Visit>
void forEachNodeBelow(const xml::Element& top, const Visit& visit) {
    std::vector<xml::Node> pending;
    const auto add = [&](xml::Node node) {
        if (node)
            pending.push_back(std::move(node));
    };
    add(top.firstChild());
    while (!pending.empty()) {
        const xml::Node node = std::move(pending.back());
        pending.pop_back();
        visit(node);
        add(node.nextSibling());
        add(xml::Element(node).firstChild());
    }
}

}  // namespace yg
