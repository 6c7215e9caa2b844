// SPDX-License-Identifier: MIT
//
// What the report's model says of pages, and that the parts of custom pages in it make the pages
// that the library builds.
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "YGConfigManager/inspection/RootContents.h"

#include "files/TemporaryFolder.h"
#include "inspection/Inspected.h"
#include "ygconfig/json/Json.h"
#include "ygconfig/report/Report.h"

namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::Le;
using testing::SizeIs;
using yg::Inspection;
using yg::files::TemporaryFolder;
using yg::testing::Files;
using yg::tool::JsonWriter;
using yg::tool::Output;

const std::string sample = YG_PROJECT_FOLDER "/examples/terminal";
const std::string mainFile = "config/custompage_template.xml";
const std::string softFile = "soft_optimize/custompage_template.xml";
const std::string magicFile = "config/magic_panels.xml";
const std::string reuseFile = "base_optimize/reuse_panels.xml";

/// What is written, as JSON.
template <class Write>
json written(const Write& write) {
    std::string text;
    const yg::tool::Sink append = [&](std::string_view piece) { text += piece; };
    Output output(append);
    write(output);
    output.flush();
    return json::parse(text);
}

/// The model of a root, and the inspection that it is of.
struct Modelled {
    explicit Modelled(const std::string& root)
        : inspection(yg::testing::inspected(root, {.keepsContents = true})),
          layout(written([&](Output& output) {
                     yg::tool::writeModel({root, *inspection}, output);
                 }).at("layout")) {}

    std::shared_ptr<const Inspection> inspection;
    json layout;
};

struct WrittenRoot {
    explicit WrittenRoot(const Files& files) {
        for (const auto& [name, text] : files)
            folder.write(name, text);
    }
    TemporaryFolder folder;
};

json layoutOf(const Files& files) {
    const WrittenRoot root(files);
    return Modelled(root.folder.path()).layout;
}

std::string styles(const std::string& content) {
    return "<styles>" + content + "</styles>";
}

/// A record of the model as `ygconfig dump` writes one, with the fields of a new one where it has
/// none of its own.
json whole(const json& made, const json& record) {
    json all = made;
    for (const auto& [name, value] : record.items()) {
        if (name != "at" && name != "panels" && name != "elements")
            all[name] = value;
    }
    return all;
}

/// Panels with all in them; `shown` says which one stands at the end of a way.
json wholePanels(const json& layout, const json& numbers, const json& shown, const json& way = {}) {
    json panels = json::array();
    for (std::size_t at = 0; at < numbers.size(); ++at) {
        json here = way.is_null() ? json::array() : way;
        here.push_back(at);
        std::size_t number = numbers[at];
        for (const auto& [there, panel] : shown.items()) {
            if (there == here.dump())
                number = panel;
        }
        const json& record = layout.at("panels").at(number);
        json panel = whole(layout.at("defaults").at("panel"), record);
        panel["panePanes"] =
            wholePanels(layout, record.value("panels", json::array()), shown, here);
        for (const std::size_t element : record.value("elements", json::array()))
            panel["paneElements"].push_back(
                whole(layout.at("defaults").at("element"), layout.at("elements").at(element)));
        panels.push_back(panel);
    }
    return panels;
}

/// The panels of the page of some variants, as the page puts them together; absent when it does
/// not.
std::optional<json> composed(const json& layout, const json& style,
                             const std::vector<std::size_t>& chosen) {
    std::size_t changed = 0;
    for (const std::size_t variant : chosen)
        changed += variant > 0 ? 1 : 0;
    if (!style.contains("panels") || (changed > 1 && !style.at("isApart").get<bool>()))
        return std::nullopt;
    json panels = style.at("panels");
    json shown = json::object();
    for (std::size_t at = 0; at < chosen.size(); ++at) {
        const json& slot = style.at("slots").at(at);
        const json& variant = slot.at("variants").at(chosen[at]);
        if (!slot.contains("way") || chosen[at] == 0)
            continue;
        if (slot.at("way").empty())
            panels = variant.at("panels");
        else
            shown[slot.at("way").dump()] = variant.at("panel");
    }
    return wholePanels(layout, panels, shown);
}

