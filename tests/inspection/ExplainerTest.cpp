// SPDX-License-Identifier: MIT
//
// Why look-ups answer what they answer, on small roots.
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/host/HostOfThread.h"
#include "YGConfigManager/inspection/Explanation.h"
#include "YGConfigManager/inspection/InspectionHost.h"

#include "files/TemporaryFolder.h"
#include "inspection/Inspected.h"

namespace yg::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A root of these files with a host of its own, while it lives.
class Asked {
public:
    explicit Asked(const Files& files) {
        for (const auto& [name, bytes] : files)
            folder_.write(name, bytes);
        host_ = std::make_unique<HostOfThread>(std::make_shared<InspectionHost>(folder_.path()));
    }

    Explainer explainer() const { return Explainer(folder_.path()); }

private:
    files::TemporaryFolder folder_;
    std::unique_ptr<HostOfThread> host_;
};

std::string at(const RootPlace& place) {
    return place.file + ":" + std::to_string(place.begin.line) + ":" +
           std::to_string(place.begin.column);
}

/// "taken FILE:LINE:COLUMN TEXT" for each step.
std::vector<std::string> stepsOf(const Explanation& explanation) {
    std::vector<std::string> lines;
    for (const ExplanationStep& step : explanation.steps) {
        using Outcome = ExplanationStep::Outcome;
        lines.push_back((step.outcome == Outcome::taken  ? "taken "
                         : step.outcome == Outcome::lost ? "lost "
                                                         : "missing ") +
                        at(step.place) + " " + step.place.message);
    }
    return lines;
}

std::string fromOf(const Explanation& explanation) {
    return explanation.from ? at(*explanation.from) : "nowhere";
}

constexpr const char* mainFile = "config/custompage_template.xml";
constexpr const char* softFile = "soft_optimize/custompage_template.xml";
constexpr const char* magicFile = "config/magic_panels.xml";

std::string palette(const std::string& sections) {
    return "<ROOT><SWPALETTE>\n" + sections + "</SWPALETTE></ROOT>";
}

TEST(ExplainedStyle, OfTheSoftOptimizeFileReplacesThatOfTheMainFile) {
    const Asked asked(Files{{mainFile, "<styles><style name='a'/></styles>"},
                            {softFile, "<styles>\n<style name='a' layer='2'/></styles>"}});
    const Explanation explanation = asked.explainer().style("a");
    EXPECT_EQ(fromOf(explanation), "soft_optimize/custompage_template.xml:2:1");
    EXPECT_THAT(stepsOf(explanation),
                ElementsAre("lost config/custompage_template.xml:1:9 Style 'a' in the main file "
                            "does not count here. The soft-optimize file's style replaces the "
                            "main file's style of the same name.",
                            "taken soft_optimize/custompage_template.xml:2:1 Style 'a' in the "
                            "soft-optimize file counts."));
}

TEST(ExplainedStyle, SaysWhichTemplateAndPanelsMakeACustomPage) {
    const Asked asked(Files{
        {"host.json", R"({"mappings": {"模版通配": {"STOCK": ["SH01"]}}})"},
        {mainFile,
         "<styles><style name='p'><panel><magic_panels name='g'/><magic_panels name='h'/>"
         "</panel></style></styles>"},
        {softFile, "<styles/>"},
        {magicFile,
         "<groups>\n<magic_panels name='g'><magic_panel name='STOCK'><panel name='STOCK'/>"
         "</magic_panel></magic_panels>\n<magic_panels name='h'><magic_panel name='x'><panel/>"
         "</magic_panel></magic_panels></groups>"}});
    const Explanation explanation = asked.explainer().style("p-SH01-x");
    EXPECT_EQ(explanation.substitute, std::nullopt);
    EXPECT_EQ(fromOf(explanation), "config/custompage_template.xml:1:9");
    EXPECT_THAT(
        stepsOf(explanation),
        ElementsAre("taken config/custompage_template.xml:1:9 Style 'p' in the main file is the "
                    "template of this page.",
                    "taken config/custompage_template.xml:1:32 Slot of group 'g' gets the argument "
                    "'SH01'.",
                    "taken host.json:1:34 Wildcard list 'STOCK' has the value 'SH01'.",
                    "taken config/magic_panels.xml:2:24 Pattern 'STOCK' serves it: 'SH01' is "
                    "written for 'STOCK'.",
                    "taken config/custompage_template.xml:1:56 Slot of group 'h' gets the argument "
                    "'x'.",
                    "taken config/magic_panels.xml:3:24 Member 'x' serves it."));
}

