// SPDX-License-Identifier: MIT
//
// The style files: what a load makes of them, which file wins, and the lookup by name.
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/layout/YGStyleConfigLoad.h"
#include "YGConfigManager/xml/Document.h"

#include "layout/LayoutTest.h"
#include "layout/RecordText.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using yg::YGStyleConfigLoad;
using yg::testing::keys;
using yg::testing::LayoutFile;
using yg::testing::LayoutTest;
using yg::testing::names;
using yg::testing::parsed;
using yg::testing::RecordText;

using StyleLoading = LayoutTest;

TEST_F(StyleLoading, BeginsWithEveryFieldAbsent) {
    EXPECT_EQ(loader.styleInfos(), nullptr);
    EXPECT_EQ(loader.tabStyleInfos(), nullptr);
    EXPECT_EQ(loader.magicPanelInfos(), nullptr);
    EXPECT_EQ(loader.reusePanelInfos(), nullptr);
    EXPECT_EQ(loader.scrollPanelDict(), nullptr);
    EXPECT_EQ(loader.defaultStyleName(), std::nullopt);
    EXPECT_EQ(loader.loadStyleConfigInfoWithName("a"), nullptr);
    EXPECT_THAT(host->runtimeLog(), IsEmpty());
}

/// A host cannot change these maps, but the records in them.
template <class Map>
constexpr bool isFixed =
    std::is_const_v<typename std::decay_t<Map>::element_type> &&
    !std::is_const_v<
        typename std::decay_t<decltype(std::declval<Map>()->begin()->value)>::element_type>;
static_assert(isFixed<decltype(std::declval<YGStyleConfigLoad>().styleInfos())>);
static_assert(isFixed<decltype(std::declval<YGStyleConfigLoad>().tabStyleInfos())>);
static_assert(isFixed<decltype(std::declval<YGStyleConfigLoad>().reusePanelInfos())>);
static_assert(isFixed<decltype(std::declval<YGStyleConfigLoad>().scrollPanelDict())>);
static_assert(isFixed<decltype(std::declval<YGStyleConfigLoad>().loadConfig("", true))>);
static_assert(isFixed<decltype(std::declval<YGStyleConfigLoad>().loadReusePanel(""))>);
static_assert(isFixed<decltype(yg::MagicPanelMap::Entry::value)>);
static_assert(std::is_same_v<decltype(std::declval<YGStyleConfigLoad>().magicPanelInfos()),
                             const std::shared_ptr<const yg::MagicPanelMap>&>);
static_assert(std::is_same_v<decltype(std::declval<YGStyleConfigLoad>().loadMagicPanel("")),
                             std::shared_ptr<const yg::MagicPanelMap>>);

TEST_F(StyleLoading, AnswersTheLoaderItself) {
    EXPECT_EQ(loader.initWithStyleConfigPath(std::nullopt, std::nullopt, std::nullopt), &loader);
}

TEST_F(StyleLoading, ReadsNameLayerAndFocusOfEachStyleInTheOrderOfTheFile) {
    write(LayoutFile::styles, R"(<styles>
        <style name="b" layer="2" focus="grid"/>
        <!-- not a style --> text <?and not this?>
        <style name="a" layer=" 12abc" focus=""/>
        <style name="c"/>
    </styles>)");
    load();
    ASSERT_THAT(keys(loader.styleInfos()), ElementsAre("b", "a", "c"));
    EXPECT_EQ(style("b")->styleName(), "b");
    EXPECT_EQ(style("b")->styleLayer(), 2);
    EXPECT_EQ(style("b")->styleFucus(), "grid");
    EXPECT_EQ(style("a")->styleLayer(), 12);
    EXPECT_EQ(style("a")->styleFucus(), "");
    EXPECT_EQ(style("c")->styleLayer(), 0);
    EXPECT_EQ(style("c")->styleFucus(), std::nullopt);
    EXPECT_EQ(style("c")->magicPanelsNameArray(), nullptr);
}

