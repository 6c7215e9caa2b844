// SPDX-License-Identifier: MIT
#include <optional>
#include <string>
#include <vector>

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

TEST(Inspection, AnswersNoLineOfAFileThatIsNotText) {
    const files::TemporaryFolder folder;
    folder.write(
        "storage/palette_white.xml",
        "<ROOT><SWPALETTE><BITMAPS><B NAME='a' PATH='a.png'/></BITMAPS></SWPALETTE></ROOT>");
    folder.write("images/a.png", std::string("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16));
    const auto inspection = inspected(folder.path());
    EXPECT_EQ(inspection->line("images/a.png", 1), std::nullopt);
    EXPECT_EQ(inspection->line("images/a.png", 2), std::nullopt);
    EXPECT_NE(inspection->line("storage/palette_white.xml", 1), std::nullopt);
}

TEST(Inspection, AnswersLinesOfATextWithAZeroInIt) {
    const files::TemporaryFolder folder;
    folder.write("config/events.xml", std::string("<a>\n\0</a>", 9));
    const auto inspection = inspected(folder.path());
    EXPECT_EQ(inspection->line("config/events.xml", 1), "<a>");
}

TEST(Inspection, AnswersLinesOfATextInTwoBytesACharacter) {
    const files::TemporaryFolder folder;
    folder.write("config/events.xml", std::string("\xFF\xFE<\0a\0/\0>\0\n\0", 12));
    EXPECT_EQ(inspected(folder.path())->line("config/events.xml", 1), "<a/>");
}

TEST(Inspection, AnswersEachNameThatCountsOnceWithItsPlace) {
    const files::TemporaryFolder folder;
    // Read for two right levels.
    folder.write("storage/skeleton_l2_v1.xml",
                 "<application>\n<server type=\"1\">\n"
                 "<addr key=\"1\" name=\"East\" addrs=\"1:192.0.2.1:80\"/></server></application>");
    const auto inspection = inspected(folder.path());
    std::vector<std::string> names;
    for (const NamePlace& name : inspection->names())
        names.push_back(name.name + " " + name.file + ":" + std::to_string(name.begin.line) + ":" +
                        std::to_string(name.begin.column));
    EXPECT_THAT(names, ElementsAre("1 storage/skeleton_l2_v1.xml:2:15",
                                   "East storage/skeleton_l2_v1.xml:3:21"));
    EXPECT_EQ(inspection->names().data(), inspection->names().data());
}

TEST(Inspection, AnswersTheTagAndTheOtherAttributesOfAName) {
    const files::TemporaryFolder folder;
    folder.write("storage/palette_white.xml",
                 "<ROOT><SWPALETTE><FONTS>\n <F\n NAME='a' HEIGHT='9'\n FACE='x &amp; y'>t</F>"
                 "</FONTS></SWPALETTE></ROOT>");
    const auto inspection = inspected(folder.path());
    ASSERT_EQ(inspection->names().size(), 1u);
    const NamePlace& name = inspection->names().front();
    EXPECT_EQ(name.begin, (TextPoint{3, 8}));
    EXPECT_EQ(name.tagBegin, (TextPoint{2, 2}));
    EXPECT_EQ(name.tagEnd, (TextPoint{4, 19}));
    EXPECT_EQ(inspection->attributeBeside(name, "FACE"), "x & y");
    EXPECT_EQ(inspection->attributeBeside(name, "NAME"), "a");
    EXPECT_EQ(inspection->attributeBeside(name, "PATH"), std::nullopt);
}

TEST(Inspection, LeavesTheHostOfTheProcessAlone) {
    const auto before = currentHost();
    EXPECT_NO_THROW(inspected(YG_SAMPLE_FOLDER));
    EXPECT_EQ(currentHost(), before);
}

}  // namespace
}  // namespace yg::testing
