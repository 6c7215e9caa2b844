// SPDX-License-Identifier: MIT
//
// Trees drawn with box characters, a line or more for each branch, the details of all of them in
// one column.
#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "ygconfig/Answer.h"
#include "ygconfig/drawing/Details.h"
#include "ygconfig/drawing/Paint.h"

namespace yg::tool {

struct Branch;

/// Branches that are made one after the other, each when it is drawn, since places that share a
/// record can be very many. Each is made twice, the first time to measure it.
struct LaterBranches {
    std::size_t count = 0;
    std::function<Branch(std::size_t)> make = {};
};

struct Branch {
    std::string label;  ///< printable, without colours
    Tone tone = Tone::plain;
    Details details = {};  ///< empty for none
    std::vector<Branch> children = {};
    LaterBranches later = {};  ///< below the children
};

/// Puts out the lines of a tree, each with its line feed. The root stands at the left margin. What
/// is wider than the display is folded, with the branches beside it; only where branches leave less
/// than twenty columns are lines wider.
void drawTree(const Branch& root, const Paint& paint, Output& output);

/// The same lines as one text.
std::string drawTree(const Branch& root, const Paint& paint);

/// The lines of several trees, one below the other, with one column for the details of all.
std::string drawTrees(std::span<const Branch> roots, const Paint& paint);

}  // namespace yg::tool
