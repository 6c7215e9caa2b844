// SPDX-License-Identifier: MIT
//
// What the loader reports: each rule with its place, every element and attribute
// once, and nothing that would change an answer.
#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/host/StandAloneHost.h"
#include "YGConfigManager/layout/YGStyleConfigLoad.h"

#include "diagnostics/RecordingSink.h"
#include "layout/LayoutTest.h"
#include "layout/RecordText.h"

namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::IsEmpty;
using ::testing::StartsWith;
using ::testing::UnorderedElementsAre;
using yg::Handling;
using yg::YGStyleConfigLoad;
using yg::testing::allLayoutFiles;
using yg::testing::LayoutFile;
using yg::testing::LayoutTest;
using yg::testing::RecordingSink;
using yg::testing::RecordText;
using yg::testing::Reported;

/// Keeps what was called used more than once.
class OnceSink : public RecordingSink {
public:
    using RecordingSink::RecordingSink;

    void used(const yg::Place& place) override {
        RecordingSink::used(place);
        const std::string text = place.file + ":" + std::to_string(place.begin.line) + ":" +
                                 std::to_string(place.begin.column);
        if (!seen_.insert(text).second)
            usedAgain.push_back(text);
    }

    std::vector<std::string> usedAgain;
    std::size_t usedOnce() const { return seen_.size(); }

private:
    std::set<std::string> seen_;
};

/// All six files are there and have nothing to report until the test writes one.
class Diagnostics : public LayoutTest {
protected:
    Diagnostics() : LayoutTest(&sink) {
        for (const LayoutFile file : allLayoutFiles)
            write(file, "<r/>");
    }

    const std::vector<Reported>& reported() {
        load();
        EXPECT_THAT(sink.unaccounted(), IsEmpty());
        return sink.found;
    }

    /// The places that the findings refer to, with what they are.
    std::vector<std::string> earlier() const {
        std::vector<std::string> places;
        for (const yg::Finding& finding : sink.findings) {
            for (const yg::RelatedPlace& related : finding.related)
                places.push_back(sink.textOf(related.place) + " " + std::string(related.meaning));
        }
        return places;
    }

    std::vector<Handling> handlings() const {
        std::vector<Handling> found;
        for (const yg::Finding& finding : sink.findings)
            found.push_back(finding.rule.handling);
        return found;
    }

    OnceSink sink{root.path()};
};

TEST_F(Diagnostics, HaveNothingToSayOfPlainFiles) {
    write(LayoutFile::styles,
          "<s default_style='a'><!-- --><style name='a'><panel name='p' vertical='false'>"
          "<element name='e' event_dispatch_dest='x;y'/><magic_panels name='g'/>"
          "<reuse_panel name='b'/></panel></style></s>");
    write(LayoutFile::magicPanels,
          "<m><magic_panels name='g'><magic_panel "
          "name='x'><panel/></magic_panel></magic_panels></m>");
    write(LayoutFile::reusePanels, "<r><reuse_panel name='b' min_size='12'/></r>");
    EXPECT_THAT(reported(), IsEmpty());
}

// ---- What all formats share ---------------------------------------------------------------------

TEST_F(Diagnostics, NameAMissingFileOnceHoweverManyStepsReadIt) {
    std::filesystem::remove(path(LayoutFile::tabs));
    std::filesystem::remove(path(LayoutFile::reusePanels));
    EXPECT_THAT(reported(),
                ElementsAre(Reported{"unreadable-file", "", "", "No such file or directory",
                                     "base/reuse_panels.xml"},
                            Reported{"unreadable-file", "", "", "No such file or directory",
                                     "config/tabs.xml"}));
}

TEST_F(Diagnostics, NameTheFileThatIsBroken) {
    write(LayoutFile::tabs, "<s>\n<style>\n</s>");
    load();
    ASSERT_FALSE(sink.found.empty());
    EXPECT_EQ(sink.found[0].rule, "unreadable-file");
    EXPECT_THAT(sink.found[0].at, StartsWith("config/tabs.xml:3:"));
}

TEST_F(Diagnostics, TellOfAnUnknownAttributeWhereverOneIsRead) {
    write(LayoutFile::styles, R"(<s
  version="1">
  <style name="a"
    layers="2">
    <panel
      colour="red" Name="p">
      <element name="e"
        tooltip="t"/>
      <magic_panels name="g"
        member="x"/>
      <reuse_panel name="b"
        fix_size="9"/>
    </panel>
  </style>
</s>)");
    write(LayoutFile::magicPanels, R"(<m a="1"><magic_panels name="g"
  b="2"><magic_panel name="x"
  c="3"><panel
  d="4"/></magic_panel></magic_panels></m>)");
    write(LayoutFile::reusePanels, R"(<r e="5"><reuse_panel name="b"
  f="6"/></r>)");
    EXPECT_THAT(
        reported(),
        ElementsAre(
            Reported{"unknown-attribute", "r", "e", "5", "base/reuse_panels.xml:1:4"},
            Reported{"unknown-attribute", "reuse_panel", "f", "6", "base/reuse_panels.xml:2:3"},
            Reported{"unknown-attribute", "m", "a", "1", "config/magic.xml:1:4"},
            Reported{"unknown-attribute", "magic_panels", "b", "2", "config/magic.xml:2:3"},
            Reported{"unknown-attribute", "magic_panel", "c", "3", "config/magic.xml:3:3"},
            Reported{"unknown-attribute", "panel", "d", "4", "config/magic.xml:4:3"},
            Reported{"unknown-attribute", "s", "version", "1", "config/styles.xml:2:3"},
            Reported{"unknown-attribute", "style", "layers", "2", "config/styles.xml:4:5"},
            Reported{"unknown-attribute", "panel", "colour", "red", "config/styles.xml:6:7"},
            Reported{"unknown-attribute", "panel", "Name", "p", "config/styles.xml:6:20"},
            Reported{"unknown-attribute", "element", "tooltip", "t", "config/styles.xml:8:9"},
            Reported{"unknown-attribute", "magic_panels", "member", "x", "config/styles.xml:10:9"},
            Reported{"unknown-attribute", "reuse_panel", "fix_size", "9",
                     "config/styles.xml:12:9"}));
}