TEST_F(StyleLoading, LeavesOutAStyleWhoseNameIsMissingOrEmpty) {
    write(LayoutFile::styles,
          "<styles><style name=''/><style layer='1'/><style name=' '/></styles>");
    load();
    EXPECT_THAT(keys(loader.styleInfos()), ElementsAre(" "));
}

TEST_F(StyleLoading, AnswersAnEmptyMapWhenNoStyleHasAName) {
    write(LayoutFile::styles, "<styles><style/></styles>");
    load();
    ASSERT_NE(loader.styleInfos(), nullptr);
    EXPECT_TRUE(loader.styleInfos()->empty());
}

TEST_F(StyleLoading, KeepsTheLaterOfTwoStylesOfOneName) {
    write(LayoutFile::styles,
          "<styles><style name='a' layer='1'><panel name='first'/></style><style name='b'/>"
          "<style name='a' layer='2'/></styles>");
    load();
    EXPECT_THAT(keys(loader.styleInfos()), ElementsAre("a", "b"));
    EXPECT_EQ(style("a")->styleLayer(), 2);
    EXPECT_THAT(names(style("a")->stylePanes()), IsEmpty());
}

TEST_F(StyleLoading, TakesARootOfAnyName) {
    write(LayoutFile::styles, "<anything><style name='a'/></anything>");
    load();
    EXPECT_THAT(keys(loader.styleInfos()), ElementsAre("a"));
}

TEST_F(StyleLoading, YieldsNoMapWhenTheRootHasNoChildrenAndLosesTheSoftOptimizeStylesToo) {
    write(LayoutFile::styles, "<styles>\n  \n</styles>");
    write(LayoutFile::softStyles, "<styles><style name='a'/></styles>");
    load();
    EXPECT_EQ(loader.styleInfos(), nullptr);
}

TEST_F(StyleLoading, YieldsAnEmptyMapWhenTheRootHoldsACommentAlone) {
    write(LayoutFile::styles, "<styles><!-- none yet --></styles>");
    write(LayoutFile::softStyles, "<styles><style name='a'/></styles>");
    load();
    EXPECT_THAT(keys(loader.styleInfos()), ElementsAre("a"));
}

TEST_F(StyleLoading, LosesTheSoftOptimizeStylesWhenTheMainFileIsMissing) {
    write(LayoutFile::softStyles, "<styles default_style='a'><style name='a'/></styles>");
    load();
    EXPECT_EQ(loader.styleInfos(), nullptr);
    EXPECT_EQ(loader.defaultStyleName(), "a");
}

TEST_F(StyleLoading, AnswersSuchALostStyleFromTheTemplatesAllTheSame) {
    write(LayoutFile::softStyles, "<styles><style name='a' layer='4'/></styles>");
    load();
    const auto page = loader.loadStyleConfigInfoWithName("a");
    ASSERT_NE(page, nullptr);
    EXPECT_EQ(page->styleLayer(), 4);
}

TEST_F(StyleLoading, LetsSoftOptimizeStylesReplaceMainStylesAndAddNewOnes) {
    write(LayoutFile::styles,
          "<styles><style name='a' layer='1'><panel name='p'/></style><style name='b'/></styles>");
    write(LayoutFile::softStyles, "<styles><style name='c'/><style name='a' layer='2'/></styles>");
    load();
    EXPECT_THAT(keys(loader.styleInfos()), ElementsAre("a", "b", "c"));
    EXPECT_EQ(style("a")->styleLayer(), 2);
    EXPECT_THAT(names(style("a")->stylePanes()), IsEmpty());
}

TEST_F(StyleLoading, TakesTheDefaultStyleFromTheMainFile) {
    write(LayoutFile::styles, "<styles default_style='main'><style name='a'/></styles>");
    write(LayoutFile::softStyles, "<styles><style name='b'/></styles>");
    write(LayoutFile::tabs, "<tabs default_style='tab'><style name='t'/></tabs>");
    load();
    EXPECT_EQ(loader.defaultStyleName(), "main");
}