TEST(ExplainedStyle, NamesTheArgumentThatNothingServes) {
    const Asked asked(
        Files{{mainFile,
               "<styles><style name='p'><panel><magic_panels name='g'/></panel></style>"
               "</styles>"},
              {softFile, "<styles/>"},
              {magicFile,
               "<groups><magic_panels name='g'><magic_panel name='depth'><panel/>"
               "</magic_panel></magic_panels></groups>"}});
    const Explanation explanation = asked.explainer().style("p-deph");
    EXPECT_EQ(explanation.nearest, "depth");
    EXPECT_THAT(stepsOf(explanation),
                ElementsAre("taken config/custompage_template.xml:1:9 Style 'p' in the main file "
                            "is the template of this page.",
                            "missing config/custompage_template.xml:1:32 Group 'g' has no member "
                            "'deph', and no pattern of it serves this argument: the slot stays. "
                            "The nearest name is 'depth'."));
}

TEST(ExplainedStyle, IsNullWithoutAPageOrTemplateOfTheName) {
    const Asked asked(Files{{mainFile, "<styles><style name='quote'/></styles>"},
                            {softFile, "<styles/>"},
                            {"config/tab_styles.xml", "<styles><style name='quot'/></styles>"}});
    const Explanation explanation = asked.explainer().style("quot");
    EXPECT_EQ(explanation.substitute, "null");
    EXPECT_EQ(explanation.nearest, "quote");
    EXPECT_EQ(fromOf(explanation), "nowhere");
    EXPECT_THAT(stepsOf(explanation),
                ElementsAre("missing config/custompage_template.xml:1:1 No page 'quot' is stored. "
                            "The nearest name is 'quote'.",
                            "lost config/tab_styles.xml:1:9 A tab has this name, too; looking up a "
                            "page by its name finds no tabs."));
}

TEST(ExplainedStyle, NamesAFileThatCannotBeRead) {
    const Asked asked(Files{{mainFile, "<styles><style name='a'></styles>"}});
    const Explanation explanation = asked.explainer().style("a");
    ASSERT_EQ(explanation.substitute, "null");
    EXPECT_THAT(stepsOf(explanation),
                ::testing::Contains(::testing::StartsWith("missing config/custompage_template.xml:"
                                                          "1:34 This file cannot be read: ")));
}

TEST(ExplainedPanel, ComesFromAReusePanelThatThePageRefersTo) {
    const Asked asked(
        Files{{mainFile,
               "<styles><style name='p'><panel name='a'><reuse_panel name='r'/></panel>"
               "</style></styles>"},
              {"base_optimize/reuse_panels.xml",
               "<panels>\n<reuse_panel name='r'><panel name='x' layer='3'/></reuse_panel>"
               "</panels>"}});
    const Explanation explanation = asked.explainer().panel("p", "x");
    EXPECT_EQ(fromOf(explanation), "base_optimize/reuse_panels.xml:2:23");
    EXPECT_THAT(stepsOf(explanation),
                ElementsAre("taken config/custompage_template.xml:1:9 Style 'p' in the main file "
                            "counts.",
                            "taken base_optimize/reuse_panels.xml:2:23 This panel comes first on "
                            "the page.",
                            "taken base_optimize/reuse_panels.xml:2:1 It comes from reuse panel "
                            "'r'."));
    EXPECT_EQ(std::get<std::shared_ptr<const PanelConfigInfo>>(explanation.answer)->panelName(),
              "x");
}

TEST(ExplainedPanel, OfAPatternComesFromThePattern) {
    const Asked asked(
        Files{{"host.json", R"({"mappings": {"模版通配": {"STOCK": ["SH01"]}}})"},
              {mainFile,
               "<styles><style name='p'><panel><magic_panels name='g'/></panel></style>"
               "</styles>"},
              {softFile, "<styles/>"},
              {magicFile,
               "<groups>\n<magic_panels name='g'><magic_panel name='STOCK'>"
               "<panel name='STOCK'/></magic_panel></magic_panels></groups>"}});
    EXPECT_EQ(fromOf(asked.explainer().panel("p-SH01", "SH01")), "config/magic_panels.xml:2:50");
}

TEST(ExplainedElement, IsFoundByItsUuidBeforeItsName) {
    const Asked asked(Files{{mainFile,
                             "<styles><style name='p'><panel><element name='grid' uuid='u'/>\n"
                             "<element name='other' uuid='grid'/>\n<element name='x' uuid='grid'/>"
                             "</panel></style></styles>"}});
    const Explanation explanation = asked.explainer().element("p", "grid");
    EXPECT_EQ(fromOf(explanation), "config/custompage_template.xml:2:1");
    EXPECT_THAT(stepsOf(explanation),
                ElementsAre("taken config/custompage_template.xml:1:9 Style 'p' in the main file "
                            "counts.",
                            "taken config/custompage_template.xml:2:1 This element comes first on "
                            "the page.",
                            "lost config/custompage_template.xml:3:1 This element of the same name "
                            "comes later."));
    EXPECT_EQ(asked.explainer().element("p", "grit").nearest, "grid");
}

