// SPDX-License-Identifier: MIT
#include <cstddef>
#include <string>

#include <gtest/gtest.h>

#include "ygconfig/drawing/Tree.h"

namespace {

using yg::tool::Branch;
using yg::tool::drawTree;
using yg::tool::Paint;
using yg::tool::Tone;

Branch branch(std::string label, std::string details = "", std::vector<Branch> children = {}) {
    return {std::move(label), Tone::plain, std::move(details), std::move(children)};
}

TEST(Tree, DrawsBranches) {
    EXPECT_EQ(drawTree(branch("root", "",
                              {branch("a", "", {branch("b"), branch("c", "", {branch("d")})}),
                               branch("e", "", {branch("f")})}),
                       Paint(false)),
              "root\n"
              "├─ a\n"
              "│  ├─ b\n"
              "│  └─ c\n"
              "│     └─ d\n"
              "└─ e\n"
              "   └─ f\n");
}

TEST(Tree, DrawsBranchesThatAreMadeLaterBelowTheOthers) {
    Branch root = branch("root", "x", {branch("a", "y")});
    root.later = {2, [](std::size_t at) { return branch("later " + std::to_string(at), "z"); }};
    EXPECT_EQ(drawTree(root, Paint(false)),
              "root        x\n"
              "├─ a        y\n"
              "├─ later 0  z\n"
              "└─ later 1  z\n");
}

TEST(Tree, PutsDetailsInOneColumn) {
    EXPECT_EQ(
        drawTree(branch("市场", "x", {branch("a", "y"), branch("行情报价", "z"), branch("b")}),
                 Paint(false)),
        "市场         x\n"
        "├─ a         y\n"
        "├─ 行情报价  z\n"
        "└─ b\n");
}

TEST(Tree, KeepsTheColumnWhenALabelIsVeryLong) {
    const std::string longLabel(60, 'x');
    EXPECT_EQ(
        drawTree(branch("r", "1", {branch(longLabel, "2"), branch("abc", "3")}), Paint(false)),
        "r       1\n"
        "├─ " +
            longLabel + "  2\n" + "└─ abc  3\n");
}

TEST(Tree, FoldsDetailsBesideTheBranches) {
    const Branch tree = branch("root", "one",
                               {branch("a", "two three four five six", {branch("b")}),
                                branch("c", "two three four five six")});
    EXPECT_EQ(drawTree(tree, Paint(false, 28)),
              "root  one\n"
              "├─ a  two three four five\n"
              "│  │    six\n"
              "│  └─ b\n"
              "└─ c  two three four five\n"
              "        six\n");
}

TEST(Tree, FoldsLongLabelsBesideTheBranches) {
    const std::string label(30, 'x');
    EXPECT_EQ(drawTree(branch("r", "", {branch(label, "1", {branch("b", "2")}), branch("c")}),
                       Paint(false, 28)),
              "r\n"
              "├─ xxxxxxxxxxxxxxxxxxxxxxxxx\n"
              "│  │ xxxxx  1\n"
              "│  └─ b  2\n"
              "└─ c\n");
}

TEST(Tree, PutsDetailsBelowALabelThatLeavesNoRoom) {
    const std::string label(20, 'x');
    EXPECT_EQ(drawTree(branch("r", "1", {branch(label, "two three four"), branch("b")}),
                       Paint(false, 28)),
              "r  1\n"
              "├─ xxxxxxxxxxxxxxxxxxxx\n"
              "│     two three four\n"
              "└─ b\n");
}

TEST(Tree, AlignsColouredLabels) {
    const Branch tree{"r", Tone::plain, "1", {{"e", Tone::element, "2"}}};
    EXPECT_EQ(drawTree(tree, Paint(true)),
              "r     1\n"
              "\x1b[2m└─ \x1b[0m\x1b[32me\x1b[0m  2\n");
}

}  // namespace