TEST_F(Diagnostics, TellOfAnUnknownElementInAStyleAndInAPanel) {
    write(LayoutFile::styles, R"(<s><style name="a">
  <group x="1"><panel/></group>
  <panel>
    <Panel/></panel></style></s>)");
    EXPECT_THAT(
        reported(),
        ElementsAre(Reported{"unknown-element", "group", "", "group", "config/styles.xml:2:3"},
                    Reported{"unknown-element", "Panel", "", "Panel", "config/styles.xml:4:5"}));
}

TEST_F(Diagnostics, TellOfTextThatIsNotRead) {
    write(LayoutFile::styles, R"(<s>one
  <style name="a">two
    <panel>three
      <element name="e">four</element><!-- no text --><?nor this?>
      <magic_panels name="g">five</magic_panels>
      <![CDATA[]]></panel></style></s>)");
    write(LayoutFile::magicPanels, R"(<m>six<magic_panels name="g">seven
  <magic_panel name="x">eight<panel>nine</panel></magic_panel></magic_panels></m>)");
    write(LayoutFile::reusePanels, "<r>ten</r>");
    EXPECT_THAT(
        reported(),
        ElementsAre(Reported{"stray-text", "#text", "", "ten", "base/reuse_panels.xml:1:4"},
                    Reported{"stray-text", "#text", "", "six", "config/magic.xml:1:4"},
                    Reported{"stray-text", "#text", "", "seven\n  ", "config/magic.xml:1:30"},
                    Reported{"stray-text", "#text", "", "eight", "config/magic.xml:2:25"},
                    Reported{"stray-text", "#text", "", "nine", "config/magic.xml:2:37"},
                    Reported{"stray-text", "#text", "", "one\n  ", "config/styles.xml:1:4"},
                    Reported{"stray-text", "#text", "", "two\n    ", "config/styles.xml:2:19"},
                    Reported{"stray-text", "#text", "", "three\n      ", "config/styles.xml:3:12"},
                    Reported{"stray-text", "#text", "", "four", "config/styles.xml:4:25"},
                    Reported{"stray-text", "#text", "", "five", "config/styles.xml:5:30"},
                    Reported{"stray-text", "#text", "", "", "config/styles.xml:6:7"}));
}

TEST_F(Diagnostics, TellOfAFlagThatIsNeitherTrueNorFalse) {
    write(LayoutFile::styles, R"(<s><style name="a">
<panel vertical="True" is_editable="true" is_scroll_view="false">
<element name="e" always_recv_event=""/></panel></style></s>)");
    EXPECT_THAT(
        reported(),
        ElementsAre(
            Reported{"odd-flag", "panel", "vertical", "True", "config/styles.xml:2:8"},
            Reported{"odd-flag", "element", "always_recv_event", "", "config/styles.xml:3:19"}));
    EXPECT_THAT(handlings(), ElementsAre(Handling::defaulted, Handling::defaulted));
}

TEST_F(Diagnostics, TellOfANumberThatIsNotPlain) {
    write(LayoutFile::styles, R"(<s><style name="a" layer="">
<panel min_size="12.7" max_size="99999999999" scroll_size=" 12"
 split_scale="1e" fix_size="1e999"/>
<panel min_size="-12" split_scale=".5" fix_size="5." scroll_size="+1"/></style></s>)");
    EXPECT_THAT(
        reported(),
        ElementsAre(
            Reported{"odd-number", "style", "layer", "", "config/styles.xml:1:20"},
            Reported{"odd-number", "panel", "min_size", "12.7", "config/styles.xml:2:8"},
            Reported{"odd-number", "panel", "max_size", "99999999999", "config/styles.xml:2:24"},
            Reported{"odd-number", "panel", "split_scale", "1e", "config/styles.xml:3:2"},
            Reported{"odd-number", "panel", "fix_size", "1e999", "config/styles.xml:3:19"}));
}

TEST_F(Diagnostics, TellOfAnEmptyListOfNames) {
    write(LayoutFile::styles, R"(<s><style name="a"><panel>
<element name="e" event_dispatch_dest="" event_dispatch_src=";"/></panel></style></s>)");
    EXPECT_THAT(reported(), ElementsAre(Reported{"empty-list", "element", "event_dispatch_dest", "",
                                                 "config/styles.xml:2:19"}));
}

