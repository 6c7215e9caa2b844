// SPDX-License-Identifier: MIT
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/inspection/RootContents.h"
#include "YGConfigManager/settings/YGAppConfigManager.h"

#include "inspection/Inspected.h"

namespace yg::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::FieldsAre;
using ::testing::Optional;

const InspectionOptions kept{.unsaved = {}, .keepsContents = true};

std::string page(const std::string& content) {
    return "<styles>\n<style name='p'>" + content + "</style>\n</styles>";
}

TEST(RootContents, AreKeptOnRequestAlone) {
    const files::TemporaryFolder folder;
    EXPECT_EQ(inspected(folder.path())->contents(), nullptr);
    EXPECT_NE(inspected(folder.path(), kept)->contents(), nullptr);
}

TEST(RootContents, SayWhichTagARecordWasReadFrom) {
    const files::TemporaryFolder folder;
    folder.write("config/custompage_template.xml",
                 page("<panel name='a'>\n  <element name='Grid'\n uuid='u'/></panel>"));
    const auto inspection = inspected(folder.path(), kept);
    const RootContents& contents = *inspection->contents();
    const auto& style = *contents.layout().styleInfos()->find("p");
    const auto& panel = style->stylePanes()->front();
    EXPECT_THAT(contents.placeOf(style.get()),
                Optional(FieldsAre("config/custompage_template.xml", TextPoint{2, 1},
                                   TextPoint{2, 17}, "")));
    EXPECT_THAT(contents.placeOf(panel->paneElements()->front().get()),
                Optional(FieldsAre("config/custompage_template.xml", TextPoint{3, 3},
                                   TextPoint{4, 12}, "")));
    EXPECT_EQ(contents.placeOf(&contents), std::nullopt);
}

TEST(RootContents, HaveShippedFilesBeforeTheUsers) {
    const files::TemporaryFolder folder;
    for (const char* const storage : {"storage/", "user/"}) {
        folder.write(storage + std::string("palette_white.xml"), "<ROOT/>");
        folder.write(storage + std::string("skeleton_v1.xml"), "<servers/>");
        folder.write(storage + std::string("app_config.xml"), "<config/>");
        folder.write(storage + std::string("web_page_urls.xml"), "<urls/>");
        folder.write(storage + std::string("request_urls_json.txt"), "{}");
    }
    const auto inspection = inspected(folder.path(), kept);
    const RootContents& contents = *inspection->contents();
    ASSERT_EQ(contents.palettes().size(), 2u);
    EXPECT_EQ(contents.palettes()[0].file, "storage/palette_white.xml");
    EXPECT_FALSE(contents.palettes()[0].isUsers);
    EXPECT_EQ(contents.palettes()[1].file, "user/palette_white.xml");
    EXPECT_TRUE(contents.palettes()[1].isUsers);
    EXPECT_FALSE(contents.servers().empty());
    for (const RootContents::Servers& each : contents.servers())
        EXPECT_EQ(each.isUsers, each.file.starts_with("user/"));
    EXPECT_THAT(contents.settingsFiles(),
                ElementsAre("storage/app_config.xml", "user/app_config.xml"));
    EXPECT_THAT(contents.webPageFiles(),
                ElementsAre("storage/web_page_urls.xml", "user/web_page_urls.xml"));
    EXPECT_THAT(contents.requestUrlFiles(),
                ElementsAre("storage/request_urls_json.txt", "user/request_urls_json.txt"));
}

TEST(RootContents, LookUpAsTheTerminalOfTheRootDoes) {
    const files::TemporaryFolder folder;
    const auto settings = [](const std::string& theme) {
        return "<config><look><theme>" + theme + "</theme></look></config>";
    };
    folder.write("storage/app_config.xml", settings("light"));
    folder.write("user/app_config.xml", settings("dark"));
    const auto inspection = inspected(folder.path(), kept);
    const auto theme = [&](RootContents::Storage storage) {
        std::optional<std::string> text;
        inspection->contents()->asTerminal(storage, [&] {
            text = YGAppConfigManager::initWithFileName("app_config.xml")
                       ->getItemText("look", "theme");
        });
        return text;
    };
    EXPECT_EQ(theme(RootContents::Storage::shipped), "light");
    EXPECT_EQ(theme(RootContents::Storage::user), "dark");
    EXPECT_EQ(theme(RootContents::Storage::asUsed), "dark");
    EXPECT_THROW(inspection->contents()->asTerminal(RootContents::Storage::shipped,
                                                    [] { throw std::string("work"); }),
                 std::string);
    EXPECT_EQ(theme(RootContents::Storage::asUsed), "dark");
}