TEST_F(StyleLoading, LetsTheSoftOptimizeFileReplaceTheDefaultStyle) {
    write(LayoutFile::styles, "<styles default_style='main'><style name='a'/></styles>");
    write(LayoutFile::softStyles, "<styles default_style='soft'><style name='b'/></styles>");
    load();
    EXPECT_EQ(loader.defaultStyleName(), "soft");
}

TEST_F(StyleLoading, TakesAnEmptyDefaultStyleAndThatOfARootWithoutChildren) {
    write(LayoutFile::styles, "<styles default_style='main'><style name='a'/></styles>");
    write(LayoutFile::softStyles, "<styles default_style=''/>");
    load();
    EXPECT_EQ(loader.defaultStyleName(), "");
}

TEST_F(StyleLoading, NeverTakesTheDefaultStyleFromTheTabFile) {
    write(LayoutFile::styles, "<styles><style name='a'/></styles>");
    write(LayoutFile::tabs, "<tabs default_style='tab'><style name='t'/></tabs>");
    load();
    EXPECT_EQ(loader.defaultStyleName(), std::nullopt);
}

TEST_F(StyleLoading, LetsTheHostSetTheDefaultStyle) {
    write(LayoutFile::styles, "<styles default_style='main'><style name='a'/></styles>");
    load();
    loader.setDefaultStyleName("other");
    EXPECT_EQ(loader.defaultStyleName(), "other");
    loader.setDefaultStyleName(std::nullopt);
    EXPECT_EQ(loader.defaultStyleName(), std::nullopt);
}

TEST_F(StyleLoading, KeepsAStyleUnderAnotherElementNameWithoutItsPanels) {
    write(LayoutFile::styles, R"(<styles><page name="a" layer="5" focus="f">
        <panel name="p"><element name="e"/></panel>
        <magic_panels name="g"/><reuse_panel name="r"/></page></styles>)");
    write(LayoutFile::magicPanels,
          "<m><magic_panels name='g'><magic_panel "
          "name='x'><panel/></magic_panel></magic_panels></m>");
    load();
    ASSERT_NE(style("a"), nullptr);
    EXPECT_EQ(style("a")->styleName(), "a");
    EXPECT_EQ(style("a")->styleLayer(), 5);
    EXPECT_EQ(style("a")->styleFucus(), "f");
    EXPECT_THAT(*style("a")->stylePanes(), IsEmpty());
}

TEST_F(StyleLoading, ShowsSoftOptimizeStylesTheFirstMagicFileAloneAndTabStylesTheMergedGroups) {
    write(LayoutFile::styles, "<styles><style name='main'/></styles>");
    write(LayoutFile::magicPanels,
          "<m><magic_panels name='both'><magic_panel name='x'><panel name='old'/></magic_panel>"
          "</magic_panels></m>");
    write(LayoutFile::softMagicPanels,
          "<m><magic_panels name='both'><magic_panel name='x'><panel name='new'/></magic_panel>"
          "</magic_panels><magic_panels name='soft'><magic_panel name='y'><panel name='soft'/>"
          "</magic_panel></magic_panels></m>");
    const std::string_view slots =
        "<s><style name='a'><magic_panels name='soft'/>"
        "<magic_panels name='both'/></style></s>";
    write(LayoutFile::softStyles, slots);
    write(LayoutFile::tabs, slots);
    load();
    EXPECT_THAT(names(style("a")->stylePanes()), ElementsAre("old"));
    EXPECT_THAT(names(tabStyle("a")->stylePanes()), ElementsAre("soft", "new"));
}

TEST_F(StyleLoading, ReadsTabStylesIntoAMapOfTheirOwnThatTheLookupNeverAsks) {
    write(LayoutFile::styles, "<styles><style name='main'/></styles>");
    write(LayoutFile::softStyles, "<styles/>");
    write(LayoutFile::tabs, "<tabs><style name='tab'><panel name='p'/></style></tabs>");
    load();
    EXPECT_THAT(keys(loader.tabStyleInfos()), ElementsAre("tab"));
    EXPECT_THAT(names(tabStyle("tab")->stylePanes()), ElementsAre("p"));
    EXPECT_THAT(keys(loader.styleInfos()), ElementsAre("main"));
    EXPECT_EQ(loader.loadStyleConfigInfoWithName("tab"), nullptr);
}

