// SPDX-License-Identifier: MIT
//
// What differs between two roots, as lines to compare:
//
//   "changed element page a/panel p/element e elementParam: x -> y events.xml:1:2 events.xml:1:2"
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/graphics/Image.h"
#include "YGConfigManager/inspection/Difference.h"

#include "files/TemporaryFolder.h"

namespace yg::testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

using Files = std::map<std::string, std::string>;
using Lines = std::vector<std::string>;

constexpr const char* mainStyles = "config/custompage_template.xml";
/// Without it there are no custom pages.
constexpr const char* softStyles = "soft_optimize/custompage_template.xml";
constexpr const char* reusePanels = "base_optimize/reuse_panels.xml";
constexpr const char* magicPanels = "config/magic_panels.xml";
constexpr const char* eventsFile = "config/events.xml";
constexpr const char* lightPalette = "storage/palette_white.xml";
constexpr const char* darkPalette = "storage/palette_black.xml";
constexpr const char* servers = "storage/skeleton_v1.xml";

std::string pathOf(const Difference& difference, const ChangeSide& side) {
    std::string path;
    for (const NamedThing& thing : difference.pathOf(side))
        path.append(path.empty() ? "" : "/").append(thing.name.empty() ? "?" : thing.name);
    return path;
}

std::string placeOf(const ChangeSide& side) {
    const Place& place = side.place;
    return place.file + ":" + std::to_string(place.begin.line) + ":" +
           std::to_string(place.begin.column);
}

/// "KIND SUBJECT PATH FIELD OLD -> NEW", with the path on both sides when they are different, and
/// how many pages show it when that is not one.
std::string lineOf(const Difference& difference, const Change& change) {
    std::string line(nameOf(change.kind));
    line.append(" ").append(nameOf(change.subject)).append(" ");
    const std::string before = change.before ? pathOf(difference, *change.before) : "";
    const std::string after = change.after ? pathOf(difference, *change.after) : "";
    line += !change.before || before == after ? after
            : !change.after                   ? before
                                              : before + " -> " + after;
    if (!change.field.empty())
        line += " " + change.field;
    if (change.before && change.after && (change.before->value || change.after->value))
        line += " " + change.before->value.value_or("(none)") + " -> " +
                change.after->value.value_or("(none)");
    if (change.shownIn != 1)
        line += " x" + std::to_string(change.shownIn);
    return line;
}

class Roots {
public:
    Roots(const Files& before, const Files& after) {
        write(before_, before);
        write(after_, after);
        std::string error;
        difference_ = Difference::between(before_.path(), after_.path(), error);
        EXPECT_TRUE(difference_) << error;
    }

    const Difference& operator*() const { return *difference_; }

    Lines lines() const {
        Lines lines;
        for (const Change& change : difference_->changes())
            lines.push_back(lineOf(*difference_, change));
        return lines;
    }

private:
    static void write(const files::TemporaryFolder& folder, const Files& files) {
        for (const auto& [name, bytes] : files)
            folder.write(name, bytes);
    }

    files::TemporaryFolder before_;
    files::TemporaryFolder after_;
    std::shared_ptr<const Difference> difference_;
};

Lines changes(const Files& before, const Files& after) {
    return Roots(before, after).lines();
}

/// Of one style in the main style file.
Lines pageChanges(const std::string& before, const std::string& after) {
    const auto styles = [](const std::string& content) {
        return Files{{mainStyles, "<styles><style name='a'>" + content + "</style></styles>"}};
    };
    return changes(styles(before), styles(after));
}

// ---- Pages ----

TEST(Difference, IsNoneBetweenARootAndItself) {
    const Files files{{mainStyles, "<styles><style name='a'><panel name='p'/></style></styles>"}};
    EXPECT_THAT(changes(files, files), IsEmpty());
    EXPECT_THAT(changes({}, {}), IsEmpty());
}

TEST(Difference, IsNoneWhereOnlyTheTextDiffers) {
    EXPECT_THAT(pageChanges("<panel name='p' vertical='true'><element name='e' param='x'/></panel>",
                            "<!-- c -->\n<panel vertical=\"true\"  name='p'>\n <element param='x' "
                            "name='e'></element><!-- c --></panel>"),
                IsEmpty());
    // What counts as the same: only "true" is true, and fractions of whole points are dropped.
    EXPECT_THAT(pageChanges("<panel name='p' vertical='yes' min_size='3.7'/>",
                            "<panel name='p' min_size='3'/>"),
                IsEmpty());
}

