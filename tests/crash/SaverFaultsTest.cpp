// SPDX-License-Identifier: MIT
//
// Every system call of every saver fails, or is the last one of the process.
#include <cstdio>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "crash/Savers.h"
#include "files/FaultySaves.h"

namespace yg::testing {
namespace {

class SaverFaultsProof : public ::testing::TestWithParam<Saver> {
protected:
    ~SaverFaultsProof() override { setHost(nullptr); }

    /// A root in which the first number is saved; the second is to be.
    static Saving prepare(const files::TemporaryFolder& root) {
        std::filesystem::create_directory(root / "user");
        files::put(root / "user/settings.xml", "<config/>");
        setHost(quietHost(root.path()));
        const Save save = GetParam().open();
        EXPECT_TRUE(save(1));
        // Another host, which has not made its folder safe.
        setHost(quietHost(root.path()));
        return {root / ("user/" + std::string(GetParam().file)), [save] { return save(2); }};
    }
};

INSTANTIATE_TEST_SUITE_P(Savers, SaverFaultsProof, ::testing::ValuesIn(savers()),
                         [](const auto& parameter) { return std::string(parameter.param.name); });

TEST_P(SaverFaultsProof, AnErrorOfAnyCallLeavesOldOrNewContentAndTheRightAnswer) {
    const int savings = failEveryCall(prepare, GetParam().answersLoss);
    std::printf("%d savings with a failed call\n", savings);
}

TEST_P(SaverFaultsProof, TheEndOfTheProcessAtAnyCallLeavesOldOrNewContent) {
    const int savings = endAtEveryCall(prepare);
    std::printf("%d savings with the process ended\n", savings);
}

}  // namespace
}  // namespace yg::testing