// ---- Styles -------------------------------------------------------------------------------------

TEST_F(Diagnostics, TellOfAStyleWithoutAName) {
    write(LayoutFile::styles, "<s>\n <style layer='x'><panel/></style>\n <page name=''/></s>");
    EXPECT_THAT(
        reported(),
        ElementsAre(Reported{"style-without-name", "style", "", "", "config/styles.xml:2:2"},
                    Reported{"style-without-name", "page", "", "", "config/styles.xml:3:2"}));
    EXPECT_THAT(handlings(), ElementsAre(Handling::dropped, Handling::dropped));
}

TEST_F(Diagnostics, TellOfAStyleThatReplacesAnEarlierOne) {
    write(LayoutFile::styles, "<s>\n<style name='a'/>\n<style layer='1' name='a'/></s>");
    EXPECT_THAT(reported(), ElementsAre(Reported{"duplicate-style", "style", "name", "a",
                                                 "config/styles.xml:3:18"}));
    EXPECT_THAT(handlings(), ElementsAre(Handling::replaced));
}

TEST_F(Diagnostics, TellOfASoftOptimizeStyleThatReplacesAMainStyle) {
    write(LayoutFile::styles, "<s><style name='a'/><style name='b'/></s>");
    write(LayoutFile::softStyles, "<s>\n<style name='c'/>\n <style name='a'/></s>");
    EXPECT_THAT(reported(), ElementsAre(Reported{"overridden-style", "style", "name", "a",
                                                 "soft/styles.xml:3:9"}));
    EXPECT_THAT(earlier(), ElementsAre("config/styles.xml:1:4 the earlier definition"));
}

TEST_F(Diagnostics, TellOfAStyleUnderAnotherElementName) {
    write(LayoutFile::styles, "<s>\n<page name='a'>\n<panel/></page></s>");
    EXPECT_THAT(
        reported(),
        ElementsAre(Reported{"style-element-name", "page", "", "page", "config/styles.xml:2:1"},
                    Reported{"misplaced-panel", "panel", "", "", "config/styles.xml:3:1"}));
}

TEST_F(Diagnostics, TellOfADefaultStyleInTheTabFile) {
    write(LayoutFile::tabs, "<s default_style='a'><style name='t'/></s>");
    EXPECT_THAT(reported(), ElementsAre(Reported{"ignored-default-style", "s", "default_style", "a",
                                                 "config/tabs.xml:1:4"}));
}

TEST_F(Diagnostics, TellOfSoftOptimizeStylesThatAreLost) {
    write(LayoutFile::softStyles, "<s><style name='a'/></s>");
    EXPECT_THAT(reported(),
                ElementsAre(Reported{"soft-optimize-dropped", "", "", "", "soft/styles.xml"}));
}

TEST_F(Diagnostics, TellThatThereAreNoTemplates) {
    write(LayoutFile::styles, "<s><style name='a'/></s>");
    host->softOptimizeFolder = std::nullopt;
    EXPECT_THAT(reported(), ElementsAre(Reported{"no-templates", "", "", "", ""}));
    sink.found.clear();
    host->softOptimizeFolder = root.at("soft");
    std::filesystem::remove(path(LayoutFile::softStyles));
    EXPECT_THAT(reported(), Contains(Reported{"no-templates", "", "", "", "soft/styles.xml"}));
}

// ---- Panels and elements ------------------------------------------------------------------------

TEST_F(Diagnostics, TellOfAPanelThatHasNoPlace) {
    write(LayoutFile::magicPanels, R"(<m><magic_panels name="g"><magic_panel name="x"><group>
 <panel odd="1"><panel/></panel></group></magic_panel></magic_panels></m>)");
    EXPECT_THAT(reported(),
                ElementsAre(Reported{"unexpected-element-name", "group", "", "group",
                                     "config/magic.xml:1:49"},
                            Reported{"misplaced-panel", "panel", "", "", "config/magic.xml:2:2"}));
}

TEST_F(Diagnostics, TellOfAnElementAndAReusePanelBelowAStyle) {
    write(LayoutFile::reusePanels, "<r><reuse_panel name='b'/></r>");
    write(LayoutFile::styles,
          "<s><style name='a'>\n<element name='e'/>\n <reuse_panel name='b'/></style></s>");
    EXPECT_THAT(reported(), ElementsAre(Reported{"misplaced-element", "element", "", "",
                                                 "config/styles.xml:2:1"},
                                        Reported{"misplaced-reuse-panel", "reuse_panel", "name",
                                                 "b", "config/styles.xml:3:15"}));
}

TEST_F(Diagnostics, TellOfAnElementWithoutAName) {
    write(LayoutFile::styles,
          "<s><style name='a'><panel>\n<element odd='1'/>\n<element name=''/></panel></style></s>");
    EXPECT_THAT(
        reported(),
        ElementsAre(Reported{"element-without-name", "element", "", "", "config/styles.xml:2:1"},
                    Reported{"element-without-name", "element", "", "", "config/styles.xml:3:1"}));
}