TEST(Difference, IsNoneWhereAnotherFileDefinesTheSame) {
    const std::string styles = "<styles><style name='a'><panel name='p'/></style></styles>";
    EXPECT_THAT(changes({{mainStyles, styles}},
                        {{mainStyles, "<styles><style name='a'><panel name='q'/></style></styles>"},
                         {softStyles, styles}}),
                IsEmpty());
}

TEST(Difference, NamesTheFieldsOfRecordsAndTheirPlaces) {
    const Roots roots({{mainStyles,
                        "<styles><style name='a' layer='1'>\n"
                        "<panel name='p'><element name='e' uuid='u' param='x'/></panel>"
                        "</style></styles>"}},
                      {{mainStyles,
                        "<styles><style name='a' layer='2'>\n"
                        "<panel name='p'>\n<element name='f' uuid='u'/></panel>"
                        "</style></styles>"}});
    EXPECT_THAT(roots.lines(), ElementsAre("changed page a styleLayer 1 -> 2",
                                           "changed element a/p/u elementName e -> f",
                                           "changed element a/p/u elementParam x -> (none)"));
    const Change& layer = (*roots).changes()[0];
    EXPECT_EQ(placeOf(*layer.before), std::string(mainStyles) + ":1:25");
    const Change& param = (*roots).changes()[2];
    EXPECT_EQ(placeOf(*param.before), std::string(mainStyles) + ":2:44");
    // The attribute is not there, so the place is that of the element.
    EXPECT_EQ(placeOf(*param.after), std::string(mainStyles) + ":3:1");
}

TEST(Difference, ListsWhatIsInPanelsThatComeAndGo) {
    const std::string panel = "<panel name='q'><panel name='r'/><element name='e'/></panel>";
    EXPECT_THAT(
        pageChanges("<panel name='p'/>", "<panel name='p'>" + panel + "</panel>"),
        UnorderedElementsAre("added panel a/p/q", "added panel a/p/q/r", "added element a/p/q/e"));
    EXPECT_THAT(pageChanges("<panel name='p'>" + panel + "</panel>", "<panel name='p'/>"),
                UnorderedElementsAre("removed panel a/p/q", "removed panel a/p/q/r",
                                     "removed element a/p/q/e"));
}

TEST(Difference, ListsAPageThatComesOrGoesOnce) {
    const std::string a = "<style name='a'><panel name='p'><element name='e'/></panel></style>";
    const std::string b = "<style name='b'><panel name='p'/></style>";
    EXPECT_THAT(changes({{mainStyles, "<styles>" + a + "</styles>"}},
                        {{mainStyles, "<styles>" + b + "</styles>"}}),
                UnorderedElementsAre("removed page a", "added page b"));
    EXPECT_THAT(
        changes({}, {{"config/tab_styles.xml", "<styles>" + a + "</styles>"}}),
        UnorderedElementsAre("changed root  tabStyleInfos (none) -> present", "added tab page a"));
}

TEST(Difference, OfAnotherOrderIsAMove) {
    EXPECT_THAT(pageChanges("<panel name='p'/><panel name='q'/><panel name='r'/>",
                            "<panel name='r'/><panel name='p'/><panel name='q'/>"),
                ElementsAre("moved panel a/r 3 -> 1"));
    EXPECT_THAT(
        pageChanges("<panel name='p'><element name='e' uuid='1'/><element name='f'/></panel>",
                    "<panel name='p'><element name='f'/><element name='e' uuid='1'/></panel>"),
        ElementsAre("moved element a/p/1 1 -> 2"));
}

TEST(Difference, OfTwoThatChangePlacesIsTheSameBothWays) {
    const std::string one = "<panel name='p'/><panel name='q'/>";
    const std::string other = "<panel name='q'/><panel name='p'/>";
    EXPECT_THAT(pageChanges(one, other), ElementsAre("moved panel a/p 1 -> 2"));
    EXPECT_THAT(pageChanges(other, one), ElementsAre("moved panel a/p 2 -> 1"));
}

