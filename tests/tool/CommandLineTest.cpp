// SPDX-License-Identifier: MIT
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tool/TextOf.h"
#include "ygconfig/commandline/CommandLine.h"

namespace {

using yg::tool::Arguments;
using yg::tool::CommandLine;
using yg::tool::ExitCode;
using yg::tool::readCommandLine;

/// The arguments of a line that names this command.
Arguments argumentsOf(const std::vector<std::string>& words, std::string_view command) {
    const CommandLine line = readCommandLine(words);
    EXPECT_NE(line.command, nullptr) << line.answer.complaint;
    if (line.command) {
        EXPECT_EQ(line.command->words, command);
    }
    return line.arguments;
}

std::string complaintAbout(const std::vector<std::string>& words) {
    const CommandLine line = readCommandLine(words);
    EXPECT_EQ(line.command, nullptr);
    EXPECT_EQ(line.answer.exitCode, ExitCode::unusable);
    EXPECT_EQ(yg::testing::textOf(line.answer.output), "");
    return line.answer.complaint;
}

TEST(CommandLine, LeavesAbsentWhatIsNotGiven) {
    const Arguments arguments = argumentsOf({"dump", "layout"}, "dump layout");
    EXPECT_EQ(arguments.root, ".");
    EXPECT_EQ(arguments.right, std::nullopt);
    EXPECT_EQ(arguments.style, std::nullopt);
    EXPECT_EQ(arguments.tab, std::nullopt);
    EXPECT_EQ(arguments.magic, std::nullopt);
}

TEST(CommandLine, KeepsEmptyTexts) {
    const Arguments arguments =
        argumentsOf({"dump", "style", "", "--style", "", "--tab=", "--right="}, "dump style");
    EXPECT_EQ(arguments.name, "");
    EXPECT_EQ(arguments.style, "");
    EXPECT_EQ(arguments.tab, "");
    EXPECT_EQ(arguments.magic, std::nullopt);
    EXPECT_EQ(arguments.right, "");
}

TEST(CommandLine, TakesOptionsBeforeBetweenAndAfterTheWords) {
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"--root", "r", "--right", "l2", "dump", "style", "n"},
          {"dump", "--root", "r", "style", "--right", "l2", "n"},
          {"dump", "style", "n", "--right=l2", "--root=r"}}) {
        const Arguments arguments = argumentsOf(words, "dump style");
        EXPECT_EQ(arguments.root, "r");
        EXPECT_EQ(arguments.right, "l2");
        EXPECT_EQ(arguments.name, "n");
    }
}

TEST(CommandLine, TakesAnyValueForAnOption) {
    const Arguments arguments = argumentsOf(
        {"dump", "layout", "--root", "--style=x", "--style", "--", "--tab", "[a,b]", "--magic=a=b"},
        "dump layout");
    EXPECT_EQ(arguments.root, "--style=x");
    EXPECT_EQ(arguments.style, "--");
    EXPECT_EQ(arguments.tab, "[a,b]");
    EXPECT_EQ(arguments.magic, "a=b");
    EXPECT_EQ(argumentsOf({"dump", "style", "--style", "--", "n"}, "dump style").name, "n");
    EXPECT_EQ(argumentsOf({"dump", "style", "--style", "--", "--", "--tab="}, "dump style").name,
              "--tab=");
}

TEST(CommandLine, CountsTheLastOfAnOptionGivenTwice) {
    const Arguments arguments =
        argumentsOf({"--root", "a", "dump", "layout", "--style", "a", "--style=b", "--root", "b"},
                    "dump layout");
    EXPECT_EQ(arguments.root, "b");
    EXPECT_EQ(arguments.style, "b");
}

