// SPDX-License-Identifier: MIT
//
// How the group of a server type is found and read. Internal; throws std::bad_alloc.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "YGConfigManager/diagnostics/Reporter.h"
#include "YGConfigManager/servers/RandomSource.h"
#include "YGConfigManager/servers/ServerOffer.h"
#include "YGConfigManager/servers/YGServerAddrListTag.h"
#include "YGConfigManager/xml/Node.h"

namespace yg {

/// Whether a group whose attribute "type" is written so is of a type. It is compared as a number.
bool isServerType(std::string_view written, std::uint64_t type);

/// The groups of a type in the document that holds the element, in its order; the first counts.
std::vector<xml::Node> serverGroups(const xml::Element& root, std::uint64_t serverType);

/// Reads the group that counts, if there is one, and reports the others.
void readServerGroup(const std::vector<xml::Node>& found, YGServerAddrListTag& group,
                     const Reporter& reporter, RandomSource& random);

/// What the entries of a group offer.
std::vector<ServerOffer> serverOffers(const xml::Element& group);

}  // namespace yg