TEST(Difference, FollowsAPanelIntoAnotherPanel) {
    EXPECT_THAT(pageChanges("<panel name='p'><panel name='x'><element name='e'/></panel></panel>"
                            "<panel name='q'/>",
                            "<panel name='p'/>"
                            "<panel name='q'><panel name='x'><element name='e'/></panel></panel>"),
                ElementsAre("moved panel a/p/x -> a/q/x"));
    // One that changed meanwhile is known by its name.
    EXPECT_THAT(pageChanges("<panel name='p'><panel name='x'><element name='e'/></panel></panel>"
                            "<panel name='q'/>",
                            "<panel name='p'/><panel name='q'>"
                            "<panel name='x' vertical='true'><element name='f'/></panel></panel>"),
                UnorderedElementsAre("moved panel a/p/x -> a/q/x",
                                     "changed panel a/p/x -> a/q/x paneVertical false -> true",
                                     "removed element a/p/x/e", "added element a/q/x/f"));
}

TEST(Difference, FollowsWhatWasInAPanelThatIsGone) {
    EXPECT_THAT(pageChanges("<panel name='p'><panel name='x'><element name='e' uuid='u'/></panel>"
                            "</panel>",
                            "<panel name='p'><element name='e' uuid='u'/></panel>"),
                UnorderedElementsAre("moved element a/p/x/u -> a/p/u", "removed panel a/p/x"));
}

TEST(Difference, TakesAPanelOfTheSameContentAsRenamed) {
    EXPECT_THAT(pageChanges("<panel name='p'><element name='e'/></panel>",
                            "<panel name='q'><element name='e'/></panel>"),
                ElementsAre("changed panel a/p -> a/q panelName p -> q"));
    EXPECT_THAT(pageChanges("<panel><element name='e' uuid='1'/></panel>",
                            "<panel><element name='e' uuid='2'/></panel>"),
                ElementsAre("changed element a/?/1 -> a/?/2 elementUuid 1 -> 2"));
}

TEST(Difference, FindsTheOneThatIsNewAmongMany) {
    EXPECT_THAT(pageChanges("<panel><element name='e' param='1'/><element name='e' param='2'/>"
                            "</panel>",
                            "<panel><element name='e' param='0'/><element name='e' param='1'/>"
                            "<element name='e' param='2'/></panel>"),
                ElementsAre("added element a/?/e"));
}

TEST(Difference, OfASharedPanelIsListedWhereItIsDefined) {
    const auto files = [](const std::string& param) {
        return Files{{reusePanels,
                      "<reuse_panels><reuse_panel name='bar'>"
                      "<element name='e' param='" +
                          param + "'/></reuse_panel></reuse_panels>"},
                     {mainStyles,
                      "<styles>"
                      "<style name='a'><panel name='p'><reuse_panel name='bar'/></panel></style>"
                      "<style name='b'><panel name='p'><reuse_panel name='bar'/></panel></style>"
                      "<style name='c'><panel name='p'/></style></styles>"}};
    };
    EXPECT_THAT(changes(files("x"), files("y")),
                ElementsAre("changed element bar/e elementParam x -> y x2"));
}

TEST(Difference, OfAMemberCountsTheCustomPagesThatShowIt) {
    const auto files = [](const std::string& param) {
        return Files{{magicPanels,
                      "<groups><magic_panels name='g'>"
                      "<magic_panel name='one'><panel name='q'/></magic_panel>"
                      "<magic_panel name='two'><panel name='r'><element name='e' param='" +
                          param + "'/></panel></magic_panel></magic_panels></groups>"},
                     {softStyles, "<styles/>"},
                     {mainStyles,
                      "<styles><style name='a'><panel><magic_panels name='g'/></panel></style>"
                      "<style name='b'><panel><magic_panels name='g'/></panel></style>"
                      "</styles>"}};
    };
    // The pages are a-one, a-two, b-one and b-two; a and b themselves show the first member.
    EXPECT_THAT(changes(files("x"), files("y")),
                ElementsAre("changed element g/two/e elementParam x -> y x2"));
}

