// SPDX-License-Identifier: MIT
//
// The custom pages of an inspection. Internal. Throws std::bad_alloc.
#pragma once

#include <cstddef>

#include "YGConfigManager/inspection/Gathering.h"
#include "YGConfigManager/inspection/Loaded.h"

namespace yg {

/// The limits of the pages that are built: of one template, of all, and of the XML of all in bytes.
/// A template that could give more gives some pages in which each member is shown.
inline constexpr std::size_t maxPagesOfTemplate = 256;
inline constexpr std::size_t maxCustomPages = 4096;
inline constexpr std::size_t maxCustomPageBytes = std::size_t{8} * 1024 * 1024;

/// Adds the pages that the templates can build with each member of a slot's group, and for a
/// pattern with one value of its list, to the pages of the layout. A page that is stored is there
/// already.
void addCustomPages(Loaded& loaded, Gathering& findings);

}  // namespace yg