TEST_F(StyleLoading, YieldsNoTabStylesWhenTheTabFileIsMissing) {
    write(LayoutFile::styles, "<styles><style name='main'/></styles>");
    load();
    EXPECT_EQ(loader.tabStyleInfos(), nullptr);
}

TEST_F(StyleLoading, AnswersALoadedStyleItselfEachTime) {
    write(LayoutFile::styles, "<styles><style name='a'/></styles>");
    load();
    EXPECT_EQ(loader.loadStyleConfigInfoWithName("a"), style("a"));
    EXPECT_EQ(loader.loadStyleConfigInfoWithName("a"), style("a"));
}

TEST_F(StyleLoading, BuildsANewRecordEachTimeForANameThatWasNotLoaded) {
    write(LayoutFile::styles, "<styles><style name='main'/></styles>");
    write(LayoutFile::softStyles, "<styles/>");
    write(LayoutFile::magicPanels,
          "<m><magic_panels name='g'><magic_panel name='x'><panel name='p'/></magic_panel>"
          "</magic_panels></m>");
    write(LayoutFile::styles,
          "<styles><style name='quote' layer='3'><magic_panels name='g'/></style></styles>");
    load();
    const auto first = loader.loadStyleConfigInfoWithName("quote-x");
    const auto second = loader.loadStyleConfigInfoWithName("quote-x");
    ASSERT_NE(first, nullptr);
    EXPECT_NE(first, second);
    EXPECT_EQ(RecordText::of(first), RecordText::of(second));
    EXPECT_EQ(first->styleName(), "quote-x");
    EXPECT_EQ(style("quote-x"), nullptr);
}

TEST_F(StyleLoading, AnswersNothingForAnAbsentOrUnknownName) {
    write(LayoutFile::styles, "<styles><style name='a'/></styles>");
    write(LayoutFile::softStyles, "<styles/>");
    load();
    EXPECT_EQ(loader.loadStyleConfigInfoWithName(std::nullopt), nullptr);
    EXPECT_EQ(loader.loadStyleConfigInfoWithName(""), nullptr);
    EXPECT_EQ(loader.loadStyleConfigInfoWithName("A"), nullptr);
    EXPECT_EQ(loader.loadStyleConfigInfoWithName("a "), nullptr);
}

TEST_F(StyleLoading, BuildsNoCustomPageWithoutTheSoftOptimizeStyleFileButLoadsTheMainStyles) {
    const std::string_view styles =
        "<styles><style name='quote'><magic_panels name='g'/></style></styles>";
    write(LayoutFile::styles, styles);
    write(LayoutFile::magicPanels,
          "<m><magic_panels name='g'><magic_panel name='x'><panel name='p'/></magic_panel>"
          "</magic_panels></m>");
    load();
    EXPECT_NE(loader.loadStyleConfigInfoWithName("quote"), nullptr);
    EXPECT_EQ(loader.loadStyleConfigInfoWithName("quote-x"), nullptr);
    EXPECT_FALSE(loader.createXMLElementWithStyleName("quote"));

    write(LayoutFile::softStyles, "<styles/>");
    load();
    EXPECT_NE(loader.loadStyleConfigInfoWithName("quote-x"), nullptr);
}

TEST_F(StyleLoading, FindsASoftOptimizeTemplateBeforeTheMainOne) {
    write(LayoutFile::styles, "<s><style name='t' focus='main'/><style name='m'/></s>");
    write(LayoutFile::softStyles, "<s><style name='t' focus='soft'/></s>");
    load();
    EXPECT_EQ(loader.createXMLElementWithStyleName("t").attribute("focus"), "soft");
    EXPECT_TRUE(loader.createXMLElementWithStyleName("m"));
}

