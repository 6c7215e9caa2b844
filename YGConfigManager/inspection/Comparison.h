// SPDX-License-Identifier: MIT
//
// The changes between the things of two roots. Internal. Throws std::bad_alloc.
//
// What is listed is matched first by its name with equal content, then by its name, then by its
// content alone. A panel or an element that is left over is looked for in the whole page. Time
// grows with n log n in the things that differ; nothing is matched by trying pairs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/inspection/Difference.h"
#include "YGConfigManager/inspection/Things.h"

namespace yg {

/// The paths of things, each as a step behind another path.
class Paths {
public:
    static constexpr std::uint32_t top = 0;  ///< the root's, of no names

    std::uint32_t add(std::uint32_t above, Subject subject, std::string_view name) {
        steps_.push_back({above, {subject, std::string(name)}});
        return static_cast<std::uint32_t>(steps_.size());
    }

    std::vector<NamedThing> namesOf(std::uint32_t path) const;
    std::uint32_t above(std::uint32_t path) const { return steps_[path - 1].above; }

private:
    struct Step {
        std::uint32_t above;
        NamedThing thing;
    };
    std::vector<Step> steps_;
};

std::vector<Change> changesBetween(const Things& before, const Things& after, Paths& paths);

}  // namespace yg