TEST_F(Diagnostics, TellOfALeftOutRealTimeLineView) {
    write(
        LayoutFile::styles,
        "<s><style name='个股详细视图-1'><panel>\n<panel name='rtline_view'/></panel></style></s>");
    EXPECT_THAT(reported(), ElementsAre(Reported{"rtline-view-left-out", "panel", "", "",
                                                 "config/styles.xml:2:1"}));
}

TEST_F(Diagnostics, TellOfContentThatIsNotRead) {
    write(LayoutFile::magicPanels,
          "<m><magic_panels name='g'><magic_panel "
          "name='x'><panel/></magic_panel></magic_panels></m>");
    write(LayoutFile::reusePanels, "<r><reuse_panel name='b'/></r>");
    write(LayoutFile::styles, R"(<s><style name="a"><panel>
<element name="e">
  <panel name="p"/></element>
<magic_panels name="g">
  <element name="e"/></magic_panels>
<reuse_panel name="b">
  <anything odd="1"/></reuse_panel>
</panel></style></s>)");
    EXPECT_THAT(
        reported(),
        ElementsAre(
            Reported{"unread-content", "panel", "", "panel", "config/styles.xml:3:3"},
            Reported{"unread-content", "element", "", "element", "config/styles.xml:5:3"},
            Reported{"unread-content", "anything", "", "anything", "config/styles.xml:7:3"}));
}

// ---- Magic and reuse panels ---------------------------------------------------------------------

TEST_F(Diagnostics, TellOfMissingNames) {
    write(LayoutFile::reusePanels, "<r>\n<reuse_panel odd='1'><panel/></reuse_panel></r>");
    write(
        LayoutFile::magicPanels,
        "<m>\n<magic_panels><magic_panel/></magic_panels>\n<magic_panels name='g'>\n <magic_panel>"
        "<panel/></magic_panel></magic_panels></m>");
    write(LayoutFile::styles,
          "<s><style name='a'><panel>\n<magic_panels/>\n<reuse_panel/>\n"
          "</panel></style></s>");
    EXPECT_THAT(
        reported(),
        ElementsAre(Reported{"missing-name", "reuse_panel", "", "", "base/reuse_panels.xml:2:1"},
                    Reported{"missing-name", "magic_panels", "", "", "config/magic.xml:2:1"},
                    Reported{"missing-name", "magic_panel", "", "", "config/magic.xml:4:2"},
                    Reported{"missing-name", "magic_panels", "", "", "config/styles.xml:2:1"},
                    Reported{"missing-name", "reuse_panel", "", "", "config/styles.xml:3:1"}));
}

TEST_F(Diagnostics, TellOfDefinitionsThatReplaceEarlierOnes) {
    write(LayoutFile::reusePanels, "<r><reuse_panel name='b'/>\n<reuse_panel name='b'/></r>");
    write(LayoutFile::magicPanels, R"(<m><magic_panels name="g"/>
<magic_panels name="g"><magic_panel name="x"><panel/></magic_panel>
<magic_panel name="x"><panel/></magic_panel></magic_panels></m>)");
    EXPECT_THAT(
        reported(),
        ElementsAre(
            Reported{"duplicate-name", "reuse_panel", "name", "b", "base/reuse_panels.xml:2:14"},
            Reported{"duplicate-name", "magic_panels", "name", "g", "config/magic.xml:2:15"},
            Reported{"duplicate-name", "magic_panel", "name", "x", "config/magic.xml:3:14"}));
    EXPECT_THAT(earlier(), ElementsAre("base/reuse_panels.xml:1:4 the earlier definition",
                                       "config/magic.xml:1:4 the earlier definition",
                                       "config/magic.xml:2:24 the earlier definition"));
}

TEST_F(Diagnostics, TellOfASoftOptimizeGroupThatReplacesAnother) {
    write(LayoutFile::magicPanels, "<m><magic_panels name='g'/><magic_panels name='h'/></m>");
    write(LayoutFile::softMagicPanels,
          "<m>\n<magic_panels name='i'/>\n<magic_panels name='g'/></m>");
    EXPECT_THAT(reported(), ElementsAre(Reported{"replaced-group", "magic_panels", "name", "g",
                                                 "soft/magic.xml:3:15"}));
    EXPECT_THAT(earlier(), ElementsAre("config/magic.xml:1:4 the earlier definition"));
}

TEST_F(Diagnostics, TellOfADefinitionThatStandsTwiceInTheSoftOptimizeFileByItsNearestOne) {
    write(LayoutFile::styles, "<s><style name='a'/></s>");
    write(LayoutFile::softStyles, "<s>\n<style name='a'/>\n<style name='a'/></s>");
    reported();
    EXPECT_THAT(sink.rules(), ElementsAre("overridden-style", "duplicate-style"));
    EXPECT_THAT(earlier(), ElementsAre("config/styles.xml:1:4 the earlier definition",
                                       "soft/styles.xml:2:1 the earlier definition"));
}

TEST_F(Diagnostics, KnowNothingOfTheDefinitionsOfAnEarlierLoad) {
    write(LayoutFile::styles, "<s><style name='a'/></s>");
    write(LayoutFile::tabs, "<s><style name='a'/></s>");
    write(LayoutFile::magicPanels, "<m><magic_panels name='g'/></m>");
    load();
    loader.loadConfig(path(LayoutFile::styles), true);
    loader.loadMagicPanel(path(LayoutFile::magicPanels));
    EXPECT_THAT(reported(), IsEmpty());
}

