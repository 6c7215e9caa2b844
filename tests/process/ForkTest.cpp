// SPDX-License-Identifier: MIT
//
// Children of a process whose threads use the library at the moment of the fork.
#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

#include "Program.h"
#include "Proof.h"
#include "process/SampleRoot.h"

namespace yg::testing {
namespace {

TEST(ForkProof, ChildrenOfABusyProcessMayUseTheLibrary) {
    // The sanitizers do not expect children that go on: what the parent's threads held on their
    // stacks is lost there, and more threads are refused.
    ::setenv("ASAN_OPTIONS", "detect_leaks=0", 1);
    ::setenv("TSAN_OPTIONS", "die_after_fork=0", 1);
    const SampleRoot root;
    const std::string count = std::to_string(repeats(60, 25'000));
    Program parent({YG_PROCESS_FORK_PROGRAM, root.path(), count});
    EXPECT_EQ(parent.all(), count + " children, 0 hang, 0 fail\n");
    EXPECT_EQ(parent.wait(), 0);
    ::unsetenv("ASAN_OPTIONS");
    ::unsetenv("TSAN_OPTIONS");
}

}  // namespace
}  // namespace yg::testing
