// SPDX-License-Identifier: MIT
//
// The forms in which the tool prints what differs between two roots.
#pragma once

#include <cstddef>

#include "YGConfigManager/inspection/Difference.h"

#include "ygconfig/Answer.h"
#include "ygconfig/drawing/Paint.h"

namespace yg::tool {

/// For people, folded at the paint's width: first what the changes mean, a line for each page or
/// file with equal changes counted, then the changes with their places on both sides, some of each.
void writeText(const Difference& difference, const Paint& paint, Output& output);

/// Every change.
void writeJson(const Difference& difference, Output& output);

/// How many changes are of this kind.
std::size_t countOf(const Difference& difference, ChangeKind kind);

}  // namespace yg::tool