TEST_F(Diagnostics, TellOfDefinitionsUnderAnotherElementName) {
    write(LayoutFile::reusePanels, "<r>\n<panel name='b'/></r>");
    write(LayoutFile::magicPanels,
          "<m>\n<group name='g'>\n<member name='x'><panel/></member></group></m>");
    EXPECT_THAT(
        reported(),
        ElementsAre(
            Reported{"unexpected-element-name", "panel", "", "panel", "base/reuse_panels.xml:2:1"},
            Reported{"unexpected-element-name", "group", "", "group", "config/magic.xml:2:1"},
            Reported{"unexpected-element-name", "member", "", "member", "config/magic.xml:3:1"}));
}

TEST_F(Diagnostics, TellOfAMagicPanelWithoutAPanel) {
    write(
        LayoutFile::magicPanels,
        "<m><magic_panels name='g'>\n<magic_panel name='x'>text</magic_panel></magic_panels></m>");
    EXPECT_THAT(reported(), ElementsAre(Reported{"member-without-panel", "magic_panel", "name", "x",
                                                 "config/magic.xml:2:14"}));
}

TEST_F(Diagnostics, TellOfASecondPanelInAMagicPanel) {
    write(LayoutFile::magicPanels, R"(<m><magic_panels name="g"><magic_panel name="x"><panel/>
 <panel odd="1"><panel/></panel></magic_panel></magic_panels></m>)");
    EXPECT_THAT(reported(), ElementsAre(Reported{"second-panel", "panel", "", "panel",
                                                 "config/magic.xml:2:2"}));
}

TEST_F(Diagnostics, TellOfWhatACustomPageTakesForThePanelOfAMagicPanel) {
    write(LayoutFile::magicPanels, R"(<m><magic_panels name="g">
<magic_panel name="x"><!-- note --><panel/></magic_panel>
<magic_panel name="y"><?note text?><panel/></magic_panel>
<magic_panel name="z"><panel/><!-- note --></magic_panel></magic_panels></m>)");
    EXPECT_THAT(
        reported(),
        ElementsAre(
            Reported{"comment-before-panel", "#comment", "", " note ", "config/magic.xml:2:23"},
            Reported{"comment-before-panel", "note", "", "text", "config/magic.xml:3:23"}));
}

TEST_F(Diagnostics, TellOfASlotThatShowsNothing) {
    write(LayoutFile::magicPanels, R"(<m><magic_panels name="g"><magic_panel name="x"><panel/>
</magic_panel></magic_panels><magic_panels name="empty"/></m>)");
    write(LayoutFile::styles, R"(<s><page name="a">
<magic_panels name="g"/></page><style name="b">
<magic_panels name="none" odd="1"><panel/></magic_panels>
<magic_panels name="empty"/></style></s>)");
    EXPECT_THAT(
        reported(),
        ElementsAre(
            Reported{"style-element-name", "page", "", "page", "config/styles.xml:1:4"},
            Reported{"misplaced-magic-panels", "magic_panels", "", "", "config/styles.xml:2:1"},
            Reported{"unknown-magic-group", "magic_panels", "name", "none",
                     "config/styles.xml:3:15"},
            Reported{"empty-magic-group", "magic_panels", "name", "empty",
                     "config/styles.xml:4:15"}));
}

TEST_F(Diagnostics, TellOfSlotsAndReferencesInTheLibrariesOfPanels) {
    write(LayoutFile::reusePanels, R"(<r><reuse_panel name="b">
<reuse_panel name="b"/>
<magic_panels name="g"/></reuse_panel></r>)");
    write(LayoutFile::magicPanels, R"(<m><magic_panels name="g"><magic_panel name="x"><panel>
<magic_panels name="g"/></panel></magic_panel></magic_panels></m>)");
    EXPECT_THAT(reported(), ElementsAre(Reported{"unknown-reuse-panel", "reuse_panel", "name", "b",
                                                 "base/reuse_panels.xml:2:14"},
                                        Reported{"unknown-magic-group", "magic_panels", "name", "g",
                                                 "base/reuse_panels.xml:3:15"},
                                        Reported{"unknown-magic-group", "magic_panels", "name", "g",
                                                 "config/magic.xml:2:15"}));
}

TEST_F(Diagnostics, TellOfAnUnknownReusePanel) {
    write(LayoutFile::styles,
          "<s><style name='a'><panel>\n  <reuse_panel name='none' odd='1'/></panel></style></s>");
    EXPECT_THAT(reported(), ElementsAre(Reported{"unknown-reuse-panel", "reuse_panel", "name",
                                                 "none", "config/styles.xml:2:16"}));
}

// ---- Custom pages -------------------------------------------------------------------------------

class CustomPageDiagnostics : public Diagnostics {
protected:
    CustomPageDiagnostics() {
        write(LayoutFile::styles, R"(<s>
 <style name="t"><panel>
  <magic_panels name="g"/></panel></style></s>)");
        write(LayoutFile::magicPanels, R"(<m><magic_panels name="g">
 <magic_panel name="x"><panel/></magic_panel>
 <magic_panel name="STOCK"><panel name="STOCK"/></magic_panel></magic_panels></m>)");
        host->mappings["模版通配"] = {{"STOCK", {"a<b"}}};
        load();
        sink.found.clear();
    }
};