TEST(CommandLine, EndsTheOptionsAtTwoDashes) {
    EXPECT_EQ(argumentsOf({"dump", "style", "--", "--root"}, "dump style").name, "--root");
    EXPECT_EQ(argumentsOf({"dump", "--", "style", "-x"}, "dump style").name, "-x");
    EXPECT_EQ(argumentsOf({"--", "dump", "style", "--help"}, "dump style").name, "--help");
    EXPECT_EQ(argumentsOf({"dump", "style", "--", "--"}, "dump style").name, "--");
    EXPECT_EQ(argumentsOf({"dump", "style", "-"}, "dump style").name, "-");
}

TEST(CommandLine, TakesTheNameOfACommandForAName) {
    EXPECT_EQ(argumentsOf({"dump", "style", "show"}, "dump style").name, "show");
    EXPECT_EQ(argumentsOf({"dump", "style", "style"}, "dump style").name, "style");
}

TEST(CommandLine, TakesAWordThatOthersBeginWithForACommand) {
    EXPECT_EQ(argumentsOf({"show", "--style", "x"}, "show").style, "x");
    EXPECT_EQ(argumentsOf({"show", "layout", "--style", "x"}, "show layout").style, "x");
}

TEST(CommandLine, RefusesWordsTooMany) {
    EXPECT_EQ(complaintAbout({"dump", "layout", "x"}), "ygconfig dump layout: unexpected 'x'");
    EXPECT_EQ(complaintAbout({"dump", "style", "--", "-x", "-y="}),
              "ygconfig dump style: unexpected '-y'");
}

TEST(CommandLine, JoinsNoWords) {
    EXPECT_EQ(complaintAbout({"dump layout"}), "ygconfig: unexpected 'dump layout'");
    EXPECT_EQ(complaintAbout({"", "dump", "layout"}), "ygconfig: unexpected ''");
}

TEST(CommandLine, NamesTheOptionWhoseValueWasTakenForACommand) {
    EXPECT_EQ(complaintAbout({"--roto", "x", "dump", "layout"}),
              "ygconfig: unexpected '--roto'; did you mean '--root'?");
    EXPECT_EQ(complaintAbout({"show", "--stile=x"}),
              "ygconfig show: unexpected '--stile'; did you mean '--style'?");
}

TEST(CommandLine, TakesAFlagTwice) {
    EXPECT_TRUE(argumentsOf({"dump", "servers", "--gray", "--gray"}, "dump servers").gray);
    EXPECT_NE(complaintAbout({"dump", "servers", "--gray="}), "");
}

TEST(CommandLine, KeepsRepeatedOperandsInOrder) {
    const std::vector<std::string> items{"b", "", "[x,y]", "{}", "++", "x=", "show", "b"};
    std::vector<std::string> words{"choose"};
    words.insert(words.end(), items.begin(), items.end());
    EXPECT_EQ(argumentsOf(words, "choose").items, items);
    EXPECT_TRUE(argumentsOf({"choose"}, "choose").items.empty());
}

TEST(CommandLine, AnswersHelpWhateverElseIsSaid) {
    for (const std::vector<std::string>& words : {std::vector<std::string>{"--help"},
                                                  {"dump", "-h"},
                                                  {"dump", "style", "--help", "--what"}}) {
        const CommandLine line = readCommandLine(words);
        EXPECT_EQ(line.command, nullptr);
        EXPECT_EQ(line.answer.exitCode, ExitCode::answer);
        EXPECT_NE(yg::testing::textOf(line.answer.output), "");
        EXPECT_EQ(line.answer.complaint, "");
    }
}

TEST(Arguments, JoinTheRootWithOneSlash) {
    const auto inRoot = [](const char* root) {
        Arguments arguments;
        arguments.root = root;
        return arguments.inRoot("config/a.xml");
    };
    EXPECT_EQ(inRoot("r"), "r/config/a.xml");
    EXPECT_EQ(inRoot("r//"), "r/config/a.xml");
    EXPECT_EQ(inRoot("/"), "/config/a.xml");
    EXPECT_EQ(inRoot("."), "./config/a.xml");
}

}  // namespace