TEST(RootContents, BuildCustomPagesAfterTheInspectionAsOften) {
    const files::TemporaryFolder folder;
    folder.write("config/custompage_template.xml",
                 page("<panel name='a'><magic_panels name='g'/></panel>"));
    folder.write("config/magic_panels.xml",
                 "<groups><magic_panels name='g'><magic_panel name='KEY'><panel name='KEY_view'/>"
                 "</magic_panel></magic_panels></groups>");
    folder.write("soft_optimize/custompage_template.xml", "<styles/>");
    folder.write("host.json", R"({"mappings": {"模版通配": {"KEY": ["one", "two"]}}})");
    const auto inspection = inspected(folder.path(), kept);
    const std::size_t findings = inspection->findings().size();
    inspection->contents()->asTerminal(RootContents::Storage::asUsed, [&] {
        const auto& layout = inspection->contents()->layout();
        for (const char* const name : {"one", "two", "one"}) {
            const auto style = layout.loadStyleConfigInfoWithName("p-" + std::string(name));
            ASSERT_NE(style, nullptr);
            const auto& panel = style->stylePanes()->front()->panePanes()->front();
            EXPECT_EQ(panel->panelName(), std::string(name) + "_view");
        }
    });
    EXPECT_EQ(inspection->findings().size(), findings);
}

TEST(RootContents, MeasureDeclaredPairsInEachPaletteThatHasTheirColours) {
    const files::TemporaryFolder folder;
    const auto palette = [](const std::string& gray, const std::string& key) {
        return "<ROOT><SWPALETTE><COLORES><C NAME='n' R='0' G='0' B='0'/><C NAME='g' R='" + gray +
               "' G='" + gray + "' B='" + gray +
               "'/></COLORES><APP_MAP><COLORES>"
               "<I KEY='t' VALUE='n'/><I KEY='" +
               key +
               "' VALUE='g'/></COLORES></APP_MAP>"
               "</SWPALETTE></ROOT>";
    };
    folder.write("storage/palette_white.xml", palette("255", "g"));
    folder.write("user/palette_white.xml", palette("117", "g"));
    folder.write("storage/palette_black.xml", palette("255", "other"));
    folder.write("contrast.json", R"({"pairs": [{"text": "t", "ground": "g", "minimum": 4.5},
        {"text": "unknown", "ground": "g", "minimum": 4.5}]})");
    const auto inspection = inspected(folder.path(), kept);
    const auto pairs = inspection->contents()->contrasts();
    ASSERT_EQ(pairs.size(), 2u);
    EXPECT_EQ(pairs[0].palette, "storage/palette_white.xml");
    EXPECT_EQ(pairs[0].text, "t");
    EXPECT_EQ(pairs[0].ground, "g");
    EXPECT_EQ(pairs[0].over, std::nullopt);
    EXPECT_EQ(pairs[0].minimum, 4.5);
    EXPECT_DOUBLE_EQ(pairs[0].ratio, 21);
    EXPECT_EQ(pairs[0].ratioText, "21.00:1");
    EXPECT_TRUE(pairs[0].isEnough);
    EXPECT_THAT(pairs[0].place, FieldsAre("contrast.json", TextPoint{1, 12}, ::testing::_, ""));
    EXPECT_EQ(pairs[1].palette, "user/palette_white.xml");
    EXPECT_EQ(pairs[1].ratioText, "4.55:1");
    EXPECT_TRUE(pairs[1].isEnough);
}

TEST(RootContents, NameTheFilesOfImagesInTheFolderAlone) {
    const files::TemporaryFolder folder;
    folder.write("images/a.png", "");
    const auto inspection = inspected(folder.path(), kept);
    const RootContents& contents = *inspection->contents();
    EXPECT_EQ(contents.imageFile("a.png"), folder.path() + "/images/a.png");
    EXPECT_EQ(contents.imageFile("b/../a.png"), folder.path() + "/images/b/../a.png");
    EXPECT_EQ(contents.imageFile("../a.png"), std::nullopt);
}

TEST(RootContents, PlaceRequestUrlsThatCount) {
    const files::TemporaryFolder folder;
    folder.write("storage/request_urls_json.txt",
                 "{\"urlConfigList\": [\n{\"urlKey\": \"k\", \"urlValue\": \"v\"},\n"
                 "{\"urlKey\": \"k\", \"urlValue\": \"w\"}, {\"urlValue\": \"w\"}]}");
    folder.write("user/request_urls_json.txt", "[]");
    const auto inspection = inspected(folder.path(), kept);
    const RootContents& contents = *inspection->contents();
    EXPECT_THAT(
        contents.requestUrlPlaces("storage/request_urls_json.txt"),
        ElementsAre(::testing::Pair("k", FieldsAre("storage/request_urls_json.txt",
                                                   TextPoint{2, 12}, TextPoint{2, 31}, ""))));
    EXPECT_THAT(contents.requestUrlPlaces("user/request_urls_json.txt"), ::testing::IsEmpty());
    EXPECT_THAT(contents.requestUrlPlaces("user/missing.txt"), ::testing::IsEmpty());
}

}  // namespace
}  // namespace yg::testing
