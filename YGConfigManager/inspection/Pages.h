// SPDX-License-Identifier: MIT
//
// The custom pages of an inspection. Internal. Throws std::bad_alloc.
#pragma once

#include <cstddef>
#include <map>
#include <string_view>
#include <vector>

#include "YGConfigManager/inspection/Gathering.h"
#include "YGConfigManager/inspection/Loaded.h"

namespace yg {

/// The limits of the pages that are built: of one template, of all, and of the XML of all in bytes:
/// a part of that of the layout's files, so that building takes no longer than loading them, but
/// enough for all pages of a small root. A template that could give more gives some pages in which
/// each member is shown.
inline constexpr std::size_t maxPagesOfTemplate = 256;
inline constexpr std::size_t maxCustomPages = 4096;
inline constexpr std::size_t customPageShare = 16;
inline constexpr std::size_t leastCustomPageBytes = std::size_t{256} * 1024;

/// The values of each wildcard list that a page's name can give: in the first list that has it a
/// value counts, and none with a "-". The texts of `lists` must outlive them.
std::map<std::string_view, std::vector<std::string_view>> wildcardValues(const MappingDic& lists);

/// Adds the pages that the templates can build with each member of a slot's group, and for a
/// pattern with one value of its list, to the pages of the layout. A page that is stored is there
/// already.
void addCustomPages(Loaded& loaded, Gathering& findings);

}  // namespace yg
