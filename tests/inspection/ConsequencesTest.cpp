// SPDX-License-Identifier: MIT
//
// One cause is one finding.
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "inspection/Inspected.h"

namespace yg::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::string page =
    "<styles default_style=\"q\"><style name=\"q\"><panel name=\"a\">"
    "<reuse_panel name=\"bar\"/></panel></style></styles>";

/// "RULE: NUMBER" for each finding in the reuse panels with consequences.
std::vector<std::string> causes(const Files& files) {
    const files::TemporaryFolder folder;
    for (const auto& [name, bytes] : files)
        folder.write(name, bytes);
    const auto inspection = inspected(folder.path());
    std::vector<std::string> lines;
    for (const RootFinding& finding : inspection->findings()) {
        if (finding.file == "base_optimize/reuse_panels.xml" && !finding.consequences.empty())
            lines.push_back(std::string(finding.rule->name) + ": " +
                            std::to_string(finding.consequences.size()));
    }
    return lines;
}

TEST(Consequences, OfAFileThatCannotBeReadAreTheReferencesIntoIt) {
    const Files files{
        {"config/custompage_template.xml", page},
        {"base_optimize/reuse_panels.xml", "<reuse_panels><reuse_panel name=\"bar\">"}};
    EXPECT_THAT(causes(files), ElementsAre("unreadable-file: 1"));
    EXPECT_THAT(linesOf(files, "unknown-reuse-panel"), IsEmpty());
}

TEST(Consequences, OfADroppedDefinitionAreItsReferences) {
    const Files files{{"config/custompage_template.xml", page},
                      {"base_optimize/reuse_panels.xml",
                       "<reuse_panels><x><reuse_panel name=\"bar\"/></x></reuse_panels>"}};
    EXPECT_THAT(causes(files), ElementsAre("missing-name: 2"));
    EXPECT_THAT(linesOf(files, "unknown-reuse-panel"), IsEmpty());
}

TEST(Consequences, AreNotReferencesToNamesThatWereNeverThere) {
    const Files files{{"config/custompage_template.xml", page},
                      {"base_optimize/reuse_panels.xml", "<reuse_panels/>"}};
    EXPECT_THAT(causes(files), IsEmpty());
    EXPECT_THAT(linesOf(files, "unknown-reuse-panel"), ::testing::SizeIs(1));
}

}  // namespace
}  // namespace yg::testing