TEST_F(StyleLoading, FindsTheFirstTemplateOfANameWhereTheLaterStyleIsLoaded) {
    write(LayoutFile::styles, "<s><style name='t' layer='1'/><style name='t' layer='2'/></s>");
    write(LayoutFile::softStyles, "<s/>");
    load();
    EXPECT_EQ(style("t")->styleLayer(), 2);
    EXPECT_EQ(loader.createXMLElementWithStyleName("t").attribute("layer"), "1");
}

TEST_F(StyleLoading, NeverFillsTheScrollPanels) {
    write(LayoutFile::styles,
          "<styles><style name='a'><panel is_scroll_view='true'/></style></styles>");
    load();
    EXPECT_EQ(loader.scrollPanelDict(), nullptr);
}

TEST_F(StyleLoading, KeepsItsRecordsAfterTheLoaderIsGone) {
    write(LayoutFile::styles, "<s><style name='a'><panel name='p'/></style></s>");
    std::shared_ptr<yg::StyleConfigInfo> kept;
    {
        YGStyleConfigLoad shortLived;
        load(shortLived);
        kept = shortLived.loadStyleConfigInfoWithName("a");
    }
    EXPECT_THAT(names(kept->stylePanes()), ElementsAre("p"));
}

TEST_F(StyleLoading, ReadsOneStyleFileAloneWithoutChangingTheLoadedStyles) {
    write(LayoutFile::styles, "<s default_style='d'><style name='a'/></s>");
    write(LayoutFile::tabs, "<s default_style='t'><style name='b'/></s>");
    load();
    EXPECT_THAT(keys(loader.loadConfig(path(LayoutFile::tabs), true)), ElementsAre("b"));
    EXPECT_EQ(loader.defaultStyleName(), "t");
    EXPECT_THAT(keys(loader.styleInfos()), ElementsAre("a"));
    EXPECT_THAT(keys(loader.loadConfig(path(LayoutFile::styles), false)), ElementsAre("a"));
    EXPECT_EQ(loader.defaultStyleName(), "t");
    EXPECT_EQ(loader.loadConfig(std::nullopt, true), nullptr);
    EXPECT_EQ(loader.loadConfig("", true), nullptr);
}

TEST_F(StyleLoading, ParsesAStyleElementWithoutAName) {
    const auto record = loader.parseStyleConfig(
        parsed("<style layer='9' focus='f'><panel name='p'/> text <!-- c --></style>"));
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(record->styleName(), std::nullopt);
    EXPECT_EQ(record->styleLayer(), 9);
    EXPECT_EQ(record->styleFucus(), "f");
    EXPECT_THAT(names(record->stylePanes()), ElementsAre("p"));
}

TEST_F(StyleLoading, ParsesAnEmptyHandleAsAStyleWithoutAnything) {
    const auto record = loader.parseStyleConfig({});
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(record->styleName(), std::nullopt);
    EXPECT_THAT(*record->stylePanes(), IsEmpty());
}

TEST_F(StyleLoading, KeepsTheRootElementUsableAfterTheDocumentIsGone) {
    write(LayoutFile::styles, "<s><style name='a'><panel name='p'/></style></s>");
    const auto top = loader.getRootElementForFile(path(LayoutFile::styles));
    EXPECT_EQ(top.name(), "s");
    EXPECT_EQ(top.serialise(), "<s><style name=\"a\"><panel name=\"p\"></panel></style></s>");
}

TEST_F(StyleLoading, ReadsNothingAndLogsNothingForAnAbsentOrEmptyPath) {
    EXPECT_FALSE(loader.getRootElementForFile(std::nullopt));
    EXPECT_FALSE(loader.getRootElementForFile(""));
    EXPECT_THAT(host->runtimeLog(), IsEmpty());
}

TEST_F(StyleLoading, TakesAPathAsItStands) {
    root.write("a%20~ #.xml", "<s/>");
    EXPECT_TRUE(loader.getRootElementForFile(root.at("a%20~ #.xml")));
    EXPECT_THAT(host->runtimeLog(), IsEmpty());
}