TEST_F(CustomPageDiagnostics, TellNothingOfAPageThatIsBuilt) {
    loader.loadStyleConfigInfoWithName("t-x");
    loader.loadStyleConfigInfoWithName("t");
    EXPECT_THAT(sink.found, IsEmpty());
}

TEST_F(CustomPageDiagnostics, TellOfAnUnknownTemplate) {
    loader.loadStyleConfigInfoWithName("none-x");
    EXPECT_THAT(sink.found, ElementsAre(Reported{"unknown-template", "", "", "none-x", ""}));
}

TEST_F(CustomPageDiagnostics, TellOfTooManyOrTooFewArguments) {
    loader.loadStyleConfigInfoWithName("t-x-x");
    EXPECT_THAT(sink.found, ElementsAre(Reported{"argument-count", "style", "", "t-x-x",
                                                 "config/styles.xml:2:2"}));
}

TEST_F(CustomPageDiagnostics, TellOfEachStepThatTheHostTakesItself) {
    const auto element = yg::testing::parsed;
    loader.parsePaneInfo(element("<panel a='1'><group/></panel>"), std::nullopt, std::nullopt);
    loader.parseElementInfo(element("<element name='e' b='2'><panel/></element>"));
    loader.parseElementInfo(element("<element/>"));
    loader.parseStyleConfig(element("<page c='3'/>"));
    loader.parsePaneOrElement(element("<group/>"), nullptr, nullptr, nullptr, std::nullopt,
                              std::nullopt);
    EXPECT_THAT(sink.rules(),
                ElementsAre("unknown-attribute", "unknown-attribute", "unread-content",
                            "element-without-name", "style-element-name", "unknown-attribute",
                            "unknown-element"));
}

TEST_F(CustomPageDiagnostics, TellOfASlotThatIsLeft) {
    loader.loadStyleConfigInfoWithName("t-none");
    EXPECT_THAT(sink.found, ElementsAre(Reported{"slot-left", "magic_panels", "", "none",
                                                 "config/styles.xml:3:3"}));
}

TEST_F(CustomPageDiagnostics, TellOfAPatternThatBreaks) {
    ::testing::internal::CaptureStderr();
    loader.loadStyleConfigInfoWithName("t-a<b");
    EXPECT_THAT(::testing::internal::GetCapturedStderr(), StartsWith("Line 1: "));
    EXPECT_THAT(sink.found, ElementsAre(Reported{"broken-pattern", "magic_panel", "", "a<b",
                                                 "config/magic.xml:3:2"}));
}

// ---- Everything once ----------------------------------------------------------------------------

/// All six files, with everything in them that the loader can meet.
class RichRoot : public Diagnostics {
protected:
    RichRoot() {
        const std::string content = R"(
            <panel name="p" split_scale="0.5" fix_size="x" scroll_size="3" min_size="1.5"
                   max_size="9" vertical="true" is_scroll_view="True" is_dis_split_space="false"
                   is_dis_wide_bound="" is_border_radius="true" is_editable="true"
                   is_border_right_angle="yes" display_border="top" switch_expand_panel="q"
                   foldPosition="left" excute_command_info="c" colour="red">
                text in a panel
                <element name="e" param="a" property="b" uuid="c" event="d"
                         event_dispatch_dest="" event_dispatch_src="x;y"
                         event_not_change_style="1" is_first_responder="true"
                         always_recv_event="false" tooltip="t">text<panel a="1"/></element>
                <element param="nameless" odd="1"><panel/></element>
                <!-- a comment --><?an instruction?>
                <panel><panel/><element name="leaf"/></panel>
                <magic_panels name="g" odd="1">text<panel a="1"/></magic_panels>
                <magic_panels name="none" odd="1">text<panel a="1"/></magic_panels>
                <magic_panels name="empty"/>
                <magic_panels odd="1"/>
                <reuse_panel name="b" min_size="1">text<panel a="1"/></reuse_panel>
                <reuse_panel name="none" odd="1">text<panel a="1"/></reuse_panel>
                <reuse_panel odd="1"/>
                <group odd="1">text<panel a="1"><element name="e"/></panel></group>
            </panel>)";
        const std::string styles = R"( odd="1">
            text in the root
            <style name="a" layer="2" focus="f" odd="1">text in a style)" +
                                   content + R"(
                <element name="e" odd="1"/><reuse_panel name="b" odd="1"/>
                <magic_panels name="g"/><magic_panels name="none"/><other><panel/></other>
            </style>
            <style name="b" layer="x"/><style name="b"/>
            <style name="个股详细视图-1"><panel><panel name="rtline_view" odd="1"><panel odd="1"/>text
                <magic_panels name="g"/></panel></panel></style>
            <style odd="1">text<panel/></style><style name=""><panel/></style>
            <page name="c" layer="1"><panel odd="1"><panel/></panel><element name="e"/>
                <magic_panels name="g" odd="1"/><reuse_panel name="b"/></page>
        </styles>)";
        write(LayoutFile::styles, "<styles default_style=\"a\"" + styles);
        write(LayoutFile::softStyles, "<styles default_style=\"b\"" + styles);
        write(LayoutFile::tabs, "<styles default_style=\"c\"" + styles);

        const std::string groups = R"(<groups odd="1">text
            <magic_panels name="g" odd="1">text<magic_panel name="x" odd="1">text<!-- -->)" +
                                   content + R"(more<panel odd="1"><panel/></panel><other/>
            </magic_panel><magic_panel name="x"><group odd="1"><panel odd="1"/><element name="e"/>
                <reuse_panel name="b"/><magic_panels name="g"/></group></magic_panel>
            <magic_panel name="y" odd="1">text</magic_panel><magic_panel odd="1"><panel/></magic_panel>
            <member name="z"><panel/></member></magic_panels>
            <magic_panels name="empty"/><magic_panels odd="1"><magic_panel/></magic_panels>
            <group name="g"><magic_panel name="x"><panel/></magic_panel></group></groups>)";
        write(LayoutFile::magicPanels, groups);
        write(LayoutFile::softMagicPanels, groups);

        write(LayoutFile::reusePanels, R"(<panels odd="1">text
            <reuse_panel name="b" vertical="odd" odd="1">text)" +
                                           content + R"(<element name="e"/>
                <reuse_panel name="b"/><magic_panels name="g"/></reuse_panel>
            <reuse_panel odd="1"><panel/></reuse_panel><other name="b"><panel odd="1"/></other>
            </panels>)");
    }
};

