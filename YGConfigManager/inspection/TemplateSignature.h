// SPDX-License-Identifier: MIT
//
// What names of custom pages can be made of.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "YGConfigManager/inspection/RootFinding.h"

namespace yg {

/// A style that custom pages can be made of.
struct TemplateSignature {
    /// A place in the style that an argument of the name fills.
    struct Slot {
        std::optional<std::string> group;  ///< absent when the slot names none
        /// What a page's name may give; the slot stays open when there is none. Never null, and the
        /// same list for all slots of a group.
        std::shared_ptr<const std::vector<std::string>> arguments;
    };
    std::string name;         ///< of the style
    RootPlace place;          ///< where it is defined
    std::vector<Slot> slots;  ///< in order, one for each argument of a name
    /// The names of pages that it can build whole; the largest number when there are more.
    std::uint64_t pages = 0;
};

}  // namespace yg