TEST(Difference, OfMembersSaysWhichIsFirst) {
    const auto groups = [](const std::string& members) {
        return Files{{magicPanels,
                      "<groups><magic_panels name='g'>" + members + "</magic_panels></groups>"}};
    };
    const std::string one = "<magic_panel name='one'><panel name='p'/></magic_panel>";
    const std::string two = "<magic_panel name='two'><panel name='p'/></magic_panel>";
    EXPECT_THAT(changes(groups(one + two), groups(two + one)),
                ElementsAre("moved magic panel g/one 1 -> 2"));
    EXPECT_THAT(changes(groups(one), groups(one + two)), ElementsAre("added magic panel g/two"));
}

TEST(Difference, OfSlotsIsListedForTheTemplate) {
    const auto styles = [](const std::string& slots) {
        return Files{
            {softStyles, "<styles/>"},
            {mainStyles, "<styles><style name='a'><panel>" + slots + "</panel></style></styles>"}};
    };
    EXPECT_THAT(changes(styles("<magic_panels name='g'/>"),
                        styles("<magic_panels name='g'/><magic_panels name='h'/>")),
                ElementsAre("changed template a slots g; -> g;h;"));
}

TEST(Difference, OfTheDefaultPageNamesBoth) {
    const Roots roots({{mainStyles, "<styles default_style='a'><style name='a'/></styles>"}},
                      {{mainStyles, "<styles  default_style='b'><style name='a'/></styles>"}});
    EXPECT_THAT(roots.lines(), ElementsAre("changed root  defaultStyleName a -> b"));
    EXPECT_EQ(placeOf(*(*roots).changes()[0].after), std::string(mainStyles) + ":1:10");
}

// ---- Events ----

TEST(Difference, OfEventsIsListedForTheTemplateThatGroupsInclude) {
    const auto events = [](const std::string& command) {
        return Files{{eventsFile,
                      "<event_list><event_template name='t'><event name='click' "
                      "command='" +
                          command +
                          "'/></event_template>"
                          "<element_event name='g'><include src='t'/></element_event>"
                          "<element_event name='h'><include src='t'/></element_event>"
                          "</event_list>"}};
    };
    const Roots roots(events("x"), events("y"));
    EXPECT_THAT(roots.lines(), ElementsAre("changed event t/click command x -> y x3"));
    EXPECT_EQ(placeOf(*(*roots).changes()[0].before), std::string(eventsFile) + ":1:58");
}

TEST(Difference, OfCommandsAndGroupsGoesByName) {
    const auto events = [](const std::string& content) {
        return Files{{eventsFile, "<event_list>" + content + "</event_list>"}};
    };
    EXPECT_THAT(changes(events("<command_event><command name='c' dispatch='1'/></command_event>"),
                        events("<command_event><command name='c' dispatch='2'/><command name='d'/>"
                               "</command_event><element_event name='g'><event name='e'/>"
                               "</element_event>")),
                UnorderedElementsAre("changed command c dispatchParam 1 -> 2", "added command d",
                                     "added event group g"));
}

// ---- Palettes ----

std::string palette(const std::string& colors, const std::string& keys) {
    return "<ROOT><SWPALETTE><COLORES>" + colors + "</COLORES><APP_MAP><COLORES>" + keys +
           "</COLORES></APP_MAP></SWPALETTE></ROOT>";
}

TEST(Difference, SaysWhichKeysBecomeRed) {
    const std::string keys = "<I KEY='k' VALUE='up'/><I KEY='l' VALUE='down'/>";
    const std::string down = "<C NAME='down' R='1' G='2' B='3'/>";
    const Roots roots({{darkPalette, palette("<C NAME='up' R='255' G='128'/>" + down, keys)}},
                      {{darkPalette, palette(down, keys)}});
    EXPECT_THAT(roots.lines(),
                UnorderedElementsAre("removed colour dark theme/up",
                                     "changed colour key dark theme/k color #FF8000 -> red, "
                                     "because it is missing"));
}

TEST(Difference, OfAColourIsOneOfItsKeys) {
    const std::string keys = "<I KEY='k' VALUE='up'/>";
    EXPECT_THAT(
        changes({{lightPalette, palette("<C NAME='up' R='255'/>", keys)}},
                {{lightPalette, palette("<C NAME='up' R='255' A='0.5'/>", keys)}}),
        UnorderedElementsAre("changed colour light theme/up color #FF0000 -> #FF0000, alpha 0.5",
                             "changed colour key light theme/k color #FF0000 -> #FF0000, alpha "
                             "0.5"));
    EXPECT_THAT(changes({{lightPalette, palette("<C NAME='up'/><C NAME='down'/>", keys)}},
                        {{lightPalette,
                          palette("<C NAME='up'/><C NAME='down'/>", "<I KEY='k' VALUE='down'/>")}}),
                ElementsAre("changed colour key light theme/k name up -> down"));
}