TEST_F(RichRoot, IsAccountedForElementByElementAndAttributeByAttribute) {
    load();
    EXPECT_THAT(sink.unaccounted(), IsEmpty());
    EXPECT_THAT(sink.usedAgain, IsEmpty());
    EXPECT_GT(sink.usedOnce(), 250U);
    EXPECT_THAT(sink.files, ::testing::SizeIs(6));
    std::set<std::string> once;
    for (const Reported& finding : sink.found)
        once.insert(::testing::PrintToString(finding));
    EXPECT_EQ(once.size(), sink.found.size());
    EXPECT_GT(sink.found.size(), 200U);
}

TEST_F(Diagnostics, CountALeftOutRealTimeLineViewAsDroppedWithAllInIt) {
    write(LayoutFile::styles, R"(<s><style name="个股详细视图-1"><panel name="p">
        <panel name="rtline_view" odd="1">text<element name="e"/><magic_panels name="g"/></panel>
        <panel odd="2"/></panel></style></s>)");
    EXPECT_THAT(reported(), ElementsAre(Field(&Reported::rule, "rtline-view-left-out"),
                                        Field(&Reported::value, "2")));
}

TEST_F(Diagnostics, CountTheRootOfAStyleFileWithoutStyles) {
    write(LayoutFile::styles, "<s default_style='a'/>");
    EXPECT_THAT(reported(), IsEmpty());
    EXPECT_EQ(sink.usedOnce(), 7U);
}

// ---- The same answers ---------------------------------------------------------------------------

/// All that loaders answer and log, as text.
class SameAnswers : public RichRoot {
protected:
    std::string answers(yg::DiagnosticsSink* with, const std::vector<std::string>& pages) {
        host->clear();
        YGStyleConfigLoad fresh(with);
        load(fresh);
        std::string text = RecordText::of(fresh);
        for (const std::string& page : pages) {
            text += page + "\n" + RecordText::of(fresh.loadStyleConfigInfoWithName(page));
            text += fresh.createXMLElementWithStyleName(page).serialise();
        }
        for (const LayoutFile file : allLayoutFiles)
            text += fresh.getRootElementForFile(path(file)).serialise();
        for (const std::string& line : host->runtimeLog())
            text += "log " + line + "\n";
        for (const std::string& question : host->questions())
            text += "question " + question + "\n";
        return text;
    }
};

TEST_F(SameAnswers, ComeFromARichRootWithAndWithoutASink) {
    host->mappings["模版通配"] = {{"x", {"SH01"}}};
    const std::vector<std::string> pages = {"a", "b", "a-x-x", "c", "none", "a-x-x-x-x-x-x", ""};
    const std::string without = answers(nullptr, pages);
    EXPECT_EQ(answers(&sink, pages), without);
    EXPECT_THAT(without, ::testing::HasSubstr("excuteCommandInfo \"c\""));
    EXPECT_THAT(sink.found, Contains(Field(&Reported::rule, "duplicate-style")));
}

/// ASCII as UTF-16 with a mark.
std::string utf16(std::string_view text) {
    std::string bytes = "\xFF\xFE";
    for (const char c : text) {
        bytes += c;
        bytes += '\0';
    }
    return bytes;
}

