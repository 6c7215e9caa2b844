// SPDX-License-Identifier: MIT
//
// What an author probably meant, and which text of the file it would replace.
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "inspection/Inspected.h"

namespace yg::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

std::string styles(const std::string& content) {
    return "<styles default_style=\"quote\">\n<style name=\"quote\">" + content +
           "</style>\n</styles>";
}

TEST(Suggestions, OfAnAttributeReplacesItsNameAlone) {
    const files::TemporaryFolder folder;
    folder.write("config/custompage_template.xml",
                 styles("<panel name=\"main\" split_scal=\"0.68\"/>"));
    const auto inspection = inspected(folder.path());
    for (const RootFinding& finding : inspection->findings()) {
        if (finding.rule->name != "unknown-attribute")
            continue;
        EXPECT_EQ(finding.suggestion, "split_scale");
        EXPECT_EQ(finding.attribute, "split_scal");
        EXPECT_EQ(finding.value, "0.68");
        EXPECT_EQ(finding.end.column - finding.begin.column, 10U);
        EXPECT_EQ(finding.extentEnd.column - finding.extentBegin.column, 17U);
        return;
    }
    FAIL() << "there is no such finding";
}

TEST(Suggestions, AreNotAnAttributeThatIsThereAlready) {
    EXPECT_THAT(linesOf({{"config/custompage_template.xml",
                          styles("<panel name=\"a\" split_scale=\"1\" split_scal=\"2\"/>")}},
                        "unknown-attribute"),
                ElementsAre("config/custompage_template.xml:2:53 error unknown-attribute 2"));
}

TEST(Suggestions, SayWhereAnAttributeBelongs) {
    const files::TemporaryFolder folder;
    folder.write("config/custompage_template.xml", styles("<panel name=\"a\" uuid=\"1\"/>"));
    const auto inspection = inspected(folder.path());
    std::string message;
    for (const RootFinding& finding : inspection->findings()) {
        if (finding.rule->name == "unknown-attribute")
            message = finding.message;
    }
    EXPECT_THAT(message, HasSubstr("It belongs to <element>."));
}

TEST(Suggestions, OfAnElementReplacesItsName) {
    EXPECT_THAT(
        linesOf({{"config/custompage_template.xml", styles("<panl name=\"a\"/>")}},
                "unknown-element"),
        ElementsAre("config/custompage_template.xml:2:22 error unknown-element panl -> panel"));
}

TEST(Suggestions, OfAReferenceReplacesTheNameInTheQuotes) {
    EXPECT_THAT(
        linesOf({{"config/custompage_template.xml",
                  styles("<panel name=\"a\"><reuse_panel name=\"tool_bar\"/></panel>")},
                 {"base_optimize/reuse_panels.xml",
                  "<reuse_panels><reuse_panel name=\"toolbar\"/></reuse_panels>"}},
                "unknown-reuse-panel"),
        ElementsAre("config/custompage_template.xml:2:56 error unknown-reuse-panel tool_bar -> "
                    "toolbar"));
}

}  // namespace
}  // namespace yg::testing
