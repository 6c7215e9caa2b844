// SPDX-License-Identifier: MIT
//
// Tests whose repetitions find what happens only now and then. Their suites have names that end in
// "Proof". The test run repeats them a little; `scripts/prove` many times more.
#pragma once

#include <cstdlib>

#include "LargeInput.h"

namespace yg::testing {

/// Whether the child of a process with several threads may allocate: at a fork the sanitizers' own
/// allocators can be locked for ever.
inline constexpr bool childrenMayAllocate = !isSanitized;

/// How often to repeat: in the test run (a quarter of it under sanitizers), or in a proof.
inline int repeats(int usual, int inProof) {
    if (std::getenv("YG_PROOF"))
        return inProof;
    return isSanitized ? (usual + 3) / 4 : usual;
}

}  // namespace yg::testing
