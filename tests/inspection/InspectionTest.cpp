// SPDX-License-Identifier: MIT
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/host/Host.h"

#include "inspection/Inspected.h"

namespace yg::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

TEST(Inspection, NeedsAFolder) {
    const files::TemporaryFolder folder;
    folder.write("file", "");
    std::string error;
    EXPECT_EQ(Inspection::open(folder.at("file"), error), nullptr);
    EXPECT_THAT(error, HasSubstr("Not a directory"));
    EXPECT_EQ(Inspection::open(folder.at("nothing"), error), nullptr);
    EXPECT_THAT(error, HasSubstr("No such file"));
}

TEST(Inspection, FindsWhatALoaderReportsWithItsPlaceBelowTheRoot) {
    EXPECT_THAT(
        linesOf({{"config/events.xml", "<event_list>\n  <comand_event/>\n</event_list>"}},
                "unknown-element"),
        ElementsAre("config/events.xml:2:4 error unknown-element comand_event -> command_event"));
}

TEST(Inspection, TakesUnsavedTextsInPlaceOfFiles) {
    const files::TemporaryFolder folder;
    folder.write("config/events.xml", "<event_list/>");
    const InspectionOptions options{{{"config/events.xml", "<event_list x=\"1\"/>"}}};
    const auto inspection = inspected(folder.path(), options);
    EXPECT_THAT(linesOf(*inspection),
                ::testing::Contains("config/events.xml:1:13 error unknown-attribute 1"));
    EXPECT_EQ(inspection->line("config/events.xml", 1), "<event_list x=\"1\"/>");
    EXPECT_EQ(inspection->line("config/events.xml", 2), std::nullopt);
}

TEST(Inspection, LeavesTheHostOfTheProcessAlone) {
    const auto before = currentHost();
    EXPECT_NO_THROW(inspected(YG_SAMPLE_FOLDER));
    EXPECT_EQ(currentHost(), before);
}

}  // namespace
}  // namespace yg::testing