TEST_F(SameAnswers, ComeFromNastyFilesWithAndWithoutASink) {
    // Everything that XML allows, in several encodings and with several line ends.
    write(LayoutFile::styles,
          "\xEF\xBB\xBF<?xml version='1.0' encoding='UTF-8' standalone='yes'?>\r\n"
          "<!-- before --><?before it?>\r\n<!DOCTYPE s PUBLIC '-//s'\r\n 's>\".dtd' >\r\n"
          "<s default_style='text &amp; more'>\r\n<style name='a'\r\n  focus='one\r\n\ttwo'>"
          "<panel xmlns:p='urn:p' p:name='x' name='&#34;&#x884C;'/>text &amp; more</style>\r\n"
          "<style name='t'>\r\n<![CDATA[<panel/>]]><magic_panels name='g'/></style>"
          "</s>\r\n<!-- after -->");
    write(LayoutFile::softStyles, utf16("<s default_style='u'><style name='b'/></s>"));
    write(LayoutFile::tabs,
          "<?xml version='1.0' encoding='gb2312'?><s><style name='\xD0\xD0\xC7\xE9 \x81\x40'>"
          "<panel name='&#xD0;'/></style></s>");
    write(
        LayoutFile::magicPanels,
        "<m xmlns='urn:m'><magic_panels name='g'><magic_panel name='x'><!-- c --><panel/>"
        "</magic_panel><magic_panel name='STOCK'><panel name='STOCK'> <element name='a'> </element>"
        "<![CDATA[ ]]></panel></magic_panel></magic_panels><x:y name='g'/></m>");
    write(LayoutFile::reusePanels, "<r>\r<reuse_panel name='b' min_size='&#9;12'/>\r</r>\r");
    write(LayoutFile::softMagicPanels, "<m><magic_panels></m>");
    host->mappings["模版通配"] = {{"STOCK", {"SH01", "a<b"}}};
    ::testing::internal::CaptureStderr();
    const std::vector<std::string> pages = {"a", "t", "t-x", "t-SH01", "t-a<b", "t-none"};
    const std::string without = answers(nullptr, pages);
    const std::string console = ::testing::internal::GetCapturedStderr();
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(answers(&sink, pages), without);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), console);

    EXPECT_THAT(without, StartsWith("default \"u\"\n"));
    EXPECT_THAT(without, ::testing::HasSubstr("default_style=\"text &amp; more\""));
    EXPECT_THAT(without, ::testing::HasSubstr("styleFucus \"one  two\""));
    EXPECT_THAT(without, ::testing::HasSubstr("行情 丂"));
}

TEST_F(SameAnswers, ComeFromFilesAtTheLimitOfDepthWithAndWithoutASink) {
    for (const int depth : {200, 250, 251, 252, 253, 254, 255, 256, 257, 300}) {
        std::string text = "<s><style name='a'>";
        for (int i = 0; i < depth; ++i)
            text += "<panel>";
        for (int i = 0; i < depth; ++i)
            text += "</panel>";
        write(LayoutFile::styles, text + "</style></s>");
        EXPECT_EQ(answers(&sink, {"a"}), answers(nullptr, {"a"})) << depth;
    }
}

// ---- The sample ---------------------------------------------------------------------------------

/// The sample configuration, with the folders and the mappings of its root.
class Sample : public ::testing::Test {
protected:
    Sample() {
        const auto opened = yg::StandAloneHost::open(at(""));
        EXPECT_TRUE(opened) << opened.error;
        host->softOptimizeFolder = at("soft_optimize");
        host->baseOptimizeFolder = at("base_optimize");
        if (const auto mapping = opened.host->getMappingDicForKey("模版通配"))
            host->mappings["模版通配"] = *mapping;
    }

    static std::string at(const std::string& place) { return YG_SAMPLE_FOLDER "/" + place; }

    static void load(YGStyleConfigLoad& loader) {
        loader.initWithStyleConfigPath(at("config/custompage_template.xml"),
                                       at("config/tab_styles.xml"), at("config/magic_panels.xml"));
    }

    const yg::testing::ScopedHost<> host;
};

TEST_F(Sample, HasNothingOddButWhatItShowsOnPurpose) {
    RecordingSink sink(at(""));
    YGStyleConfigLoad loader(&sink);
    load(loader);
    EXPECT_THAT(sink.unaccounted(), IsEmpty());
    std::set<std::string> rules;
    for (const Reported& finding : sink.found)
        rules.insert(finding.rule);
    EXPECT_THAT(rules, UnorderedElementsAre("rtline-view-left-out", "replaced-group",
                                            "overridden-style", "overridden-default-style"));
    EXPECT_THAT(host->runtimeLog(), ElementsAre("initWithStyleConfigPath"));
}

TEST_F(Sample, AnswersTheSameWithAndWithoutASink) {
    RecordingSink sink(at(""));
    std::vector<std::string> answers;
    for (yg::DiagnosticsSink* with :
         {static_cast<yg::DiagnosticsSink*>(nullptr), static_cast<yg::DiagnosticsSink*>(&sink)}) {
        YGStyleConfigLoad loader(with);
        load(loader);
        std::string text = RecordText::of(loader);
        for (const char* page :
             {"quote-kline-depth", "single-SH990001", "board-kline-depth-持仓",
              "看板-heat-ranking-feed", "看板-heat-ranking-flash", "quote-kline", "single-XA9999"})
            text += RecordText::of(loader.loadStyleConfigInfoWithName(page));
        for (const std::string& line : host->runtimeLog())
            text += "log " + line + "\n";
        host->clear();
        answers.push_back(text);
    }
    EXPECT_EQ(answers[0], answers[1]);
    EXPECT_GT(answers[0].size(), 10000U);
}

}  // namespace