TEST_F(StyleLoading, MergesTheBaseFileBeforeTheElementsOfTheOtherFile) {
    write(LayoutFile::softStyles, "<base a='1'><style name='s'/><!-- c -->text</base>");
    write(LayoutFile::styles,
          "<ext b='2'><!-- c --><style name='m'><panel/></style>x<other/></ext>");
    const auto merged =
        loader.loadStyleConfigWithBasePath(path(LayoutFile::softStyles), path(LayoutFile::styles));
    EXPECT_EQ(merged.serialise(),
              "<base a=\"1\"><style name=\"s\"></style><!-- c -->text"
              "<style name=\"m\"><panel></panel></style><other></other></base>");
}

TEST_F(StyleLoading, MergesNothingWithoutTheBaseFile) {
    write(LayoutFile::styles, "<ext><style name='m'/></ext>");
    EXPECT_FALSE(
        loader.loadStyleConfigWithBasePath(path(LayoutFile::softStyles), path(LayoutFile::styles)));
    EXPECT_FALSE(loader.loadStyleConfigWithBasePath(std::nullopt, path(LayoutFile::styles)));
}

TEST_F(StyleLoading, MergesTheBaseFileAloneWhenTheOtherIsMissing) {
    write(LayoutFile::softStyles, "<base><style name='s'/></base>");
    const auto merged =
        loader.loadStyleConfigWithBasePath(path(LayoutFile::softStyles), std::nullopt);
    EXPECT_EQ(merged.serialise(), "<base><style name=\"s\"></style></base>");
}

TEST_F(StyleLoading, MergesManyStylesInOrder) {
    constexpr std::size_t count = 3000;
    std::string text = "<s>";
    for (std::size_t i = 0; i < count; ++i)
        text += "<style name='" + std::to_string(i) + "'/>";
    write(LayoutFile::styles, text + "</s>");
    write(LayoutFile::softStyles, "<s/>");
    const auto merged =
        loader.loadStyleConfigWithBasePath(path(LayoutFile::softStyles), path(LayoutFile::styles));
    std::size_t next = 0;
    for (const auto& child : merged.children())
        EXPECT_EQ(yg::xml::Element(child).attribute("name"), std::to_string(next++));
    EXPECT_EQ(next, count);
}

TEST_F(StyleLoading, TwoLoadersShareNothing) {
    write(LayoutFile::styles, "<s default_style='d'><style name='a'/></s>");
    YGStyleConfigLoad other;
    load();
    load(other);
    EXPECT_NE(style("a"), other.loadStyleConfigInfoWithName("a"));
    other.setDefaultStyleName("o");
    EXPECT_EQ(loader.defaultStyleName(), "d");
}

TEST(SharedLoader, IsOneAndTheSameOnEveryThread) {
    constexpr int threadCount = 8;
    std::vector<std::thread> threads;
    std::vector<std::shared_ptr<YGStyleConfigLoad>> seen(threadCount);
    for (auto& mine : seen)
        threads.emplace_back([&mine] { mine = YGStyleConfigLoad::getShareInstance(); });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(std::set<std::shared_ptr<YGStyleConfigLoad>>(seen.begin(), seen.end()).size(), 1U);
    EXPECT_NE(seen.front(), nullptr);
}

TEST(SharedLoader, IsMadeEmpty) {
    const yg::testing::ScopedHost<> host;
    const auto shared = YGStyleConfigLoad::getShareInstance();
    EXPECT_EQ(shared->styleInfos(), nullptr);
    EXPECT_EQ(shared->tabStyleInfos(), nullptr);
    EXPECT_EQ(shared->magicPanelInfos(), nullptr);
    EXPECT_EQ(shared->scrollPanelDict(), nullptr);
    EXPECT_EQ(shared->defaultStyleName(), std::nullopt);
    EXPECT_THAT(host->questions(), IsEmpty());
    EXPECT_THAT(host->log(), IsEmpty());
}

}  // namespace