TEST(ExplainedEvent, OfAnIncludedTemplateLosesToThatOfTheGroup) {
    const Asked asked(
        Files{{"config/events.xml",
               "<event_list><event_template name='t'><event name='select' command='a'/>"
               "</event_template>\n<element_event name='g'><include src='t'/>\n"
               "<event name='select' command='b'/></element_event></event_list>"}});
    const Explanation explanation = asked.explainer().event("g", "select");
    EXPECT_EQ(fromOf(explanation), "config/events.xml:3:1");
    EXPECT_THAT(stepsOf(explanation),
                ElementsAre("taken config/events.xml:2:1 Event group 'g' counts.",
                            "taken config/events.xml:2:25 Template 't' is included.",
                            "taken config/events.xml:1:13 Template 't' counts.",
                            "lost config/events.xml:1:38 Event 'select' does not count here. This "
                            "takes the place of the event of the same name that a template "
                            "included above brought.",
                            "taken config/events.xml:3:1 Event 'select' counts."));
}

TEST(ExplainedEvent, IsMissingFromATemplateThatIsDefinedBelowItsUse) {
    const Asked asked(
        Files{{"config/events.xml",
               "<event_list><event_template name='a'><include src='b'/><event name='x'/>"
               "</event_template>\n<event_template name='b'><event name='select'/>"
               "</event_template>\n<element_event name='g'><include src='a'/></element_event>"
               "</event_list>"}});
    const Explanation explanation = asked.explainer().event("g", "select");
    EXPECT_EQ(explanation.substitute, "null");
    EXPECT_THAT(stepsOf(explanation),
                ElementsAre("taken config/events.xml:3:1 Event group 'g' counts.",
                            "taken config/events.xml:3:25 Template 'a' is included.",
                            "taken config/events.xml:1:13 Template 'a' counts.",
                            "missing config/events.xml:1:38 Template 'b' is not included. No "
                            "template of this name that has an event ends above this include.",
                            "missing config/events.xml:3:1 Group 'g' has no event 'select'."));
}

TEST(ExplainedStyle, SaysThatTheSoftOptimizeFileCannotBeRead) {
    const Asked asked(Files{{mainFile, "<styles><style name='a'/></styles>"},
                            {softFile, "<styles><style name='a' layer='2'/>"}});
    const Explanation explanation = asked.explainer().style("a");
    EXPECT_EQ(fromOf(explanation), "config/custompage_template.xml:1:9");
    EXPECT_THAT(stepsOf(explanation),
                ElementsAre("taken config/custompage_template.xml:1:9 Style 'a' in the main file "
                            "counts.",
                            ::testing::StartsWith("lost soft_optimize/custompage_template.xml:1:36 "
                                                  "This file cannot be read: ")));
}

TEST(ExplainedColor, OfASecondSectionIsNotRead) {
    const Asked asked(
        Files{{"storage/palette_white.xml",
               palette("<COLORES><C NAME='text' R='1' G='1' B='1'/></COLORES><COLORES>"
                       "<C NAME='text' R='2' G='2' B='2'/></COLORES><APP_MAP><COLORES>"
                       "<C KEY='k' VALUE='text'/></COLORES></APP_MAP>")}});
    EXPECT_THAT(stepsOf(asked.explainer().color("k", 0)),
                ::testing::Contains("lost storage/palette_white.xml:2:63 Colour 'text' in the "
                                    "shipped file does not count here. Of several sections only "
                                    "the first is read."));
}

TEST(ExplainedCommand, LaterDefinitionWins) {
    const Asked asked(Files{{"config/events.xml",
                             "<event_list><command_event><command name='c'/>\n<command name='c' "
                             "change_style='x'/></command_event></event_list>"}});
    const Explanation explanation = asked.explainer().command("c");
    EXPECT_EQ(fromOf(explanation), "config/events.xml:2:1");
    EXPECT_THAT(stepsOf(explanation),
                ElementsAre("lost config/events.xml:1:28 Command 'c' does not count here. A later "
                            "command of the same name replaces the earlier one, whatever section "
                            "it is in.",
                            "taken config/events.xml:2:1 Command 'c' counts."));
    EXPECT_EQ(asked.explainer().command("d").substitute, "null");
}