/// Compares the pages of variants, one in so many, with those that the library builds. Answers how
/// many.
std::size_t comparePages(const Modelled& modelled, std::size_t oneIn) {
    const yg::RootContents& contents = *modelled.inspection->contents();
    std::size_t compared = 0;
    std::size_t met = 0;
    for (const json& style : modelled.layout.at("templates")) {
        const json& slots = style.at("slots");
        std::vector<std::size_t> chosen(slots.size());
        while (true) {
            std::string name = style.at("name");
            for (std::size_t at = 0; at < chosen.size(); ++at)
                name +=
                    "-" + slots[at].at("variants").at(chosen[at]).at("argument").get<std::string>();
            const auto panels =
                met++ % oneIn == 0 ? composed(modelled.layout, style, chosen) : std::nullopt;
            if (panels) {
                contents.asTerminal(yg::RootContents::Storage::asUsed, [&] {
                    const auto page = contents.layout().loadStyleConfigInfoWithName(name);
                    const json expected =
                        written([&](Output& output) { JsonWriter(output).write(page); });
                    EXPECT_EQ(*panels, expected.at("stylePanes")) << name;
                });
                ++compared;
            }
            std::size_t at = 0;
            while (at < chosen.size() && ++chosen[at] == slots[at].at("variants").size())
                chosen[at++] = 0;
            if (at == chosen.size())
                break;
        }
    }
    return compared;
}

TEST(LayoutModel, ListsAPanelOnceHoweverManyPagesShareIt) {
    const json layout = layoutOf(
        {{reuseFile, "<r><reuse_panel name='bar'><panel name='in'/></reuse_panel></r>"},
         {mainFile,
          styles("<style name='a'><panel name='p'><reuse_panel name='bar'/></panel></style>"
                 "<style name='b'><panel name='q'><reuse_panel name='bar'/>"
                 "<reuse_panel name='bar'/></panel></style>")}});
    EXPECT_THAT(layout.at("panels"), SizeIs(4));
    const json& bar = layout.at("reuse").at(0).at("panel");
    const auto firstPanelOf = [&](std::size_t page) {
        const std::size_t number = layout.at("pages").at(page).at("panels").at(0);
        return layout.at("panels").at(number);
    };
    EXPECT_EQ(firstPanelOf(0).at("panels"), json::array({bar}));
    EXPECT_EQ(firstPanelOf(1).at("panels"), json::array({bar, bar}));
}

TEST(LayoutModel, StaysAsSmallAsTheFilesWhenReferencesMultiply) {
    std::string reuse = "<r><reuse_panel name='n0'><panel/></reuse_panel>";
    for (int level = 1; level <= 5; ++level) {
        reuse += "<reuse_panel name='n" + std::to_string(level) + "'>";
        for (int times = 0; times < 10; ++times)
            reuse += "<reuse_panel name='n" + std::to_string(level - 1) + "'/>";
        reuse += "</reuse_panel>";
    }
    const json layout = layoutOf(
        {{reuseFile, reuse + "</r>"},
         {mainFile, styles("<style name='a'><panel><reuse_panel name='n5'/></panel></style>")}});
    EXPECT_THAT(layout.at("panels").size(), Le(12U));
}

TEST(LayoutModel, LeavesOutWhatIsAbsentAndKeepsEmptyTexts) {
    const json layout = layoutOf(
        {{mainFile, styles("<style name=''/><style name='s' focus=''><panel foldPosition=''>"
                           "<element name='e' param='' event_dispatch_dest='x;;y'/></panel></style>"
                           "<style name='t'/>")}});
    const json& panel = layout.at("panels").at(0);
    EXPECT_FALSE(panel.contains("panelName"));
    EXPECT_EQ(panel.at("foldPosition"), "");
    const json& element = layout.at("elements").at(0);
    EXPECT_EQ(element.at("elementParam"), "");
    EXPECT_FALSE(element.contains("elementProperty"));
    EXPECT_THAT(element.at("eventDispathDestArray"), ElementsAre("x", "", "y"));
    EXPECT_FALSE(element.contains("eventDispathSrcArray"));
    EXPECT_EQ(layout.at("pages").at(0).at("focus"), "");
    EXPECT_FALSE(layout.at("pages").at(1).contains("focus"));
    EXPECT_FALSE(layout.contains("defaultPage"));
}