TEST(Difference, OfAPaletteThatCannotBeReadIsOne) {
    EXPECT_THAT(changes({{darkPalette, palette("<C NAME='up'/>", "")}}, {{darkPalette, "<ROOT>"}}),
                ElementsAre("removed palette dark theme"));
}

TEST(Difference, SaysWhichFontKeysGetTheSystemFont) {
    const auto fonts = [](const std::string& content) {
        return Files{
            {lightPalette, "<ROOT><SWPALETTE><FONTS>" + content +
                               "</FONTS><APP_MAP><FONTS><I KEY='k' VALUE='f'/></FONTS></APP_MAP>"
                               "</SWPALETTE></ROOT>"}};
    };
    const Lines lines = changes(fonts("<F NAME='f' HEIGHT='9'/>"), fonts(""));
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_THAT(lines, Contains("removed font light theme/f"));
    EXPECT_THAT(lines, Contains(::testing::EndsWith("the system font, because it is missing")));
    EXPECT_THAT(changes(fonts("<F NAME='f' HEIGHT='9'/>"), fonts("<F NAME='f' HEIGHT='10'/>")),
                Contains("changed font light theme/f pointSize 9 -> 10"));
}

TEST(Difference, OfImagesGoesByPixels) {
    const auto picture = [](std::uint8_t red) {
        return *Image::fromPixels(1, 1, {red, 0, 0, 255})->toPng();
    };
    const auto root = [&](const std::string& file, const std::string& bytes) {
        return Files{{lightPalette, "<ROOT><SWPALETTE><BITMAPS><B NAME='i' PATH='" + file +
                                        "'/></BITMAPS></SWPALETTE></ROOT>"},
                     {"images/" + file, bytes}};
    };
    EXPECT_THAT(changes(root("a.png", picture(1)), root("b.png", picture(1))), IsEmpty());
    EXPECT_THAT(changes(root("a.png", picture(1)), root("a.png", picture(2))),
                ElementsAre(::testing::StartsWith("changed image light theme/i pixels checksum ")));
}

// ---- Servers ----

TEST(Difference, OfServersIsOneOfShares) {
    const auto files = [](const std::string& addresses) {
        return Files{{servers, "<application><server type='1'><e key='1' name='a;b' addrs='" +
                                   addresses + "'/></server></application>"}};
    };
    EXPECT_THAT(changes(files("h:1;h:2"), files("h:1;h:2;h:3;h:3")),
                UnorderedElementsAre(
                    "changed server address storage/skeleton_v1.xml/1/a;b/h:1 share 1/2 -> 1/4",
                    "changed server address storage/skeleton_v1.xml/1/a;b/h:2 share 1/2 -> 1/4",
                    "added server address storage/skeleton_v1.xml/1/a;b/h:3"));
    // Neither the order nor weights nor what is never chosen changes a share.
    EXPECT_THAT(changes(files("h:1;h:2"), files("9:h:2;1:h:1;odd")), IsEmpty());
}

TEST(Difference, OfServersNamesTheGroupsAndEntries) {
    const auto files = [](const std::string& content) {
        return Files{{servers, "<application md5='x'>" + content + "</application>"}};
    };
    const std::string entry = "<e key='1' name='a' addrs='h:1'/>";
    const std::string later = "<e key='2' name='b' addrs='h:1'/>";
    EXPECT_THAT(changes(files("<server type='1' name='n'>" + entry + later + "</server>"),
                        files("<server type='1' name='m'>" + later + entry + "</server>")),
                UnorderedElementsAre(
                    "changed server group storage/skeleton_v1.xml/1 serverDescription n -> m",
                    "moved server entry storage/skeleton_v1.xml/1/a 1 -> 2"));
    EXPECT_THAT(changes(files("<server type='1'>" + entry + "</server>"), files("")),
                UnorderedElementsAre(
                    "changed server group storage/skeleton_v1.xml/1 entries present -> (none)",
                    "removed server entry storage/skeleton_v1.xml/1/a"));
}

