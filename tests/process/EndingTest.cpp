// SPDX-License-Identifier: MIT
//
// Processes whose threads, completions and static objects use the library while they end.
#include <cstdio>
#include <string>

#include <gtest/gtest.h>

#include "Program.h"
#include "Proof.h"
#include "process/SampleRoot.h"

namespace yg::testing {
namespace {

/// Repeats it after more and more rounds of work.
void expectGoodEnds(const std::string& way, int count) {
    const SampleRoot root;
    int bad = 0;
    for (int i = 0; i < count; ++i) {
        Program one({YG_PROCESS_ENDING_PROGRAM, way, root.path(), std::to_string(i % 40)});
        bad += one.wait() != 0 ? 1 : 0;
    }
    std::printf("%d ends, %d of them bad\n", count, bad);
    EXPECT_EQ(bad, 0);
}

TEST(EndingProof, StaticObjectsMayUseTheLibrary) {
    const SampleRoot root;
    for (int i = repeats(2, 20); i > 0; --i) {
        for (const char* way : {"objects", "unused"}) {
            Program one({YG_PROCESS_ENDING_PROGRAM, way, root.path()});
            EXPECT_EQ(one.all(), "all at the end\n") << way;
            EXPECT_EQ(one.wait(), 0) << way;
        }
    }
}

TEST(EndingProof, ThreadsMayGoOnUsingTheLibrary) {
    expectGoodEnds("threads", repeats(40, 1000));
}

TEST(EndingProof, ThreadsMayGoOnParsing) {
    expectGoodEnds("parsing", repeats(20, 1000));
}

TEST(EndingProof, CompletionsMayLookUpInTheSharedLoader) {
    expectGoodEnds("completions", repeats(20, 1000));
}

TEST(EndingProof, ACompletionMayEndTheProcess) {
    expectGoodEnds("completion", repeats(10, 200));
}

}  // namespace
}  // namespace yg::testing