TEST(ExplainedColor, GoesFromTheKeyThroughTheNameToTheValue) {
    const Asked asked(
        Files{{"storage/palette_white.xml",
               palette("<COLORES><C NAME='text' R='9' G='9' B='9'/></COLORES>\n<APP_MAP><COLORES>"
                       "<C KEY='k' VALUE='text'/><C KEY='bad' VALUE='texd'/></COLORES></APP_MAP>")},
              {"storage/palette_black.xml", palette("")}});
    const Explanation explanation = asked.explainer().color("k", 0);
    EXPECT_EQ(fromOf(explanation), "storage/palette_white.xml:2:10");
    EXPECT_THAT(
        stepsOf(explanation),
        ElementsAre("taken storage/palette_white.xml:3:19 Colour key 'k' in the shipped "
                    "file counts.",
                    "taken storage/palette_white.xml:2:10 Colour 'text' in the shipped file "
                    "counts."));
    EXPECT_THAT(explanation.remarks,
                ElementsAre("In the light theme it is #090909, alpha 1.",
                            "In the dark theme it is red, the substitute for a missing colour."));

    const Explanation substitute = asked.explainer().color("bad", 0);
    EXPECT_EQ(substitute.substitute, "red");
    EXPECT_EQ(substitute.nearest, "text");
    EXPECT_EQ(std::get<Color>(substitute.answer).red, 1);
    EXPECT_EQ(fromOf(substitute), "nowhere");
}

TEST(ExplainedFont, IsTheSystemFontWithoutAKey) {
    const Asked asked(Files{{"storage/palette_white.xml",
                             palette("<FONTS><F NAME='f' HEIGHT='9'/></FONTS><APP_MAP><FONTS>"
                                     "<F KEY='title' VALUE='f'/></FONTS></APP_MAP>")}});
    EXPECT_EQ(fromOf(asked.explainer().font("title", 0)), "storage/palette_white.xml:2:8");
    const Explanation substitute = asked.explainer().font("titel", 0);
    EXPECT_EQ(substitute.substitute, "the system font");
    EXPECT_EQ(substitute.nearest, "title");
}

TEST(ExplainedImage, SaysWhyItIsMissing) {
    const Asked asked(Files{{"storage/palette_white.xml",
                             palette("<BITMAPS><B NAME='logo' PATH='none.png'/></BITMAPS>")},
                            {"images/other.png", ""}});
    const Explanation explanation = asked.explainer().image("logo", 0);
    EXPECT_EQ(explanation.substitute, "null");
    EXPECT_THAT(stepsOf(explanation),
                ElementsAre("missing storage/palette_white.xml:2:25 The file is missing, damaged, "
                            "too large, or neither PNG nor JPEG, so its name has no image."));
}

TEST(ExplainedPalette, OfAThirdStyleIsNull) {
    const Asked asked(Files{});
    const Explanation explanation = asked.explainer().color("k", 7);
    EXPECT_EQ(explanation.substitute, "null");
    EXPECT_TRUE(std::holds_alternative<std::monostate>(explanation.answer));
    EXPECT_EQ(explanation.steps.size(), 1U);
}

TEST(ExplainedServer, HasTheSharesOfItsAddresses) {
    const Asked asked(Files{{"storage/skeleton_v1.xml",
                             "<application>\n<server type='2'><addr key='1' name='East;West' "
                             "addrs='70:h1:1;h2:2;h3'/></server></application>"}});
    const Explanation explanation = asked.explainer().server(std::nullopt, "West", false);
    EXPECT_EQ(fromOf(explanation), "storage/skeleton_v1.xml:2:18");
    EXPECT_THAT(stepsOf(explanation),
                ElementsAre("taken storage/skeleton_v1.xml:2:1 Server type 2 in the shipped file "
                            "counts.",
                            "taken storage/skeleton_v1.xml:2:18 Server 'West' in the shipped file "
                            "counts.",
                            "taken storage/skeleton_v1.xml:2:56 Address 'h1:1' has a share of 50 % "
                            "(2147483648 of 4294967296 random numbers); its weight, 70, has no "
                            "effect.",
                            "taken storage/skeleton_v1.xml:2:64 Address 'h2:2' has a share of 50 % "
                            "(2147483648 of 4294967296 random numbers).",
                            "lost storage/skeleton_v1.xml:2:69 Address 'h3' is never chosen: it "
                            "has no port."));
    EXPECT_THAT(explanation.remarks,
                ElementsAre("A reload draws again: it changes the address with a chance of 50 %."));
    EXPECT_EQ(asked.explainer().server(1, "West", false).substitute, "null");
    EXPECT_EQ(asked.explainer().server(2, "Wes", false).nearest, "West");
}