TEST(LayoutModel, SaysWhereThingsStandInTheFiles) {
    const json layout = layoutOf(
        {{softFile, styles("<style name='other'/>")},
         {mainFile, styles("\n<style name='s'>\n<panel name='p'>\n<element name='e'/></panel>"
                           "<magic_panels name='g'/></style>")},
         {magicFile,
          "<m>\n<magic_panels name='g'>\n<magic_panel name='m'><panel/></magic_panel>"
          "</magic_panels></m>"}});
    const auto lineOf = [](const json& item) { return item.at("at").at(1).get<int>(); };
    EXPECT_EQ(lineOf(layout.at("pages").at(0)), 2);
    EXPECT_EQ(lineOf(layout.at("panels").at(0)), 3);
    EXPECT_EQ(lineOf(layout.at("elements").at(0)), 4);
    EXPECT_EQ(lineOf(layout.at("groups").at(0)), 2);
    EXPECT_EQ(lineOf(layout.at("groups").at(0).at("members").at(0)), 3);
    EXPECT_EQ(lineOf(layout.at("templates").at(0)), 2);
}

TEST(CustomPagesOfTheModel, MakeThePagesThatTheLibraryBuildsOfTheSample) {
    EXPECT_EQ(comparePages(Modelled(sample), 11), 80U);
}

/// Members that give a panel, an element, a slot, nothing, or the same as another member; patterns
/// of which one value breaks.
const std::string oddGroups = R"(<m>
<magic_panels name="g">
  <magic_panel name="a"><panel name="x"><panel name="in"/></panel></magic_panel>
  <magic_panel name="b"><panel name="x"><panel name="in"/><panel/></panel></magic_panel>
  <magic_panel name="same"><panel name="x"><panel name="in"/></panel></magic_panel>
  <magic_panel name="element"><element name="e" uuid="u"/></magic_panel>
  <magic_panel name="slot"><magic_panels name="h"/></magic_panel>
  <magic_panel name="nothing"><!-- --><panel name="x"/></magic_panel>
  <magic_panel name="KEY"><panel name="KEY" foldPosition="KEY"><element name="KEY"/></panel></magic_panel>
</magic_panels>
<magic_panels name="h">
  <magic_panel name="a"><panel name="rtline_view"/></magic_panel>
  <magic_panel name="c"><panel name="c" is_editable="true"/></magic_panel>
</magic_panels>
<magic_panels name="panels">
  <magic_panel name="a"><panel name="x"><panel name="in"/></panel></magic_panel>
  <magic_panel name="b"><panel name="x"><panel name="in"/><panel/></panel></magic_panel>
  <magic_panel name="c"><panel name="c"/></magic_panel>
</magic_panels></m>)";
const std::string oddHost =
    R"({"rightLevel": "free", "mappings": {"模版通配": {"KEY": ["V1", "<V2>", "V3&"]}}})";

class CustomPagesOfOddTemplates : public testing::TestWithParam<std::string> {};

TEST_P(CustomPagesOfOddTemplates, MakeThePagesThatTheLibraryBuilds) {
    const WrittenRoot root({{mainFile, styles(GetParam())},
                            {softFile, styles("<style name='other'/>")},
                            {magicFile, oddGroups},
                            {"host.json", oddHost}});
    EXPECT_GT(comparePages(Modelled(root.folder.path()), 1), 0U);
}

INSTANTIATE_TEST_SUITE_P(
    LayoutModel, CustomPagesOfOddTemplates,
    testing::Values(
        "<style name='t'><magic_panels name='g'/></style>",
        "<style name='t'><panel><magic_panels name='g'/><magic_panels name='g'/></panel></style>",
        "<style name='t'><panel><magic_panels name='panels'/><magic_panels name='panels'/>"
        "<magic_panels name='panels'/></panel></style>",
        "<style name='t'><magic_panels name='g'/><panel><magic_panels name='panels'/></panel>"
        "<magic_panels name='h'/></style>",
        "<style name='t'><panel><panel><magic_panels name='g'/></panel><magic_panels name='h'/>"
        "</panel></style>",
        "<style name='t'><panel><magic_panels name='panels'><magic_panels name='h'/></magic_panels>"
        "</panel></style>",
        "<style name='t'><panel><magic_panels name='unknown'/><magic_panels name='panels'/>"
        "<magic_panels/></panel></style>",
        "<style name='t'><group><panel><magic_panels name='g'/></panel></group>"
        "<panel><magic_panels name='panels'/></panel></style>",
        "<style name='个股详细视图'><panel><magic_panels name='h'/><panel name='rtline_view'>"
        "<magic_panels name='panels'/></panel><magic_panels name='panels'/></panel></style>"));

