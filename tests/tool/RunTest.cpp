// SPDX-License-Identifier: MIT
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "YGConfigManager/host/YGFrameComFun.h"

#include "files/TemporaryFolder.h"
#include "tool/TextOf.h"
#include "ygconfig/Run.h"

namespace {

using yg::YGFrameComFun;
using yg::files::TemporaryFolder;
using yg::testing::textOf;
using yg::tool::Answer;
using yg::tool::Arguments;
using yg::tool::Command;
using yg::tool::ExitCode;
using yg::tool::Session;

/// Answers what a loader would get from the host.
Answer askHost(const Session&) {
    return {YGFrameComFun::getUserRightDescription().value_or("(absent)") + " " +
            YGFrameComFun::getSoftOptimizeConfigFilePath(0, "f").value_or("(absent)")};
}

const Command asking{"ask", "", "", "", [](CLI::App&, Arguments&) {}, askHost};

std::string answerFor(const std::string& root, std::optional<std::string> right) {
    Arguments arguments;
    arguments.root = root;
    arguments.right = std::move(right);
    return textOf(yg::tool::run({&asking, arguments, {}}, {}).output);
}

TEST(Run, InstallsTheHostOfTheRoot) {
    const TemporaryFolder root;
    EXPECT_EQ(answerFor(root.path(), std::nullopt), "(absent) " + root.at("soft_optimize/f"));
}

TEST(Run, PutsTheRightOfTheOptionBeforeHostJson) {
    const TemporaryFolder root;
    root.write("host.json", R"({"rightLevel": "free"})");
    const std::string path = std::string(" ") + root.at("soft_optimize/f");
    EXPECT_EQ(answerFor(root.path(), std::nullopt), "free" + path);
    EXPECT_EQ(answerFor(root.path(), "l2"), "l2" + path);
    EXPECT_EQ(answerFor(root.path(), ""), path);
}

TEST(Run, RefusesARootThatDoesNotExist) {
    const TemporaryFolder root;
    Arguments arguments;
    arguments.root = root.at("none");
    const Answer answer = yg::tool::run({&asking, arguments, {}}, {});
    EXPECT_EQ(answer.exitCode, ExitCode::unusable);
    EXPECT_EQ(textOf(answer.output), "");
    EXPECT_NE(answer.complaint.find(root.at("none")), std::string::npos);
}

TEST(Run, AnswersWhatTheCommandLineAnswered) {
    const Answer answer = yg::tool::run({nullptr, {}, {"help\n"}}, {});
    EXPECT_EQ(textOf(answer.output), "help\n");
}

}  // namespace