TEST(ExplainedSetting, FirstItemOfTheUsersOwnFileWins) {
    const Asked asked(
        Files{{"storage/app_config.xml", "<config><a><b>shipped</b></a></config>"},
              {"user/app_config.xml", "<config><a><b>own</b>\n<b>later</b></a></config>"}});
    const Explanation explanation = asked.explainer().setting("app_config.xml", "a", "b");
    EXPECT_EQ(std::get<std::string>(explanation.answer), "own");
    EXPECT_EQ(fromOf(explanation), "user/app_config.xml:1:12");
    EXPECT_THAT(stepsOf(explanation),
                ElementsAre("taken user/app_config.xml:1:12 Item 'a'/'b' in the user's own file "
                            "counts.",
                            "lost user/app_config.xml:2:1 Item 'a'/'b' in the user's own file does "
                            "not count here. Of the items of one name in the sections of one name "
                            "only the first is read.",
                            "lost storage/app_config.xml:1:12 The shipped file has this, too, but "
                            "user/app_config.xml, the user's own file, is read in its place."));
    EXPECT_EQ(asked.explainer().setting("app_config.xml", "a", "c").substitute, "null");
}

TEST(ExplainedWebPage, IsAboutBlankWithoutTheKey) {
    const Asked asked(
        Files{{"storage/web_page_urls.xml",
               "<urls><url key='help'>https://a</url>\n<url key='help'>https://b</url>"
               "</urls>"}});
    const Explanation explanation = asked.explainer().webPage("web_page_urls.xml", "help");
    EXPECT_EQ(std::get<std::string>(explanation.answer), "https://a");
    EXPECT_THAT(stepsOf(explanation),
                ElementsAre("taken storage/web_page_urls.xml:1:7 Web page 'help' in the shipped "
                            "file counts.",
                            "lost storage/web_page_urls.xml:2:1 Web page 'help' in the shipped "
                            "file does not count here. Only the first address of a key is read."));
    const Explanation substitute = asked.explainer().webPage("web_page_urls.xml", "halp");
    EXPECT_EQ(std::get<std::string>(substitute.answer), "about:blank");
    EXPECT_EQ(substitute.substitute, "about:blank");
    EXPECT_EQ(substitute.nearest, "help");
}

TEST(ExplainedUrl, IsThatOfTheFirstEntryOfTheKey) {
    const Asked asked(
        Files{{"storage/request_urls_json.txt", R"({"md5Value": "1", "urlConfigList": [)"
                                                "\n"
                                                R"({"urlKey": "k", "urlValue": "a"},)"
                                                "\n"
                                                R"({"urlKey": "k", "urlValue": "b"}]})"}});
    const Explanation explanation = asked.explainer().requestUrl("k");
    EXPECT_EQ(std::get<std::string>(explanation.answer), "a");
    EXPECT_EQ(fromOf(explanation), "storage/request_urls_json.txt:2:30");
    EXPECT_THAT(stepsOf(explanation),
                ElementsAre("taken storage/request_urls_json.txt:2:12 URL 'k' counts.",
                            ::testing::StartsWith("lost storage/request_urls_json.txt:3:")));
    EXPECT_EQ(asked.explainer().requestUrl("kk").substitute, "null");
}

TEST(Templates, HaveTheArgumentsThatTheirSlotsTake) {
    const Asked asked(
        Files{{"host.json", R"({"mappings": {"模版通配": {"S": ["1", "2-3", "4"]}}})"},
              {mainFile,
               "<styles><style name='p'><panel><magic_panels name='g'/><magic_panels "
               "name='none'/></panel></style>\n<style name='q'><panel><magic_panels "
               "name='g'/></panel></style></styles>"},
              {softFile, "<styles/>"},
              {magicFile,
               "<groups><magic_panels name='g'><magic_panel name='S'><panel/></magic_panel>"
               "<magic_panel name='x-y'><panel/></magic_panel></magic_panels></groups>"}});
    const std::vector<TemplateSignature> templates = asked.explainer().templates();
    ASSERT_EQ(templates.size(), 2U);
    EXPECT_EQ(templates[0].name, "p");
    EXPECT_EQ(at(templates[0].place), "config/custompage_template.xml:1:9");
    EXPECT_EQ(templates[0].pages, 0U);
    EXPECT_THAT(*templates[0].slots.at(0).arguments, ElementsAre("S", "1", "4"));
    EXPECT_THAT(*templates[0].slots.at(1).arguments, IsEmpty());
    EXPECT_EQ(templates[1].pages, 3U);
}

}  // namespace
}  // namespace yg::testing
