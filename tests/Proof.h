// SPDX-License-Identifier: MIT
//
// Tests whose repetitions find what happens only now and then. Their suites have names that end in
// "Proof". The test run repeats them a little; `scripts/prove` many times more.
#pragma once

#include <cstdlib>

#include "LargeInput.h"

namespace yg::testing {

/// Whether the child of a process with several threads may allocate: at a fork the address
/// sanitizer's own allocator can be locked for ever.
#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool childrenMayAllocate = false;
#elif defined(__has_feature)
inline constexpr bool childrenMayAllocate = !__has_feature(address_sanitizer);
#else
inline constexpr bool childrenMayAllocate = true;
#endif

/// How often to repeat: in the test run (a quarter of it under sanitizers), or in a proof.
inline int repeats(int usual, int inProof) {
    if (std::getenv("YG_PROOF") != nullptr) {
        return inProof;
    }
    return isSanitized ? (usual + 3) / 4 : usual;
}

}  // namespace yg::testing
