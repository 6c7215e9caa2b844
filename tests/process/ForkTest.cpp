// SPDX-License-Identifier: MIT
//
// Children of a process whose threads use the library at the moment of the fork.
#include <string>

#include <gtest/gtest.h>

#include "Program.h"
#include "Proof.h"
#include "process/SampleRoot.h"

namespace yg::testing {
namespace {

TEST(ForkProof, ChildrenOfABusyProcessMayUseTheLibrary) {
    if (!childrenMayAllocate)
        GTEST_SKIP() << "the allocators of the sanitizers do not survive such forks";
    const SampleRoot root;
    const std::string count = std::to_string(repeats(60, 25'000));
    Program parent({YG_PROCESS_FORK_PROGRAM, root.path(), count});
    EXPECT_EQ(parent.all(), count + " children, 0 hang, 0 fail\n");
    EXPECT_EQ(parent.wait(), 0);
}

}  // namespace
}  // namespace yg::testing