// ---- Settings, web pages, request URLs, the host ----

TEST(Difference, OfSettingsKeepsTheUsersFilesApart) {
    const auto settings = [](const std::string& text) {
        return "<config><chart><grid description='d'>" + text + "</grid></chart></config>";
    };
    EXPECT_THAT(
        changes(
            {{"storage/app_config.xml", settings("on")}},
            {{"storage/app_config.xml", settings("off")}, {"user/app_config.xml", settings("on")}}),
        UnorderedElementsAre("changed setting storage/app_config.xml/chart/grid text on -> off",
                             "added settings file user/app_config.xml"));
}

TEST(Difference, OfWebPagesAndRequestUrlsGoesByKey) {
    const auto files = [](const std::string& address) {
        return Files{{"storage/web_page_urls.xml",
                      "<urls><url key='help'>http://" + address + "</url></urls>"},
                     {"storage/request_urls_json.txt",
                      R"({"md5Value":"1","urlConfigList":[{"urlKey":"k","urlValue":"http://)" +
                          address + R"("}]})"}};
    };
    const Roots roots(files("a"), files("b"));
    EXPECT_THAT(
        roots.lines(),
        UnorderedElementsAre(
            "changed web page storage/web_page_urls.xml/help address http://a -> http://b",
            "changed request url storage/request_urls_json.txt/k urlValue http://a -> http://b"));
    for (const Change& change : (*roots).changes())
        EXPECT_EQ(change.before->place.begin.line, 1U);
}

TEST(Difference, OfTheHostIsOneOfItsSettings) {
    EXPECT_THAT(changes({{"host.json", R"({"rightLevel":"free"})"}},
                        {{"host.json",
                          R"({"rightLevel":"l2","mappings":{"模版通配":{"STOCK":["1","2"]}}})"}}),
                UnorderedElementsAre("changed root  rightLevel free -> l2",
                                     "changed root  模版通配 (none) -> present",
                                     "added wildcard list STOCK"));
}

// ---- What cannot be compared ----

TEST(Difference, IsNotThereWithoutTwoFolders) {
    const files::TemporaryFolder folder;
    std::string error;
    EXPECT_FALSE(Difference::between(folder.path(), folder.at("none"), error));
    EXPECT_EQ(error, "root folder \"" + folder.at("none") + "\": No such file or directory");
    EXPECT_FALSE(Difference::between(folder.at("none"), folder.path(), error));
    EXPECT_FALSE(Difference::between(nullptr, folder.path(), error));
}

// ---- Large and odd roots ----

TEST(Difference, OfThousandsOfPanelsInAnotherOrderIsFound) {
    std::string forward;
    std::string backward;
    for (int at = 0; at < 20'000; ++at) {
        const std::string panel = "<panel name='p" + std::to_string(at) + "'/>";
        forward += panel;
        backward.insert(0, panel);
    }
    EXPECT_EQ(pageChanges(forward, backward).size(), 19'999U);
}

TEST(Difference, OfPanelsNestedDeeplyIsFound) {
    const auto nested = [](const std::string& inside) {
        std::string text = inside;
        for (int depth = 0; depth < 200; ++depth)
            text = "<panel name='p'>" + text + "</panel>";
        return text;
    };
    const Lines lines = pageChanges(nested("<element name='e'/>"), nested("<panel name='q'/>"));
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_THAT(lines[0], ::testing::MatchesRegex("removed element a(/p)*/e"));
    EXPECT_THAT(lines[1], ::testing::MatchesRegex("added panel a(/p)*/q"));
}

TEST(Difference, TakesNoLongerForPanelsThatAllHaveOneName) {
    // Trying pairs would take minutes.
    std::string before;
    std::string after;
    for (int at = 0; at < 20'000; ++at) {
        const std::string number = std::to_string(at);
        before += "<panel name='p'><element name='e' param='" + number + "'/></panel>";
        after += "<panel name='p'><element name='f' param='" + number + "'/></panel>";
    }
    EXPECT_EQ(pageChanges("<panel name='o'>" + before + "</panel>",
                          "<panel name='o'>" + after + "</panel>")
                  .size(),
              40'000U);
}

}  // namespace
}  // namespace yg::testing