TEST(CustomPagesOfTheModel, CanBeChosenApartOnlyWhereSlotsDoNotMoveEachOther) {
    const auto isApart = [](const std::string& content) {
        return layoutOf(
                   {{mainFile, styles("<style name='t'><panel>" + content + "</panel></style>")},
                    {softFile, styles("<style name='other'/>")},
                    {magicFile, oddGroups}})
            .at("templates")
            .at(0)
            .at("isApart");
    };
    EXPECT_EQ(isApart("<magic_panels name='panels'/><magic_panels name='panels'/>"), true);
    EXPECT_EQ(isApart("<magic_panels name='g'/><magic_panels name='panels'/>"), false);
    EXPECT_EQ(isApart("<panel><magic_panels name='g'/></panel><magic_panels name='panels'/>"),
              true);
}

TEST(CustomPagesOfTheModel, AreNotTheStoredPageOfTheirName) {
    const json layout =
        layoutOf({{mainFile, styles("<style name='t'><magic_panels name='panels'/></style>"
                                    "<style name='t-a'><panel name='stored'/></style>"
                                    "<style name='t-b'><panel name='stored'/></style>")},
                  {softFile, styles("<style name='other'/>")},
                  {magicFile, oddGroups}});
    const json& style = layout.at("templates").at(0);
    const auto nameAt = [&](const json& number) {
        return layout.at("panels").at(number.get<std::size_t>()).at("panelName");
    };
    EXPECT_EQ(nameAt(style.at("panels").at(0)), "x");
    EXPECT_EQ(nameAt(style.at("slots").at(0).at("variants").at(1).at("panel")), "x");
}

TEST(CustomPagesOfTheModel, CountTheArgumentsThatAreLeftOutMembersFirst) {
    json values = json::array();
    for (int value = 0; value < 300; ++value)
        values.push_back("V" + std::to_string(value));
    const json host{{"rightLevel", "free"}, {"mappings", {{"模版通配", {{"KEY", values}}}}}};
    const json layout =
        layoutOf({{mainFile, styles("<style name='t'><magic_panels name='g'/></style>")},
                  {softFile, styles("<style name='other'/>")},
                  {magicFile,
                   "<m><magic_panels name='g'><magic_panel name='KEY'><panel name='KEY'/>"
                   "</magic_panel><magic_panel name='last'><panel/></magic_panel>"
                   "</magic_panels></m>"},
                  {"host.json", host.dump()}});
    const json& slot = layout.at("templates").at(0).at("slots").at(0);
    const json& variants = slot.at("variants");
    EXPECT_THAT(variants, SizeIs(100));
    EXPECT_EQ(slot.at("left"), 202);
    EXPECT_EQ(variants.at(1).at("argument"), "last");
    EXPECT_EQ(variants.at(1).at("isMember"), true);
    EXPECT_EQ(variants.at(2).at("argument"), "V0");
    EXPECT_EQ(variants.at(2).at("isMember"), false);
}

TEST(CustomPagesOfTheModel, AreNoneOfATemplateThatIsLargerThanTheirRoom) {
    std::string panels;
    for (int number = 0; number < 5000; ++number)
        panels += "<panel name='" + std::to_string(number) + std::string(1000, 'x') + "'/>\n";
    const json layout =
        layoutOf({{mainFile, styles("<style name='large'><panel>" + panels +
                                    "</panel><magic_panels name='panels'/></style>"
                                    "<style name='small'><magic_panels name='panels'/></style>")},
                  {softFile, styles("<style name='other'/>")},
                  {magicFile, oddGroups}});
    const json& templates = layout.at("templates");
    EXPECT_EQ(templates.at(0).at("name"), "large");
    EXPECT_FALSE(templates.at(0).contains("panels"));
    EXPECT_EQ(templates.at(0).at("slots").at(0).at("left"), 2);
    EXPECT_THAT(templates.at(1).at("slots").at(0).at("variants"), SizeIs(3));
}

}  // namespace
